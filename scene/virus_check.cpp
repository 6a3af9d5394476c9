#include "scene/virus_check.h"

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
    for (const auto& check : checks) {
        ScriptResult ignored;
        host.run_script(L"fileIn \"" + check.script + L"\"", ignored);
        scene.log().Write(check.line, kWarn);
    }
}

} // namespace tarvo
