// Conversions between wide (UTF-16), UTF-8 and locale text, and operations on text. The locale kind goes
// through the C runtime's "chs" locale (code page 936) and serves paths and logs; the UTF-8 kind serves JSON
// and HTTP. No function reports an error; each says what becomes of text that cannot be converted. For one
// thread: the locale kind changes the locale of the whole process.
#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// Leaves the process under the "C" locale, whatever it was before (C-57).
std::wstring LocaleToWide(const std::string& text);

// Ends before the first character that the code page lacks. Restores the locale.
std::string WideToLocale(const std::wstring& text);

// Reads up to the first zero byte; invalid bytes become U+FFFD.
std::wstring Utf8ToWide(const std::string& text);

// Reads up to the first zero unit; an unpaired surrogate becomes U+FFFD.
std::string WideToUtf8(const std::wstring& text);

// UTF-8 to the system's ANSI code page through UTF-16. A character that the code page lacks becomes the code
// page's default character, usually '?', never one that looks like it.
std::string Utf8ToAnsi(const std::string& text);

// Upper case by the system's own rules, whatever locale the C runtime is set to.
std::wstring ToUpper(const std::wstring& text);

// `text` without any of the characters of `set`; the others keep their order.
std::wstring RemoveChars(const std::wstring& text, const std::wstring& set);

// Removes blanks (U+0020 only) at both ends.
std::wstring TrimSpaces(const std::wstring& text);

// 1 when any character of `set` occurs in `text`, else 0.
int ContainsAnyOf(const std::wstring& text, const std::wstring& set);

// The characters that a camera's name must not hold, because it becomes a file name.
constexpr const wchar_t* kForbiddenNameCharacters = L"\\/:*?\"<>|";

// True when `text` holds half of a surrogate pair: a file's name can, UTF-8 cannot.
bool HasLoneSurrogate(const std::wstring& text);

// The number at the beginning of `text`, read like atoi; 0 without a number, the limit when out of range.
std::int32_t DecimalInt(const std::string& text);

// Where the file name of `path` begins: after the last '/', without one after the last '\\', else npos.
std::string::size_type FileNameStart(const std::string& path);

} // namespace tarvo
