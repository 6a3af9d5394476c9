// Which file is packed, given the name in the dialog and the host's current file; and its backup copy.
#pragma once

#include <string>

namespace tarvo {

// All texts are UTF-8. Exactly one of three outcomes: no file to pack (file empty), pack the current file
// (file set, save_first false), save the scene as `file` first (save_first true).
struct SceneFilePlan {
    std::string file;
    std::string scene_name; // the scene's name from now on
    bool save_first = false;
};

// The longest path that the host is asked to save under, in UTF-16 units.
constexpr unsigned kMaxScenePath = 259;

SceneFilePlan PlanSceneFile(const std::string& entered_name, const std::string& current_name,
                            const std::string& current_path);

// What the name field shows for a file name: all but its last four bytes; the whole name when it has fewer
// (C-16). UTF-8.
std::string ShownSceneName(const std::string& file_name);

// The file name for the text of that field; empty for an empty text. UTF-8.
std::string EnteredSceneName(const std::wstring& field_text);

// A file name without its last four characters (a dot and three letters); the whole name when it has fewer.
std::wstring WithoutExtension(const std::wstring& file_name);

// The file name (without extension) with an underscore and the number in six digits.
std::wstring BackupName(const std::wstring& name, int number);

// `error` is only read when the copy failed. It enters the line as one UTF-16 unit, not in digits (C-53).
std::wstring BackupLogLine(const std::wstring& source, const std::wstring& destination, bool copied,
                           unsigned long error);

// False when the name before its last dot ends with a blank or a full stop, or has U+0400 to U+052F.
bool IsUsableSceneName(const std::wstring& file_name);

} // namespace tarvo
