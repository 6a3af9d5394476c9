#include "packaging/diagnostics/wide_text_win32.h"

#include <windows.h>

#include <cstring>

namespace diagnostics {

namespace {

constexpr UINT kSimplifiedChinese = 936;

bool decode(UINT code_page, DWORD flags, const std::string& bytes, std::wstring& wide) {
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(code_page, flags, bytes.data(), size, nullptr, 0);
    wide.assign(static_cast<std::size_t>(length), L'\0');
    return size == 0 || ::MultiByteToWideChar(code_page, flags, bytes.data(), size, &wide[0], length) > 0;
}

} // namespace

std::string to_utf8(const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    if (length > 0) {
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, &text[0], length, nullptr, nullptr);
    }
    return text;
}

std::wstring from_utf8(const std::string& text) {
    std::wstring wide;
    decode(CP_UTF8, 0, text, wide);
    return wide;
}

std::string text_to_utf8(const std::string& bytes) {
    std::wstring wide;
    if (bytes.compare(0, 2, "\xFF\xFE") == 0) {
        wide.assign((bytes.size() - 2) / sizeof(wchar_t), L'\0');
        std::memcpy(&wide[0], bytes.data() + 2, wide.size() * sizeof(wchar_t));
        return to_utf8(wide);
    }
    if (decode(CP_UTF8, MB_ERR_INVALID_CHARS, bytes, wide)) {
        return bytes;
    }
    decode(kSimplifiedChinese, 0, bytes, wide);
    return to_utf8(wide);
}

} // namespace diagnostics
