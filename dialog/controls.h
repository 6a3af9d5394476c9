// Helpers for controls. Needs windows.h.
#pragma once

#include "scene/camera.h"

#include <windows.h>

#include <string>

namespace tarvo {

// A control's text is read into buffers of this size, the closing zero included.
constexpr int kControlTextLimit = 260;

inline std::wstring ControlText(HWND control) {
    wchar_t buffer[kControlTextLimit] = {};
    ::GetWindowTextW(control, buffer, kControlTextLimit);
    return buffer;
}

inline std::wstring ControlText(HWND dialog, int id) {
    return ControlText(::GetDlgItem(dialog, id));
}

// A row of the camera table; a row that does not exist has an empty text and no box.
CameraRow ReadCameraRow(HWND list, int index);

// The link to the installed user guide (fields_win32.cpp). The template's link names a page below the
// plugin's package folder, in the dialog's own language ("Guide/en/index.html"): SetHelpLinkTarget gives it
// the whole path in the machine-wide application-data folder. A link that is a whole address stays.
void SetHelpLinkTarget(HWND dialog, int link);

// Has the system open a link's target. A failure leaves an ERROR line.
void OpenLinkTarget(HWND dialog, const std::wstring& target);

// Stops the drawing of a control while it lives; afterwards the control draws once.
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
