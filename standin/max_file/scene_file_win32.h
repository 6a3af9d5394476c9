// Reads scene files, and writes small ones in the host's container format. Needs Windows.
#pragma once

#include "standin/max_file/scene_model.h"

#include <string>

namespace max_file {

// Other programs may read the file meanwhile. False: `problem` is an English sentence that begins with the
// path.
bool open_scene_file(const std::wstring& path, SceneModel& model, std::wstring& problem);

// Replaces an existing file. The same model gives the same bytes. False: as above.
bool write_scene_file(const SceneModel& model, const std::wstring& path, std::wstring& problem);

} // namespace max_file
