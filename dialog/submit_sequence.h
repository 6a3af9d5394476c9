// The one place where a submission is driven from start to end, written against narrow needs so that it runs
// without a window: the dialog, the message boxes, and the steps of the floors below.
#pragma once

#include "common/message_box.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"

#include <cstdint>
#include <string>

namespace tarvo {

// What the sequence asks of the dialog.
class SubmitDialog {
public:
    virtual ~SubmitDialog() = default;
    virtual WindowHandle window() = 0;
    virtual bool is_checked(int control) = 0;
    virtual double number(int control) = 0;
    virtual std::string scene_name() = 0; // UTF-8 with ".max", or empty
    virtual WindowHandle field(int control) = 0;
    virtual void close(int result) = 0;
};

// The work behind the steps, in the order of the steps. The product's implementation only forwards.
class SubmitSteps {
public:
    virtual ~SubmitSteps() = default;
    virtual std::int32_t validate_cameras(WindowHandle dialog) = 0;
    virtual void host_call() = 0;
    virtual std::string prepare_scene_file(const std::string& entered_name, WindowHandle name_field) = 0;
    virtual std::wstring new_task_guid() = 0;
    virtual void load_configuration(PluginConfig& config) = 0;
    virtual void backup_scene_file() = 0;
    virtual void check_scene_viruses(const PluginConfig& config) = 0;
    virtual bool prepare_archive(std::string scene_file, std::string field_text, std::wstring guid,
                                 PluginConfig& config) = 0;
    virtual void run_packer(std::string field_text, const PluginConfig& config) = 0;
    virtual void wait_milliseconds(unsigned milliseconds) = 0;
    virtual bool write_document(WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                                std::string& body) = 0;
    virtual void post(PluginConfig config, std::string body, WindowHandle owner) = 0;
};

// 1 when every step ran, 0 without a scene file or task id, -1 after every other stop.
int RunSubmitSequence(SubmitDialog& dialog, MessageBoxes& boxes, SubmitSteps& steps, SceneData& scene,
                      const std::wstring& caption, const std::wstring& language_switch);

} // namespace tarvo
