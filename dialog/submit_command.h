// The submit button: the submit sequence on the real dialog. Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo {

// The result is that of RunSubmitSequence (submit_sequence.h). `caption` and `language_switch` are those of
// the boxes.
int RunSubmitCommand(HWND dialog, const std::wstring& caption, const std::wstring& language_switch);

} // namespace tarvo
