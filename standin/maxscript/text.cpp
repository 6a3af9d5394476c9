// Letters and encodings of texts.
#include "standin/maxscript/value.h"

#include <algorithm>

namespace maxscript {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

struct LetterRange {
    char16_t first; // upper case
    char16_t last;
    int distance; // to the lower case; 1: upper and lower alternate, upper first
};

const LetterRange kLetters[] = {
    {u'A', u'Z', 32},   {0xC0, 0xD6, 32},   {0xD8, 0xDE, 32},  {0x100, 0x12E, 1},  {0x132, 0x136, 1},
    {0x139, 0x147, 1},  {0x14A, 0x176, 1},  {0x179, 0x17D, 1}, {0x391, 0x3A1, 32}, {0x3A3, 0x3A9, 32},
    {0x400, 0x40F, 80}, {0x410, 0x42F, 32}, {0x460, 0x480, 1}, {0x48A, 0x4BE, 1},  {0x4D0, 0x52E, 1},
};

bool is_upper_in(const LetterRange& range, char16_t unit) {
    return unit >= range.first && unit <= range.last &&
           (range.distance != 1 || (unit - range.first) % 2 == 0);
}

void append_utf8(std::string& bytes, std::uint32_t point) {
    if (point < 0x80) {
        bytes += static_cast<char>(point);
        return;
    }
    const int more = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    const std::uint32_t marks[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(marks[more] | (point >> (6 * more)));
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) {
        bytes += static_cast<char>(0x80 | ((point >> shift) & 0x3F));
    }
}

void append_point(Text& text, std::uint32_t point) {
    if (point < 0x10000) {
        text += static_cast<char16_t>(point);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

// The code point at `index`, which moves behind it. A wrong byte is U+FFFD and is passed alone.
std::uint32_t next_point(const std::string& bytes, std::size_t& index) {
    const auto lead = static_cast<unsigned char>(bytes[index++]);
    if (lead < 0x80) {
        return lead;
    }
    const int more = lead >= 0xF0 && lead < 0xF5   ? 3
                     : lead >= 0xE0 && lead < 0xF0 ? 2
                     : lead >= 0xC2 && lead < 0xE0 ? 1
                                                   : 0;
    std::uint32_t point = lead & (0x3F >> more);
    for (int i = 0; i < more; ++i) {
        const std::size_t at = index + static_cast<std::size_t>(i);
        if (at >= bytes.size() || (static_cast<unsigned char>(bytes[at]) & 0xC0) != 0x80) {
            return kReplacement;
        }
        point = (point << 6) | (static_cast<unsigned char>(bytes[at]) & 0x3F);
    }
    const bool too_long =
        (more == 2 && point < 0x800) || (more == 3 && (point < 0x10000 || point > 0x10FFFF));
    if (more == 0 || too_long || (point >= 0xD800 && point < 0xE000)) {
        return kReplacement;
    }
    index += static_cast<std::size_t>(more);
    return point;
}

std::uint32_t next_point(const Text& text, std::size_t& index) {
    const char16_t unit = text[index++];
    if (unit < 0xD800 || unit >= 0xE000) {
        return unit;
    }
    if (unit < 0xDC00 && index < text.size() && text[index] >= 0xDC00 && text[index] < 0xE000) {
        return 0x10000 + ((unit - 0xD800u) << 10) + (text[index++] - 0xDC00u);
    }
    return kReplacement;
}

} // namespace

char16_t lower_unit(char16_t unit) {
    if (unit < 0x80) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    }
    for (const LetterRange& range : kLetters) {
        if (is_upper_in(range, unit)) {
            return static_cast<char16_t>(unit + range.distance);
        }
    }
    return unit;
}

char16_t upper_unit(char16_t unit) {
    if (unit < 0x80) {
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
    }
    for (const LetterRange& range : kLetters) {
        const int upper = unit - range.distance;
        if (upper > 0 && is_upper_in(range, static_cast<char16_t>(upper))) {
            return static_cast<char16_t>(upper);
        }
    }
    return unit;
}

Text folded(Text text) {
    std::transform(text.begin(), text.end(), text.begin(), lower_unit);
    return text;
}

bool equal_folded(const Text& one, const Text& other) {
    return one.size() == other.size() && compare_folded(one, other) == 0;
}

int compare_folded(const Text& one, const Text& other) {
    const std::size_t shorter = std::min(one.size(), other.size());
    for (std::size_t i = 0; i < shorter; ++i) {
        const int difference = lower_unit(one[i]) - lower_unit(other[i]);
        if (difference != 0) {
            return difference;
        }
    }
    return one.size() == other.size() ? 0 : one.size() < other.size() ? -1 : 1;
}

Text text_from_utf8(const std::string& bytes) {
    Text text;
    text.reserve(bytes.size());
    for (std::size_t index = 0; index < bytes.size();) {
        append_point(text, next_point(bytes, index));
    }
    return text;
}

std::string utf8_from_text(const Text& text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size();) {
        append_utf8(bytes, next_point(text, index));
    }
    return bytes;
}

Text text_from_wide(const std::wstring& wide) {
    Text text;
    text.reserve(wide.size());
    for (const wchar_t unit : wide) {
        const auto point = static_cast<std::uint32_t>(unit);
        append_point(text, point > 0x10FFFF ? kReplacement : point);
    }
    return text;
}

// Units as they stand: the neighbours hold UTF-16 units in wide texts on every platform.
std::wstring wide_from_text(const Text& text) {
    return std::wstring(text.begin(), text.end());
}

Text text_from_number(std::int64_t number) {
    return text_from_utf8(std::to_string(number));
}

} // namespace maxscript
