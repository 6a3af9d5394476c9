#include "standin/base/files_win32.h"
#include "tests/product/plugin/host_fixture.h"

#include <max.h>

#include <ifnpub.h>
#include <maxscript/maxscript.h>
#include <notify.h>

namespace {

class StandinScene : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        wchar_t folder[MAX_PATH] = {};
        ::GetTempPathW(MAX_PATH, folder);
        folder_ = std::wstring(folder) + L"tarvo_scene_test";
        base::remove_tree(folder_);
        base::make_folder(folder_);
    }

    void TearDown() override {
        base::remove_tree(folder_);
        HostTest::TearDown();
    }

    std::wstring path(const wchar_t* name) const { return folder_ + L"\\" + name; }

    void write(const std::wstring& file, const char* content) const {
        ASSERT_TRUE(base::write_file(file, content));
    }

    // "-" when there is no such file.
    std::string content(const std::wstring& file) const {
        std::string text;
        return base::read_file(file, text) ? text : "-";
    }

    Interface& core() { return *GetCOREInterface(); }

private:
    std::wstring folder_;
};

TEST_F(StandinScene, NameAndPathComeFromTheScene) {
    host_sdk::set_scene(L"C:\\scenes/house.max", false);
    EXPECT_STREQ(L"house.max", core().GetCurFileName().data());
    EXPECT_STREQ(L"C:\\scenes/house.max", core().GetCurFilePath().data());
    host_sdk::set_scene(L"", true);
    EXPECT_EQ(0, core().GetCurFileName().Length());
    EXPECT_EQ(0, core().GetCurFilePath().Length());
}

TEST_F(StandinScene, SavingUnderAnotherNameCopiesTheFileAndOpensTheCopy) {
    write(path(L"a.max"), "scene");
    write(path(L"b.max"), "something else");
    host_sdk::set_scene(path(L"a.max"), true);
    EXPECT_GT(core().SaveToFile(path(L"b.max").c_str(), TRUE, TRUE), 0);
    EXPECT_EQ("scene", content(path(L"b.max")));
    EXPECT_EQ(path(L"b.max"), host_sdk::scene_path());
    EXPECT_FALSE(host_sdk::scene_needs_save());
}

TEST_F(StandinScene, SavingWritesTheFileOfASceneWithoutOne) {
    host_sdk::set_scene(path(L"a.max"), true);
    EXPECT_TRUE(core().FileSave());
    EXPECT_NE("-", content(path(L"a.max")));
    EXPECT_FALSE(host_sdk::scene_needs_save());
}

TEST_F(StandinScene, SavingKeepsTheContentOfTheFile) {
    write(path(L"a.max"), "scene");
    host_sdk::set_scene(path(L"a.max"), true);
    EXPECT_TRUE(core().FileSave());
    EXPECT_EQ("scene", content(path(L"a.max")));
}

TEST_F(StandinScene, SavingFailsWithoutANameOrAWritablePath) {
    host_sdk::set_scene(L"", true);
    EXPECT_FALSE(core().FileSave());
    EXPECT_EQ(0, core().SaveToFile(path(L"no such folder\\b.max").c_str()));
    write(path(L"locked.max"), "locked");
    ::SetFileAttributesW(path(L"locked.max").c_str(), FILE_ATTRIBUTE_READONLY);
    write(path(L"a.max"), "scene");
    host_sdk::set_scene(path(L"a.max"), true);
    EXPECT_EQ(0, core().SaveToFile(path(L"locked.max").c_str()));
    ::SetFileAttributesW(path(L"locked.max").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ("locked", content(path(L"locked.max")));
    EXPECT_TRUE(host_sdk::scene_needs_save());
}

TEST_F(StandinScene, FaultMakesSavingUnderANameFail) {
    write(path(L"a.max"), "scene");
    host_sdk::set_scene(path(L"a.max"), true);
    set_fault(&host_sdk::Faults::save_as_fails);
    EXPECT_EQ(0, core().SaveToFile(path(L"c.max").c_str()));
    EXPECT_TRUE(core().FileSave());
    EXPECT_EQ("-", content(path(L"c.max")));
}

std::vector<std::wstring> g_saved;
void keep_name(void*, NotifyInfo* info) {
    g_saved.push_back(std::to_wstring(info->intcode) + static_cast<const wchar_t*>(info->callParam));
}

TEST_F(StandinScene, SavingNotifiesBeforeAndAfter) {
    g_saved.clear();
    RegisterNotification(keep_name, nullptr, NOTIFY_FILE_PRE_SAVE);
    RegisterNotification(keep_name, nullptr, NOTIFY_FILE_POST_SAVE);
    host_sdk::set_scene(path(L"a.max"), true);
    core().FileSave();
    EXPECT_EQ((std::vector<std::wstring>{L"13" + path(L"a.max"), L"14" + path(L"a.max")}), g_saved);
}

TEST_F(StandinScene, TextOfAScriptHasTheChosenTag) {
    script_.text = L"found";
    FPValue value;
    EXPECT_TRUE(ExecuteMAXScriptScript(L"a", FALSE, &value, TRUE));
    ASSERT_EQ(TYPE_STRING, value.type);
    EXPECT_STREQ(L"found", value.s);
    host_sdk::set_text_tag(host_sdk::TextTag::filename);
    EXPECT_TRUE(ExecuteMAXScriptScript(L"b", FALSE, &value, TRUE));
    ASSERT_EQ(TYPE_FILENAME, value.type);
    EXPECT_STREQ(L"found", value.s);
    host_sdk::set_text_tag(host_sdk::TextTag::tstr);
    EXPECT_TRUE(ExecuteMAXScriptScript(L"c", FALSE, &value, TRUE));
    ASSERT_EQ(TYPE_TSTR, value.type);
    EXPECT_STREQ(L"found", value.tstr->data());
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b", L"c"}), script_.commands);
    EXPECT_EQ(1, new_heap_objects());
    value.Free();
    EXPECT_EQ(0, new_heap_objects());
}

TEST_F(StandinScene, NextScriptOverwritesAnEarlierText) {
    script_.text = L"found";
    FPValue first;
    FPValue second;
    EXPECT_TRUE(ExecuteMAXScriptScript(L"a", FALSE, &first, TRUE));
    EXPECT_TRUE(ExecuteMAXScriptScript(L"b", FALSE, &second, TRUE));
    EXPECT_STREQ(L"?????", first.s);
    EXPECT_STREQ(L"found", second.s);
}

TEST_F(StandinScene, ScriptCanFailOrReturnNoText) {
    FPValue value;
    script_.returns_text = false;
    EXPECT_TRUE(ExecuteMAXScriptScript(L"a", FALSE, &value, TRUE));
    EXPECT_EQ(TYPE_VOID, value.type);
    script_.succeeds = false;
    EXPECT_FALSE(ExecuteMAXScriptScript(L"a", FALSE, &value, TRUE));
    host_sdk::set_script_runner(nullptr);
    EXPECT_FALSE(ExecuteMAXScriptScript(L"a"));
}

} // namespace
