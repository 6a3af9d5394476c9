// Texts and paths of a scene file: UTF-16, little endian. Wide texts hold UTF-16 units on every platform.
#pragma once

#include "standin/max_file/scene_bytes.h"

#include <string>

namespace max_file {

// Up to the first zero unit; ignores an odd last byte.
std::wstring wide_from_utf16(Bytes bytes);

// False unless the whole text is a decimal number that fits.
bool read_decimal(const std::wstring& text, std::int32_t& value);

// The last part of a path; both kinds of slash separate.
std::wstring file_name_of(const std::wstring& path);

// The folder with its closing separator; empty when there is none.
std::wstring folder_of(const std::wstring& path);

// Equal for two spellings of one Windows path: lower case, backslashes only.
std::wstring folded_path(const std::wstring& path);

} // namespace max_file
