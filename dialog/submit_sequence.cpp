#include "dialog/sequences.h"

#include "common/message_box.h"
#include "dialog/number_step.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "scene/camera.h"
#include "scene/scene_data.h"
#include "scene/scene_scripts.h"
#include "submit/client_link.h"
#include "submit/plugin_config.h"
#include "submit/scene_archive.h"
#include "submit/submit_document.h"

namespace tarvo {

namespace {

// The results of the dialog procedure (C-06).
constexpr int kSubmitted = 1;
constexpr int kNothingToSubmit = 0;
constexpr int kStopped = -1;

constexpr unsigned kWaitAfterPacking = 1000; // milliseconds (C-11)

// The box for each finding. Only the one with OK and Cancel is a question; the others are stops (C-05).
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

bool cameras_accepted(WindowHandle dialog, std::int32_t check) {
    for (const CameraFinding& finding : kCameraFindings) {
        if (static_cast<std::int32_t>(finding.check) == check) {
            const int answer = ShowBox(dialog, finding.text_id, finding.style);
            return finding.style == kBoxOkCancel && answer != kAnswerCancel;
        }
    }
    return true;
}

void store_options(WindowHandle dialog, UiState& ui, SceneData& scene) {
    scene.color_channel = IsBoxChecked(dialog, IDC_MAIN_COLOR_CHANNEL);
    scene.ao_channel = IsBoxChecked(dialog, IDC_MAIN_AO_CHANNEL);
    if (scene.ao_channel) {
        scene.ao_radius = ui.ReadFloatField(dialog, IDC_MAIN_AO_RADIUS);
        scene.ao_subdivs = TruncateToInt32(ui.ReadFloatField(dialog, IDC_MAIN_AO_SUBDIVS));
    }
    scene.gamma_out = static_cast<float>(ui.ReadFloatField(dialog, IDC_MAIN_GAMMA));
}

} // namespace

int RunSubmitSequence(WindowHandle dialog) {
    SceneData& scene = SceneData::instance();
    UiState& ui = UiState::instance();
    if (!cameras_accepted(dialog, ui.validate_cameras(dialog, scene.cameras()))) {
        return kStopped;
    }
    store_options(dialog, ui, scene);
    SaveScene(); // its outcome is not tested (C-68)
    const WindowHandle name_field = DialogItem(dialog, IDC_MAIN_SCENE_NAME);
    const std::string entered_name = ui.GetSceneName(name_field); // UTF-8, with the extension
    const std::string scene_file = scene.prepare_scene_file(entered_name, name_field);
    if (scene_file.empty()) {
        ShowBox(dialog, IDS_SCENE_FILE_EMPTY);
        return kNothingToSubmit;
    }
    const std::wstring task_id = NewTaskGuid();
    if (task_id.empty()) { // without a box (C-66)
        return kNothingToSubmit;
    }
    PluginConfig config;
    LoadClientConfiguration(scene, config);
    config.sceneFile = scene_file;
    if (IsBoxChecked(dialog, IDC_MAIN_VIRUS_CHECK)) { // neither outcome stops the submission (C-13)
        scene.backup_scene_file();
        check_scene_viruses(config);
    }
    if (!PrepareSceneArchive(scene, scene_file, entered_name, task_id, config)) {
        ShowBox(dialog, ArchiveRefusalText(config));
        CloseDialog(dialog, 0); // the only stop that does (C-10)
        return kStopped;
    }
    RunSevenZip(scene, entered_name, config); // its outcome is not tested (C-60)
    SleepMilliseconds(kWaitAfterPacking);
    std::string body;
    if (!WriteSubmitDocument(scene, dialog, config, task_id, body)) {
        return kStopped;
    }
    PostToClient(config, body, dialog);
    return kSubmitted;
}

} // namespace tarvo
