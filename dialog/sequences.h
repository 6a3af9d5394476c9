// What the main dialog does when it opens, and when the user submits.
#pragma once

#include "common/platform.h"

namespace tarvo {

// Decides whether the dialog may be used at all, and fills it. 1 when it was filled; 0 or -1 after a stop,
// which has ended the dialog. `first_opening` also empties the camera collection and creates the table's
// columns.
int RunOpeningSequence(WindowHandle dialog, bool first_opening);

// Submits the scene. 1 when every step ran, 0 without a scene file or task id, -1 after every other stop.
int RunSubmitSequence(WindowHandle dialog);

// Its calls on the dialog's window. fields_win32.cpp implements them; native tests define their own. A
// control that the dialog lacks is null, with a line in the log.
WindowHandle DialogItem(WindowHandle dialog, int control);
bool IsBoxChecked(WindowHandle dialog, int control);
void CloseDialog(WindowHandle dialog, int result);

} // namespace tarvo
