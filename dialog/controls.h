// Helpers for controls. Needs windows.h.
#pragma once

#include "dialog/sequences.h"
#include "scene/camera.h"

#include <windows.h>

#include <string>

namespace tarvo {

// A control's text is read into buffers of this size, the closing zero included.
constexpr int kControlTextLimit = 260;

// What could not be read is empty, and the log has a line.
std::wstring ControlText(HWND control);

inline std::wstring ControlText(HWND dialog, int id) {
    return ControlText(DialogItem(dialog, id));
}

// Shows `text` in a control; the log has a line when that fails.
void SetControlText(HWND dialog, int id, const std::wstring& text);

// Of the radio buttons for the block count the first one.
void CheckNoBlocks(HWND dialog);

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
