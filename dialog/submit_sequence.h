// Drives a submission from start to end.
#pragma once

#include "common/window_handle.h"

namespace tarvo {

// 1 when every step ran, 0 without a scene file or task id, -1 after every other stop.
int RunSubmitSequence(WindowHandle dialog);

// Its calls on the dialog's window. fields_win32.cpp implements them; native tests define their own.
// Null, with a line in the log, when the dialog has no such control.
WindowHandle DialogItem(WindowHandle dialog, int control);
bool IsBoxChecked(WindowHandle dialog, int control);
void CloseDialog(WindowHandle dialog, int result);

} // namespace tarvo
