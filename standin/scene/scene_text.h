// Texts of a scene file and of the analysis: UTF-16 (little endian) and UTF-8. Wide texts hold UTF-16 units
// on every platform. What cannot be converted becomes U+FFFD.
#pragma once

#include "standin/scene/scene_bytes.h"

#include <string>

namespace standin {

// Up to the first zero unit; an odd last byte is left out.
std::wstring wide_from_utf16(Bytes bytes);

// Up to the first zero byte.
std::wstring wide_from_utf8(Bytes bytes);

std::string utf8_from_wide(const std::wstring& text);

// For error sentences, which are ASCII.
std::wstring wide_from_ascii(const std::string& text);

// False unless the whole text is a decimal number that fits.
bool read_decimal(const std::wstring& text, std::int32_t& value);

// The last part of a path; both kinds of slash separate.
std::wstring file_name_of(const std::wstring& path);

// The folder with its closing separator; empty when there is none.
std::wstring folder_of(const std::wstring& path);

// A form in which two spellings of one Windows path are equal: lower case, backslashes only.
std::wstring folded_path(const std::wstring& path);

} // namespace standin
