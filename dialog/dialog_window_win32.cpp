#include "dialog/dialog_window.h"

#include <windows.h>

namespace tarvo {

WindowHandle DialogItem(WindowHandle dialog, int control) {
    return ::GetDlgItem(dialog, control);
}

bool IsBoxChecked(WindowHandle dialog, int control) {
    return ::IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}

void CloseDialog(WindowHandle dialog, int result) {
    ::EndDialog(dialog, result);
}

} // namespace tarvo
