// Menus: what the product does with them, with a menu of the probe's own that is gone afterwards.
#include "host/host.h"
#include "probe/questions.h"
#include "probe/report.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <imenuman.h>
#include <imenus.h>

#include "host/end_host_headers.h"

namespace tarvo_probe {

namespace {

// The product's own context: the host keeps contexts in its menu file, and this one it may keep.
constexpr MenuContextId kContextId = 0x411A1C29;
constexpr wchar_t kTitle[] = L"Tarvo host probe";

IMenuBarContext* bar_context(IMenuManager& manager, MenuContextId id) {
    return static_cast<IMenuBarContext*>(manager.GetContext(id));
}

void ask_main_bar(const std::string& moment, IMenuManager& manager) {
    Report& report = TheReport();
    IMenu* bar = tarvo::MainMenuBar(manager);
    report.object(moment + ".main_menu_bar", bar);
    IMenuBarContext* context = bar_context(manager, kMainMenuBar);
    report.object(moment + ".main_context", context);
    report.flag(moment + ".main_context_has_the_bar", context != nullptr && context->GetMenu() == bar);
    if (bar != nullptr) {
        report.number(moment + ".main_menu_items", bar->NumItems());
    }
}

void ask_own_menu(const std::string& moment, IMenuManager& manager, IMenu& bar) {
    Report& report = TheReport();
    const int items_before = bar.NumItems();
    report.object(moment + ".unknown_menu", manager.FindMenu(kTitle));
    report.object(moment + ".context_before", manager.GetContext(kContextId));
    report.flag(moment + ".context_registered", manager.RegisterMenuBarContext(kContextId, kTitle));
    report.flag(moment + ".context_registered_again", manager.RegisterMenuBarContext(kContextId, kTitle));
    report.object(moment + ".context_after", manager.GetContext(kContextId));
    IMenu* menu = ::GetIMenu();
    report.object(moment + ".new_menu", menu);
    IMenuItem* separator = ::GetIMenuItem();
    IMenuItem* entry = ::GetIMenuItem();
    report.object(moment + ".new_item", entry);
    if (menu == nullptr || separator == nullptr || entry == nullptr) {
        return;
    }
    menu->SetTitle(MSTR(kTitle));
    report.flag(moment + ".menu_registered", manager.RegisterMenu(menu, 0));
    report.flag(moment + ".menu_found", manager.FindMenu(kTitle) == menu);
    separator->ActAsSeparator();
    menu->AddItem(separator, -1);
    report.number(moment + ".items_added", menu->NumItems());
    entry->SetSubMenu(menu);
    bar.AddItem(entry, -1);
    manager.UpdateMenuBar();
    report.number(moment + ".bar_items_more", bar.NumItems() - items_before);
    menu->RemoveItem(0);
    report.number(moment + ".items_left", menu->NumItems());
    report.flag(moment + ".menu_unregistered", manager.UnRegisterMenu(menu));
    manager.UpdateMenuBar();
    report.object(moment + ".menu_after", manager.FindMenu(kTitle));
    report.number(moment + ".bar_items_left_over", bar.NumItems() - items_before);
}

} // namespace

void AskMenus(const std::string& moment) noexcept {
    Ask("menus", [&] {
        IMenuManager* manager = tarvo::MenuManager();
        if (manager == nullptr) {
            return;
        }
        ask_main_bar(moment, *manager);
        IMenu* bar = tarvo::MainMenuBar(*manager);
        if (bar != nullptr) {
            ask_own_menu(moment, *manager, *bar);
        }
    });
}

} // namespace tarvo_probe
