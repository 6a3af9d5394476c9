#include "plugin/action_table.h"

#include "common/string_table.h"
#include "host/core_access.h"
#include "resources/resource_ids.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>
#include <imenuman.h>
#include <imenus.h>

#include "host/end_host_headers.h"

namespace tarvo {

namespace {

constexpr MenuContextId kMenuBarContextId = 0x411A1C29;

IMenuBarContext* own_context(IMenuManager& manager) {
    return static_cast<IMenuBarContext*>(manager.GetContext(kMenuBarContextId));
}

// Appends a new item, which `set_up` has made an action, a separator or a sub-menu.
template <class SetUp>
void append_item(IMenu& menu, SetUp set_up) {
    IMenuItem* item = ::GetIMenuItem();
    if (item != nullptr) {
        set_up(*item);
        menu.AddItem(item, -1);
    }
}

void add_items(IMenu& menu, ActionTable& table) {
    append_item(menu, [&](IMenuItem& item) { item.SetActionItem(table.GetAction(kActionOpenDialog)); });
    append_item(menu, [](IMenuItem& item) { item.ActAsSeparator(); });
    append_item(menu, [&](IMenuItem& item) { item.SetActionItem(table.GetAction(kActionAbout)); });
}

void remove_items(IMenu& menu) {
    for (int left = menu.NumItems(); left > 0; --left) {
        menu.RemoveItem(0);
    }
}

void create_own_menu(IMenuManager& manager, IMenu& main_bar, ActionTable& table, const std::wstring& title) {
    IMenu* menu = ::GetIMenu();
    if (menu == nullptr) {
        return;
    }
    menu->SetTitle(MSTR(title.c_str()));
    manager.RegisterMenu(menu, 0);
    IMenuBarContext* context = own_context(manager);
    if (context != nullptr) {
        context->SetMenu(menu);
    }
    add_items(*menu, table);
    append_item(main_bar, [menu](IMenuItem& item) { item.SetSubMenu(menu); });
    manager.UpdateMenuBar();
}

} // namespace

void EnsureMenu(IMenuManager& manager, IMenu& main_bar, ActionTable& table) {
    const std::wstring title = Text(IDS_MENU_TITLE);
    if (title.empty()) {
        return; // FindMenu could find an untitled menu that is not ours
    }
    manager.RegisterMenuBarContext(kMenuBarContextId, title.c_str());
    IMenu* menu = manager.FindMenu(title.c_str());
    if (menu != nullptr) {
        remove_items(*menu);
        add_items(*menu, table);
        manager.UpdateMenuBar();
    } else {
        create_own_menu(manager, main_bar, table, title);
    }
}

void RemoveMenu(const std::wstring& title) {
    IMenuManager* manager = MenuManager();
    // Without a title FindMenu could find an untitled menu that is not ours.
    IMenu* menu = manager == nullptr || title.empty() ? nullptr : manager->FindMenu(title.c_str());
    if (menu == nullptr) {
        return;
    }
    remove_items(*menu);
    IMenuBarContext* context = own_context(*manager);
    if (context != nullptr) {
        context->SetMenu(nullptr);
        manager->UnRegisterMenu(menu);
        manager->UpdateMenuBar();
    }
}

} // namespace tarvo
