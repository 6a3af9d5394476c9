#include "tests/support/random_names.h"

#include "common/text.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace support {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Each is as likely as any other, however many characters it has.
constexpr Range
    kRanges[] =
        {
            {'a', 'z'},         {'A', 'Z'},
            {'0', '9'},         {0x7F, 0xA0},   // the second row of control characters
            {0xA1, 0x17F},      {0x180, 0x2FF}, // with U+02BA, which best fit makes a quotation mark
            {0x300, 0x36F},                     // combining
            {0x370, 0x52F},     {0x590, 0x6FF}, // from right to left
            {0xE00, 0xE7F},     {0x1E00, 0x1FFF},
            {0x2000, 0x206F}, // blanks, quotes, marks of direction, line ends
            {0x2100, 0x22FF},   {0x2460, 0x27BF},
            {0x2900, 0x2AFF},   {0x3000, 0x30FF},
            {0x4E00, 0x9FFF},   {0xAC00, 0xD7A3},
            {0xE000, 0xF8FF}, // private use
            {0xF020, 0xF07F}, // where other systems put what Windows forbids
            {0xF900, 0xFAFF},   {0xFB00, 0xFDFF},
            {0xFE20, 0xFE6F},   {0xFF00, 0xFFEF}, // full-width and half-width
            {0xFFF0, 0xFFFF},   {0x10000, 0x1FFFF},
            {0x1F300, 0x1F6FF}, {0x20000, 0x2FFFF},
            {0x30000, 0xEFFFF}, {0xF0000, 0x10FFFF},
};

constexpr wchar_t kPunctuation[] = L" !#$%&'()+,-.;=@[]^_`{}~";

// Look-alikes of what has a meaning on a command line or in a path.
constexpr wchar_t kLookAlikes[] =
    L"\xFF02\x02BA\x02DD\x2033\x201C\x201D\x201E\x201F\x2036\x301D\x301E\x301F\x00AB\x00BB\x275D\x275E"
    L"\x2018\x2019\x201A\x201B\x2032\x2035\xFF07\xFF0A\x2217\x204E\xFF1F\x00BF\xFF1A\xA789\x2236\xFF3C"
    L"\x2216\x29F5\xFE68\x20E5\xFF0F\x2044\x2215\xFF5C\x2223\xFF1C\xFF1E\x2039\x203A\x3008\x3009\xFF0D"
    L"\x2010\x2013\x2014\x2212\xFF20\xFE6B\xFF0E\x2024\x3000\x00A0\x2003\x202F";

// A command line in which the quotation marks, separators and wildcards are look-alikes.
constexpr const wchar_t* kInjections[] = {
    L"x\xFF02 -sdel -- \xFF02*", L"\x02BA -x!*\x02BA",   L"..\xFF0F..\xFF0Fplanted",
    L"..\xFF3C..\xFF3Cplanted",  L"\xFF02 -p1 \xFF02",   L"\xFF02 @list \xFF02",
    L"\x201D -sfx\x201D",        L"-\xFF1A\xFF1F\xFF0A", L"a\xFF02 -r \xFF02Z\xFF1A\xFF3C",
    L"@\xFF02 -i!\xFF0A \xFF02",
};

constexpr wchar_t kForbidden[] = L"\"*/:<>?\\|";

template <class Table>
std::uint32_t length_of(const Table& table) {
    return static_cast<std::uint32_t>(std::end(table) - std::begin(table));
}

void append(std::wstring& text, std::uint32_t code) {
    if (code >= 0x10000) {
        text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + (code & 0x3FF));
    } else {
        text += static_cast<wchar_t>(code);
    }
}

// What `code_page` makes of a unit when it may take a look-alike.
std::wstring fitted(wchar_t unit, UINT code_page) {
    char bytes[8] = {};
    const int count = ::WideCharToMultiByte(code_page, 0, &unit, 1, bytes, sizeof bytes, nullptr, nullptr);
    wchar_t back[8] = {};
    const int units = ::MultiByteToWideChar(code_page, 0, bytes, count, back, 8);
    return std::wstring(back, static_cast<std::size_t>(std::max(units, 0)));
}

// Bytes of one code page read in the other.
std::wstring misread(wchar_t unit) {
    char bytes[8] = {};
    const int count = ::WideCharToMultiByte(1252, 0, &unit, 1, bytes, sizeof bytes, nullptr, nullptr);
    wchar_t back[8] = {};
    const int units = ::MultiByteToWideChar(936, 0, bytes, count, back, 8);
    return std::wstring(back, static_cast<std::size_t>(std::max(units, 0)));
}

} // namespace

std::uint32_t RandomNames::below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>((state_ >> 33) % limit);
}

std::wstring RandomNames::character() {
    std::wstring text;
    const std::uint32_t kind = below(10);
    if (kind < 2) {
        text += kPunctuation[below(length_of(kPunctuation) - 1)];
    } else if (kind < 4) {
        text += kLookAlikes[below(length_of(kLookAlikes) - 1)];
    } else {
        const Range& range = kRanges[below(length_of(kRanges))];
        append(text, range.first + below(range.last - range.first + 1));
    }
    return text;
}

std::wstring RandomNames::injection() {
    std::wstring text = kInjections[below(length_of(kInjections))];
    std::replace(text.begin(), text.end(), L'*', L'\xFF0A');
    return text;
}

std::wstring RandomNames::next(std::size_t longest) {
    const std::uint32_t kind = below(16);
    std::wstring name = kind == 0 ? L"-" : kind == 1 ? L"@" : kind == 2 ? injection() : std::wstring();
    const std::size_t wanted = below(12) == 0 ? longest : 1 + below(12);
    const auto bytes = [](const std::wstring& text) { return tarvo::WideToUtf8(text).size(); };
    for (std::size_t units = name.size(); units < wanted;) {
        const std::wstring more = character();
        if (bytes(name + more) > longest) {
            break;
        }
        name += more;
        units += more.size();
    }
    while (!name.empty() && (name.back() == L' ' || name.back() == L'.')) {
        name.pop_back();
    }
    return name.empty() ? L"n" : name;
}

std::vector<std::wstring> neighbours(const std::wstring& name, RandomNames& random, std::size_t count) {
    std::vector<std::wstring> result;
    for (std::size_t tries = 0; result.size() < count && tries < 8 * count; ++tries) {
        const std::size_t at = random.below(static_cast<std::uint32_t>(name.size()));
        const std::wstring options[] = {
            std::wstring(), L"b", L"?", fitted(name[at], 1252), fitted(name[at], 936), misread(name[at])};
        std::wstring other = name;
        other.replace(at, 1, options[random.below(length_of(options))]);
        // For a wildcard any letter stands; a path of folders stays one.
        for (wchar_t& unit : other) {
            if (unit != L'/' && unit != L'\\' && std::wstring(kForbidden).find(unit) != std::wstring::npos) {
                unit = L'q';
            }
        }
        if (other != name && !tarvo::HasLoneSurrogate(other)) {
            result.push_back(other);
        }
    }
    return result;
}

std::string escaped(const std::wstring& text) {
    std::string result;
    for (const wchar_t unit : text) {
        char form[8] = {};
        std::snprintf(form, sizeof form, unit >= L' ' && unit < 0x7F ? "%c" : "\\u%04X",
                      static_cast<unsigned>(unit));
        result += form;
    }
    return result;
}

} // namespace support
