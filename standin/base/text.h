// UTF-8 and UTF-16, and words of ASCII. Wide texts hold UTF-16 units on every platform. Invalid input becomes
// U+FFFD in both directions. The plugin's conversions are not used, so that a bug in them shows.
#pragma once

#include <string>
#include <vector>

namespace base {

bool is_utf8(const std::string& bytes);

std::wstring to_wide(const std::string& utf8);
std::u16string to_utf16(const std::string& utf8);
std::string to_utf8(const std::wstring& wide);
std::string to_utf8(const std::u16string& utf16);

// For identifiers and header names: only ASCII letters are folded.
bool equal_ignoring_case(const std::string& left, const std::string& right);

// Every run of blanks and line ends becomes one blank, and those at both ends are removed.
std::string collapsed(const std::string& text);

// Without their line ends, LF or CR LF.
std::vector<std::string> lines_of(const std::string& text);

// The texts with ", " between them.
std::string comma_list(const std::vector<std::string>& texts);

} // namespace base
