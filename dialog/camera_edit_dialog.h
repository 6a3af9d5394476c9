// The modal dialog that edits the cameras picked in UiState. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

INT_PTR CALLBACK CameraEditDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows it over `owner`; 1 after a confirmed edit, else 0 (or -1 when it could not be shown).
INT_PTR OpenCameraEditDialog(HWND owner, LPARAM parameter);

} // namespace tarvo
