#include "standin/base/text.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <sstream>

namespace base {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool is_high_surrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

bool is_low_surrogate(std::uint32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// Joins surrogate pairs here, because the library throws on a lone surrogate.
template <class Units>
std::string encode(const Units& units) {
    std::string utf8;
    utf8.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::uint32_t point = static_cast<std::uint32_t>(units[i]);
        const std::uint32_t next = i + 1 < units.size() ? static_cast<std::uint32_t>(units[i + 1]) : 0;
        if (is_high_surrogate(point) && is_low_surrogate(next)) {
            point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00);
            ++i;
        } else if (is_high_surrogate(point) || is_low_surrogate(point) || point > 0x10FFFF) {
            point = kReplacement;
        }
        utf8::append(point, std::back_inserter(utf8));
    }
    return utf8;
}

template <class Units>
Units decode(const std::string& bytes) {
    Units units;
    units.reserve(bytes.size());
    if (is_utf8(bytes)) {
        utf8::utf8to16(bytes.begin(), bytes.end(), std::back_inserter(units));
        return units;
    }
    std::string valid;
    utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(valid));
    utf8::utf8to16(valid.begin(), valid.end(), std::back_inserter(units));
    return units;
}

bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool is_utf8(const std::string& bytes) {
    return utf8::is_valid(bytes.begin(), bytes.end());
}

std::wstring to_wide(const std::string& utf8) {
    return decode<std::wstring>(utf8);
}

std::u16string to_utf16(const std::string& utf8) {
    return decode<std::u16string>(utf8);
}

std::string to_utf8(const std::wstring& wide) {
    return encode(wide);
}

std::string to_utf8(const std::u16string& utf16) {
    return encode(utf16);
}

bool equal_ignoring_case(const std::string& left, const std::string& right) {
    return left.size() == right.size() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](char one, char other) { return lower(one) == lower(other); });
}

std::string collapsed(const std::string& text) {
    std::string result;
    bool gap = false;
    for (const char c : text) {
        if (!is_blank(c)) {
            result += gap && !result.empty() ? " " : "";
            result += c;
        }
        gap = is_blank(c);
    }
    return result;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

std::string comma_list(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all;
}

} // namespace base
