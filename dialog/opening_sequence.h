// Decides whether the main dialog may be used at all, and fills it. Needs windows.h.
#pragma once

#include <windows.h>

namespace tarvo {

// 1 when the dialog was filled; 0 or -1 after a stop, which has ended the dialog. `first_opening` also
// empties the camera collection and builds the table's columns.
int RunOpeningSequence(HWND dialog, bool first_opening);

} // namespace tarvo
