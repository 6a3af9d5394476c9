#include "scene/virus_check.h"

#include "common/platform.h"
#include "common/text.h"

namespace tarvo {

void check_scene_viruses(Host& host, SceneData& scene, const PluginConfig& config) {
    const struct {
        const std::wstring& script;
        const char* line;
    } checks[] = {
        {config.antivirusAdslScript, "Check ADSL virus for scene"},
        {config.antivirusAlcScript, "Check ALC virus for scene"},
        {config.antivirusCrpScript, "Check CRP virus for scene"},
    };
    // A script that removed something saves the scene in its place; nothing else tells the plugin.
    const std::wstring file = host.current_file_path();
    const long long written = last_write_time(file);
    for (const auto& check : checks) {
        ScriptResult ignored;
        host.run_script(L"fileIn \"" + check.script + L"\"", ignored);
        scene.log().Write(check.line, kWarn);
    }
    const long long written_now = last_write_time(file);
    if (written != 0 && written_now != 0 && written_now != written) {
        scene.log().Write("The scene file was saved again during the virus checks: " + WideToUtf8(file),
                          kWarn);
    }
}

} // namespace tarvo
