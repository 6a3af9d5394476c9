#include "resources/resource_ids.h"
#include "tests/product/plugin/host_fixture.h"

#include <max.h>

#include <actiontable.h>
#include <notify.h>

#include <memory>
#include <stdexcept>

namespace {

const ActionTableId kTable = 1000;

ActionDescription g_descriptions[] = {
    {7, IDS_ACTION_OPEN, IDS_ACTION_ABOUT, IDS_CLASS_CATEGORY},
    {8, IDS_ACTION_OPEN, IDS_ACTION_OPEN, IDS_CLASS_CATEGORY},
};

std::wstring resource_text(unsigned id) {
    wchar_t text[256] = {};
    ::LoadStringW(::GetModuleHandleW(nullptr), id, text, 256);
    return text;
}

class CountingCallback : public ActionCallback {
public:
    explicit CountingCallback(BOOL handles) : handles_(handles) {}

    BOOL ExecuteAction(int id) override {
        ids.push_back(id);
        return handles_;
    }

    std::vector<int> ids;

private:
    BOOL handles_;
};

class StandinActions : public HostTest {
protected:
    IActionManager& manager() { return *GetCOREInterface()->GetActionManager(); }

    ActionTable* register_table() {
        TSTR name(L"Table");
        ActionTable* table =
            new ActionTable(kTable, 5, name, nullptr, 2, g_descriptions, ::GetModuleHandleW(nullptr));
        manager().RegisterActionTable(table);
        return table;
    }
};

TEST_F(StandinActions, TableHasTheActionsOfItsDescriptions) {
    ActionTable* table = register_table();
    EXPECT_EQ(2, table->Count());
    ASSERT_NE(nullptr, table->GetAction(7));
    EXPECT_EQ(nullptr, table->GetAction(9));
    MSTR text;
    EXPECT_TRUE(table->GetMenuText(7, text));
    EXPECT_EQ(resource_text(IDS_ACTION_ABOUT), text.data());
    EXPECT_TRUE(table->GetDescriptionText(7, text));
    EXPECT_EQ(resource_text(IDS_ACTION_OPEN), text.data());
    EXPECT_FALSE(table->GetMenuText(9, text));
}

TEST_F(StandinActions, OnlyAnActiveTableRunsItsActions) {
    register_table();
    EXPECT_FALSE(host_sdk::execute_action(kTable, 7));
    CountingCallback callback(TRUE);
    EXPECT_TRUE(manager().ActivateActionTable(&callback, kTable));
    EXPECT_TRUE(host_sdk::execute_action(kTable, 7));
    EXPECT_FALSE(host_sdk::execute_action(kTable, 9));
    EXPECT_TRUE(manager().DeactivateActionTable(&callback, kTable));
    EXPECT_FALSE(manager().DeactivateActionTable(&callback, kTable));
    EXPECT_FALSE(host_sdk::execute_action(kTable, 7));
    EXPECT_EQ(std::vector<int>{7}, callback.ids);
}

TEST_F(StandinActions, LatestCallbackIsAskedFirstUntilOneHandles) {
    register_table();
    CountingCallback first(TRUE);
    CountingCallback second(TRUE);
    CountingCallback third(FALSE);
    for (CountingCallback* callback : {&first, &second, &third}) {
        manager().ActivateActionTable(callback, kTable);
    }
    EXPECT_EQ(3, host_sdk::active_callback_count(kTable));
    host_sdk::execute_action(kTable, 8);
    EXPECT_EQ(0u, first.ids.size());
    EXPECT_EQ(1u, second.ids.size());
    EXPECT_EQ(1u, third.ids.size());
}

TEST_F(StandinActions, TableThatIsNotRegisteredCannotBeActivated) {
    CountingCallback callback(TRUE);
    EXPECT_FALSE(manager().ActivateActionTable(&callback, kTable));
    register_table();
    EXPECT_FALSE(manager().ActivateActionTable(nullptr, kTable));
    EXPECT_EQ(nullptr, manager().FindTable(kTable + 1));
}

TEST_F(StandinActions, MenuCommandRunsItsAction) {
    ActionTable* table = register_table();
    CountingCallback callback(TRUE);
    manager().ActivateActionTable(&callback, kTable);
    IMenuManager& menus = *GetCOREInterface()->GetMenuManager();
    IMenuItem* item = GetIMenuItem();
    item->SetActionItem(table->GetAction(8));
    menus.GetMainMenuBar()->AddItem(item);
    menus.UpdateMenuBar();

    const UINT id = ::GetMenuItemID(host_sdk::menu_bar(), 0);
    EXPECT_TRUE(host_sdk::execute_menu_command(id));
    EXPECT_FALSE(host_sdk::execute_menu_command(id + 1));
    EXPECT_FALSE(host_sdk::execute_menu_command(3));
    EXPECT_EQ(std::vector<int>{8}, callback.ids);
}

TEST_F(StandinActions, EntryOfAnInactiveTableIsGrayed) {
    ActionTable* table = register_table();
    IMenuManager& menus = *GetCOREInterface()->GetMenuManager();
    IMenuItem* item = GetIMenuItem();
    item->SetActionItem(table->GetAction(8));
    menus.GetMainMenuBar()->AddItem(item);
    menus.UpdateMenuBar();
    EXPECT_NE(0u, ::GetMenuState(host_sdk::menu_bar(), 0, MF_BYPOSITION) & MF_GRAYED);
    EXPECT_FALSE(host_sdk::execute_menu_command(::GetMenuItemID(host_sdk::menu_bar(), 0)));
}

TEST_F(StandinActions, ContextKeepsItsFirstName) {
    EXPECT_TRUE(manager().RegisterActionContext(5, L"One"));
    EXPECT_FALSE(manager().RegisterActionContext(5, L"Two"));
    EXPECT_EQ(L"One", host_sdk::action_context_name(5));
    EXPECT_EQ(L"", host_sdk::action_context_name(6));
}

TEST_F(StandinActions, ResetDeletesRegisteredTables) {
    register_table();
    EXPECT_EQ(1, new_heap_objects());
    host_sdk::reset();
    EXPECT_EQ(0, new_heap_objects());
    EXPECT_EQ(nullptr, manager().FindTable(kTable));
}

TEST_F(StandinActions, ManagersCanBeMissing) {
    set_fault(&host_sdk::Faults::no_action_manager);
    EXPECT_EQ(nullptr, GetCOREInterface()->GetActionManager());
    set_fault(&host_sdk::Faults::no_menu_manager);
    EXPECT_EQ(nullptr, GetCOREInterface()->GetMenuManager());
    set_fault(&host_sdk::Faults::no_core_interface);
    EXPECT_EQ(nullptr, GetCOREInterface());
}

std::vector<int> g_codes;
void keep_code(void* parameter, NotifyInfo* info) {
    g_codes.push_back(info->intcode + *static_cast<int*>(parameter));
}
void throw_something(void*, NotifyInfo*) {
    throw std::runtime_error("from a handler");
}

TEST_F(StandinActions, NotificationsReachTheHandlersOfTheirCode) {
    g_codes.clear();
    int add = 100;
    EXPECT_NE(0, RegisterNotification(keep_code, &add, 80));
    EXPECT_EQ(1, host_sdk::notification_handler_count(80));
    host_sdk::broadcast_notification(81);
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(std::vector<int>{180}, g_codes);
    EXPECT_EQ(0, UnRegisterNotification(keep_code, nullptr, 80));
    EXPECT_NE(0, UnRegisterNotification(keep_code, &add, 80));
    EXPECT_EQ(0, host_sdk::notification_handler_count(80));
}

TEST_F(StandinActions, ExceptionOfAHandlerIsCountedAndStopped) {
    RegisterNotification(throw_something, nullptr, 80);
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(1, host_sdk::escaped_exceptions());
    host_sdk::reset();
}

} // namespace
