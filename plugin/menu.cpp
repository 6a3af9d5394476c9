#include "plugin/menu.h"

#include "common/string_table.h"
#include "host/core_access.h"
#include "plugin/action_table.h"
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

void add_action(IMenu& menu, ActionTable& table, int command_id) {
    IMenuItem* item = ::GetIMenuItem();
    if (item != nullptr) {
        item->SetActionItem(table.GetAction(command_id));
        menu.AddItem(item, -1);
    }
}

void add_separator(IMenu& menu) {
    IMenuItem* item = ::GetIMenuItem();
    if (item != nullptr) {
        item->ActAsSeparator();
        menu.AddItem(item, -1);
    }
}

void add_items(IMenu& menu, ActionTable& table) {
    add_action(menu, table, kActionOpenDialog);
    add_separator(menu);
    add_action(menu, table, kActionAbout);
}

void remove_items(IMenu& menu) {
    for (int left = menu.NumItems(); left > 0; --left) {
        menu.RemoveItem(0);
    }
}

void refill_menu(IMenuManager& manager, IMenu& menu, ActionTable& table) {
    remove_items(menu);
    add_items(menu, table);
    manager.UpdateMenuBar();
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
    IMenuItem* entry = ::GetIMenuItem();
    if (entry != nullptr) {
        entry->SetSubMenu(menu);
        main_bar.AddItem(entry, -1);
    }
    manager.UpdateMenuBar();
}

} // namespace

void EnsureMenu(IMenuManager& manager, IMenu& main_bar, ActionTable& table) {
    const std::wstring title = Text(IDS_MENU_TITLE);
    if (title.empty()) {
        return; // somebody's menu without a title must not be taken for ours
    }
    manager.RegisterMenuBarContext(kMenuBarContextId, title.c_str());
    IMenu* menu = manager.FindMenu(title.c_str());
    if (menu != nullptr) {
        refill_menu(manager, *menu, table);
    } else {
        create_own_menu(manager, main_bar, table, title);
    }
}

void RemoveMenu(const std::wstring& title) {
    IMenuManager* manager = MenuManager();
    // A text that is missing must not take away somebody's menu without a title.
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
