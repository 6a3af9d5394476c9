// Reads what a dialog shows from its controls. For the dialog's thread only. Needs windows.h.
#pragma once

#include <json/value.h>

#include <windows.h>

namespace stage {

// {"open", "title", "focus", "controls": {id: {...}}} and, when there is a table, "columns", "row_count",
// "rows".
Json::Value read_dialog_state(HWND dialog);

// The first list view among the dialog's controls; null when there is none.
HWND camera_table(HWND dialog);

// Text of one cell.
std::wstring cell_text(HWND table, int row, int column);
int row_count(HWND table);
bool is_checked(HWND table, int row);

std::wstring window_text(HWND window);
std::wstring class_name(HWND window);

} // namespace stage
