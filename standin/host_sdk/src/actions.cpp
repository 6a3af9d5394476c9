#include "actions.h"
#include "call_record.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

namespace host_sdk {

namespace {

struct Activation {
    ActionTableId table_id;
    ActionCallback* callback; // the caller of the activation owns it
};

struct Actions {
    std::vector<ActionTable*> tables; // the host owns registered tables
    std::vector<Activation> activations;
    std::map<ActionContextId, std::wstring> contexts;
};

Actions& actions() {
    static Actions* all = new Actions;
    return *all;
}

std::wstring resource_text(HINSTANCE module, int id) {
    wchar_t text[256] = {};
    const int length = ::LoadStringW(module, static_cast<UINT>(id), text, 256);
    return std::wstring(text, static_cast<std::size_t>(length));
}

// Whether the module that an object's virtual functions are in is still loaded.
bool is_module_loaded(const void* object) {
    const void* functions = *static_cast<const void* const*>(object);
    HMODULE module = nullptr;
    return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                    GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                static_cast<LPCWSTR>(functions), &module) != FALSE;
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
        if (!record("IActionManager::ActivateActionTable", static_cast<const void*>(callback), id)) {
            return FALSE;
        }
        if (callback == nullptr || find_action_table(id) == nullptr) {
            return FALSE;
        }
        actions().activations.push_back({id, callback});
        return TRUE;
    }

    int DeactivateActionTable(ActionCallback* callback, ActionTableId id) override {
        if (!record("IActionManager::DeactivateActionTable", static_cast<const void*>(callback), id)) {
            return FALSE;
        }
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
        if (!record("IActionManager::FindTable", id)) {
            return nullptr;
        }
        return find_action_table(id);
    }

    BOOL RegisterActionContext(ActionContextId id, const MCHAR* name) override {
        if (!record("IActionManager::RegisterActionContext", id, name)) {
            return FALSE;
        }
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

void clear_actions() {
    actions().activations.clear();
    actions().contexts.clear();
    const std::vector<ActionTable*> tables = actions().tables; // deleting a table removes it from the list
    actions().tables.clear();
    for (ActionTable* table : tables) {
        if (is_module_loaded(table)) {
            run_foreign([&] { table->DeleteThis(); });
        }
    }
}

// The latest callback is asked first; the next one only when it did not handle the action.
bool execute_action(DWORD table_id, int command_id) {
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

int active_callback_count(DWORD table_id) {
    const std::vector<Activation>& all = actions().activations;
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [table_id](const Activation& entry) { return entry.table_id == table_id; }));
}

std::wstring action_context_name(DWORD context_id) {
    const auto found = actions().contexts.find(context_id);
    return found == actions().contexts.end() ? std::wstring() : found->second;
}

TableAction::TableAction(ActionTable& owner, const ActionDescription& described, HINSTANCE module)
    : table(owner), command_id(described.mCmdID),
      description(resource_text(module, described.mDescriptionResourceID)),
      short_name(resource_text(module, described.mShortNameResourceID)),
      category(resource_text(module, described.mCategoryResourceID)) {}

BOOL TableAction::ExecuteAction() {
    return execute_action(table.GetId(), command_id) ? TRUE : FALSE;
}

} // namespace host_sdk

using namespace host_sdk;

struct ActionTable::Contents {
    ActionTableId id;
    ActionContextId context;
    MSTR name;
    std::vector<std::unique_ptr<TableAction>> items;

    TableAction* find(int command_id) const {
        for (const std::unique_ptr<TableAction>& item : items) {
            if (item->command_id == command_id) {
                return item.get();
            }
        }
        return nullptr;
    }
};

ActionTable::ActionTable(ActionTableId id, ActionContextId context, TSTR& name, HACCEL accelerators,
                         int count, ActionDescription* descriptions, HINSTANCE module)
    : contents_(new Contents) {
    record("ActionTable::ActionTable", id, context, name, accelerators, count);
    const HostOwnScope own;
    contents_->id = id;
    contents_->context = context;
    contents_->name = name;
    for (int index = 0; index < count; ++index) {
        contents_->items.emplace_back(new TableAction(*this, descriptions[index], module));
    }
}

ActionTable::~ActionTable() {
    std::vector<ActionTable*>& tables = actions().tables;
    tables.erase(std::remove(tables.begin(), tables.end(), this), tables.end());
    delete contents_;
}

BOOL ActionTable::GetMenuText(int command_id, MSTR& text) {
    const TableAction* item = contents_->find(command_id);
    text = item == nullptr ? text.data() : item->short_name.c_str();
    return item != nullptr ? TRUE : FALSE;
}

BOOL ActionTable::GetDescriptionText(int command_id, MSTR& text) {
    const TableAction* item = contents_->find(command_id);
    text = item == nullptr ? text.data() : item->description.c_str();
    return item != nullptr ? TRUE : FALSE;
}

BOOL ActionTable::IsEnabled(int) {
    return TRUE;
}

void ActionTable::DeleteThis() {
    delete this;
}

ActionTableId ActionTable::GetId() {
    return contents_->id;
}

ActionContextId ActionTable::GetContextId() {
    return contents_->context;
}

MSTR& ActionTable::GetName() {
    return contents_->name;
}

int ActionTable::Count() {
    return static_cast<int>(contents_->items.size());
}

ActionItem* ActionTable::GetAction(int command_id) {
    return contents_->find(command_id);
}

ActionItem::ActionItem() {}
ActionItem::~ActionItem() {}

ActionCallback::ActionCallback() {}
ActionCallback::~ActionCallback() {}
BOOL ActionCallback::ExecuteAction(int) {
    return FALSE;
}
