#include "dialog/sequences.h"

#include "common/message_box.h"
#include "dialog/controls.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "scene/scene_data.h"
#include "scene/scene_file.h"
#include "scene/scene_scripts.h"

#include <windows.h>

#include <commctrl.h>

namespace tarvo {

namespace {

constexpr int kFilled = 1;
constexpr int kNoAnalysis = 0;
constexpr int kStopped = -1;

constexpr unsigned kNoText = 0;

// The box for a code of the analysis.
struct AnalysisFinding {
    std::int32_t code;
    unsigned text_id;
    unsigned style;
    int answer;
    bool ends_on_answer; // false: every other answer ends the dialog
};

// A notice ends the dialog once it is confirmed; a box that could not be shown does not (C-02).
constexpr AnalysisFinding kFindings[] = {
    {1, IDS_NO_CAMERA_QUESTION, kBoxYesNo, kAnswerYes, false},
    {2, IDS_CORONA_UNLIMITED, kBoxOk, kAnswerOk, true},
    {3, IDS_CAMERA_NAME_ENDING, kBoxOk, kAnswerOk, true},
};

// The text that refuses the dialog, or kNoText.
unsigned find_refusal(const PluginConfig& config) {
    if (config.lowerVersion.empty()) {
        return IDS_CLIENT_NOT_SET_UP;
    }
    if (!IsVersionAccepted(config.lowerVersion)) {
        return IDS_VERSION_TOO_LOW;
    }
    return IsUsableSceneName(SceneFileName()) ? kNoText : IDS_SCENE_NAME_UNUSABLE;
}

bool findings_accepted(HWND dialog, std::int32_t code) {
    for (const AnalysisFinding& finding : kFindings) {
        if (finding.code == code) {
            const bool answered = ShowBox(dialog, finding.text_id, finding.style) == finding.answer;
            return answered != finding.ends_on_answer;
        }
    }
    return true;
}

void fill(HWND dialog, SceneData& scene, bool first_opening) {
    UiState& ui = UiState::instance();
    CheckNoBlocks(dialog);
    scene.set_num_blocks(1);
    ui.SetSceneName(DialogItem(dialog, IDC_MAIN_SCENE_NAME), scene.scene_name_from_analysis());
    ui.ShowWarnings(DialogItem(dialog, IDC_MAIN_WARNINGS), scene.messages());
    HWND table = DialogItem(dialog, IDC_MAIN_CAMERAS);
    if (table != nullptr) {
        ::SendMessageW(table, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                       LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    }
    ui.ShowGamma(dialog, scene.gamma_out);
    if (first_opening) {
        ui.CreateCameraTableHead(table);
        ui.CreateCameraTable(table, scene.cameras());
    } else {
        ui.UpdateCameraTable(table, scene.cameras());
    }
}

int end(HWND dialog, int result) {
    ::EndDialog(dialog, 0);
    return result;
}

} // namespace

int RunOpeningSequence(WindowHandle dialog, bool first_opening) {
    SceneData& scene = SceneData::instance();
    PluginConfig config;
    if (first_opening) {
        scene.clear_cameras();
    }
    LoadClientConfiguration(scene, config);
    const unsigned refusal = find_refusal(config);
    if (refusal != kNoText) {
        ShowBox(dialog, refusal);
        return end(dialog, kStopped);
    }
    ScriptResult result;
    if (!run_scene_analysis(dialog, result, config.analysisScript)) {
        return end(dialog, kNoAnalysis);
    }
    scene.set_analysis_text(result.text);
    if (!findings_accepted(dialog, scene.parse_analysis())) {
        return end(dialog, kStopped);
    }
    fill(dialog, scene, first_opening);
    return kFilled;
}

} // namespace tarvo
