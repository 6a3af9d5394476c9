#include "plugin/action_table.h"

#include "common/guard.h"
#include "common/string_table.h"
#include "host/host.h"
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

// Appends a new item, which `set_up` has made an action, a separator or a sub-menu. False without one.
template <class SetUp>
bool append_item(IMenu& menu, SetUp set_up) {
    IMenuItem* item = ::GetIMenuItem();
    if (item == nullptr) {
        WriteErrorLine(kDataChannel, "The host gave no menu item.");
        return false;
    }
    set_up(*item);
    menu.AddItem(item, -1);
    return true;
}

void add_action(IMenu& menu, ActionTable& table, int command_id) {
    append_item(menu, [&](IMenuItem& item) {
        ActionItem* action = table.GetAction(command_id);
        if (action == nullptr) {
            WriteErrorLine(kDataChannel, "The host has no action " + std::to_string(command_id));
        }
        item.SetActionItem(action);
    });
}

void add_items(IMenu& menu, ActionTable& table) {
    add_action(menu, table, kActionOpenDialog);
    append_item(menu, [](IMenuItem& item) { item.ActAsSeparator(); });
    add_action(menu, table, kActionAbout);
}

void remove_items(IMenu& menu) {
    for (int left = menu.NumItems(); left > 0; --left) {
        menu.RemoveItem(0);
    }
}

// Whether the menu is on the main menu bar.
bool create_own_menu(IMenuManager& manager, IMenu& main_bar, ActionTable& table, const std::wstring& title) {
    IMenu* menu = ::GetIMenu();
    if (menu == nullptr) {
        WriteErrorLine(kDataChannel, "The host gave no menu.");
        return false;
    }
    menu->SetTitle(MSTR(title.c_str()));
    if (!manager.RegisterMenu(menu, 0)) {
        WriteErrorLine(kDataChannel, "The host did not register the menu.");
    }
    IMenuBarContext* context = own_context(manager);
    if (context != nullptr) {
        context->SetMenu(menu);
    }
    add_items(*menu, table);
    const bool on_bar = append_item(main_bar, [menu](IMenuItem& item) { item.SetSubMenu(menu); });
    manager.UpdateMenuBar();
    return on_bar;
}

// A menu that was registered and is not on the menu bar would be found and filled later, and never be seen:
// it is removed, and the host's next notification makes it again.
void create_menu_or_none(IMenuManager& manager, IMenu& main_bar, ActionTable& table,
                         const std::wstring& title) {
    const bool on_bar =
        Guarded("CreateMenu", false, [&] { return create_own_menu(manager, main_bar, table, title); });
    if (!on_bar) {
        RemoveMenu(title);
    }
}

} // namespace

void EnsureMenu(IMenuManager& manager, IMenu& main_bar, ActionTable& table) {
    const std::wstring title = Text(IDS_MENU_TITLE);
    if (title.empty()) {
        return; // FindMenu could find an untitled menu that is not ours
    }
    manager.RegisterMenuBarContext(kMenuBarContextId, title.c_str());
    IMenu* menu = manager.FindMenu(title.c_str()); // what is not found is made (C-69)
    if (menu != nullptr) {
        remove_items(*menu);
        add_items(*menu, table);
        manager.UpdateMenuBar();
    } else {
        create_menu_or_none(manager, main_bar, table, title);
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
