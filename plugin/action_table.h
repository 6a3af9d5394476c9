// The plugin's action table and menu in the host: two actions, their callback, and the installation of both.
#pragma once

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>

#include "host/end_host_headers.h"

#include <string>

class IMenu;
class IMenuManager;

namespace tarvo {

constexpr ActionTableId kActionTableId = 0x45AA4389;
constexpr ActionContextId kActionContextId = 0x21933FB3;

constexpr int kActionOpenDialog = 1497;
constexpr int kActionAbout = 1498;

class Tarvo_ActionTable : public ActionTable {
public:
    // `name` is only read; the host's constructor takes a non-const reference.
    explicit Tarvo_ActionTable(TSTR& name);

    BOOL GetMenuText(int command_id, MSTR& text) override;
};

class Tarvo_ActionCallback : public ActionCallback {
public:
    BOOL ExecuteAction(int command_id) override; // always TRUE
};

// Creates, registers and activates the table. Null when the host has no core interface or no action manager.
ActionTable* InstallActionTable();

// The installed table, null when there is none.
ActionTable* FindActionTable();

// Activates the installed table with a further callback and returns it; null when there is none.
ActionTable* ActivateInstalledTable();

// Registers the menu-bar context, then refills the menu with the plugin's title or creates it. The menu
// always has three entries afterwards.
void EnsureMenu(IMenuManager& manager, IMenu& main_bar, ActionTable& table);

// Empties the menu of that title, if there is one, and removes it if the menu-bar context is registered.
void RemoveMenu(const std::wstring& title);

} // namespace tarvo
