// Helpers for controls. Needs windows.h.
#pragma once

#include "scene/camera_rules.h"

#include <windows.h>

#include <string>

namespace tarvo {

// What a control shows is read into buffers of this size, the closing zero included.
constexpr int kControlTextLimit = 260;

inline std::wstring ControlText(HWND control) {
    wchar_t buffer[kControlTextLimit] = {};
    ::GetWindowTextW(control, buffer, kControlTextLimit);
    return buffer;
}

inline std::wstring ControlText(HWND dialog, int id) {
    return ControlText(::GetDlgItem(dialog, id));
}

// A row of the camera table (camera_table_win32.cpp). A row that is not there reads as an empty text without
// a box.
CameraRow ReadCameraRow(HWND list, int index);

// While it lives, the control does not draw; afterwards it draws once.
class RedrawPause {
public:
    explicit RedrawPause(HWND control) : control_(control) {
        ::SendMessageW(control_, WM_SETREDRAW, FALSE, 0);
    }
    ~RedrawPause() {
        ::SendMessageW(control_, WM_SETREDRAW, TRUE, 0);
        ::InvalidateRect(control_, nullptr, TRUE);
    }
    RedrawPause(const RedrawPause&) = delete;
    RedrawPause& operator=(const RedrawPause&) = delete;

private:
    HWND control_;
};

} // namespace tarvo
