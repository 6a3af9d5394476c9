// The type of a window handle for code that does not include windows.h. It is the very type HWND, so that
// values pass between both worlds without a cast.
#pragma once

struct HWND__;

namespace tarvo {

using WindowHandle = HWND__*;

} // namespace tarvo
