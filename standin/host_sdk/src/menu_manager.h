// All menus of the host, and the contexts that menus are attached to.
#pragma once

#include "menus.h"

#include "imenuman.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host_sdk {

class BarContext : public IMenuBarContext {
public:
    MSTR& GetName() override;
    void SetMenu(IMenu* menu) override;
    IMenu* GetMenu() override;

    MenuContextId id = 0;
    MSTR name;
    IMenu* menu = nullptr;
    // False: only known from the menu file. The host answers for it once a plug-in has registered it in this
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

// A new menu, item or context of the host's own.
std::unique_ptr<Menu> make_host_menu();
std::unique_ptr<MenuItem> make_host_item();
BarContext& add_host_context(MenuContextId id, const std::wstring& name);

// Builds a new Windows menu and tells the listener.
void update_menu_bar();
void clear_menu_bar();

} // namespace host_sdk
