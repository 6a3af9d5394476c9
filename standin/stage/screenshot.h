// Pictures of windows. On the thread of the window. Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace stage {

// Writes a PNG file of the whole window with its frame, also where others cover it. False when that fails.
bool take_screenshot(HWND window, const std::wstring& file);

// The upper left of `frame`, up to the edges of `menu`, the window of an open menu.
bool take_menu_screenshot(HWND frame, HWND menu, const std::wstring& file);

} // namespace stage
