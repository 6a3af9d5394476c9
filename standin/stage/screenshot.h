// Pictures of windows. On the thread of the window. Needs windows.h.
#pragma once

#include <windows.h>

#include <string>

namespace stage {

// The whole window with its frame, also where others cover it; null: the whole screen. A PNG file; `size`
// gets its width and height. False when it could not be made.
bool take_screenshot(HWND window, const std::wstring& file, SIZE& size);

// The upper left of `frame` as far as `menu`, a menu's window, reaches in it.
bool take_menu_screenshot(HWND frame, HWND menu, const std::wstring& file, SIZE& size);

} // namespace stage
