#include "standin/scene/scene_text.h"

#include <cwctype>
#include <limits>

namespace standin {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool is_high_surrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool is_low_surrogate(std::uint32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append_wide(std::wstring& text, std::uint32_t point) {
    if (point < 0x10000) {
        text.push_back(static_cast<wchar_t>(point));
        return;
    }
    text.push_back(static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10)));
    text.push_back(static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
}

void append_utf8(std::string& text, std::uint32_t point) {
    static const struct {
        std::uint32_t below;
        std::uint32_t lead;
        int following;
    } kForms[] = {{0x80, 0x00, 0}, {0x800, 0xC0, 1}, {0x10000, 0xE0, 2}, {0x110000, 0xF0, 3}};
    for (const auto& form : kForms) {
        if (point < form.below) {
            text.push_back(static_cast<char>(form.lead | (point >> (6 * form.following))));
            for (int rest = form.following - 1; rest >= 0; --rest) {
                text.push_back(static_cast<char>(0x80 | ((point >> (6 * rest)) & 0x3F)));
            }
            return;
        }
    }
}

// The code point at `index`, which moves past what was read: past one byte when it begins no valid sequence.
std::uint32_t next_point(Bytes bytes, std::size_t& index) {
    const std::uint8_t lead = bytes.data[index++];
    if (lead < 0x80) {
        return lead;
    }
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size - index < static_cast<std::size_t>(following)) {
        return kReplacement;
    }
    std::uint32_t point = lead & (0x3Fu >> following);
    for (int step = 0; step < following; ++step) {
        const std::uint8_t byte = bytes.data[index + static_cast<std::size_t>(step)];
        if ((byte & 0xC0) != 0x80) {
            return kReplacement;
        }
        point = (point << 6) | (byte & 0x3Fu);
    }
    static const std::uint32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (point < kSmallest[following] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
        return kReplacement;
    }
    index += static_cast<std::size_t>(following);
    return point;
}

} // namespace

std::wstring wide_from_utf16(Bytes bytes) {
    std::wstring text;
    ByteCursor cursor(bytes);
    std::uint16_t unit = 0;
    while (cursor.read(unit) && unit != 0) {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring wide_from_utf8(Bytes bytes) {
    std::wstring text;
    std::size_t index = 0;
    while (index < bytes.size && bytes.data[index] != 0) {
        append_wide(text, next_point(bytes, index));
    }
    return text;
}

std::string utf8_from_wide(const std::wstring& text) {
    std::string utf8;
    for (std::size_t index = 0; index < text.size(); ++index) {
        std::uint32_t point = static_cast<std::uint32_t>(text[index]);
        const std::uint32_t next = index + 1 < text.size() ? static_cast<std::uint32_t>(text[index + 1]) : 0;
        if (is_high_surrogate(point) && is_low_surrogate(next)) {
            point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00);
            ++index;
        } else if (is_high_surrogate(point) || is_low_surrogate(point) || point > 0x10FFFF) {
            point = kReplacement;
        }
        append_utf8(utf8, point);
    }
    return utf8;
}

std::wstring wide_from_ascii(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

bool read_decimal(const std::wstring& text, std::int32_t& value) {
    const bool negative = !text.empty() && text[0] == L'-';
    const std::size_t first = negative ? 1 : 0;
    if (text.size() == first || text.size() > first + 10) {
        return false;
    }
    std::int64_t number = 0;
    for (std::size_t index = first; index < text.size(); ++index) {
        if (text[index] < L'0' || text[index] > L'9') {
            return false;
        }
        number = number * 10 + (text[index] - L'0');
    }
    number = negative ? -number : number;
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max()) {
        return false;
    }
    value = static_cast<std::int32_t>(number);
    return true;
}

std::wstring file_name_of(const std::wstring& path) {
    return path.substr(folder_of(path).size());
}

std::wstring folder_of(const std::wstring& path) {
    const std::wstring::size_type separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator + 1);
}

std::wstring folded_path(const std::wstring& path) {
    std::wstring folded;
    for (const wchar_t unit : path) {
        folded.push_back(unit == L'/' ? L'\\'
                                      : static_cast<wchar_t>(std::towlower(static_cast<wint_t>(unit))));
    }
    return folded;
}

} // namespace standin
