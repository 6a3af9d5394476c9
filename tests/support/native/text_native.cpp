// The conversions where there is no Windows: the C library's iconv. wchar_t has 32 bits here but holds UTF-16
// units, one in each, so that lengths, order and limits are those of the product.
#include "common/text.h"

#include <cwctype>
#include <iconv.h>
#include <vector>

namespace tarvo {

namespace {

constexpr const char* kCodePage936 = "CP936";

class Converter {
public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
    ~Converter() { iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Converts until the first thing that cannot be converted; returns how many bytes of `in` were read.
    std::size_t convert(const std::string& in, std::string& out) {
        std::vector<char> source(in.begin(), in.end());
        std::vector<char> target(in.size() * 4 + 16);
        char* from = source.data();
        char* to = target.data();
        std::size_t from_left = source.size();
        std::size_t to_left = target.size();
        iconv(handle_, &from, &from_left, &to, &to_left);
        out.assign(target.data(), target.size() - to_left);
        return in.size() - from_left;
    }

private:
    iconv_t handle_;
};

std::wstring from_utf16_bytes(const std::string& bytes) {
    std::wstring text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const unsigned low = static_cast<unsigned char>(bytes[at]);
        const unsigned high = static_cast<unsigned char>(bytes[at + 1]);
        text += static_cast<wchar_t>(high << 8 | low);
    }
    return text;
}

std::string to_utf16_bytes(const std::wstring& text) {
    std::string bytes;
    for (const wchar_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8 & 0xFF);
    }
    return bytes;
}

bool is_high(wchar_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool is_low(wchar_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void append_code_point(std::wstring& text, unsigned code) {
    if (code >= 0x10000) {
        text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(code);
    }
}

void append_utf8(std::string& text, unsigned code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        text += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

struct Lead {
    unsigned char first;
    unsigned char last;
    int continuations;
    unsigned char
        second_low; // limits of the second byte: no overlong forms, no surrogates, nothing past U+10FFFF
    unsigned char second_high;
};

constexpr Lead kLeads[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

const Lead* find_lead(unsigned char byte) {
    for (const Lead& lead : kLeads) {
        if (byte >= lead.first && byte <= lead.last) {
            return &lead;
        }
    }
    return nullptr;
}

// One character from `at` on; the number of bytes it took. What is broken becomes U+FFFD.
std::size_t decode(const std::string& text, std::size_t at, unsigned& code) {
    const unsigned char first = static_cast<unsigned char>(text[at]);
    if (first < 0x80) {
        code = first;
        return 1;
    }
    const Lead* lead = find_lead(first);
    code = 0xFFFD;
    if (lead == nullptr) {
        return 1;
    }
    unsigned value = first & (0x3F >> lead->continuations);
    for (int index = 1; index <= lead->continuations; ++index) {
        const std::size_t position = at + static_cast<std::size_t>(index);
        const unsigned char next = position < text.size() ? static_cast<unsigned char>(text[position]) : 0;
        const unsigned char low = index == 1 ? lead->second_low : 0x80;
        const unsigned char high = index == 1 ? lead->second_high : 0xBF;
        if (next < low || next > high) {
            return static_cast<std::size_t>(index);
        }
        value = value << 6 | (next & 0x3F);
    }
    code = value;
    return static_cast<std::size_t>(lead->continuations) + 1;
}

} // namespace

std::wstring LocaleToWide(const std::string& text) {
    std::string bytes;
    Converter("UTF-16LE", kCodePage936).convert(text.c_str(), bytes);
    return from_utf16_bytes(bytes);
}

std::string WideToLocale(const std::wstring& text) {
    std::string bytes;
    Converter(kCodePage936, "UTF-16LE").convert(to_utf16_bytes(text.c_str()), bytes);
    return bytes;
}

std::wstring Utf8ToWide(const std::string& text) {
    const std::string visible = text.c_str();
    std::wstring wide;
    for (std::size_t at = 0; at < visible.size();) {
        unsigned code = 0;
        at += decode(visible, at, code);
        append_code_point(wide, code);
    }
    return wide;
}

std::string WideToUtf8(const std::wstring& text) {
    const std::wstring visible = text.c_str();
    std::string narrow;
    for (std::size_t at = 0; at < visible.size(); ++at) {
        const wchar_t unit = visible[at];
        if (is_high(unit) && at + 1 < visible.size() && is_low(visible[at + 1])) {
            const unsigned high = static_cast<unsigned>(unit - 0xD800);
            append_utf8(narrow, 0x10000 + (high << 10 | static_cast<unsigned>(visible[at + 1] - 0xDC00)));
            ++at;
        } else {
            append_utf8(narrow, is_high(unit) || is_low(unit) ? 0xFFFDu : static_cast<unsigned>(unit));
        }
    }
    return narrow;
}

// The ANSI code page of the natively tested world is 936.
std::string Utf8ToAnsi(const std::string& text) {
    return WideToLocale(Utf8ToWide(text));
}

std::wstring ToUpper(const std::wstring& text) {
    std::wstring upper = text;
    for (wchar_t& unit : upper) {
        unit = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(unit)));
    }
    return upper;
}

} // namespace tarvo
