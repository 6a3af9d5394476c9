#include "tests/product/plugin/host_fixture.h"

#include <max.h>

#include <imenuman.h>

namespace {

class StandinMenus : public HostTest {
protected:
    IMenuManager& manager() { return *GetCOREInterface()->GetMenuManager(); }

    // A menu with two separators, registered and shown on the bar.
    IMenu* add_menu(const wchar_t* title) {
        IMenu* menu = GetIMenu();
        menu->SetTitle(MSTR(title));
        manager().RegisterMenu(menu);
        for (int i = 0; i < 2; ++i) {
            IMenuItem* separator = GetIMenuItem();
            separator->ActAsSeparator();
            menu->AddItem(separator);
        }
        IMenuItem* entry = GetIMenuItem();
        entry->SetSubMenu(menu);
        manager().GetMainMenuBar()->AddItem(entry);
        return menu;
    }
};

int g_updates = 0;
void count_update(void*) {
    ++g_updates;
}

TEST_F(StandinMenus, UpdateMakesTheWindowsMenu) {
    add_menu(L"One");
    EXPECT_EQ(nullptr, host_sdk::menu_bar());
    manager().UpdateMenuBar();
    ASSERT_NE(nullptr, host_sdk::menu_bar());
    EXPECT_EQ(1, ::GetMenuItemCount(host_sdk::menu_bar()));
    EXPECT_EQ(L"One > ---\nOne > ---\n", host_sdk::describe_menus());
}

TEST_F(StandinMenus, UpdateCallsTheListener) {
    g_updates = 0;
    host_sdk::set_menu_bar_listener(count_update, nullptr);
    manager().UpdateMenuBar();
    host_sdk::set_menu_bar_listener(nullptr, nullptr);
    manager().UpdateMenuBar();
    EXPECT_EQ(1, g_updates);
}

TEST_F(StandinMenus, UnregisteringRemovesTheMenuFromTheBar) {
    IMenu* menu = add_menu(L"One");
    add_menu(L"Two");
    EXPECT_TRUE(manager().UnRegisterMenu(menu));
    manager().UpdateMenuBar();
    EXPECT_EQ(nullptr, manager().FindMenu(L"One"));
    EXPECT_EQ(L"Two > ---\nTwo > ---\n", host_sdk::describe_menus());
}

TEST_F(StandinMenus, MenuThatIsNotRegisteredCannotBeUnregistered) {
    IMenu* menu = GetIMenu();
    EXPECT_FALSE(manager().UnRegisterMenu(menu));
    delete menu;
    EXPECT_EQ(0, new_heap_objects());
}

TEST_F(StandinMenus, ContextIsNewOnce) {
    EXPECT_EQ(nullptr, manager().GetContext(77));
    EXPECT_TRUE(manager().RegisterMenuBarContext(77, L"Name"));
    EXPECT_FALSE(manager().RegisterMenuBarContext(77, L"Name"));
    ASSERT_NE(nullptr, manager().GetContext(77));
    EXPECT_TRUE(manager().GetContext(77)->GetName() == L"Name");
}

TEST_F(StandinMenus, MainMenuBarHasItsContext) {
    IMenuContext* context = manager().GetContext(kMainMenuBar);
    ASSERT_NE(nullptr, context);
    EXPECT_EQ(manager().GetMainMenuBar(), static_cast<IMenuBarContext*>(context)->GetMenu());
}

TEST_F(StandinMenus, MenuFileKeepsTheMenus) {
    IMenu* menu = add_menu(L"One");
    manager().RegisterMenuBarContext(77, L"Name");
    static_cast<IMenuBarContext*>(manager().GetContext(77))->SetMenu(menu);
    const std::wstring file = host_sdk::save_menus();

    host_sdk::reset();
    EXPECT_EQ(nullptr, manager().FindMenu(L"One"));
    host_sdk::load_menus(file);
    EXPECT_EQ(file, host_sdk::save_menus());
    IMenu* loaded = manager().FindMenu(L"One");
    ASSERT_NE(nullptr, loaded);
    EXPECT_EQ(2, loaded->NumItems());

    // The file knows the context, so it is not new; the host gives it out only after it was registered.
    EXPECT_EQ(nullptr, manager().GetContext(77));
    EXPECT_FALSE(manager().RegisterMenuBarContext(77, L"Name"));
    EXPECT_EQ(loaded, static_cast<IMenuBarContext*>(manager().GetContext(77))->GetMenu());
}

TEST_F(StandinMenus, LoadingRemovesMenusThatTheFileDoesNotHold) {
    const std::wstring empty = host_sdk::save_menus();
    add_menu(L"One");
    manager().RegisterMenuBarContext(77, L"Name");
    host_sdk::load_menus(empty);
    EXPECT_EQ(nullptr, manager().FindMenu(L"One"));
    EXPECT_EQ(L"", host_sdk::describe_menus());
    EXPECT_NE(nullptr, manager().GetContext(77));
    EXPECT_EQ(0, new_heap_objects());
}

TEST_F(StandinMenus, MenuInsideItselfIsShownToALimit) {
    IMenu* menu = add_menu(L"One");
    IMenuItem* again = GetIMenuItem();
    again->SetSubMenu(menu);
    menu->AddItem(again);
    manager().UpdateMenuBar();
    EXPECT_NE(std::wstring::npos, host_sdk::describe_menus().find(L"One > One > "));
}

TEST_F(StandinMenus, ItemsKeepTheirOrderAndWrongPositionsAreIgnored) {
    IMenu* menu = add_menu(L"One");
    IMenuItem* first = GetIMenuItem();
    first->SetTitle(MSTR(L"First"));
    menu->AddItem(first, 0);
    manager().UpdateMenuBar();
    EXPECT_EQ(L"One > First\nOne > ---\nOne > ---\n", host_sdk::describe_menus());
    menu->RemoveItem(7);
    menu->RemoveItem(-1);
    menu->AddItem(nullptr);
    EXPECT_EQ(3, menu->NumItems());
    menu->RemoveItem(0);
    manager().UpdateMenuBar();
    EXPECT_EQ(L"One > ---\nOne > ---\n", host_sdk::describe_menus());
}

TEST_F(StandinMenus, CallsAreRecordedWithTheirArguments) {
    manager().RegisterMenuBarContext(77, L"Name");
    EXPECT_TRUE(calls_.has(L"IMenuManager::RegisterMenuBarContext(0x0000004D, \"Name\")"));
    manager().RegisterMenu(add_menu(L"One"), 0);
    EXPECT_TRUE(calls_.has(L"IMenuManager::RegisterMenu(menu \"One\", 0)"));
    EXPECT_TRUE(calls_.has(L"IMenu::AddItem(menu \"One\", separator, -1)"));
}

} // namespace
