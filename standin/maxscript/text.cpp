// Letter case, and conversions of texts.
#include "standin/base/text.h"
#include "standin/maxscript/value.h"

#include <algorithm>

namespace maxscript {

namespace {

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

Text folded(Text text) {
    std::transform(text.begin(), text.end(), text.begin(), lower_unit);
    return text;
}

bool equal_folded(const Text& one, const Text& other) {
    return folded(one) == folded(other);
}

Text text_from_utf8(const std::string& bytes) {
    return base::to_utf16(bytes);
}

std::string utf8_from_text(const Text& text) {
    return base::to_utf8(text);
}

// On Linux a wide literal holds whole code points. A lone surrogate is kept: a name may contain one.
Text text_from_wide(const std::wstring& wide) {
    Text text;
    for (const wchar_t unit : wide) {
        const auto point = static_cast<std::uint32_t>(unit);
        text += point < 0x10000 ? Text(1, static_cast<char16_t>(point))
                                : base::to_utf16(base::to_utf8(std::wstring(1, unit)));
    }
    return text;
}

// Unit by unit: the other libraries keep UTF-16 units in wide texts on every platform.
std::wstring wide_from_text(const Text& text) {
    return std::wstring(text.begin(), text.end());
}

Text text_from_number(std::int64_t number) {
    return text_from_utf8(std::to_string(number));
}

} // namespace maxscript
