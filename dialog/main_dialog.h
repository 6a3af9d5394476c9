// The plugin's modal main dialog. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

// Sent to the main dialog when the camera collection has changed: the camera table is filled again.
constexpr UINT kRefillCameraTable = WM_USER + 1;

INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows it and returns when it has ended. `parameter` is only handed on to the camera edit dialog.
void OpenMainDialog(HWND owner, LPARAM parameter);

} // namespace tarvo
