// Saving the open scene: real files on disk.
#pragma once

#include <string>

namespace host_sdk {

bool save_scene();
bool save_scene_as(const std::wstring& path, bool clear_need_save, bool becomes_current);

} // namespace host_sdk
