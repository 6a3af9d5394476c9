// The plugin's folders and files, the client's address, and the working texts of one submission. A plain
// record: made afresh for each opening and each submission, copied member by member.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

struct PluginConfig {
    std::wstring clientIp;
    std::int32_t clientPort = 80; // only in force in a record that was never loaded
    std::wstring jsonPath;        // first the folder of submit documents, later the document's full path
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

} // namespace tarvo
