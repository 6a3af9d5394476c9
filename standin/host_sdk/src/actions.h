// The items of action tables, and running them.
#pragma once

#include "actiontable.h"

#include <string>

namespace host_sdk {

class TableAction : public ActionItem {
public:
    TableAction(ActionTable& table, const ActionDescription& description, HINSTANCE module);

    int GetId() override { return command_id; }
    void GetDescriptionText(MSTR& text) override { table.GetDescriptionText(command_id, text); }
    void GetMenuText(MSTR& text) override { table.GetMenuText(command_id, text); }
    void GetShortText(MSTR& text) override { text = short_name.c_str(); }
    void GetCategoryText(MSTR& text) override { text = category.c_str(); }
    BOOL ExecuteAction() override;
    BOOL IsEnabled() override { return table.IsEnabled(command_id); }
    void DeleteThis() override {} // its table owns it

    ActionTable& table;
    const int command_id;
    const std::wstring description;
    const std::wstring short_name;
    const std::wstring category;
};

IActionManager& action_manager();

// Null when no such table is registered.
ActionTable* find_action_table(ActionTableId id);

// False when the action does not exist.
bool action_menu_text(ActionTableId table_id, int command_id, std::wstring& text);
bool is_action_live(ActionTableId table_id, int command_id);

} // namespace host_sdk
