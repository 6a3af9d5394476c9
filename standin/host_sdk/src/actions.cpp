#include "actions.h"
#include "call_record.h"

#include <algorithm>
#include <map>
#include <vector>

namespace host_sdk {

namespace {

struct Activation {
    ActionTableId table_id;
    ActionCallback* callback; // belongs to whoever activated it
};

struct Actions {
    std::vector<ActionTable*> tables; // registered tables belong to the host
    std::vector<Activation> activations;
    std::map<ActionContextId, std::wstring> contexts;
};

Actions& actions() {
    static Actions* all = new Actions;
    return *all;
}

class ActionManager : public IActionManager {
public:
    void RegisterActionTable(ActionTable* table) override {
        record("IActionManager::RegisterActionTable", table);
        std::vector<ActionTable*>& tables = actions().tables;
        if (table != nullptr && std::find(tables.begin(), tables.end(), table) == tables.end()) {
            tables.push_back(table);
        }
    }

    int NumActionTables() override {
        record("IActionManager::NumActionTables");
        return static_cast<int>(actions().tables.size());
    }

    int ActivateActionTable(ActionCallback* callback, ActionTableId id) override {
        record("IActionManager::ActivateActionTable", static_cast<const void*>(callback), id);
        if (callback == nullptr || find_action_table(id) == nullptr) {
            return FALSE;
        }
        actions().activations.push_back({id, callback});
        return TRUE;
    }

    int DeactivateActionTable(ActionCallback* callback, ActionTableId id) override {
        record("IActionManager::DeactivateActionTable", static_cast<const void*>(callback), id);
        std::vector<Activation>& all = actions().activations;
        const auto found = std::find_if(all.begin(), all.end(), [&](const Activation& entry) {
            return entry.callback == callback && entry.table_id == id;
        });
        if (found == all.end()) {
            return FALSE;
        }
        all.erase(found);
        return TRUE;
    }

    ActionTable* FindTable(ActionTableId id) override {
        record("IActionManager::FindTable", id);
        return find_action_table(id);
    }

    BOOL RegisterActionContext(ActionContextId id, const MCHAR* name) override {
        record("IActionManager::RegisterActionContext", id, name);
        return actions().contexts.emplace(id, name == nullptr ? L"" : name).second ? TRUE : FALSE;
    }
};

} // namespace

IActionManager& action_manager() {
    static ActionManager* manager = ::new ActionManager;
    return *manager;
}

ActionTable* find_action_table(ActionTableId id) {
    for (ActionTable* table : actions().tables) {
        if (table->GetId() == id) {
            return table;
        }
    }
    return nullptr;
}

void forget_action_table(ActionTable* table) {
    std::vector<ActionTable*>& tables = actions().tables;
    tables.erase(std::remove(tables.begin(), tables.end(), table), tables.end());
}

bool action_menu_text(ActionTableId table_id, int command_id, std::wstring& text) {
    ActionTable* table = find_action_table(table_id);
    if (table == nullptr || table->GetAction(command_id) == nullptr) {
        return false;
    }
    MSTR given;
    run_foreign([&] { table->GetMenuText(command_id, given); });
    text = given.data();
    return true;
}

bool is_action_live(ActionTableId table_id, int command_id) {
    ActionTable* table = find_action_table(table_id);
    return table != nullptr && table->GetAction(command_id) != nullptr && active_callback_count(table_id) > 0;
}

bool run_action(ActionTableId table_id, int command_id) {
    if (!is_action_live(table_id, command_id)) {
        return false;
    }
    const std::vector<Activation> now = actions().activations; // an action may change the list
    for (auto entry = now.rbegin(); entry != now.rend(); ++entry) {
        BOOL handled = FALSE;
        if (entry->table_id == table_id) {
            run_foreign([&] { handled = entry->callback->ExecuteAction(command_id); });
        }
        if (handled) {
            break;
        }
    }
    return true;
}

void clear_actions() {
    actions().activations.clear();
    actions().contexts.clear();
    const std::vector<ActionTable*> tables = actions().tables; // deleting a table takes it off the list
    actions().tables.clear();
    for (ActionTable* table : tables) {
        if (is_module_loaded(table)) {
            run_foreign([&] { table->DeleteThis(); });
        }
    }
}

bool execute_action(DWORD table_id, int command_id) {
    return run_action(table_id, command_id);
}

int active_callback_count(DWORD table_id) {
    const std::vector<Activation>& all = actions().activations;
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [table_id](const Activation& entry) { return entry.table_id == table_id; }));
}

std::wstring action_context_name(DWORD context_id) {
    const auto found = actions().contexts.find(context_id);
    return found == actions().contexts.end() ? std::wstring() : found->second;
}

} // namespace host_sdk
