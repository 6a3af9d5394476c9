// Shows every window of the plugin inside the activation context of the module's own manifest, so that
// version 6 of the common controls applies whatever the host uses. Without it no call is made. A window that
// could not be shown leaves an ERROR line with the system's error on "qfx_ui". Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo {

// 0 on failure.
int IsolatedMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT style,
                       WORD language);

// -1 on failure. Registers the window classes that the templates name first.
INT_PTR IsolatedDialogBox(int template_id, HWND owner, DLGPROC procedure, LPARAM parameter);

} // namespace tarvo
