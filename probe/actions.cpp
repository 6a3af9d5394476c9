// Action tables: found, activated twice, run, and an action that throws.
#include "probe/actions.h"
#include "host/host.h"
#include "probe/questions.h"
#include "probe/report.h"
#include "probe/resource_ids.h"

#include <memory>
#include <stdexcept>

namespace tarvo_probe {

namespace {

constexpr ActionTableId kTableId = 0x45AA4390;
constexpr ActionContextId kContextId = 0x21933FC4;
constexpr int kCommand = 1497;

ActionDescription g_descriptions[] = {{kCommand, IDS_PROBE_ACTION, IDS_PROBE_ACTION, IDS_PROBE_ACTION}};

class Table : public ActionTable {
public:
    Table(TSTR& name, HINSTANCE module)
        : ActionTable(kTableId, kContextId, name, nullptr, 1, g_descriptions, module) {}

    BOOL GetMenuText(int command_id, MSTR& text) override {
        if (command_id != kCommand) {
            return ActionTable::GetMenuText(command_id, text);
        }
        text = MSTR(L"the table's own text");
        return TRUE;
    }
};

class Callback : public ActionCallback {
public:
    BOOL ExecuteAction(int) override {
        ++runs;
        if (throws) {
            throw std::runtime_error("probe");
        }
        return TRUE;
    }

    int runs = 0;
    bool throws = false;
};

// The host may call them for as long as it runs.
Callback& callback(int number) {
    static Callback* const both = new Callback[2];
    return both[number];
}

void run(const char* key, ActionItem& item) {
    callback(0).runs = 0;
    callback(1).runs = 0;
    TheReport().flag(std::string(key) + ".done", item.ExecuteAction() != FALSE);
    TheReport().number(std::string(key) + ".first_callback", callback(0).runs);
    TheReport().number(std::string(key) + ".second_callback", callback(1).runs);
}

void ask_twice(IActionManager& manager, ActionItem& item) {
    Report& report = TheReport();
    report.flag("action.enabled_before", item.IsEnabled() != FALSE);
    report.flag("action.activated", manager.ActivateActionTable(&callback(0), kTableId) != 0);
    run("action.once", item);
    report.flag("action.activated_twice", manager.ActivateActionTable(&callback(1), kTableId) != 0);
    run("action.twice", item);
    MSTR text;
    item.GetMenuText(text);
    report.line("action.menu_text", std::wstring(text.data()));
}

ActionTable* registered_table(IActionManager& manager, HINSTANCE module) {
    TSTR name(L"Tarvo host probe");
    std::unique_ptr<Table> table(new Table(name, module));
    manager.RegisterActionTable(table.get());
    return table.release(); // the host's from now on
}

ActionItem* own_item() {
    IActionManager* manager = tarvo::ActionManager();
    ActionTable* table = manager == nullptr ? nullptr : manager->FindTable(kTableId);
    return table == nullptr ? nullptr : table->GetAction(kCommand);
}

} // namespace

void AskActions(HINSTANCE module) noexcept {
    Ask("action", [&] {
        IActionManager* manager = tarvo::ActionManager();
        if (manager == nullptr) {
            return;
        }
        Report& report = TheReport();
        report.object("action.unknown_table", manager->FindTable(kTableId));
        report.flag("action.context",
                    manager->RegisterActionContext(kContextId, L"Tarvo host probe") != FALSE);
        ActionTable* table = registered_table(*manager, module);
        report.flag("action.table_found", manager->FindTable(kTableId) == table);
        report.object("action.unknown_item", table->GetAction(kCommand + 1));
        ActionItem* item = table->GetAction(kCommand);
        report.object("action.item", item);
        if (item != nullptr) {
            ask_twice(*manager, *item);
        }
    });
}

void AskThrowingAction() noexcept {
    Ask("exception.action", [] {
        ActionItem* item = own_item();
        if (item == nullptr) {
            return;
        }
        callback(1).throws = true;
        TheReport().line("exception.action.asked", "yes");
        try {
            item->ExecuteAction();
            TheReport().line("exception.action", "stopped by the host");
        } catch (const std::runtime_error&) {
            TheReport().line("exception.action", "passed through the host");
        }
        callback(1).throws = false;
    });
}

void DeactivateActions() noexcept {
    Ask("action.end", [] {
        IActionManager* manager = tarvo::ActionManager();
        for (int number = 1; manager != nullptr && number >= 0; --number) {
            TheReport().flag("action.deactivated_" + std::to_string(number + 1),
                             manager->DeactivateActionTable(&callback(number), kTableId) != 0);
        }
    });
}

} // namespace tarvo_probe
