#include "plugin/plugin_object.h"

#include "common/guard.h"
#include "host/host.h"
#include "plugin/action_table.h"

#include "host/begin_host_headers.h"

#include <max.h>

#include <notify.h>

#include "host/end_host_headers.h"

namespace tarvo {

namespace {

// The super class of global utilities: at start-up the host creates one object of such a class and starts it.
constexpr SClass_ID kUtilityPluginSuperClass = 0x10E0;
static_assert(GUP_CLASS_ID == kUtilityPluginSuperClass, "the host knows global utilities by another number");

void remove_own_menu() {
    RemoveMenu(Text(IDS_MENU_TITLE));
}

void remove_earlier_menus() {
    remove_own_menu();
    RemoveMenu(L"TarvoCloud");
    RemoveMenu(Text(IDS_EARLIER_MENU_TITLE));
}

// Takes the host's menu bar first, then the table from `find_table`. Without both there is a line in the log.
void ensure_own_menu(ActionTable* (*find_table)()) {
    IMenuManager* manager = MenuManager();
    IMenu* main_bar = manager == nullptr ? nullptr : MainMenuBar(*manager);
    ActionTable* table = find_table();
    if (main_bar != nullptr && table != nullptr) {
        EnsureMenu(*manager, *main_bar, *table);
    } else {
        WriteErrorLine(kDataChannel,
                       "The plugin's menu was not made: the host has no main menu bar or no action table.");
    }
}

// The host discards its menu bar and builds it again after the plugins have started. The action table is not
// made again (C-63).
void on_system_startup(void*, NotifyInfo*) {
    RunGuarded("OnSystemStartup", [] { ensure_own_menu(FindActionTable); });
}

// Each step in a guard of its own: one that fails leaves the others what they can do.
ActionTable* install_actions() {
    RunGuarded("InstallActionTable", [] { InstallActionTable(); });
    return Guarded<ActionTable*>("ActivateInstalledTable", nullptr, [] {
        return ActivateInstalledTable(); // a second time (C-18)
    });
}

} // namespace

Tarvo_Rendering::~Tarvo_Rendering() {
    RunGuarded("~Tarvo_Rendering", remove_own_menu);
}

DWORD Tarvo_Rendering::Start() {
    RunGuarded("Start", [this] {
        RunGuarded("RegisterNotification",
                   [this] { ::RegisterNotification(on_system_startup, this, kSystemStartup); });
        RunGuarded("RemoveEarlierMenus", remove_earlier_menus);
        ensure_own_menu(install_actions);
    });
    return GUPRESULT_KEEP;
}

void Tarvo_Rendering::Stop() {
    RunGuarded("Stop", [this] {
        RunGuarded("UnRegisterNotification",
                   [this] { ::UnRegisterNotification(on_system_startup, this, kSystemStartup); });
        remove_own_menu();
    });
}

void Tarvo_Rendering::DeleteThis() {
    delete this;
}

Tarvo_RenderingClassDesc& Tarvo_RenderingClassDesc::instance() {
    static Tarvo_RenderingClassDesc descriptor;
    return descriptor;
}

void* Tarvo_RenderingClassDesc::Create(BOOL) {
    return Guarded<void*>("Create", nullptr, [] { return static_cast<GUP*>(new Tarvo_Rendering); });
}

const MCHAR* Tarvo_RenderingClassDesc::ClassName() {
    return Guarded("ClassName", L"", [this] { return class_name_.get(); });
}

SClass_ID Tarvo_RenderingClassDesc::SuperClassID() {
    return kUtilityPluginSuperClass;
}

const MCHAR* Tarvo_RenderingClassDesc::Category() {
    return Guarded("Category", L"", [this] { return category_.get(); });
}

} // namespace tarvo
