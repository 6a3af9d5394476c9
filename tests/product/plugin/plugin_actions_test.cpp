#include "plugin/action_table.h"

#include "common/message_box.h"
#include "dialog/dialogs.h"
#include "scene/scene_data.h"
#include "tests/product/plugin/plugin_fixture.h"
#include "tests/support/test_boxes.h"
#include "tests/support/test_folder.h"

#include <stdexcept>
#include <type_traits>

namespace {

struct Opening {
    HWND owner;
    LPARAM parameter;
};

std::vector<Opening> g_openings;
bool g_opening_throws = false;

} // namespace

namespace tarvo {

// Replaces the modal dialog: records the call and returns.
void OpenMainDialog(HWND owner, LPARAM parameter) {
    g_openings.push_back({owner, parameter});
    if (g_opening_throws) {
        throw std::out_of_range("from the dialog");
    }
}

} // namespace tarvo

namespace {

class PluginActions : public PluginTest {
protected:
    void SetUp() override {
        PluginTest::SetUp();
        g_openings.clear();
        g_opening_throws = false;
    }

    void TearDown() override { PluginTest::TearDown(); }

    ActionTable* table() { return GetCOREInterface()->GetActionManager()->FindTable(tarvo::kActionTableId); }

    TestBoxes boxes_;
};

TEST_F(PluginActions, StartRegistersTableAndContextAndActivatesTwice) {
    start();
    ASSERT_NE(nullptr, table());
    EXPECT_EQ(0x45AA4389u, table()->GetId());
    EXPECT_EQ(0x21933FB3u, table()->GetContextId());
    EXPECT_EQ(tarvo::Text(IDS_ACTION_OPEN), table()->GetName().data());
    EXPECT_EQ(2, table()->Count());
    EXPECT_EQ(L"Marrowby", host_sdk::action_context_name(0x21933FB3));
    EXPECT_EQ(2, host_sdk::active_callback_count(0x45AA4389));
    EXPECT_EQ(1, host_sdk::notification_handler_count(80));
}

TEST_F(PluginActions, StartCallsTheHostInAFixedOrder) {
    start();
    std::vector<std::string> steps;
    for (const std::string& name : calls_.names) {
        for (const char* step :
             {"RegisterNotification", "ActionTable::ActionTable", "IActionManager::RegisterActionContext",
              "IActionManager::RegisterActionTable", "IActionManager::ActivateActionTable",
              "IMenuManager::RegisterMenuBarContext", "IMenuManager::RegisterMenu",
              "IMenuManager::UpdateMenuBar"}) {
            if (name == step) {
                steps.push_back(name);
            }
        }
    }
    EXPECT_EQ((std::vector<std::string>{
                  "RegisterNotification", "ActionTable::ActionTable", "IActionManager::RegisterActionContext",
                  "IActionManager::RegisterActionTable", "IActionManager::ActivateActionTable",
                  "IActionManager::ActivateActionTable", "IMenuManager::RegisterMenuBarContext",
                  "IMenuManager::RegisterMenu", "IMenuManager::UpdateMenuBar"}),
              steps);
}

TEST_F(PluginActions, StopKeepsOnlyTheTableAndItsCallbacks) {
    start();
    plugin_->Stop();
    EXPECT_EQ(0, host_sdk::notification_handler_count(80));
    EXPECT_NE(nullptr, table());
    EXPECT_EQ(L"", host_sdk::describe_menus());
    end();
    EXPECT_EQ(3, new_heap_objects()); // the table and the two callbacks, for as long as the host runs
}

TEST_F(PluginActions, TableReturnsTheTextsOfItsActions) {
    start();
    const struct {
        int command;
        unsigned text;
    } cases[] = {{1497, IDS_ACTION_OPEN}, {1498, IDS_ACTION_ABOUT}};
    for (const auto& one : cases) {
        MSTR text;
        EXPECT_TRUE(table()->GetMenuText(one.command, text));
        EXPECT_EQ(tarvo::Text(one.text), text.data());
        EXPECT_TRUE(table()->GetDescriptionText(one.command, text));
        EXPECT_EQ(tarvo::Text(one.text), text.data());
        table()->GetAction(one.command)->GetShortText(text);
        EXPECT_EQ(tarvo::Text(one.text), text.data());
        table()->GetAction(one.command)->GetCategoryText(text);
        EXPECT_EQ(tarvo::Text(one.text), text.data());
    }
    MSTR untouched(L"as it was");
    EXPECT_FALSE(table()->GetMenuText(1, untouched));
    EXPECT_STREQ(L"as it was", untouched.data());
}

TEST_F(PluginActions, OpeningPassesMainWindowAndConfigManager) {
    host_sdk::set_main_window(::GetDesktopWindow());
    start();
    EXPECT_TRUE(host_sdk::execute_action(0x45AA4389, 1497));
    ASSERT_EQ(1u, g_openings.size()); // once, although two callbacks are active
    EXPECT_EQ(::GetDesktopWindow(), g_openings[0].owner);
    EXPECT_EQ(reinterpret_cast<LPARAM>(&tarvo::TarvoRenderingConfigMgr::instance()), g_openings[0].parameter);
    EXPECT_TRUE(boxes_.shown.empty());
}

TEST_F(PluginActions, TheFirstMenuEntryOpensTheDialog) {
    start();
    const HMENU menu = ::GetSubMenu(host_sdk::menu_bar(), 0);
    EXPECT_TRUE(host_sdk::execute_menu_command(::GetMenuItemID(menu, 0)));
    EXPECT_EQ(1u, g_openings.size());
    EXPECT_TRUE(host_sdk::execute_menu_command(::GetMenuItemID(menu, 2)));
    EXPECT_EQ(1u, boxes_.shown.size());
}

TEST_F(PluginActions, AboutShowsTheBoxWithoutOwner) {
    host_sdk::set_main_window(::GetDesktopWindow());
    start();
    EXPECT_TRUE(host_sdk::execute_action(0x45AA4389, 1498));
    ASSERT_EQ(1u, boxes_.shown.size());
    const TestBox& box = boxes_.shown[0];
    EXPECT_EQ(nullptr, box.owner);
    EXPECT_EQ(tarvo::Text(13), box.text);
    EXPECT_EQ(tarvo::Text(1498 - 1468), box.caption);
    EXPECT_EQ(0u, box.style);
    EXPECT_EQ(tarvo::Text(57) == L"0" ? 1033 : 1, box.language);
    EXPECT_TRUE(g_openings.empty());
}

TEST_F(PluginActions, AnUnknownActionCountsAsHandledAndDoesNothing) {
    tarvo::Tarvo_ActionCallback callback;
    for (const int id : {0, -1, 1496, 1499, 66034}) {
        EXPECT_EQ(1, callback.ExecuteAction(id));
    }
    EXPECT_TRUE(g_openings.empty());
    EXPECT_TRUE(boxes_.shown.empty());
}

TEST_F(PluginActions, ExceptionInAnActionIsCaughtAndLogged) {
    g_opening_throws = true;
    tarvo::SceneData::instance();
    const std::size_t mark = support::log_mark("qfx_data");
    start();
    EXPECT_TRUE(host_sdk::execute_action(0x45AA4389, 1497));
    EXPECT_EQ(0, host_sdk::escaped_exceptions());
    EXPECT_EQ(std::vector<std::string>{"[ERROR] An exception was stopped in ExecuteAction: from the dialog"},
              support::log_lines_since("qfx_data", mark));
}

TEST_F(PluginActions, ConfigManagerIsASingletonAndNotCopyable) {
    EXPECT_EQ(&tarvo::TarvoRenderingConfigMgr::instance(), &tarvo::TarvoRenderingConfigMgr::instance());
    EXPECT_FALSE(std::is_copy_constructible<tarvo::TarvoRenderingConfigMgr>::value);
    EXPECT_FALSE(std::is_copy_assignable<tarvo::TarvoRenderingConfigMgr>::value);
}

} // namespace
