#include "common/string_table.h"

#include "common/logger.h"

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
    if (text == nullptr) {
        const DWORD error = ::GetLastError();
        WriteErrorLine(kUiChannel, "A text could not be loaded: number " + std::to_string(id) +
                                       ", system error " + std::to_string(error));
        return std::wstring();
    }
    return text;
}

} // namespace tarvo
