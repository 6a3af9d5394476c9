#include "dialog/submit_command.h"

#include "common/platform.h"
#include "dialog/submit_sequence.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "resources/resource_ids.h"
#include "scene/virus_check.h"
#include "submit/client_configuration.h"
#include "submit/client_link.h"
#include "submit/scene_archive.h"
#include "submit/submit_document.h"
#include "submit/task_guid.h"

#include <utility>

namespace tarvo {

namespace {

class SubmitWindow : public SubmitDialog {
public:
    explicit SubmitWindow(HWND dialog) : dialog_(dialog) {}

    WindowHandle window() override { return dialog_; }
    bool is_checked(int control) override { return ::IsDlgButtonChecked(dialog_, control) == BST_CHECKED; }
    double number(int control) override { return UiState::instance().ReadFloatField(dialog_, control); }
    std::string scene_name() override { return UiState::instance().GetSceneName(field(IDC_MAIN_SCENE_NAME)); }
    WindowHandle field(int control) override { return ::GetDlgItem(dialog_, control); }
    void close(int result) override { ::EndDialog(dialog_, result); }

private:
    HWND dialog_;
};

class ForwardedSteps : public SubmitSteps {
public:
    ForwardedSteps(SceneData& scene, MessageBoxes& boxes) : scene_(scene), boxes_(boxes) {}

    std::int32_t validate_cameras(WindowHandle dialog) override {
        return UiState::instance().validate_cameras(dialog, scene_.cameras());
    }
    void host_call() override { CurrentHost().save(); }
    std::string prepare_scene_file(const std::string& entered_name, WindowHandle name_field) override {
        return scene_.prepare_scene_file(entered_name, name_field);
    }
    std::wstring new_task_guid() override { return NewTaskGuid(); }
    void load_configuration(PluginConfig& config) override { LoadClientConfiguration(scene_, config); }
    void backup_scene_file() override { scene_.backup_scene_file(); }
    void check_scene_viruses(const PluginConfig& config) override {
        tarvo::check_scene_viruses(CurrentHost(), scene_, config);
    }
    bool prepare_archive(std::string scene_file, std::string field_text, std::wstring guid,
                         PluginConfig& config) override {
        return PrepareSceneArchive(scene_, std::move(scene_file), std::move(field_text), std::move(guid),
                                   config);
    }
    void run_packer(std::string field_text, const PluginConfig& config) override {
        RunSevenZip(scene_, std::move(field_text), config);
    }
    void wait_milliseconds(unsigned milliseconds) override { sleep_milliseconds(milliseconds); }
    bool write_document(WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                        std::string& body) override {
        return WriteSubmitDocument(scene_, boxes_, owner, config, guid, body);
    }
    void post(PluginConfig config, std::string body, WindowHandle owner) override {
        PostToClient(std::move(config), body, boxes_, owner);
    }

private:
    SceneData& scene_;
    MessageBoxes& boxes_;
};

} // namespace

int RunSubmitCommand(HWND dialog, const std::wstring& caption, const std::wstring& language_switch) {
    SceneData& scene = SceneData::instance();
    MessageBoxes& boxes = SystemMessageBoxes();
    SubmitWindow window(dialog);
    ForwardedSteps steps(scene, boxes);
    return RunSubmitSequence(window, boxes, steps, scene, caption, language_switch);
}

} // namespace tarvo
