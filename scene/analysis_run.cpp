#include "scene/scene_scripts.h"

#include "common/message_box.h"
#include "common/platform.h"
#include "resources/resource_ids.h"

namespace tarvo {

std::wstring AnalysisCommand(const std::wstring& script_path) {
    return L"fileIn \"" + script_path + L"\"\ngMax.analysis \"\" \"\"";
}

bool run_scene_analysis(WindowHandle dialog, ScriptResult& result, std::wstring script_path) {
    static_cast<void>(ProgramFolder()); // the result is ignored; the call order is fixed (C-12)
    if (RunScript(AnalysisCommand(script_path), result)) {
        return true;
    }
    ShowBox(dialog, IDS_ANALYSIS_FAILED);
    return false;
}

} // namespace tarvo
