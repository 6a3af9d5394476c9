// Opens a scene file and reads it into the model. Reads only, and leaves the file open to others meanwhile.
#pragma once

#include "standin/max_file/scene_model.h"

#include <string>

namespace max_file {

// False: `problem` is an English sentence that begins with the path and says what is wrong with the file.
bool open_scene_file(const std::wstring& path, SceneModel& model, std::wstring& problem);

} // namespace max_file
