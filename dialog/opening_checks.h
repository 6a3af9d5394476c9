// What is decided at the opening of the dialog before the scene is analysed.
#pragma once

#include <string>

namespace tarvo {

constexpr const wchar_t* kPluginVersion = L"1.3.5";

// A comparison of texts, not of version numbers: "1.10.0" is lower than "1.3.5".
bool IsVersionAccepted(const std::wstring& lowest_accepted);

// False for a scene whose name (before its last dot) ends with a blank or a full stop, or holds a character
// from U+0400 to U+052F.
bool IsUsableSceneName(const std::wstring& file_name);

} // namespace tarvo
