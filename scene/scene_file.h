// Which file is to be packed, given the name in the dialog and the host's current file.
#pragma once

#include <string>

namespace tarvo {

// All texts are UTF-8. Exactly one of the three outcomes holds: nothing to pack (file empty), pack the
// current file (file set, save_first false), save the scene as `file` first (save_first true).
struct SceneFilePlan {
    std::string file;
    std::string scene_name; // what the scene is called from now on
    bool save_first = false;
};

// The longest path the host is asked to save under, in UTF-16 units.
constexpr unsigned kMaxScenePath = 259;

SceneFilePlan PlanSceneFile(const std::string& entered_name, const std::string& current_name,
                            const std::string& current_path);

// What the dialog's name field shows for a scene's file name: without its last four bytes, or whole when it
// has fewer (C-16). Both UTF-8.
std::string ShownSceneName(const std::string& file_name);

// The file name for what stands in that field; empty for nothing. UTF-8.
std::string EnteredSceneName(const std::wstring& field_text);

// A file name without its last four characters (a dot and three letters); whole when it has fewer.
std::wstring WithoutExtension(const std::wstring& file_name);

} // namespace tarvo
