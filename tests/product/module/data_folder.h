// The folder of the module's files. These tests link nothing of the product, so the path comes from Windows.
#pragma once

#include <windows.h>

#include <shlobj.h>

#include <string>

inline std::wstring plugin_folder() {
    wchar_t folder[MAX_PATH] = {};
    ::SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder);
    return std::wstring(folder) + L"\\Tarvo Rendering";
}
