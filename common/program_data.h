// Where the plugin keeps its files: everything lies under the machine-wide application-data folder. Paths are
// made by plain concatenation (backslashes from the shell, forward slashes from here) and are never
// normalised.
#pragma once

namespace tarvo {

constexpr const wchar_t* kPluginFolder = L"/Tarvo Rendering";
constexpr const wchar_t* kIniFile = L"/script/qfx_plugin.ini";
constexpr const wchar_t* kIniSection = L"general";
constexpr const wchar_t* kIniKeyIp = L"ip";
constexpr const wchar_t* kIniKeyPort = L"port";
constexpr const wchar_t* kIniKeyLowerVersion = L"lowerversion";

} // namespace tarvo
