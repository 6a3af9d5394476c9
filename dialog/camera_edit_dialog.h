// The modal dialog that edits the cameras picked in UiState. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

// 1 for what it handles, 0 for everything else. Confirming an empty name lets std::out_of_range leave; every
// other exception is logged, and the answer is 0.
INT_PTR CALLBACK CameraEditDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows it over `owner`; `parameter` is not read. 1 after a confirmed edit, else 0 (or -1 when it could not
// be shown).
INT_PTR OpenCameraEditDialog(HWND owner, LPARAM parameter);

} // namespace tarvo
