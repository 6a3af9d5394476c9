#include "tests/product/sequence/submit_sequence_doubles.h"

#include "common/platform.h"
#include "common/string_table.h"
#include "dialog/sequences.h"
#include "dialog/ui_state.h"
#include "host/host.h"
#include "scene/scene_data.h"
#include "scene/scene_scripts.h"
#include "submit/client_link.h"
#include "submit/plugin_config.h"
#include "submit/scene_archive.h"
#include "submit/submit_document.h"
#include "tests/support/native/native_platform.h"

#include <gtest/gtest.h>

namespace {

Bench* g_bench = nullptr;

tarvo::WindowHandle window_number(std::uintptr_t number) {
    return reinterpret_cast<tarvo::WindowHandle>(number);
}

const tarvo::WindowHandle kDialog = window_number(0x1000);
const tarvo::WindowHandle kNameField = window_number(0x2000);

std::string narrow(const std::wstring& text) {
    return std::string(text.begin(), text.end());
}

void note(const std::string& call) {
    g_bench->calls.push_back(call);
}

void note_wait(unsigned milliseconds) {
    note("wait " + std::to_string(milliseconds));
}

} // namespace

Bench::Bench() {
    g_bench = this;
    support::set_sleep(note_wait);
    scene.color_channel = false;
    scene.ao_channel = false;
    scene.ao_radius = 1000.0;
    scene.ao_subdivs = 16;
    scene.gamma_out = 2.2f;
}

Bench::~Bench() {
    support::set_sleep(nullptr);
    g_bench = nullptr;
}

int Bench::run() {
    return tarvo::RunSubmitSequence(kDialog);
}

namespace tarvo {

// A text reads as its number in brackets.
std::wstring Text(unsigned id) {
    return id == IDS_LANGUAGE_SWITCH ? g_bench->language_switch : L"[" + std::to_wstring(id) + L"]";
}

int ShowSystemBox(WindowHandle owner, const std::wstring& text, const std::wstring& caption, unsigned style,
                  unsigned short language) {
    EXPECT_EQ(owner, kDialog);
    EXPECT_EQ(caption, L"[49]");
    note("box " + narrow(text) + " style " + std::to_string(style) + " language " + std::to_string(language));
    return g_bench->answer;
}

WindowHandle DialogItem(WindowHandle dialog, int control) {
    EXPECT_EQ(dialog, kDialog);
    note("field " + std::to_string(control));
    return kNameField;
}

bool IsBoxChecked(WindowHandle dialog, int control) {
    EXPECT_EQ(dialog, kDialog);
    note("checked " + std::to_string(control));
    return g_bench->checked.count(control) != 0;
}

void CloseDialog(WindowHandle dialog, int result) {
    EXPECT_EQ(dialog, kDialog);
    note("close " + std::to_string(result));
}

std::int32_t UiState::validate_cameras(WindowHandle dialog, CameraMap& cameras) {
    EXPECT_EQ(dialog, kDialog);
    EXPECT_EQ(&cameras, &SceneData::instance().cameras());
    note("validate");
    return g_bench->check;
}

double UiState::ReadFloatField(WindowHandle dialog, int control) {
    EXPECT_EQ(dialog, kDialog);
    note("number " + std::to_string(control));
    return g_bench->numbers.at(control);
}

std::string UiState::GetSceneName(WindowHandle edit) {
    EXPECT_EQ(edit, kNameField);
    note("scene name");
    return kEntered;
}

void SaveScene() {
    note("save");
}

std::string SceneData::prepare_scene_file(const std::string& entered_name, WindowHandle name_field) {
    EXPECT_EQ(name_field, kNameField);
    note("scene file for " + entered_name);
    return g_bench->finds_scene_file ? kSceneFile : "";
}

std::wstring NewTaskGuid() {
    note("guid");
    const std::string guid = g_bench->makes_guid ? kGuid : "";
    return std::wstring(guid.begin(), guid.end());
}

bool LoadClientConfiguration(SceneData&, PluginConfig& config) {
    note("configuration");
    g_bench->loaded_into = config;
    config.clientIp = L"client";
    config.sceneFile = "overwritten by the sequence";
    config.jsonPath = L"folder";
    return true;
}

std::int32_t SceneData::backup_scene_file() {
    note("backup");
    return 0;
}

void check_scene_viruses(const PluginConfig& config) {
    note("viruses");
    g_bench->checked_with = config;
}

bool PrepareSceneArchive(SceneData&, std::string scene_file, std::string field_text, std::wstring guid,
                         PluginConfig& config) {
    note("archive " + scene_file + " " + field_text + " " + narrow(guid) + " " + config.sceneFile);
    config.archivePath = "archive";
    return g_bench->accepts_archive;
}

unsigned ArchiveRefusalText(const PluginConfig& config) {
    EXPECT_EQ(config.archivePath, "archive");
    return IDS_SCENE_NAME_UNUSABLE;
}

void RunSevenZip(SceneData&, std::string field_text, const PluginConfig& config) {
    note("pack " + field_text + " " + config.archivePath);
}

bool WriteSubmitDocument(SceneData&, WindowHandle owner, PluginConfig& config, const std::wstring& guid,
                         std::string& body) {
    EXPECT_EQ(owner, kDialog);
    note("document " + narrow(guid) + " " + config.archivePath);
    config.jsonPath = L"folder/document";
    body = "body";
    return g_bench->writes_document;
}

void PostToClient(PluginConfig config, const std::string& body, WindowHandle owner) {
    EXPECT_EQ(owner, kDialog);
    note("post " + body);
    g_bench->posted_with = config;
}

} // namespace tarvo
