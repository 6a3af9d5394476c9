// What size and how many files a channel has, seen from outside: on real files at the border of the size.
#pragma once

#include "common/logger.h"
#include "tests/support/own_log_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace support {

// A stamp, a blank, "[INFO]", a blank, the message and the line's end as it stands in the file.
inline std::size_t log_line_bytes(std::size_t message) {
#ifdef _WIN32
    constexpr std::size_t kLineEnd = 2;
#else
    constexpr std::size_t kLineEnd = 1;
#endif
    return (sizeof "2024-03-07 09:05:02:045 [INFO] " - 1) + message + kLineEnd;
}

inline std::size_t file_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    return file ? static_cast<std::size_t>(file.tellg()) : 0;
}

// Appends until the current file has `bytes`. Another may do so while a logger has the file open.
inline void fill_log(const OwnLogFolder& logs, std::size_t bytes) {
    const std::size_t present = file_bytes(logs.file());
    ASSERT_LE(present, bytes);
    std::ofstream(logs.file(), std::ios::binary | std::ios::app) << std::string(bytes - present, 'x');
}

// `files` counts the current file too. Before the rotation all numbers but the last are taken, and each must
// have moved on by one; the oldest is gone.
inline void expect_log_settings(tarvo::Logger& log, const OwnLogFolder& logs, std::size_t limit_bytes,
                                int files) {
    for (int number = 1; number < files; ++number) {
        write_file(logs.file(number), "number " + std::to_string(number));
    }
    fill_log(logs, limit_bytes - 1 - log_line_bytes(1));
    log.Write("a", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), limit_bytes - 1);
    EXPECT_EQ(read_file(logs.file(1)), "number 1");
    log.Write("b", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), 0u);
    EXPECT_EQ(file_bytes(logs.file(1)), limit_bytes - 1 + log_line_bytes(1));
    for (int number = 2; number < files; ++number) {
        EXPECT_EQ(read_file(logs.file(number)), "number " + std::to_string(number - 1));
    }
    EXPECT_FALSE(logs.has(files));
}

} // namespace support
