#include "standin/stage/wide_text.h"

#include <windows.h>

namespace stage {

namespace {

constexpr UINT kLogCodePage = 936;

std::wstring decode(const std::string& bytes, UINT code_page, DWORD flags) {
    const int length = static_cast<int>(bytes.size());
    const int count = ::MultiByteToWideChar(code_page, flags, bytes.data(), length, nullptr, 0);
    std::wstring wide(count > 0 ? static_cast<std::size_t>(count) : 0, L'\0');
    if (count > 0) {
        ::MultiByteToWideChar(code_page, flags, bytes.data(), length, &wide[0], count);
    }
    return wide;
}

} // namespace

std::wstring to_wide(const std::string& utf8) {
    return decode(utf8, CP_UTF8, 0);
}

std::string to_utf8(const std::wstring& wide) {
    const int length = static_cast<int>(wide.size());
    const int count = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(count > 0 ? static_cast<std::size_t>(count) : 0, '\0');
    if (count > 0) {
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, &utf8[0], count, nullptr, nullptr);
    }
    return utf8;
}

bool is_utf8(const std::string& bytes) {
    return bytes.empty() || !decode(bytes, CP_UTF8, MB_ERR_INVALID_CHARS).empty();
}

std::string log_bytes_to_utf8(const std::string& bytes) {
    return is_utf8(bytes) ? bytes : to_utf8(decode(bytes, kLogCodePage, 0));
}

} // namespace stage
