// The three scene checks: their order and their log lines. Their results are ignored.
#include "scene/scene_scripts.h"

#include "common/text.h"
#include "common/win32_handles.h"
#include "scene/scene_data.h"
#include "submit/plugin_config.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const std::vector<std::string> kLines = {"[WARN] Check ADSL virus for scene",
                                         "[WARN] Check ALC virus for scene",
                                         "[WARN] Check CRP virus for scene"};

class VirusCheck : public ::testing::Test {
protected:
    VirusCheck() {
        support::plugin_folder();
        reset_test_host();
        host.on_script = [this] { lines_before.push_back(support::log_mark("qfx_data")); };
        config.antivirusAdslScript = L"C:\\a folder/script/adsl.ms";
        config.antivirusAlcScript = L"C:\\a folder/script/alc.ms";
        config.antivirusCrpScript = L"C:\\a folder/script/crp.ms";
    }
    ~VirusCheck() override { reset_test_host(); }

    void check() {
        mark = support::log_mark("qfx_data");
        tarvo::check_scene_viruses(config);
        lines = support::log_lines_since("qfx_data", mark);
    }

    void expect_all_three() const {
        EXPECT_EQ(host.scripts, (std::vector<std::wstring>{L"fileIn \"C:\\a folder/script/adsl.ms\"",
                                                           L"fileIn \"C:\\a folder/script/alc.ms\"",
                                                           L"fileIn \"C:\\a folder/script/crp.ms\""}));
        EXPECT_EQ(lines, kLines);
    }

    tarvo::SceneData& scene = tarvo::SceneData::instance();
    TestHost& host = test_host();
    std::vector<std::size_t> lines_before; // length of the log when each script ran
    tarvo::PluginConfig config;
    std::size_t mark = 0;
    std::vector<std::string> lines;
};

TEST_F(VirusCheck, ScriptsRunInOrder) {
    check();
    expect_all_three();
}

TEST_F(VirusCheck, EachLineFollowsItsScript) {
    check();
    EXPECT_EQ(lines_before, (std::vector<std::size_t>{mark, mark + 1, mark + 2}));
}

TEST_F(VirusCheck, FailedScriptDoesNotStopTheOthers) {
    host.script_result = false;
    check();
    expect_all_three();
}

TEST_F(VirusCheck, ReturnValueOfAScriptIsIgnored) {
    host.script_text = L"infected";
    check();
    expect_all_three();
}

TEST_F(VirusCheck, EveryRunWritesItsLines) {
    check();
    host.scripts.clear();
    check();
    expect_all_three();
}

// As a script does after it has removed something.
void save_scene() {
    const tarvo::FileHandle file(::CreateFileW(test_host().file_path.c_str(), FILE_WRITE_ATTRIBUTES, 0,
                                               nullptr, OPEN_EXISTING, 0, nullptr));
    const FILETIME later = {0, static_cast<DWORD>(1000 + test_host().scripts.size())};
    EXPECT_NE(::SetFileTime(file.get(), nullptr, nullptr, &later), FALSE);
}

TEST_F(VirusCheck, FileSavedByAScriptIsLoggedLast) {
    const std::string path = support::plugin_folder() + "/saved.max";
    support::write_file(path, "scene");
    host.file_path = tarvo::Utf8ToWide(path);
    for (const bool saves : {false, true}) {
        host.on_script = saves ? save_scene : std::function<void()>();
        check();
        std::vector<std::string> expected = kLines;
        if (saves) {
            expected.push_back("[WARN] The scene file was saved again during the virus checks: " + path);
        }
        EXPECT_EQ(lines, expected);
    }
}

TEST_F(VirusCheck, PathsComeFromTheConfiguration) {
    tarvo::LoadClientConfiguration(scene, config);
    check();
    ASSERT_EQ(host.scripts.size(), 3u);
    const wchar_t* endings[] = {L"/Tarvo Rendering/script/TarvoAntivirusAdsl_UTF8.ms\"",
                                L"/Tarvo Rendering/script/TarvoAntivirusAlc_UTF8.ms\"",
                                L"/Tarvo Rendering/script/TarvoAntivirusCrp_UTF8.ms\""};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::wstring ending = endings[i];
        ASSERT_GT(host.scripts[i].size(), ending.size());
        EXPECT_EQ(host.scripts[i].substr(host.scripts[i].size() - ending.size()), ending);
        EXPECT_EQ(host.scripts[i].substr(0, 8), L"fileIn \"");
    }
}

TEST_F(VirusCheck, ExistenceOfTheScriptsIsNotChecked) {
    config = tarvo::PluginConfig();
    check();
    EXPECT_EQ(host.scripts, std::vector<std::wstring>(3, L"fileIn \"\""));
    EXPECT_EQ(lines, kLines);
}

} // namespace
