// The few things the client does with files, all through wide calls.
#pragma once

#include "common/win32_handles.h"

#include <string>

namespace desktop_client {

bool file_exists(const std::wstring& path); // a folder is not a file

// -1 when the file cannot be asked.
long long file_size(const std::wstring& path);

// False when the file cannot be read or is larger than `limit` bytes.
bool read_file(const std::wstring& path, size_t limit, std::string& content);

// Under another name first and then renamed, so that a reader sees the whole content or no file.
bool write_file_atomically(const std::wstring& path, const std::string& content);

// Lines at the end of a file. Each one has reached the system when `append` returns: it outlives a killed
// process.
class LineFile {
public:
    bool open(const std::wstring& path);
    bool append(const std::string& line);

private:
    tarvo::FileHandle file_;
};

} // namespace desktop_client
