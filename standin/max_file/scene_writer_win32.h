// Writes a small scene file in the host's container format.
#pragma once

#include "standin/max_file/scene_model.h"

#include <string>

namespace max_file {

// Replaces a file that is there. The same model gives the same bytes. False: `problem` is an English sentence
// that begins with the path.
bool write_scene_file(const SceneModel& model, const std::wstring& path, std::wstring& problem);

} // namespace max_file
