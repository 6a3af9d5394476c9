// The host's edit field "CustEdit": what is typed counts when it is confirmed with Enter or when the focus
// leaves the field. Only then the dialog is told (WM_COMMAND with EN_CHANGE); Enter never reaches the
// dialog's buttons. Documented is the message for Enter; the rest is how 3ds Max's own fields behave.
#pragma once

#include <windows.h>

#include <string>

namespace host_sdk {

void register_cust_edit(HINSTANCE module);
void unregister_cust_edit(HINSTANCE module);

// What the field was confirmed with last. Of any other window, its text.
std::wstring confirmed_text(HWND field);

} // namespace host_sdk
