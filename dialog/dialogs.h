// The plugin's two modal dialogs. Needs windows.h.
#pragma once

#include "common/logger.h"

#include <windows.h>

namespace tarvo {

// The parameter of both dialogs. It has no data, and neither dialog reads it (C-17).
class TarvoRenderingConfigMgr : public qfx_Noncopyable {
public:
    // Created by the first call.
    static TarvoRenderingConfigMgr& instance() {
        static TarvoRenderingConfigMgr manager;
        return manager;
    }
};

// Sent to the main dialog when the camera collection has changed: it refills the camera table.
constexpr UINT kRefillCameraTable = WM_USER + 1;

// 1 for what it handles, 0 for everything else; opening and submitting return the result of their sequences
// (-1, 0 or 1). Keeps nothing between messages. No exception escapes: it is logged, and the result is 0.
INT_PTR CALLBACK MainDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows the main dialog and returns when it has ended. `parameter` comes with WM_INITDIALOG.
void OpenMainDialog(HWND owner, LPARAM parameter);

// The dialog that edits the cameras picked in UiState. 1 for what it handles, 0 for everything else.
// Confirming an empty name throws std::out_of_range (C-07); every other exception is logged, and the result
// is 0.
INT_PTR CALLBACK CameraEditDialogProc(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

// Shows the camera edit dialog. 1 after a confirmed edit, else 0; -1 when it could not be shown.
INT_PTR OpenCameraEditDialog(HWND owner, LPARAM parameter);

} // namespace tarvo
