#include "plugin/action_table.h"
#include "tests/product/plugin/plugin_fixture.h"
#include "tests/support/test_folder.h"

namespace {

const MenuContextId kContext = 0x411A1C29;

class PluginMenu : public PluginTest {};

TEST_F(PluginMenu, FirstStartCreatesTheMenu) {
    start();
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
    IMenuBarContext* context = static_cast<IMenuBarContext*>(menus().GetContext(kContext));
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(menus().FindMenu(title().c_str()), context->GetMenu());
    EXPECT_EQ(title(), context->GetName().data());
}

TEST_F(PluginMenu, MenuIsAddedAfterTheExistingMenus) {
    add_menu(L"Tools", 1);
    start();
    EXPECT_EQ(L"Tools > ---\n" + own_menu(), host_sdk::describe_menus());
}

TEST_F(PluginMenu, StartingTwiceLeavesOneMenu) {
    start();
    start();
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

// A menu from an earlier run with too many, old or no items is refilled, not extended.
TEST_F(PluginMenu, AMenuOfAnEarlierRunIsRefilled) {
    for (const int separators : {0, 1, 3, 9}) {
        host_sdk::reset();
        IMenu* menu = add_menu(title(), separators);
        start();
        EXPECT_EQ(menu, menus().FindMenu(title().c_str()));
        EXPECT_EQ(own_menu(), host_sdk::describe_menus());
    }
}

TEST_F(PluginMenu, ReloadedMenuFileGivesTheSameMenu) {
    start();
    const std::wstring file = host_sdk::save_menus();
    end();
    host_sdk::reset();
    host_sdk::load_menus(file);
    plugin_ = new tarvo::Tarvo_Rendering;
    start();
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
    host_sdk::broadcast_notification(tarvo::kSystemStartup);
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

TEST_F(PluginMenu, MenusOfEarlierEditionsAreEmptied) {
    add_menu(L"TarvoCloud", 2);
    add_menu(tarvo::Text(IDS_EARLIER_MENU_TITLE), 3);
    start();
    EXPECT_EQ(0, item_count(L"TarvoCloud"));
    EXPECT_EQ(0, item_count(tarvo::Text(IDS_EARLIER_MENU_TITLE)));
}

TEST_F(PluginMenu, MenusOfEarlierEditionsAreRemovedWhenTheContextExists) {
    menus().RegisterMenuBarContext(kContext, L"Earlier");
    add_menu(L"TarvoCloud", 2);
    add_menu(tarvo::Text(IDS_EARLIER_MENU_TITLE), 3);
    start();
    EXPECT_EQ(-1, item_count(L"TarvoCloud"));
    EXPECT_EQ(-1, item_count(tarvo::Text(IDS_EARLIER_MENU_TITLE)));
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

TEST_F(PluginMenu, EarlierMenusAreSearchedInOrder) {
    start();
    std::vector<std::wstring> titles;
    for (const std::wstring& line : calls_.lines) {
        if (line.find(L"IMenuManager::FindMenu(") == 0) {
            titles.push_back(line);
        }
    }
    const std::wstring call = L"IMenuManager::FindMenu(\"";
    EXPECT_EQ((std::vector<std::wstring>{call + title() + L"\")", call + L"TarvoCloud\")",
                                         call + tarvo::Text(IDS_EARLIER_MENU_TITLE) + L"\")",
                                         call + title() + L"\")"}),
              titles);
}

TEST_F(PluginMenu, StopRemovesTheMenu) {
    start();
    plugin_->Stop();
    EXPECT_EQ(L"", host_sdk::describe_menus());
    EXPECT_EQ(-1, item_count(title()));
    EXPECT_EQ(nullptr, static_cast<IMenuBarContext*>(menus().GetContext(kContext))->GetMenu());
}

TEST_F(PluginMenu, DestroyingThePluginRemovesTheMenu) {
    start();
    end();
    EXPECT_EQ(L"", host_sdk::describe_menus());
    EXPECT_EQ(-1, item_count(title()));
}

TEST_F(PluginMenu, WithoutTheContextOnlyTheItemsAreRemoved) {
    add_menu(title(), 3);
    tarvo::RemoveMenu(title());
    EXPECT_EQ(0, item_count(title()));
    EXPECT_EQ(0, calls_.count("IMenuManager::UnRegisterMenu"));
}

TEST_F(PluginMenu, RemovingAMissingMenuChangesNothing) {
    start();
    const std::wstring before = host_sdk::save_menus();
    tarvo::RemoveMenu(L"Nobody's menu");
    EXPECT_EQ(before, host_sdk::save_menus());
}

TEST_F(PluginMenu, EmptyTitleRemovesNothing) {
    menus().RegisterMenuBarContext(kContext, L"Name");
    add_menu(L"", 2);
    tarvo::RemoveMenu(L"");
    EXPECT_EQ(2, item_count(L""));
}

TEST_F(PluginMenu, StartUpNotificationRecreatesTheMenu) {
    const std::wstring empty = host_sdk::save_menus();
    start();
    host_sdk::load_menus(empty);
    ASSERT_EQ(L"", host_sdk::describe_menus());
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

TEST_F(PluginMenu, StartUpNotificationRefillsAnExistingMenu) {
    start();
    host_sdk::broadcast_notification(80);
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
    EXPECT_EQ(3, item_count(title()));
}

TEST_F(PluginMenu, StartUpNotificationWithoutAHostInterfaceDoesNothing) {
    const std::wstring empty = host_sdk::save_menus();
    for (bool host_sdk::Faults::*part :
         {&host_sdk::Faults::no_core_interface, &host_sdk::Faults::no_menu_manager,
          &host_sdk::Faults::no_action_manager, &host_sdk::Faults::no_main_menu_bar}) {
        host_sdk::reset();
        start();
        host_sdk::load_menus(empty);
        const std::wstring before = host_sdk::save_menus();
        set_fault(part);
        host_sdk::broadcast_notification(80);
        EXPECT_EQ(before, host_sdk::save_menus());
        host_sdk::set_faults(host_sdk::Faults());
    }
}

TEST_F(PluginMenu, MenuMissingFromTheBarIsCreatedOnStartUpNotification) {
    for (const char* call : {"GetIMenuItem", "IMenuItem::SetSubMenu", "IMenuBarContext::SetMenu",
                             "IMenu::AddItem", "IMenuItem::ActAsSeparator", "IMenuManager::RegisterMenu"}) {
        host_sdk::reset();
        calls_.throws_in = call;
        start();
        EXPECT_EQ("", calls_.throws_in) << call;
        host_sdk::broadcast_notification(80);
        EXPECT_EQ(own_menu(), host_sdk::describe_menus()) << call;
    }
}

TEST_F(PluginMenu, OneHostExceptionDuringStartStillActivatesTheActions) {
    for (const char* call : {"RegisterNotification", "IMenuManager::FindMenu",
                             "IActionManager::ActivateActionTable", "Interface::GetMenuManager"}) {
        host_sdk::reset();
        calls_.throws_in = call;
        start();
        EXPECT_EQ("", calls_.throws_in) << call;
        EXPECT_LE(1, host_sdk::active_callback_count(0x45AA4389)) << call;
    }
}

TEST_F(PluginMenu, MenuThatTheHostDoesNotRegisterIsLogged) {
    const std::size_t mark = support::log_mark("qfx_data");
    calls_.refused = "IMenuManager::RegisterMenu";
    start();
    EXPECT_EQ(std::vector<std::string>({"[ERROR] The host did not register the menu."}),
              support::log_lines_since("qfx_data", mark));
    EXPECT_EQ(own_menu(), host_sdk::describe_menus());
}

// A missing or empty menu cannot be told from a call that the host refuses.
TEST_F(PluginMenu, MenuThatTheHostDoesNotFindIsCreatedAgain) {
    start();
    calls_.refused = "IMenuManager::FindMenu";
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(own_menu() + own_menu(), host_sdk::describe_menus());
    calls_.refused = "IMenu::NumItems";
    host_sdk::broadcast_notification(80);
    calls_.refused.clear();
    EXPECT_EQ(6, item_count(title()));
}

// The start requests it twice for the first activation and once for the second.
TEST_F(PluginMenu, ActionManagerThatDisappearsDuringStartDoesNotCrash) {
    for (int calls = 0; calls < 4; ++calls) {
        host_sdk::reset();
        calls_.refuses_from = "Interface::GetActionManager";
        calls_.refuses_after = calls;
        start();
        plugin_->Stop();
        calls_.refuses_from.clear();
        host_sdk::set_faults(host_sdk::Faults());
    }
}

TEST_F(PluginMenu, StartUpNotificationWithoutTheTableDoesNothing) {
    start();
    const std::wstring file = host_sdk::save_menus();
    ActionTable* table = GetCOREInterface()->GetActionManager()->FindTable(tarvo::kActionTableId);
    ASSERT_NE(nullptr, table);
    table->DeleteThis();
    host_sdk::load_menus(L"host menus 1\nmenu\t\n");
    const std::wstring before = host_sdk::save_menus();
    host_sdk::broadcast_notification(80);
    EXPECT_EQ(before, host_sdk::save_menus());
}

TEST_F(PluginMenu, StartWithoutManagersSucceedsAndCreatesNoMenu) {
    for (bool host_sdk::Faults::*part :
         {&host_sdk::Faults::no_core_interface, &host_sdk::Faults::no_menu_manager,
          &host_sdk::Faults::no_main_menu_bar, &host_sdk::Faults::no_action_manager}) {
        host_sdk::reset();
        set_fault(part);
        const long before = new_heap_objects();
        start();
        plugin_->Stop();
        host_sdk::set_faults(host_sdk::Faults());
        EXPECT_EQ(-1, item_count(title()));
        EXPECT_EQ(L"", host_sdk::describe_menus());
        if (part == &host_sdk::Faults::no_core_interface || part == &host_sdk::Faults::no_action_manager) {
            EXPECT_EQ(before, new_heap_objects());
        }
    }
}

} // namespace
