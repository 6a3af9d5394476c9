// Conversions between wide (UTF-16), UTF-8 and locale text, and three operations on wide text. The locale
// kind goes through the C runtime's "chs" locale (code page 936) and serves paths and logs; the UTF-8 kind
// serves JSON and HTTP. None reports an error; what cannot be converted is described at each. Not for use on
// two threads at once: the locale kind changes the locale of the whole process.
#pragma once

#include <string>

namespace tarvo {

// Afterwards the process runs under the "C" locale, whatever it was before (C-57). Unlike WideToLocale, which
// restores it.
std::wstring LocaleToWide(const std::string& text);

// Ends before the first character that the code page lacks. Restores the locale.
std::string WideToLocale(const std::wstring& text);

// Reads up to the first zero byte; invalid bytes become U+FFFD.
std::wstring Utf8ToWide(const std::string& text);

// Reads up to the first zero unit; an unpaired surrogate becomes U+FFFD.
std::string WideToUtf8(const std::wstring& text);

// `text` without any of the characters of `set`; the others keep their order.
std::wstring RemoveChars(const std::wstring& text, const std::wstring& set);

// Blanks (U+0020 only) at both ends are gone.
std::wstring TrimSpaces(const std::wstring& text);

// 1 when any character of `set` occurs in `text`, else 0.
int ContainsAnyOf(const std::wstring& text, const std::wstring& set);

// The characters that a camera's name must not hold, because it becomes a file name.
constexpr const wchar_t* kForbiddenNameCharacters = L"\\/:*?\"<>|";

// UTF-8 to the system's ANSI code page through UTF-16. A character that the code page lacks becomes the code
// page's default character, usually '?', never one that looks like it.
std::string Utf8ToAnsi(const std::string& text);

// True when `text` holds half of a surrogate pair: a file's name can, UTF-8 cannot.
bool HasLoneSurrogate(const std::wstring& text);

// Upper case by the system's own rules, whatever locale the C runtime is set to.
std::wstring ToUpper(const std::wstring& text);

} // namespace tarvo
