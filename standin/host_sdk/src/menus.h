// Menus, their items and the contexts that menus are attached to, behind the interfaces. A menu owns its
// items; an item only points to its submenu. The public data are the host's own view; using them records no
// call.
#pragma once

#include "imenuman.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host_sdk {

class MenuItem : public IMenuItem {
public:
    enum class Mode { inactive, separator, action, sub_menu };

    void SetTitle(const MSTR& text) override;
    void ActAsSeparator() override;
    void SetActionItem(ActionItem* action) override;
    void SetSubMenu(IMenu* menu) override;

    std::wstring shown_text() const; // asks the action's table while it is registered
    bool is_usable() const;          // false: an action whose table is missing or not active

    Mode mode = Mode::inactive;
    MSTR title;
    bool custom_title = false;
    ActionTableId table_id = 0;
    int command_id = 0;
    IMenu* sub_menu = nullptr;
};

class Menu : public IMenu {
public:
    void SetTitle(const MSTR& text) override;
    int NumItems() const override;
    void AddItem(IMenuItem* item, int position) override;
    void RemoveItem(int index) override;

    void drop_items_showing(const IMenu* menu);

    MSTR title;
    std::vector<std::unique_ptr<MenuItem>> items;
};

class BarContext : public IMenuBarContext {
public:
    MSTR& GetName() override;
    void SetMenu(IMenu* new_menu) override;
    IMenu* GetMenu() override;

    MenuContextId id = 0;
    MSTR name;
    IMenu* menu = nullptr;
    // False: known from the menu file alone. The host gives it out once a plug-in has registered it in this
    // run.
    bool registered = false;
};

struct MenuStore {
    std::unique_ptr<Menu> bar;
    std::vector<std::unique_ptr<Menu>> menus;
    std::map<MenuContextId, std::unique_ptr<BarContext>> contexts;
};

MenuStore& menu_store();
IMenuManager& menu_manager();

// A new context of the host's own.
BarContext& add_host_context(MenuContextId id, const std::wstring& name);

// Builds a new Windows menu and calls the listener.
void update_menu_bar();
void clear_menu_bar();

} // namespace host_sdk
