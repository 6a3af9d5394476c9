#include "scene/analysis_run.h"

#include "common/platform.h"
#include "resources/resource_ids.h"

namespace tarvo {

std::wstring AnalysisCommand(const std::wstring& script_path) {
    return L"fileIn \"" + script_path + L"\"\ngMax.analysis \"\" \"\"";
}

bool run_scene_analysis(Host& host, MessageBoxes& boxes, WindowHandle dialog, ScriptResult& result,
                        std::wstring script_path) {
    // Asked for and not used: the steps of the run stay as they are.
    static_cast<void>(program_folder());
    if (host.run_script(AnalysisCommand(script_path), result)) {
        return true;
    }
    ShowTextBox(boxes, dialog, IDS_ANALYSIS_FAILED);
    return false;
}

} // namespace tarvo
