#include "common/text.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace tarvo {

std::wstring RemoveChars(const std::wstring& text, const std::wstring& set) {
    std::wstring kept = text;
    for (const wchar_t unwanted : set) {
        kept.erase(std::remove(kept.begin(), kept.end(), unwanted), kept.end());
    }
    return kept;
}

std::wstring TrimSpaces(const std::wstring& text) {
    const std::wstring::size_type first = text.find_first_not_of(L' ');
    if (first == std::wstring::npos) {
        return std::wstring();
    }
    const std::wstring::size_type last = text.find_last_not_of(L' ');
    return text.substr(first, last - first + 1);
}

bool HasLoneSurrogate(const std::wstring& text) {
    const auto is_high = [](wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; };
    const auto is_low = [](wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; };
    for (std::wstring::size_type at = 0; at < text.size(); ++at) {
        if (is_high(text[at]) && at + 1 < text.size() && is_low(text[at + 1])) {
            ++at;
        } else if (is_high(text[at]) || is_low(text[at])) {
            return true;
        }
    }
    return false;
}

int ContainsAnyOf(const std::wstring& text, const std::wstring& set) {
    return text.find_first_of(set) == std::wstring::npos ? 0 : 1;
}

std::int32_t DecimalInt(const std::string& text) {
    // strtol has its own limits, which differ between the platforms.
    const long value = std::strtol(text.c_str(), nullptr, 10);
    const long lowest = std::numeric_limits<std::int32_t>::min();
    const long highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::max(lowest, std::min(highest, value)));
}

std::string::size_type FileNameStart(const std::string& path) {
    std::string::size_type separator = path.rfind('/');
    if (separator == std::string::npos) {
        separator = path.rfind('\\');
    }
    return separator == std::string::npos ? separator : separator + 1;
}

} // namespace tarvo
