// Files by their wide paths, for tests whose names do not fit the code page.
#pragma once

#include "tests/support/system_error.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <wchar.h>

namespace support {

inline void write_wide_file(const std::wstring& path, const std::string& content) {
    std::FILE* file = ::_wfopen(path.c_str(), L"wb");
    ASSERT_TRUE(file != nullptr) << library_error("_wfopen for writing", path, errno);
    EXPECT_EQ(content.size(), std::fwrite(content.data(), 1, content.size(), file))
        << library_error("fwrite", path, errno);
    EXPECT_EQ(0, std::fclose(file)) << library_error("fclose", path, errno);
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

} // namespace support
