// Decides whether the main dialog may be used at all, and fills it.
#pragma once

#include "common/window_handle.h"

#include <string>

namespace tarvo {

constexpr const wchar_t* kPluginVersion = L"1.3.5";

// Compares texts, not version numbers: "1.10.0" is lower than "1.3.5" (C-01).
bool IsVersionAccepted(const std::wstring& lowest_accepted);

// False when the name before its last dot ends with a blank or a full stop, or has U+0400 to U+052F.
bool IsUsableSceneName(const std::wstring& file_name);

// 1 when the dialog was filled; 0 or -1 after a stop, which has ended the dialog. `first_opening` also
// empties the camera collection and creates the table's columns.
int RunOpeningSequence(WindowHandle dialog, bool first_opening);

} // namespace tarvo
