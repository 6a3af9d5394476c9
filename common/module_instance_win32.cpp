#include "common/module_instance.h"

namespace tarvo {

namespace {

HINSTANCE__* g_instance = nullptr;

} // namespace

void SetModuleInstance(HINSTANCE__* instance) {
    g_instance = instance;
}

HINSTANCE__* ModuleInstance() {
    return g_instance;
}

} // namespace tarvo
