// Radio buttons and the focus as on Windows: an automatic radio button that gets the focus selects itself and
// reports a click to its dialog (see BM_SETDONTCLICK on learn.microsoft.com). Wine only reports the click,
// and only while the button is not selected. Needs windows.h.
#pragma once

#include <windows.h>

namespace stage {

// Subclasses the automatic radio buttons of this dialog.
void play_windows_radio_buttons(HWND dialog);

// Whether this WM_COMMAND is the report of Wine that the ones played here replace.
bool is_replaced_radio_click(WPARAM w_param, LPARAM l_param);

} // namespace stage
