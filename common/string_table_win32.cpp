#include "common/string_table.h"

#include <windows.h>

namespace tarvo {

namespace {

constexpr int kBufferLength = 256;
wchar_t g_buffer[kBufferLength];
HINSTANCE g_instance = nullptr;

} // namespace

void SetModuleInstance(HINSTANCE instance) {
    g_instance = instance;
}

HINSTANCE ModuleInstance() {
    return g_instance;
}

const wchar_t* LookUpText(unsigned id) {
    const bool found = g_instance != nullptr && ::LoadStringW(g_instance, id, g_buffer, kBufferLength) != 0;
    return found ? g_buffer : nullptr;
}

std::wstring Text(unsigned id) {
    const wchar_t* text = LookUpText(id);
    return text == nullptr ? std::wstring() : std::wstring(text);
}

} // namespace tarvo
