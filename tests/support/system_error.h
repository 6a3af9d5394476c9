// What the system answered when a helper of the tests could not do its work. Needs windows.h.
#pragma once

#include "common/text.h"

#include <windows.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace support {

// "CreateFileW failed for 'C:\x': error 32 (Sharing violation.)"; `code` is what GetLastError returned.
inline std::string system_error(const char* call, const std::wstring& subject, DWORD code) {
    wchar_t text[256] = {};
    DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                    0, text, 256, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) {
        --length;
    }
    return std::string(call) + " failed for '" + tarvo::WideToUtf8(subject) + "': error " +
           std::to_string(code) + " (" + tarvo::WideToUtf8(std::wstring(text, length)) + ")";
}

// The same for a function of the C library; `code` is errno.
inline std::string library_error(const char* call, const std::wstring& subject, int code) {
    return std::string(call) + " failed for '" + tarvo::WideToUtf8(subject) + "': errno " +
           std::to_string(code) + " (" + std::strerror(code) + "), last error " +
           std::to_string(::GetLastError());
}

} // namespace support
