#include "common/string_table.h"

#include "common/module_instance.h"

#include <windows.h>

namespace tarvo {

namespace {

constexpr int kBufferLength = 256;
wchar_t g_buffer[kBufferLength];

} // namespace

const wchar_t* LookUpText(unsigned id) {
    if (ModuleInstance() == nullptr || ::LoadStringW(ModuleInstance(), id, g_buffer, kBufferLength) == 0) {
        return nullptr;
    }
    return g_buffer;
}

std::wstring Text(unsigned id) {
    const wchar_t* text = LookUpText(id);
    return text == nullptr ? std::wstring() : std::wstring(text);
}

} // namespace tarvo
