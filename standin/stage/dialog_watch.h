// Wraps the module's dialog procedures: records each message with its result and catches exceptions. Needs
// windows.h.
#pragma once

#include "standin/stage/transcript.h"

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

namespace stage {

constexpr int kMainTemplate = 102;
constexpr int kEditTemplate = 103;

class DialogWatch {
public:
    // `windows_radio_buttons`: see play_windows_radio_buttons.
    DialogWatch(Transcript& transcript, HWND frame, bool windows_radio_buttons)
        : transcript_(transcript), frame_(frame), windows_radio_buttons_(windows_radio_buttons) {}

    // Replaces the module's DialogBoxParamW and EndDialog. One watch at a time.
    void install(HMODULE module);

    // The open dialog made from this template; null when there is none.
    HWND window(int template_id) const;
    // The dialog on top; null when none is open.
    HWND top() const;

    // "main", "edit", "frame", "none", or "other".
    std::string name_of_window(HWND window) const;

    // What the replacements do.
    INT_PTR show(HINSTANCE instance, const wchar_t* template_name, HWND owner, DLGPROC procedure,
                 LPARAM parameter);
    BOOL end(HWND dialog, INT_PTR result);
    INT_PTR message(HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

private:
    struct OpenDialog {
        int template_id;
        DLGPROC procedure;
        HWND window; // null until the first message
    };
    OpenDialog find(HWND dialog);
    INT_PTR guarded_call(const OpenDialog& open, HWND dialog, UINT message, WPARAM w_param, LPARAM l_param);

    Transcript& transcript_;
    HWND frame_;
    bool windows_radio_buttons_;
    mutable std::mutex mutex_;
    std::vector<OpenDialog> open_;
};

const char* dialog_name(int template_id);

// Radio buttons and the focus as on Windows (radio_focus.cpp): an automatic radio button that gets the focus
// selects itself and reports a click to its dialog; see BM_SETDONTCLICK on learn.microsoft.com. Wine only
// reports the click, and only while the button is not selected.

// Subclasses the automatic radio buttons of this dialog.
void play_windows_radio_buttons(HWND dialog);

// Whether this WM_COMMAND is the report of Wine that the ones played here replace.
bool is_replaced_radio_click(WPARAM w_param, LPARAM l_param);

} // namespace stage
