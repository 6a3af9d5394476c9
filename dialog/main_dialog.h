// The plugin's modal main dialog. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

// Sent to the main dialog when the camera collection has changed: the camera table is filled again.
constexpr UINT kRefillCameraTable = WM_USER + 1;

// 1 for what it handles, 0 for everything else; opening and submitting answer with the result of their
// sequences (-1, 0 or 1). Keeps nothing between messages. No exception leaves it: one is logged, and the
// answer is 0.
INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows it and returns when it has ended. `parameter` comes with WM_INITDIALOG; the procedure does not read
// it.
void OpenMainDialog(HWND owner, LPARAM parameter);

} // namespace tarvo
