// Conversions for the diagnostics. Needs windows.h in the .cpp only.
#pragma once

#include <string>

namespace diagnostics {

std::string to_utf8(const std::wstring& wide);
std::wstring from_utf8(const std::string& text);

// A log's or a settings file's bytes: UTF-16 with its mark, UTF-8, or else the simplified-Chinese code page,
// which the plugin writes its logs in.
std::string text_to_utf8(const std::string& bytes);

} // namespace diagnostics
