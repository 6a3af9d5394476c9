// The module's calls to the host from start to end, in order. "{31}" stands for text 31 of the module.
#include "tests/product/module/module_fixture.h"

namespace {

// One attempt to remove a missing menu.
Calls looked_for(const std::wstring& title) {
    return {L"Interface::GetMenuManager()", L"IMenuManager::FindMenu(\"" + title + L"\")"};
}

// All items of a menu, always the first one.
Calls emptied(const std::wstring& title, int items) {
    Calls calls = {L"IMenu::NumItems()"};
    calls.insert(calls.end(), static_cast<std::size_t>(items),
                 L"IMenu::RemoveItem(menu \"" + title + L"\", 0)");
    return calls;
}

// Before the menu-bar context is registered a menu is only emptied.
Calls only_emptied(const std::wstring& title, int items) {
    return joined({looked_for(title), emptied(title, items), {L"IMenuManager::GetContext(0x411A1C29)"}});
}

Calls taken_away(const std::wstring& title, int items) {
    return joined(
        {only_emptied(title, items),
         {L"IMenuBarContext::SetMenu(null)", L"IMenuManager::UnRegisterMenu(menu \"" + title + L"\")",
          L"IMenuManager::UpdateMenuBar()"}});
}

const Calls kRegistered = {L"RegisterNotification(object, object, 80)"};
const Calls kUnregistered = {L"UnRegisterNotification(object, object, 80)"};

const Calls kMenuManagerAndBar = {L"Interface::GetMenuManager()", L"IMenuManager::GetMainMenuBar()"};

// The table is activated when it is installed and once more when it has been found by its id.
const Calls kTableInstalled = {
    L"ActionTable::ActionTable(0x45AA4389, 0x21933FB3, \"{6}\", null, 2)",
    L"Interface::GetActionManager()",
    L"IActionManager::RegisterActionContext(0x21933FB3, \"Marrowby\")",
    L"IActionManager::RegisterActionTable(table \"{6}\")",
    L"IActionManager::ActivateActionTable(object, 0x45AA4389)",
};
const Calls kTableFound = {L"Interface::GetActionManager()", L"IActionManager::FindTable(0x45AA4389)"};
const Calls kTableActivatedAgain = {
    L"Interface::GetActionManager()",
    L"IActionManager::ActivateActionTable(object, 0x45AA4389)",
};

const Calls kMenuLookedUp = {
    L"IMenuManager::RegisterMenuBarContext(0x411A1C29, \"{31}\")",
    L"IMenuManager::FindMenu(\"{31}\")",
};
const Calls kItemsAdded = {
    L"GetIMenuItem()", L"IMenuItem::SetActionItem(1497)", L"IMenu::AddItem(menu \"{31}\", item \"{6}\", -1)",
    L"GetIMenuItem()", L"IMenuItem::ActAsSeparator()",    L"IMenu::AddItem(menu \"{31}\", separator, -1)",
    L"GetIMenuItem()", L"IMenuItem::SetActionItem(1498)", L"IMenu::AddItem(menu \"{31}\", item \"{12}\", -1)",
};
const Calls kMenuBegun = {
    L"GetIMenu()",
    L"IMenu::SetTitle(\"{31}\")",
    L"IMenuManager::RegisterMenu(menu \"{31}\", 0)",
    L"IMenuManager::GetContext(0x411A1C29)",
    L"IMenuBarContext::SetMenu(menu \"{31}\")",
};
const Calls kMenuPutOnTheBar = {
    L"GetIMenuItem()",
    L"IMenuItem::SetSubMenu(menu \"{31}\")",
    L"IMenu::AddItem(menu \"\", item \"{31}\", -1)", // the bar itself has no title
    L"IMenuManager::UpdateMenuBar()",
};

const Calls kMenuCreated = joined({kMenuLookedUp, kMenuBegun, kItemsAdded, kMenuPutOnTheBar});
const Calls kInstalled = joined({kTableInstalled, kTableFound, kTableActivatedAgain});

Calls refilled(int items) {
    return joined({kMenuLookedUp, emptied(L"{31}", items), kItemsAdded, {L"IMenuManager::UpdateMenuBar()"}});
}

const Calls kNoMenuLeft = looked_for(L"{31}");
const Calls kNoEarlierMenus = joined({looked_for(L"TarvoCloud"), looked_for(L"{15}")});

class ModuleLife : public ModuleTest {};

// A menu file with the menu on the bar and in its context; `items` are its lines.
std::wstring menu_file(const std::wstring& title, const std::wstring& items) {
    return L"host menus 1\nmenu\t\nsubmenu\t1\t0\t" + title + L"\nmenu\t" + title + L"\n" + items +
           L"context\t1092230185\t" + title + L"\t1\n";
}

const wchar_t kOldItems[] =
    L"action\t1168786313\t1497\t0\tOld\nseparator\naction\t1168786313\t1498\t0\tOld\n";

TEST_F(ModuleLife, FirstStartCreatesTheMenuAndTheActions) {
    start();
    expect_calls(
        joined({kRegistered, kNoMenuLeft, kNoEarlierMenus, kMenuManagerAndBar, kInstalled, kMenuCreated}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
    EXPECT_EQ(1, host_sdk::notification_handler_count(80));
    EXPECT_EQ(2, host_sdk::active_callback_count(kTableId));
    EXPECT_EQ(L"Marrowby", host_sdk::action_context_name(kActionContext));
}

TEST_F(ModuleLife, NotificationRefillsTheExistingMenu) {
    start();
    forget_calls();
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, kTableFound, refilled(3)}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
}

TEST_F(ModuleLife, OtherNotificationsAreIgnored) {
    start();
    forget_calls();
    for (const int code : {0, 1, 13, 14, 79, 81}) {
        host_sdk::broadcast_notification(code);
    }
    expect_calls({});
}

// Stop, then destruction: the second search finds no menu.
TEST_F(ModuleLife, StopRemovesTheMenuAndDestructionFindsNone) {
    start();
    forget_calls();
    plugin_->Stop();
    expect_calls(joined({kUnregistered, taken_away(L"{31}", 3)}));
    destroy();
    expect_calls(kNoMenuLeft);
    EXPECT_EQ(L"", host_sdk::describe_menus());
    EXPECT_EQ(nullptr, menus().FindMenu(title().c_str()));
    EXPECT_EQ(nullptr, static_cast<IMenuBarContext*>(menus().GetContext(kMenuContext))->GetMenu());
    EXPECT_EQ(0, host_sdk::notification_handler_count(80));
    EXPECT_EQ(1, actions().NumActionTables());
    forget_calls();
    host_sdk::broadcast_notification(80);
    expect_calls({});
}

TEST_F(ModuleLife, DestructionWithoutStopRemovesTheMenu) {
    start();
    forget_calls();
    destroy();
    expect_calls(taken_away(L"{31}", 3));
    EXPECT_EQ(L"", host_sdk::describe_menus());
    host_sdk::reset(); // the handler of the destroyed object must not be called
}

TEST_F(ModuleLife, StopWithoutStartUnregistersAndFindsNoMenu) {
    plugin_->Stop();
    expect_calls(joined({kUnregistered, kNoMenuLeft}));
    EXPECT_EQ(0, actions().NumActionTables());
}

// The menu of an earlier run is emptied first, and is then found and refilled.
TEST_F(ModuleLife, MenuFromAMenuFileIsEmptiedAndRefilled) {
    struct {
        std::wstring items;
        int count;
    } const cases[] = {
        {L"", 0},
        {L"text\t1\tSomething\n", 1},
        {kOldItems, 3},
        {std::wstring(kOldItems) + kOldItems, 6},
        {std::wstring(kOldItems) + L"separator\nseparator\nseparator\n" + kOldItems + kOldItems, 12},
    };
    for (const auto& state : cases) {
        SCOPED_TRACE(state.count);
        host_sdk::reset();
        host_sdk::load_menus(menu_file(title(), state.items));
        IMenu* kept = menus().FindMenu(title().c_str());
        forget_calls();
        start();
        expect_calls(joined({kRegistered, only_emptied(L"{31}", state.count), kNoEarlierMenus,
                             kMenuManagerAndBar, kInstalled, refilled(0)}));
        EXPECT_EQ(three_entries(), host_sdk::describe_menus());
        EXPECT_EQ(kept, menus().FindMenu(title().c_str()));
        EXPECT_EQ(3, kept->NumItems());
        host_sdk::broadcast_notification(80);
        EXPECT_EQ(three_entries(), host_sdk::describe_menus());
        forget_calls();
        plugin_->Stop();
        expect_calls(joined({kUnregistered, taken_away(L"{31}", 3)}));
        EXPECT_EQ(L"", host_sdk::describe_menus());
    }
}

TEST_F(ModuleLife, MenusOfEarlierEditionsAreEmptiedThenRemoved) {
    host_sdk::load_menus(with_texts(L"host menus 1\nmenu\t\nsubmenu\t1\t0\tTarvoCloud\nsubmenu\t2\t0\t{15}\n"
                                    L"menu\tTarvoCloud\nseparator\nseparator\nmenu\t{15}\nseparator\n"));
    start();
    expect_calls(joined({kRegistered, kNoMenuLeft, only_emptied(L"TarvoCloud", 2), only_emptied(L"{15}", 1),
                         kMenuManagerAndBar, kInstalled, kMenuCreated}));
    EXPECT_EQ(with_texts(L"TarvoCloud\n{15}\n") + three_entries(), host_sdk::describe_menus());
    forget_calls();
    plugin_->Stop();
    start(); // the context is registered by now
    expect_calls(
        joined({kUnregistered, taken_away(L"{31}", 3), kRegistered, kNoMenuLeft, taken_away(L"TarvoCloud", 0),
                taken_away(L"{15}", 0), kMenuManagerAndBar, kInstalled, kMenuCreated}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
}

TEST_F(ModuleLife, SecondPluginObjectStartsAndStopsLikeTheFirst) {
    start();
    plugin_->Stop();
    recreate();
    forget_calls();
    start();
    expect_calls(
        joined({kRegistered, kNoMenuLeft, kNoEarlierMenus, kMenuManagerAndBar, kInstalled, kMenuCreated}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
    EXPECT_EQ(1, host_sdk::notification_handler_count(80));
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
    forget_calls();
    plugin_->Stop();
    expect_calls(joined({kUnregistered, taken_away(L"{31}", 3)}));
    EXPECT_EQ(L"", host_sdk::describe_menus());
}

// The host rebuilds its menu bar after the plugins have started, and then sends the notification.
TEST_F(ModuleLife, NotificationCreatesTheMenuOnARebuiltBar) {
    const std::wstring empty = host_sdk::save_menus();
    start();
    host_sdk::load_menus(empty);
    ASSERT_EQ(L"", host_sdk::describe_menus());
    forget_calls();
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, kTableFound, kMenuCreated}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
}

TEST_F(ModuleLife, NotificationRefillsTheMenuOfAReloadedMenuFile) {
    start();
    host_sdk::load_menus(menu_file(title(), std::wstring(kOldItems) + kOldItems));
    forget_calls();
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, kTableFound, refilled(6)}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
}

// Only the notification needs no core interface.
TEST_F(ModuleLife, WithoutACoreInterfaceOnlyTheNotificationIsRegistered) {
    set_fault(&host_sdk::Faults::no_core_interface);
    start();
    expect_calls(kRegistered);
    host_sdk::broadcast_notification(80);
    expect_calls({});
    plugin_->Stop();
    expect_calls(kUnregistered);
    destroy();
    expect_calls({});
    EXPECT_EQ(L"", host_sdk::describe_menus());
}

TEST_F(ModuleLife, WithoutAMenuManagerOnlyTheActionsAreInstalled) {
    const Calls asked = {L"Interface::GetMenuManager()"};
    set_fault(&host_sdk::Faults::no_menu_manager);
    start();
    expect_calls(joined({kRegistered, asked, asked, asked, asked, kInstalled}));
    EXPECT_EQ(2, host_sdk::active_callback_count(kTableId));
    host_sdk::broadcast_notification(80);
    expect_calls(joined({asked, kTableFound}));
    plugin_->Stop();
    expect_calls(joined({kUnregistered, asked}));
}

TEST_F(ModuleLife, WithoutAMainMenuBarOnlyTheActionsAreInstalled) {
    set_fault(&host_sdk::Faults::no_main_menu_bar);
    start();
    expect_calls(joined({kRegistered, kNoMenuLeft, kNoEarlierMenus, kMenuManagerAndBar, kInstalled}));
    EXPECT_EQ(2, host_sdk::active_callback_count(kTableId));
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, kTableFound}));
    plugin_->Stop();
    expect_calls(joined({kUnregistered, kNoMenuLeft}));
}

// The table is created before the manager is requested, and deleted again.
TEST_F(ModuleLife, WithoutAnActionManagerTheTableIsDeletedAgain) {
    const Calls asked = {L"Interface::GetActionManager()"};
    const long before = host_sdk::live_heap_objects();
    set_fault(&host_sdk::Faults::no_action_manager);
    start();
    expect_calls(joined({kRegistered,
                         kNoMenuLeft,
                         kNoEarlierMenus,
                         kMenuManagerAndBar,
                         {kTableInstalled.front()},
                         asked,
                         asked}));
    EXPECT_EQ(before, host_sdk::live_heap_objects());
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, asked}));
    plugin_->Stop();
    expect_calls(joined({kUnregistered, kNoMenuLeft}));
}

// A part that is missing at the start exists when the host sends its start-up notification.
TEST_F(ModuleLife, LateMainMenuBarGetsTheMenuOnNotification) {
    set_fault(&host_sdk::Faults::no_main_menu_bar);
    start();
    host_sdk::set_faults(host_sdk::Faults());
    forget_calls();
    host_sdk::broadcast_notification(80);
    expect_calls(joined({kMenuManagerAndBar, kTableFound, kMenuCreated}));
    EXPECT_EQ(three_entries(), host_sdk::describe_menus());
}

} // namespace
