#include "menus.h"

#include "actions.h"
#include "call_record.h"

#include <algorithm>

namespace host_sdk {

namespace {

std::vector<std::unique_ptr<Menu>>::iterator find_registered(const IMenu* menu) {
    std::vector<std::unique_ptr<Menu>>& menus = menu_store().menus;
    return std::find_if(menus.begin(), menus.end(),
                        [menu](const std::unique_ptr<Menu>& own) { return own.get() == menu; });
}

class MenuManager : public IMenuManager {
public:
    bool RegisterMenu(IMenu* menu, DWORD flags) override {
        if (!record("IMenuManager::RegisterMenu", menu, static_cast<int>(flags))) {
            return false;
        }
        if (find_registered(menu) != menu_store().menus.end()) {
            return false;
        }
        menu_store().menus.emplace_back(static_cast<Menu*>(menu));
        return true;
    }

    bool UnRegisterMenu(IMenu* menu) override {
        if (!record("IMenuManager::UnRegisterMenu", menu)) {
            return false;
        }
        MenuStore& store = menu_store();
        const auto found = find_registered(menu);
        if (found == store.menus.end()) {
            return false;
        }
        store.bar->drop_items_showing(menu);
        for (const std::unique_ptr<Menu>& other : store.menus) {
            other->drop_items_showing(menu);
        }
        for (const auto& entry : store.contexts) {
            entry.second->menu = entry.second->menu == menu ? nullptr : entry.second->menu;
        }
        store.menus.erase(found);
        return true;
    }

    IMenu* FindMenu(const MCHAR* title) override {
        if (!record("IMenuManager::FindMenu", title)) {
            return nullptr;
        }
        for (const std::unique_ptr<Menu>& menu : menu_store().menus) {
            if (menu->title == title) {
                return menu.get();
            }
        }
        return nullptr;
    }

    bool RegisterMenuBarContext(MenuContextId id, const MCHAR* name) override {
        if (!record("IMenuManager::RegisterMenuBarContext", static_cast<DWORD>(id), name)) {
            return false;
        }
        MenuStore& store = menu_store();
        const bool is_new = store.contexts.count(id) == 0;
        if (is_new) {
            add_host_context(id, name);
        }
        store.contexts[id]->registered = true;
        return is_new;
    }

    IMenuContext* GetContext(MenuContextId id) override {
        if (!record("IMenuManager::GetContext", static_cast<DWORD>(id))) {
            return nullptr;
        }
        const auto found = menu_store().contexts.find(id);
        return found != menu_store().contexts.end() && found->second->registered ? found->second.get()
                                                                                 : nullptr;
    }

    IMenu* GetMainMenuBar() override {
        if (!record("IMenuManager::GetMainMenuBar")) {
            return nullptr;
        }
        return state().faults.no_main_menu_bar ? nullptr : menu_store().bar.get();
    }

    void UpdateMenuBar() override {
        record("IMenuManager::UpdateMenuBar");
        update_menu_bar();
    }
};

// Only the main menu bar, empty, and its context.
void reset_store(MenuStore& store) {
    const HostOwnScope own;
    store.contexts.clear();
    store.menus.clear();
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
    reset_store(*store);
    return store;
}

} // namespace

void MenuItem::SetTitle(const MSTR& text) {
    record("IMenuItem::SetTitle", text);
    title = text;
}

void MenuItem::ActAsSeparator() {
    record("IMenuItem::ActAsSeparator");
    mode = Mode::separator;
}

void MenuItem::SetActionItem(ActionItem* action) {
    TableAction* known = static_cast<TableAction*>(action);
    record("IMenuItem::SetActionItem", known == nullptr ? 0 : known->command_id);
    mode = known == nullptr ? Mode::inactive : Mode::action;
    if (known != nullptr) {
        table_id = known->table.GetId();
        command_id = known->command_id;
    }
}

void MenuItem::SetSubMenu(IMenu* menu) {
    record("IMenuItem::SetSubMenu", menu);
    mode = menu == nullptr ? Mode::inactive : Mode::sub_menu;
    sub_menu = menu;
}

std::wstring MenuItem::shown_text() const {
    if (mode == Mode::sub_menu && !custom_title) {
        return static_cast<const Menu*>(sub_menu)->title.data();
    }
    std::wstring text;
    if (mode == Mode::action && !custom_title && action_menu_text(table_id, command_id, text)) {
        return text;
    }
    return title.data();
}

bool MenuItem::is_usable() const {
    return mode == Mode::sub_menu || (mode == Mode::action && is_action_live(table_id, command_id));
}

void Menu::SetTitle(const MSTR& text) {
    record("IMenu::SetTitle", text);
    title = text;
}

int Menu::NumItems() const {
    if (!record("IMenu::NumItems")) {
        return 0;
    }
    return static_cast<int>(items.size());
}

void Menu::AddItem(IMenuItem* item, int position) {
    record("IMenu::AddItem", static_cast<IMenu*>(this), item, position);
    if (item == nullptr) {
        return;
    }
    std::unique_ptr<MenuItem> owned(static_cast<MenuItem*>(item));
    const bool inside = position >= 0 && static_cast<std::size_t>(position) < items.size();
    items.insert(inside ? items.begin() + position : items.end(), std::move(owned));
}

void Menu::RemoveItem(int index) {
    record("IMenu::RemoveItem", static_cast<IMenu*>(this), index);
    if (index >= 0 && static_cast<std::size_t>(index) < items.size()) {
        items.erase(items.begin() + index);
    }
}

void Menu::drop_items_showing(const IMenu* menu) {
    items.erase(
        std::remove_if(items.begin(), items.end(),
                       [menu](const std::unique_ptr<MenuItem>& own) { return own->sub_menu == menu; }),
        items.end());
}

MSTR& BarContext::GetName() {
    record("IMenuContext::GetName");
    return name;
}

void BarContext::SetMenu(IMenu* new_menu) {
    record("IMenuBarContext::SetMenu", new_menu);
    menu = new_menu;
}

IMenu* BarContext::GetMenu() {
    if (!record("IMenuBarContext::GetMenu")) {
        return nullptr;
    }
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

BarContext& add_host_context(MenuContextId id, const std::wstring& name) {
    const HostOwnScope own;
    std::unique_ptr<BarContext>& context = menu_store().contexts[id];
    context.reset(new BarContext);
    context->id = id;
    context->name = name.c_str();
    return *context;
}

void clear_menus() {
    reset_store(menu_store());
    clear_menu_bar();
}

} // namespace host_sdk

IMenu* GetIMenu() {
    return host_sdk::record("GetIMenu") ? new host_sdk::Menu : nullptr;
}

IMenuItem* GetIMenuItem() {
    return host_sdk::record("GetIMenuItem") ? new host_sdk::MenuItem : nullptr;
}
