// UTF-8 and UTF-16, and the last part of a path. Paths in requests are UTF-8 and may mix both kinds of slash.
#pragma once

#include <string>

namespace desktop_client {

// False for bytes that are not UTF-8; `wide` is then empty.
bool utf8_to_wide(const std::string& text, std::wstring& wide);
std::string wide_to_utf8(const std::wstring& text);

std::string file_name_of(const std::string& path);

// Header names are compared without regard to case, ASCII only.
bool equal_ignoring_case(const std::string& left, const std::string& right);

// Every run of blanks and line ends becomes one blank.
std::string collapsed(const std::string& text);

} // namespace desktop_client
