// The plugin's folders and files, the client's address, and the working texts of one submission. A plain
// record, new for each opening and each submission. The order of the fields is fixed (C-24).
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

class SceneData;

struct PluginConfig {
    std::wstring clientIp;
    std::int32_t clientPort = 80; // only in a record that was never loaded
    std::wstring jsonPath;        // the folder of submit documents; after writing, the document's full path
    std::wstring sevenZipExe;
    std::wstring compressDir;
    std::wstring lowerVersion;
    std::string sceneFile;     // UTF-8
    std::string archivePath;   // UTF-8
    std::string packArguments; // ANSI code page
    std::wstring analysisScript;
    std::wstring antivirusAdslScript;
    std::wstring antivirusAlcScript;
    std::wstring antivirusCrpScript;
};

// Fills `config` from the shell's folders and the ini file. Always true: without the ini file the address is
// empty and the port 0, and the call to the client fails. Logs one line.
bool LoadClientConfiguration(SceneData& scene, PluginConfig& config);

constexpr const wchar_t* kPluginVersion = L"1.3.5";

// Compares texts, not version numbers: "1.10.0" is lower than "1.3.5" (C-01).
bool IsVersionAccepted(const std::wstring& lowest_accepted);

} // namespace tarvo
