#include "menu_manager.h"

#include "call_record.h"
#include "host_heap.h"

#include <algorithm>

namespace host_sdk {

namespace {

class MenuManager : public IMenuManager {
public:
    bool RegisterMenu(IMenu* menu, DWORD flags) override;
    bool UnRegisterMenu(IMenu* menu) override;
    IMenu* FindMenu(const MCHAR* title) override;
    bool RegisterMenuBarContext(MenuContextId id, const MCHAR* name) override;
    IMenuContext* GetContext(MenuContextId id) override;
    IMenu* GetMainMenuBar() override;
    void UpdateMenuBar() override;
};

std::vector<std::unique_ptr<Menu>>::iterator find_registered(const IMenu* menu) {
    std::vector<std::unique_ptr<Menu>>& menus = menu_store().menus;
    return std::find_if(menus.begin(), menus.end(),
                        [menu](const std::unique_ptr<Menu>& own) { return own.get() == menu; });
}

bool MenuManager::RegisterMenu(IMenu* menu, DWORD flags) {
    record("IMenuManager::RegisterMenu", menu, static_cast<int>(flags));
    if (menu == nullptr || find_registered(menu) != menu_store().menus.end()) {
        return false;
    }
    menu_store().menus.emplace_back(static_cast<Menu*>(menu));
    return true;
}

bool MenuManager::UnRegisterMenu(IMenu* menu) {
    record("IMenuManager::UnRegisterMenu", menu);
    MenuStore& store = menu_store();
    const auto found = find_registered(menu);
    if (menu == nullptr || found == store.menus.end()) {
        return false;
    }
    store.bar->drop_items_showing(menu);
    for (const std::unique_ptr<Menu>& other : store.menus) {
        other->drop_items_showing(menu);
    }
    for (const auto& entry : store.contexts) {
        if (entry.second->menu == menu) {
            entry.second->menu = nullptr;
        }
    }
    store.menus.erase(found);
    return true;
}

IMenu* MenuManager::FindMenu(const MCHAR* title) {
    record("IMenuManager::FindMenu", title);
    if (title == nullptr) {
        return nullptr;
    }
    for (const std::unique_ptr<Menu>& menu : menu_store().menus) {
        if (menu->title() == title) {
            return menu.get();
        }
    }
    return nullptr;
}

bool MenuManager::RegisterMenuBarContext(MenuContextId id, const MCHAR* name) {
    record("IMenuManager::RegisterMenuBarContext", static_cast<DWORD>(id), name);
    MenuStore& store = menu_store();
    const bool is_new = store.contexts.count(id) == 0;
    if (is_new) {
        add_host_context(id, name == nullptr ? L"" : name);
    }
    store.contexts[id]->registered = true;
    return is_new;
}

IMenuContext* MenuManager::GetContext(MenuContextId id) {
    record("IMenuManager::GetContext", static_cast<DWORD>(id));
    const auto found = menu_store().contexts.find(id);
    return found != menu_store().contexts.end() && found->second->registered ? found->second.get() : nullptr;
}

IMenu* MenuManager::GetMainMenuBar() {
    record("IMenuManager::GetMainMenuBar");
    return state().faults.no_main_menu_bar ? nullptr : menu_store().bar.get();
}

void MenuManager::UpdateMenuBar() {
    record("IMenuManager::UpdateMenuBar");
    update_menu_bar();
}

// The bar's own context is always there.
void attach_main_bar(MenuStore& store) {
    const HostOwnScope own;
    store.bar.reset(new Menu);
    std::unique_ptr<BarContext> main(new BarContext);
    main->id = kMainMenuBar;
    main->name = L"Main Menu Bar";
    main->menu = store.bar.get();
    main->registered = true;
    store.contexts[kMainMenuBar] = std::move(main);
}

MenuStore* make_store() {
    MenuStore* store = new MenuStore;
    attach_main_bar(*store);
    return store;
}

} // namespace

MSTR& BarContext::GetName() {
    record("IMenuContext::GetName");
    return name;
}

void BarContext::SetMenu(IMenu* new_menu) {
    record("IMenuBarContext::SetMenu", new_menu);
    menu = new_menu;
}

IMenu* BarContext::GetMenu() {
    record("IMenuBarContext::GetMenu");
    return id == kMainMenuBar && state().faults.no_main_menu_bar ? nullptr : menu;
}

MenuStore& menu_store() {
    static MenuStore* store = make_store();
    return *store;
}

IMenuManager& menu_manager() {
    static MenuManager* manager = ::new MenuManager;
    return *manager;
}

std::unique_ptr<Menu> make_host_menu() {
    const HostOwnScope own;
    return std::unique_ptr<Menu>(new Menu);
}

std::unique_ptr<MenuItem> make_host_item() {
    const HostOwnScope own;
    return std::unique_ptr<MenuItem>(new MenuItem);
}

BarContext& add_host_context(MenuContextId id, const std::wstring& name) {
    const HostOwnScope own;
    std::unique_ptr<BarContext>& context = menu_store().contexts[id];
    context.reset(new BarContext);
    context->id = id;
    context->name = name.c_str();
    return *context;
}

void clear_menus() {
    MenuStore& store = menu_store();
    store.contexts.clear();
    store.menus.clear();
    attach_main_bar(store);
    clear_menu_bar();
}

} // namespace host_sdk
