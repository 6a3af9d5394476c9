// Where the module under test keeps its files. The tests see the finished module only, so this asks Windows
// itself.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <string>

inline std::wstring plugin_folder() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    return std::wstring(folder) + L"\\Tarvo Rendering";
}
