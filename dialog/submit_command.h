// The submit button: the submit sequence on the real dialog. Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace tarvo {

int RunSubmitCommand(HWND dialog, const std::wstring& caption, const std::wstring& language_switch);

} // namespace tarvo
