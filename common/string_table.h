// The module's own instance handle, and the texts that a user can see: they live in the module's string table
// and are looked up by number (resources/resource_ids.h).
#pragma once

#include <string>

struct HINSTANCE__;

namespace tarvo {

// Set when the library is attached; null before.
void SetModuleInstance(HINSTANCE__* instance);
HINSTANCE__* ModuleInstance();

// The text in the one shared buffer of 256 wide characters, null when there is none. The next look-up
// overwrites it: copy at once, and never hand this pointer to the host.
const wchar_t* LookUpText(unsigned id);

// A copy of the text; empty when there is none.
std::wstring Text(unsigned id);

} // namespace tarvo
