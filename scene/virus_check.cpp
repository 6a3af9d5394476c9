#include "scene/scene_scripts.h"

#include "common/platform.h"
#include "common/text.h"
#include "scene/scene_data.h"

namespace tarvo {

void check_scene_viruses(const PluginConfig& config) {
    const struct {
        const std::wstring& script;
        const char* line;
    } checks[] = {
        {config.antivirusAdslScript, "Check ADSL virus for scene"},
        {config.antivirusAlcScript, "Check ALC virus for scene"},
        {config.antivirusCrpScript, "Check CRP virus for scene"},
    };
    Logger& log = SceneData::instance().log();
    // A script that removed a virus saves the scene; the plugin has no other sign of it.
    const std::wstring file = SceneFilePath();
    const long long written = LastWriteTime(file);
    for (const auto& check : checks) {
        ScriptResult ignored; // and so is whether the script ran (C-71)
        RunScript(L"fileIn \"" + check.script + L"\"", ignored);
        log.Write(check.line, kWarn);
    }
    const long long written_now = LastWriteTime(file);
    if (written != 0 && written_now != 0 && written_now != written) {
        log.Write("The scene file was saved again during the virus checks: " + WideToUtf8(file), kWarn);
    }
}

} // namespace tarvo
