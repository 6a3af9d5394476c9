// The bench on which the submit sequence runs without a window: one object stands for the dialog, the boxes
// and the steps, and writes down every call in the order in which it comes. For one test file.
#pragma once

#include "dialog/submit_sequence.h"

#include "common/string_table.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using tarvo::PluginConfig;
using tarvo::SceneData;
using tarvo::WindowHandle;

using Calls = std::vector<std::string>;

WindowHandle window_number(std::uintptr_t number) {
    return reinterpret_cast<WindowHandle>(number);
}

const WindowHandle kDialog = window_number(0x1000);
const WindowHandle kNameField = window_number(0x2000);

constexpr const char* kEntered = "entered.max";
constexpr const char* kSceneFile = "C:\\scenes\\entered.max";
constexpr const wchar_t* kGuid = L"00000000-1111-2222-3333-444444444444";
constexpr const char* kGuidNarrow = "00000000-1111-2222-3333-444444444444";
constexpr const wchar_t* kCaption = L"the caption";

std::string narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

class Bench : public tarvo::SubmitDialog, public tarvo::MessageBoxes, public tarvo::SubmitSteps {
public:
    // What the outside world does.
    std::int32_t check = 0;
    int answer = tarvo::kAnswerOk;
    bool finds_scene_file = true;
    bool makes_guid = true;
    bool accepts_archive = true;
    bool writes_document = true;
    std::set<int> checked;
    std::map<int, double> numbers = {
        {IDC_MAIN_AO_RADIUS, 12.5}, {IDC_MAIN_AO_SUBDIVS, 24.0}, {IDC_MAIN_GAMMA, 1.8}};
    std::wstring language_switch = L"0";

    Calls calls;
    PluginConfig loaded_into; // as it came to the loader
    PluginConfig checked_with;
    PluginConfig posted_with;
    SceneData scene;

    int run() { return tarvo::RunSubmitSequence(*this, *this, *this, scene, kCaption, language_switch); }

    // The dialog.
    WindowHandle window() override { return kDialog; }
    bool is_checked(int control) override {
        note("checked " + std::to_string(control));
        return checked.count(control) != 0;
    }
    double number(int control) override {
        note("number " + std::to_string(control));
        return numbers.at(control);
    }
    std::string scene_name() override {
        note("scene name");
        return kEntered;
    }
    WindowHandle field(int control) override {
        note("field " + std::to_string(control));
        return kNameField;
    }
    void close(int result) override { note("close " + std::to_string(result)); }

    // The boxes.
    int show(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
             unsigned short language) override {
        EXPECT_EQ(owner, kDialog);
        EXPECT_EQ(caption, kCaption);
        note("box " + text_number(text) + " style " + std::to_string(style) + " language " +
             std::to_string(language));
        return answer;
    }

    // The steps.
    std::int32_t validate_cameras(WindowHandle dialog) override {
        EXPECT_EQ(dialog, kDialog);
        note("validate");
        return check;
    }
    void host_call() override { note("host call"); }
    std::string prepare_scene_file(const std::string& entered_name, WindowHandle name_field) override {
        EXPECT_EQ(name_field, kNameField);
        note("scene file for " + entered_name);
        return finds_scene_file ? kSceneFile : "";
    }
    std::wstring new_task_guid() override {
        note("guid");
        return makes_guid ? kGuid : L"";
    }
    void load_configuration(PluginConfig& config) override {
        note("configuration");
        loaded_into = config;
        config.clientIp = L"client";
        config.sceneFile = "overwritten by the sequence";
        config.jsonPath = L"folder";
    }
    void backup_scene_file() override { note("backup"); }
    void check_scene_viruses(const PluginConfig& config) override {
        note("viruses");
        checked_with = config;
    }
    bool prepare_archive(std::string scene_file, std::string field_text, std::wstring guid,
                         PluginConfig& config) override {
        note("archive " + scene_file + " " + field_text + " " + narrow(guid) + " " + config.sceneFile);
        config.archivePath = "archive";
        return accepts_archive;
    }
    void run_packer(std::string field_text, const PluginConfig& config) override {
        note("pack " + field_text + " " + config.archivePath);
    }
    void wait_milliseconds(unsigned milliseconds) override { note("wait " + std::to_string(milliseconds)); }
    bool write_document(WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                        std::string& body) override {
        EXPECT_EQ(owner, kDialog);
        note("document " + narrow(guid) + " " + config.archivePath);
        config.jsonPath = L"folder/document";
        body = "body";
        return writes_document;
    }
    void post(PluginConfig config, std::string body, WindowHandle owner) override {
        EXPECT_EQ(owner, kDialog);
        note("post " + body);
        posted_with = config;
    }

private:
    void note(const std::string& call) { calls.push_back(call); }

    static std::string text_number(const std::wstring& text) {
        for (const unsigned id : {IDS_CAMERA_NAME_INVALID, IDS_FRAME_TO_RENDER_NEGATIVE, IDS_SCENE_FILE_EMPTY,
                                  IDS_NO_CAMERA_CHECKED, IDS_SCENE_NAME_UNUSABLE}) {
            if (tarvo::Text(id) == text) {
                return std::to_string(id);
            }
        }
        return "with another text";
    }
};

} // namespace
