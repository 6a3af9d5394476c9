#include "plugin/action_table.h"

#include "common/guard.h"
#include "common/message_box.h"
#include "common/string_table.h"
#include "dialog/dialogs.h"
#include "host/host.h"
#include "resources/resource_ids.h"

#include <memory>

namespace tarvo {

namespace {

const wchar_t kActionContextName[] = L"Marrowby";

// Command, then the texts for description, short name and category. Not const for the host's constructor.
ActionDescription g_descriptions[] = {
    {kActionAbout, IDS_ACTION_ABOUT, IDS_ACTION_ABOUT, IDS_ACTION_ABOUT},
    {kActionOpenDialog, IDS_ACTION_OPEN, IDS_ACTION_OPEN, IDS_ACTION_OPEN},
};
constexpr int kDescriptionCount = sizeof(g_descriptions) / sizeof(g_descriptions[0]);

void open_dialog() {
    OpenMainDialog(HostMainWindow(), reinterpret_cast<LPARAM>(&TarvoRenderingConfigMgr::instance()));
}

void show_about() {
    ShowBox(nullptr, IDS_ABOUT_TEXT, kBoxOk, IDS_ABOUT_CAPTION);
}

struct Action {
    int command_id;
    unsigned menu_text;
    void (*run)();
};

const Action kActions[] = {
    {kActionOpenDialog, IDS_ACTION_OPEN, open_dialog},
    {kActionAbout, IDS_ACTION_ABOUT, show_about},
};

const Action* find_action(int command_id) {
    for (const Action& action : kActions) {
        if (action.command_id == command_id) {
            return &action;
        }
    }
    return nullptr;
}

// Never deleted: the host does not delete a callback and may call it for as long as it runs.
void activate(IActionManager& manager) {
    std::unique_ptr<Tarvo_ActionCallback> callback(new Tarvo_ActionCallback);
    manager.ActivateActionTable(callback.get(), kActionTableId);
    static_cast<void>(callback.release());
}

} // namespace

Tarvo_ActionTable::Tarvo_ActionTable(TSTR& name)
    : ActionTable(kActionTableId, kActionContextId, name, nullptr, kDescriptionCount, g_descriptions,
                  ModuleInstance()) {}

BOOL Tarvo_ActionTable::GetMenuText(int command_id, MSTR& text) {
    return Guarded<BOOL>("GetMenuText", FALSE, [&]() -> BOOL {
        const Action* action = find_action(command_id);
        if (action == nullptr) {
            return ActionTable::GetMenuText(command_id, text);
        }
        text = MSTR(Text(action->menu_text).c_str());
        return TRUE;
    });
}

BOOL Tarvo_ActionCallback::ExecuteAction(int command_id) {
    RunGuarded("ExecuteAction", [command_id] {
        const Action* action = find_action(command_id);
        if (action != nullptr) {
            action->run();
        }
    });
    return TRUE;
}

ActionTable* InstallActionTable() {
    if (CoreInterface() == nullptr) {
        return nullptr;
    }
    TSTR name(Text(IDS_ACTION_OPEN).c_str());
    std::unique_ptr<Tarvo_ActionTable> table(new Tarvo_ActionTable(name));
    IActionManager* manager = ActionManager();
    if (manager == nullptr) {
        return nullptr;
    }
    manager->RegisterActionContext(kActionContextId, kActionContextName);
    manager->RegisterActionTable(table.get());
    ActionTable* registered = table.release(); // the host's from now on
    activate(*manager);
    return registered;
}

ActionTable* FindActionTable() {
    IActionManager* manager = ActionManager();
    return manager == nullptr ? nullptr : manager->FindTable(kActionTableId);
}

ActionTable* ActivateInstalledTable() {
    ActionTable* table = FindActionTable();
    IActionManager* manager = table == nullptr ? nullptr : ActionManager(); // it may be gone by now
    if (manager != nullptr) {
        activate(*manager);
    }
    return table;
}

} // namespace tarvo
