#include "standin/client/text.h"

#include <windows.h>

namespace desktop_client {

bool utf8_to_wide(const std::string& text, std::wstring& wide) {
    wide.clear();
    if (text.empty()) {
        return true;
    }
    const int size = static_cast<int>(text.size());
    const int count = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (count <= 0) {
        return false;
    }
    wide.resize(static_cast<size_t>(count));
    ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, &wide[0], count);
    return true;
}

std::string wide_to_utf8(const std::wstring& text) {
    if (text.empty()) {
        return std::string();
    }
    const int size = static_cast<int>(text.size());
    const int count = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(count), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, &narrow[0], count, nullptr, nullptr);
    return narrow;
}

std::string file_name_of(const std::string& path) {
    const size_t slash = path.find_last_of("\\/");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool equal_ignoring_case(const std::string& left, const std::string& right) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (left.size() != right.size()) {
        return false;
    }
    for (size_t i = 0; i < left.size(); ++i) {
        if (lower(left[i]) != lower(right[i])) {
            return false;
        }
    }
    return true;
}

std::string collapsed(const std::string& text) {
    std::string result;
    bool gap = false;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!blank) {
            result += gap && !result.empty() ? " " : "";
            result += c;
        }
        gap = blank;
    }
    return result;
}

} // namespace desktop_client
