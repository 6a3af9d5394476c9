#include "submit/plugin_config.h"

#include "common/platform.h"
#include "common/text.h"
#include "scene/scene_data.h"

namespace tarvo {

namespace {

struct FolderEntry {
    std::wstring PluginConfig::*field;
    const wchar_t* below_plugin_folder;
};

constexpr FolderEntry kEntries[] = {
    {&PluginConfig::jsonPath, L"/json"},
    {&PluginConfig::sevenZipExe, L"/7-Zip/7z.exe"},
    {&PluginConfig::compressDir, L"/compress"},
    {&PluginConfig::analysisScript, L"/script/MaxRenderGlobalsParser.mse"},
    {&PluginConfig::antivirusAdslScript, L"/script/TarvoAntivirusAdsl_UTF8.ms"},
    {&PluginConfig::antivirusAlcScript, L"/script/TarvoAntivirusAlc_UTF8.ms"},
    {&PluginConfig::antivirusCrpScript, L"/script/TarvoAntivirusCrp_UTF8.ms"},
};

} // namespace

bool LoadClientConfiguration(SceneData& scene, PluginConfig& config) {
    // Both kinds of separators (C-30); a missing port is 0 (C-31); no missing key is reported (C-70).
    const std::wstring plugin_folder = CommonAppDataFolder() + kPluginFolder;
    for (const FolderEntry& entry : kEntries) {
        config.*entry.field = plugin_folder + entry.below_plugin_folder;
    }
    const std::wstring ini_file = plugin_folder + kIniFile;
    config.clientIp = ReadProfileText(ini_file, kIniSection, kIniKeyIp);
    config.clientPort = DecimalInt(WideToLocale(ReadProfileText(ini_file, kIniSection, kIniKeyPort)));
    config.lowerVersion = ReadProfileText(ini_file, kIniSection, kIniKeyLowerVersion);
    scene.log().Write("Get client infomation successfully.", kInfo);
    return true;
}

bool IsVersionAccepted(const std::wstring& lowest_accepted) {
    return lowest_accepted <= kPluginVersion;
}

} // namespace tarvo
