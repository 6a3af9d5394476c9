#include "common/text.h"

#include <windows.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <vector>

namespace tarvo {

namespace {

constexpr const char* kChineseLocale = "chs";

// Empty when the system does not convert (C-65). No encoding needs more units than the text has bytes, so one
// pass is enough.
std::wstring to_wide(UINT code_page, const char* text, int length) {
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    if (length > 0) {
        wide.resize(
            static_cast<std::size_t>(::MultiByteToWideChar(code_page, 0, text, length, &wide[0], length)));
    }
    return wide;
}

void append_narrow(std::string& narrow, UINT code_page, DWORD flags, const wchar_t* begin,
                   const wchar_t* end) {
    const int units = static_cast<int>(end - begin);
    if (units == 0) {
        return;
    }
    const std::size_t length = narrow.size();
    const int count = ::WideCharToMultiByte(code_page, flags, begin, units, nullptr, 0, nullptr, nullptr);
    narrow.resize(length + static_cast<std::size_t>(count));
    ::WideCharToMultiByte(code_page, flags, begin, units, &narrow[length], count, nullptr, nullptr);
}

} // namespace

std::wstring LocaleToWide(const std::string& text) {
    std::setlocale(LC_ALL, kChineseLocale);
    const std::size_t count = text.size() + 1;
    std::vector<wchar_t> buffer(count, L'\0');
    std::mbstowcs(buffer.data(), text.c_str(), count);
    buffer.back() = L'\0';
    std::wstring result(buffer.data());
    // The locale from before the call is not restored (C-57).
    std::setlocale(LC_ALL, "C");
    return result;
}

std::string WideToLocale(const std::wstring& text) {
    const std::string saved = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, kChineseLocale);
    const std::size_t count = 2 * text.size() + 1;
    std::vector<char> buffer(count, '\0');
    // A character outside the code page stops the conversion; the text before it is the result.
    std::wcstombs(buffer.data(), text.c_str(), count);
    buffer.back() = '\0';
    std::string result(buffer.data());
    std::setlocale(LC_ALL, saved.c_str());
    return result;
}

std::wstring Utf8ToWide(const std::string& text) {
    return to_wide(CP_UTF8, text.c_str(), static_cast<int>(std::strlen(text.c_str())));
}

// An analysis text is megabytes of ASCII with a few names in between: ASCII runs are copied, and the system
// converts only the rest. A run never ends inside a surrogate pair.
std::string WideToUtf8(const std::wstring& text) {
    const wchar_t* at = text.c_str();
    const wchar_t* const end = at + std::wcslen(at);
    std::string utf8;
    utf8.reserve(static_cast<std::size_t>(end - at));
    while (at != end) {
        const wchar_t* const ascii_end = std::find_if(at, end, [](wchar_t unit) { return unit >= 0x80; });
        const std::size_t length = utf8.size();
        utf8.resize(length + static_cast<std::size_t>(ascii_end - at));
        std::transform(at, ascii_end, utf8.begin() + static_cast<std::ptrdiff_t>(length),
                       [](wchar_t unit) { return static_cast<char>(unit); });
        at = std::find_if(ascii_end, end, [](wchar_t unit) { return unit < 0x80; });
        append_narrow(utf8, CP_UTF8, 0, ascii_end, at);
    }
    return utf8;
}

std::string Utf8ToAnsi(const std::string& text) {
    const std::wstring wide = Utf8ToWide(text);
    // Best fit would turn U+FF02 into a quotation mark and U+FF0F into a slash. UTF-8 as the ANSI page
    // refuses the flag.
    const DWORD flags = ::GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    std::string ansi;
    append_narrow(ansi, CP_ACP, flags, wide.data(), wide.data() + wide.size());
    return ansi;
}

std::wstring ToUpper(const std::wstring& text) {
    std::wstring upper = text;
    if (!upper.empty()) {
        ::CharUpperBuffW(&upper[0], static_cast<DWORD>(upper.size()));
    }
    return upper;
}

} // namespace tarvo
