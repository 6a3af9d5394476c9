// Everything the plugin shows runs inside the activation context of the module's own manifest (resource 2),
// so that version 6 of the common controls applies whatever the host has. When the context cannot be
// activated the call is not made. What could not be shown leaves an ERROR line with the system's error in the
// channel "qfx_ui". Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo {

// 0 when the context cannot be activated.
int IsolatedMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption, UINT style,
                       WORD language);

// -1 when the context cannot be activated. The window classes that the templates name are registered first.
INT_PTR IsolatedDialogBox(int template_id, HWND owner, DLGPROC procedure, LPARAM parameter);

} // namespace tarvo
