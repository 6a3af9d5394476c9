#include "host/host.h"

#include "tests/product/plugin/host_fixture.h"
#include "tests/standin/host_sdk/spinner_dialog.h"
#include "tests/support/patched_import.h"
#include "tests/support/test_folder.h"

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace {

bool g_no_memory = false;

} // namespace

// Replaces the library's operator, so that a test can run out of memory. The library's uses malloc too.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return g_no_memory ? nullptr : std::malloc(size);
}

namespace {

using tarvo::RatioSpinner;
using tarvo::ScriptResult;

class MaxHostTest : public HostTest {};

Interface* throwing_core() {
    throw std::runtime_error("from the host");
}

TEST_F(MaxHostTest, WithoutACoreInterfaceEverythingIsEmpty) {
    set_fault(&host_sdk::Faults::no_core_interface);
    host_sdk::set_scene(L"C:\\a.max", true);
    ScriptResult result;
    result.has_text = true;
    EXPECT_EQ(nullptr, tarvo::CoreInterface());
    EXPECT_EQ(nullptr, tarvo::HostMainWindow());
    EXPECT_EQ(L"", tarvo::SceneFileName());
    EXPECT_EQ(L"", tarvo::SceneFilePath());
    EXPECT_FALSE(tarvo::SaveSceneAs(L"C:\\b.max"));
    EXPECT_FALSE(tarvo::RunScript(L"a", result));
    EXPECT_FALSE(result.has_text);
    tarvo::SaveScene();
    EXPECT_TRUE(host_sdk::scene_needs_save());
    EXPECT_TRUE(script_.commands.empty());
}

TEST_F(MaxHostTest, AsksTheHostForWindowAndScene) {
    const HWND window = ::GetDesktopWindow();
    host_sdk::set_main_window(window);
    host_sdk::set_scene(L"C:\\scenes\\house.max", false);
    EXPECT_NE(nullptr, tarvo::CoreInterface());
    EXPECT_EQ(window, tarvo::HostMainWindow());
    EXPECT_EQ(L"house.max", tarvo::SceneFileName());
    EXPECT_EQ(L"C:\\scenes\\house.max", tarvo::SceneFilePath());
}

TEST_F(MaxHostTest, FailedSaveAsPassesBothOptionsAndReturnsFalse) {
    host_sdk::set_scene(L"C:\\a.max", true);
    set_fault(&host_sdk::Faults::save_as_fails);
    EXPECT_FALSE(tarvo::SaveSceneAs(L"C:\\b.max"));
    EXPECT_TRUE(calls_.has(L"Interface::SaveToFile(\"C:\\b.max\", 1, 1)"));
}

TEST_F(MaxHostTest, SavesOnDisk) {
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    const std::wstring first = std::wstring(folder) + L"tarvo_host_a.max";
    const std::wstring second = std::wstring(folder) + L"tarvo_host_b.max";
    host_sdk::set_scene(first, true);
    tarvo::SaveScene();
    EXPECT_FALSE(host_sdk::scene_needs_save());
    EXPECT_TRUE(tarvo::SaveSceneAs(second));
    EXPECT_EQ(second, tarvo::SceneFilePath());
    EXPECT_TRUE(::DeleteFileW(first.c_str()));
    EXPECT_TRUE(::DeleteFileW(second.c_str()));
}

TEST_F(MaxHostTest, CopiesTheScriptsTextForEveryTextTag) {
    using host_sdk::TextTag;
    for (const TextTag tag : {TextTag::string, TextTag::filename, TextTag::tstr}) {
        host_sdk::set_text_tag(tag);
        script_.text = L"{\"scene\":\"\x6E32\"}";
        ScriptResult result;
        ASSERT_TRUE(tarvo::RunScript(L"first", result));
        ScriptResult other;
        script_.text = L"something else";
        ASSERT_TRUE(tarvo::RunScript(L"second", other)); // the host drops the first text now
        EXPECT_TRUE(result.has_text);
        EXPECT_EQ(L"{\"scene\":\"\x6E32\"}", result.text);
    }
    EXPECT_EQ(0, new_heap_objects());
}

TEST_F(MaxHostTest, ScriptsRunWithErrorsShownAndLogged) {
    ScriptResult result;
    tarvo::RunScript(L"fileIn \"a\"\nb", result);
    EXPECT_EQ(std::vector<std::wstring>{L"fileIn \"a\"\nb"}, script_.commands);
    EXPECT_TRUE(calls_.has(L"ExecuteMAXScriptScript(\"fileIn \"a\"\nb\", 0, object, 1)"));
}

TEST_F(MaxHostTest, ScriptWithoutATextGivesNoText) {
    ScriptResult result;
    result.text = L"old";
    script_.returns_text = false;
    EXPECT_TRUE(tarvo::RunScript(L"a", result));
    EXPECT_FALSE(result.has_text);
    EXPECT_EQ(L"", result.text);
}

TEST_F(MaxHostTest, EmptyTextCountsAsAText) {
    ScriptResult result;
    EXPECT_TRUE(tarvo::RunScript(L"a", result));
    EXPECT_TRUE(result.has_text);
    EXPECT_EQ(L"", result.text);
}

TEST_F(MaxHostTest, FailedScriptReturnsFalse) {
    ScriptResult result;
    script_.succeeds = false;
    EXPECT_FALSE(tarvo::RunScript(L"a", result));
    EXPECT_FALSE(result.has_text);
}

class MaxSpinnerTest : public HostTest {
protected:
    void TearDown() override {
        EXPECT_EQ(0, host_sdk::live_spinner_interfaces());
        HostTest::TearDown();
    }

    SpinnerDialog dialog_;
};

TEST_F(MaxSpinnerTest, SetUpLinksTheFieldAndAppliesTheLimits) {
    const std::unique_ptr<RatioSpinner> spinner =
        tarvo::SetUpRatioSpinner(dialog_.window, 2, 1, 0.001f, 2048.0f, 1.5f, 0.001f);
    ASSERT_NE(nullptr, spinner);
    EXPECT_EQ(L"1.5", dialog_.text());
    spinner->set_value(9999.0f);
    EXPECT_EQ(L"2048.0", dialog_.text());
    dialog_.click(false);
    EXPECT_EQ(L"2047.999", dialog_.text());
}

TEST_F(MaxSpinnerTest, FindsTheExistingControlWithItsState) {
    tarvo::SetUpRatioSpinner(dialog_.window, 2, 1, 0.001f, 2048.0f, 1.5f, 0.001f)->disable();
    EXPECT_EQ(0, host_sdk::live_spinner_interfaces());
    const std::unique_ptr<RatioSpinner> spinner = tarvo::RatioSpinnerOf(dialog_.spinner());
    ASSERT_NE(nullptr, spinner);
    EXPECT_EQ(1, host_sdk::live_spinner_interfaces());
    spinner->link_to_edit(dialog_.field());
    EXPECT_FALSE(spinner->is_enabled());
    EXPECT_FLOAT_EQ(1.5f, spinner->value());
    spinner->enable();
    EXPECT_TRUE(spinner->is_enabled());
    EXPECT_TRUE(calls_.has(L"ISpinnerControl::LinkToEdit(object, 1)"));
}

TEST_F(MaxSpinnerTest, SettingAValueNotifiesTheDialog) {
    const std::unique_ptr<RatioSpinner> spinner =
        tarvo::SetUpRatioSpinner(dialog_.window, 2, 1, 0.001f, 2048.0f, 1.5f, 0.001f);
    EXPECT_TRUE(dialog_.heard.empty());
    spinner->set_value(3.0f);
    EXPECT_EQ(1u, dialog_.heard.size());
    EXPECT_TRUE(calls_.has(L"ISpinnerControl::SetValue(3, 1)"));
}

TEST_F(MaxSpinnerTest, NoControlGivesNoSpinner) {
    EXPECT_EQ(nullptr, tarvo::RatioSpinnerOf(nullptr));
    EXPECT_EQ(nullptr, tarvo::RatioSpinnerOf(dialog_.field()));
    EXPECT_EQ(nullptr, tarvo::SetUpRatioSpinner(dialog_.window, 9, 1, 0.0f, 1.0f, 0.5f, 0.1f));
}

ISpinnerControl* throwing_set_up(HWND, int, int, float, float, float, float) {
    throw std::runtime_error("from the host");
}

ISpinnerControl* throwing_interface(HWND) {
    throw std::runtime_error("from the host");
}

std::string stopped_in(const char* place) {
    return "[ERROR] An exception was stopped in " + std::string(place) + ": from the host";
}

TEST_F(MaxSpinnerTest, HostExceptionInASpinnerCallIsLoggedOnce) {
    const std::size_t mark = support::log_mark("qfx_data");
    {
        const support::PatchedImport patch("host_standin.dll", "_Z17SetupFloatSpinnerP6HWND__iiffff",
                                           reinterpret_cast<void*>(&throwing_set_up));
        ASSERT_TRUE(patch.installed());
        EXPECT_EQ(nullptr, tarvo::SetUpRatioSpinner(dialog_.window, 2, 1, 0.0f, 1.0f, 0.5f, 0.1f));
    }
    {
        const support::PatchedImport patch("host_standin.dll", "_Z11GetISpinnerP6HWND__",
                                           reinterpret_cast<void*>(&throwing_interface));
        ASSERT_TRUE(patch.installed());
        EXPECT_EQ(nullptr, tarvo::RatioSpinnerOf(dialog_.spinner()));
    }
    EXPECT_EQ((std::vector<std::string>{stopped_in("SetupFloatSpinner"), stopped_in("GetISpinner")}),
              support::log_lines_since("qfx_data", mark));
}

TEST_F(MaxSpinnerTest, WithoutMemoryTheHostsInterfaceIsReleased) {
    g_no_memory = true;
    EXPECT_EQ(nullptr, tarvo::SetUpRatioSpinner(dialog_.window, 2, 1, 0.0f, 1.0f, 0.5f, 0.1f));
    EXPECT_EQ(nullptr, tarvo::RatioSpinnerOf(dialog_.spinner()));
    g_no_memory = false;
    EXPECT_EQ(0, host_sdk::live_spinner_interfaces());
}

TEST_F(MaxHostTest, HostExceptionIsLoggedOnceAndGivesAnEmptyResult) {
    const support::PatchedImport patch("host_standin.dll", "_Z16GetCOREInterfacev",
                                       reinterpret_cast<void*>(&throwing_core));
    ASSERT_TRUE(patch.installed());
    host_sdk::set_scene(L"C:\\a.max", true);
    ScriptResult result;
    const std::size_t mark = support::log_mark("qfx_data");
    EXPECT_EQ(L"", tarvo::SceneFileName());
    EXPECT_EQ(nullptr, tarvo::HostMainWindow());
    EXPECT_FALSE(tarvo::SaveSceneAs(L"C:\\b.max"));
    EXPECT_FALSE(tarvo::RunScript(L"a", result));
    EXPECT_EQ(L"", tarvo::SceneFilePath());
    tarvo::SaveScene();
    EXPECT_EQ(nullptr, tarvo::CoreInterface());
    EXPECT_EQ(nullptr, tarvo::MenuManager());
    EXPECT_EQ(nullptr, tarvo::ActionManager());
    std::vector<std::string> expected;
    for (const char* place :
         {"GetCurFileName", "GetMAXHWnd", "SaveToFile", "ExecuteMAXScriptScript", "GetCurFilePath",
          "FileSave", "GetCOREInterface", "GetMenuManager", "GetActionManager"}) {
        expected.push_back("[ERROR] An exception was stopped in " + std::string(place) + ": from the host");
    }
    EXPECT_EQ(expected, support::log_lines_since("qfx_data", mark));
}

} // namespace
