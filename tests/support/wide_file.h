// Files by their wide paths, for tests whose names do not fit the code page.
#pragma once

#include <cstdio>
#include <string>
#include <wchar.h>

namespace tarvo_test {

inline void write_wide_file(const std::wstring& path, const std::string& content) {
    std::FILE* file = ::_wfopen(path.c_str(), L"wb");
    if (file != nullptr) {
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    }
}

// Empty when the file cannot be read.
inline std::string read_wide_file(const std::wstring& path) {
    std::string content;
    std::FILE* file = ::_wfopen(path.c_str(), L"rb");
    if (file != nullptr) {
        char buffer[4096];
        for (std::size_t count = 1; count != 0;) {
            count = std::fread(buffer, 1, sizeof buffer, file);
            content.append(buffer, count);
        }
        std::fclose(file);
    }
    return content;
}

} // namespace tarvo_test
