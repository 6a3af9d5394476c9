// The calls on a dialog's window that the portable code needs. dialog_window_win32.cpp implements them, a
// test program without windows defines its own.
#pragma once

#include "common/window_handle.h"

namespace tarvo {

WindowHandle DialogItem(WindowHandle dialog, int control);
bool IsBoxChecked(WindowHandle dialog, int control);
void CloseDialog(WindowHandle dialog, int result);

} // namespace tarvo
