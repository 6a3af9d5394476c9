// The module's own instance handle, kept when the library is attached.
#pragma once

struct HINSTANCE__;

namespace tarvo {

void SetModuleInstance(HINSTANCE__* instance);
HINSTANCE__* ModuleInstance();

} // namespace tarvo
