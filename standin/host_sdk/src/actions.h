// The items of action tables, and running them.
#pragma once

#include "actiontable.h"

#include <string>

namespace host_sdk {

class TableAction : public ActionItem {
public:
    TableAction(ActionTable& table, const ActionDescription& description, HINSTANCE module);

    int GetId() override;
    void GetDescriptionText(MSTR& text) override;
    void GetMenuText(MSTR& text) override;
    void GetShortText(MSTR& text) override;
    void GetCategoryText(MSTR& text) override;
    BOOL ExecuteAction() override;
    BOOL IsEnabled() override;
    void DeleteThis() override;

    ActionTable& table() const { return table_; }
    int command_id() const { return command_id_; }
    const std::wstring& description() const { return description_; }
    const std::wstring& short_name() const { return short_name_; }

private:
    ActionTable& table_;
    int command_id_;
    std::wstring description_;
    std::wstring short_name_;
    std::wstring category_;
};

IActionManager& action_manager();

// Null when no such table is registered.
ActionTable* find_action_table(ActionTableId id);
void forget_action_table(ActionTable* table);

// False when the action does not exist.
bool action_menu_text(ActionTableId table_id, int command_id, std::wstring& text);
bool is_action_live(ActionTableId table_id, int command_id);

// The latest callback is asked first; the next one only when it did not handle the action. False when there
// is no such action or no callback.
bool run_action(ActionTableId table_id, int command_id);

} // namespace host_sdk
