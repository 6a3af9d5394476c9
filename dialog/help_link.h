// The dialog's link to the user guide, which is installed with the plugin.
#pragma once

#include "common/window_handle.h"

#include <string>

namespace tarvo {

// The template's link names a page below the plugin's package folder, in the dialog's own language
// ("Guide/en/index.html"). Gives the link the whole path in the machine-wide application-data folder. A link
// that is a whole address stays.
void SetHelpLinkTarget(WindowHandle dialog, int link);

// Has the system open the target of a link that was clicked. What cannot be opened leaves an ERROR line.
void OpenLinkTarget(WindowHandle dialog, const std::wstring& target);

} // namespace tarvo
