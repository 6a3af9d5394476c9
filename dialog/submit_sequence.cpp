#include "dialog/submit_sequence.h"

#include "common/string_table.h"
#include "dialog/number_step.h"
#include "resources/resource_ids.h"
#include "scene/camera_rules.h"

namespace tarvo {

namespace {

constexpr int kSubmitted = 1;
constexpr int kNothingToSubmit = 0;
constexpr int kStopped = -1;

constexpr unsigned kWaitAfterPacking = 1000; // milliseconds

// How the user hears of what is wrong with the cameras. With OK and Cancel it is a question, else the end.
struct CameraFinding {
    CameraCheck check;
    unsigned text_id;
    unsigned style;
};

constexpr CameraFinding kCameraFindings[] = {
    {CameraCheck::negative_frame, IDS_FRAME_TO_RENDER_NEGATIVE, kBoxOk},
    {CameraCheck::bad_name, IDS_CAMERA_NAME_INVALID, kBoxOk},
    {CameraCheck::none_checked, IDS_NO_CAMERA_CHECKED, kBoxOkCancel},
};

// One press of the submit button.
class Submission {
public:
    Submission(SubmitDialog& dialog, MessageBoxes& boxes, SubmitSteps& steps, SceneData& scene,
               const std::wstring& caption, const std::wstring& language_switch)
        : dialog_(dialog), boxes_(boxes), steps_(steps), scene_(scene), caption_(caption),
          language_(BoxLanguage(language_switch)) {}

    int run() {
        if (!cameras_accepted()) {
            return kStopped;
        }
        store_options();
        steps_.host_call();
        if (!find_scene_file() || !make_task_id()) {
            return kNothingToSubmit;
        }
        configure();
        check_for_viruses();
        return pack() && send() ? kSubmitted : kStopped;
    }

private:
    int show(unsigned text_id, unsigned style = kBoxOk) {
        return boxes_.show(dialog_.window(), Text(text_id), caption_, style, language_);
    }

    bool cameras_accepted() {
        const CameraCheck check = static_cast<CameraCheck>(steps_.validate_cameras(dialog_.window()));
        for (const CameraFinding& finding : kCameraFindings) {
            if (finding.check == check) {
                const int answer = show(finding.text_id, finding.style);
                return finding.style == kBoxOkCancel && answer != kAnswerCancel;
            }
        }
        return true;
    }

    void store_options() {
        scene_.color_channel = dialog_.is_checked(IDC_MAIN_COLOR_CHANNEL);
        scene_.ao_channel = dialog_.is_checked(IDC_MAIN_AO_CHANNEL);
        if (scene_.ao_channel) {
            scene_.ao_radius = dialog_.number(IDC_MAIN_AO_RADIUS);
            scene_.ao_subdivs = TruncateToInt32(dialog_.number(IDC_MAIN_AO_SUBDIVS));
        }
        scene_.gamma_out = static_cast<float>(dialog_.number(IDC_MAIN_GAMMA));
    }

    bool find_scene_file() {
        entered_name_ = dialog_.scene_name();
        scene_file_ = steps_.prepare_scene_file(entered_name_, dialog_.field(IDC_MAIN_SCENE_NAME));
        if (!scene_file_.empty()) {
            return true;
        }
        show(IDS_SCENE_FILE_EMPTY);
        return false;
    }

    bool make_task_id() {
        task_id_ = steps_.new_task_guid();
        return !task_id_.empty();
    }

    void configure() {
        steps_.load_configuration(config_);
        config_.sceneFile = scene_file_;
    }

    // What these find or fail at is theirs to report; it does not stop the submission.
    void check_for_viruses() {
        if (dialog_.is_checked(IDC_MAIN_VIRUS_CHECK)) {
            steps_.backup_scene_file();
            steps_.check_scene_viruses(config_);
        }
    }

    bool pack() {
        if (!steps_.prepare_archive(scene_file_, entered_name_, task_id_, config_)) {
            show(IDS_SCENE_NAME_UNUSABLE);
            dialog_.close(0);
            return false;
        }
        steps_.run_packer(entered_name_, config_);
        steps_.wait_milliseconds(kWaitAfterPacking);
        return true;
    }

    bool send() {
        std::string body;
        if (!steps_.write_document(dialog_.window(), config_, task_id_, body)) {
            return false;
        }
        steps_.post(config_, body, dialog_.window());
        return true;
    }

    SubmitDialog& dialog_;
    MessageBoxes& boxes_;
    SubmitSteps& steps_;
    SceneData& scene_;
    const std::wstring& caption_;
    const unsigned short language_;
    std::string entered_name_; // UTF-8, with the extension
    std::string scene_file_;   // UTF-8 path
    std::wstring task_id_;
    PluginConfig config_;
};

} // namespace

int RunSubmitSequence(SubmitDialog& dialog, MessageBoxes& boxes, SubmitSteps& steps, SceneData& scene,
                      const std::wstring& caption, const std::wstring& language_switch) {
    return Submission(dialog, boxes, steps, scene, caption, language_switch).run();
}

} // namespace tarvo
