// The plugin's action table in the host: two actions, their callback, and the installation of both.
#pragma once

#include "host/begin_host_headers.h"

#include <max.h>

#include <actiontable.h>

#include "host/end_host_headers.h"

namespace tarvo {

constexpr ActionTableId kActionTableId = 0x45AA4389;
constexpr ActionContextId kActionContextId = 0x21933FB3;

constexpr int kActionOpenDialog = 1497;
constexpr int kActionAbout = 1498;

class Tarvo_ActionTable : public ActionTable {
public:
    // `name` is only read; the host's constructor asks for a variable.
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

} // namespace tarvo
