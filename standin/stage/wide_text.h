// The stage's own conversions between UTF-16 and UTF-8, apart from the plugin's, so that a fault there shows.
#pragma once

#include <string>

namespace stage {

std::wstring to_wide(const std::string& utf8);
std::string to_utf8(const std::wstring& wide);

// Bytes of unknown origin: UTF-8 when they are valid UTF-8, else the simplified-Chinese code page (936).
std::string log_bytes_to_utf8(const std::string& bytes);
bool is_utf8(const std::string& bytes);

} // namespace stage
