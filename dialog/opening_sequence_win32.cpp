#include "dialog/opening_sequence.h"

#include "common/message_box.h"
#include "common/string_table.h"
#include "dialog/opening_checks.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "resources/resource_ids.h"
#include "scene/analysis_run.h"
#include "scene/scene_data.h"
#include "submit/client_configuration.h"
#include "submit/plugin_config.h"

#include <windows.h>

#include <commctrl.h>

namespace tarvo {

namespace {

constexpr int kFilled = 1;
constexpr int kNoAnalysis = 0;
constexpr int kStopped = -1;

constexpr unsigned kNoText = 0;

// What the user hears about a finding of the analysis, and when that is the end: at one answer, or at all
// others.
struct AnalysisFinding {
    std::int32_t code;
    unsigned text_id;
    unsigned style;
    int answer;
    bool ends_on_answer;
};

// The notices end the dialog once they are confirmed. A box that could not be shown does not.
constexpr AnalysisFinding kFindings[] = {
    {1, IDS_NO_CAMERA_QUESTION, kBoxYesNo, kAnswerYes, false},
    {2, IDS_CORONA_UNLIMITED, kBoxOk, kAnswerOk, true},
    {3, IDS_CAMERA_NAME_ENDING, kBoxOk, kAnswerOk, true},
};

class Opening {
public:
    Opening(HWND dialog, const std::wstring& caption, const std::wstring& language_switch, bool first)
        : dialog_(dialog), caption_(caption), language_(BoxLanguage(language_switch)), first_(first) {}

    int run() {
        if (first_) {
            scene_.clear_cameras();
        }
        LoadClientConfiguration(scene_, config_);
        const unsigned refusal = find_refusal();
        if (refusal != kNoText) {
            show(refusal, kBoxOk);
            return end(kStopped);
        }
        ScriptResult result;
        if (!run_scene_analysis(CurrentHost(), SystemMessageBoxes(), dialog_, result,
                                config_.analysisScript)) {
            return end(kNoAnalysis);
        }
        scene_.set_analysis_text(result.text);
        if (!findings_accepted(scene_.parse_analysis())) {
            return end(kStopped);
        }
        fill();
        return kFilled;
    }

private:
    int show(unsigned text_id, unsigned style) {
        return SystemMessageBoxes().show(dialog_, Text(text_id), caption_, style, language_);
    }

    int end(int result) {
        ::EndDialog(dialog_, 0);
        return result;
    }

    // The text that refuses the dialog, or none.
    unsigned find_refusal() {
        if (config_.lowerVersion.empty()) {
            return IDS_CLIENT_NOT_SET_UP;
        }
        if (!IsVersionAccepted(config_.lowerVersion)) {
            return IDS_VERSION_TOO_LOW;
        }
        return IsUsableSceneName(CurrentHost().current_file_name()) ? kNoText : IDS_SCENE_NAME_UNUSABLE;
    }

    bool findings_accepted(std::int32_t code) {
        for (const AnalysisFinding& finding : kFindings) {
            if (finding.code == code) {
                const bool answered = show(finding.text_id, finding.style) == finding.answer;
                return answered != finding.ends_on_answer;
            }
        }
        return true;
    }

    void fill() {
        UiState& ui = UiState::instance();
        ::CheckRadioButton(dialog_, IDC_MAIN_BLOCKS_1, IDC_MAIN_BLOCKS_LAST, IDC_MAIN_BLOCKS_1);
        scene_.set_num_blocks(1);
        ui.SetSceneName(::GetDlgItem(dialog_, IDC_MAIN_SCENE_NAME), scene_.scene_name_from_analysis());
        ui.ShowWarnings(::GetDlgItem(dialog_, IDC_MAIN_WARNINGS), scene_.messages());
        HWND table = ::GetDlgItem(dialog_, IDC_MAIN_CAMERAS);
        if (table != nullptr) {
            ::SendMessageW(table, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                           LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
        }
        ui.ShowGamma(dialog_, scene_.gamma_out);
        if (first_) {
            ui.CreateCameraTableHead(table);
            ui.CreateCameraTable(table, scene_.cameras());
        } else {
            ui.UpdateCameraTable(table, scene_.cameras());
        }
    }

    HWND dialog_;
    const std::wstring& caption_;
    const unsigned short language_;
    const bool first_;
    SceneData& scene_ = SceneData::instance();
    PluginConfig config_;
};

} // namespace

int RunOpeningSequence(HWND dialog, const std::wstring& caption, const std::wstring& language_switch,
                       bool first_opening) {
    return Opening(dialog, caption, language_switch, first_opening).run();
}

} // namespace tarvo
