// Rotation on real files, to the byte and to the number, and the settings of the channels.
#include "common/logger.h"
#include "common/platform.h"
#include "scene/scene_data.h"
#include "tests/support/log_settings.h"
#include "tests/support/own_log_folder.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

using support::file_bytes;
using support::log_line_bytes;
using support::OwnLogFolder;
using support::read_file;
using tarvo::Logger;

constexpr std::size_t kFiveMegabytes = 5242880;
constexpr std::size_t kTwoMegabytes = 2097152;

TEST(LoggerFiles, OneByteBelowTheLimitDoesNotRotate) {
    const OwnLogFolder logs("_below", "t_border");
    Logger log("t_border", 5, 2, 0);
    support::fill_log(logs, kFiveMegabytes - 1 - log_line_bytes(5));
    log.Write("below", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), kFiveMegabytes - 1);
    EXPECT_FALSE(logs.has(1));
}

TEST(LoggerFiles, LineThatReachesTheLimitRotatesTheFile) {
    const OwnLogFolder logs("_reached", "t_border");
    Logger log("t_border", 5, 2, 0);
    support::fill_log(logs, kFiveMegabytes - log_line_bytes(5));
    log.Write("there", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), 0u);
    EXPECT_EQ(file_bytes(logs.file(1)), kFiveMegabytes);
}

TEST(LoggerFiles, SceneChannelKeepsTwoFilesOfFiveMegabytes) {
    const OwnLogFolder logs("_data", "qfx_data");
    tarvo::SceneData scene;
    support::expect_log_settings(scene.log(), logs, kFiveMegabytes, 2);
}

TEST(LoggerFiles, ClientChannelKeepsFiveFilesOfTwoMegabytes) {
    const OwnLogFolder logs("_http", "qfx_http");
    tarvo::Logger log(tarvo::kHttpChannel);
    support::expect_log_settings(log, logs, kTwoMegabytes, 5);
}

TEST(LoggerFiles, MissingNumberIsSkippedOnRotation) {
    const OwnLogFolder logs("_gap", "t_gap");
    Logger log("t_gap", 1, 5, 0);
    for (const int number : {1, 3, 4}) {
        support::write_file(logs.file(number), "number " + std::to_string(number));
    }
    log.Write(std::string(1024 * 1024, 'y'), "INFO");
    EXPECT_EQ(file_bytes(logs.file()), 0u);
    EXPECT_EQ(file_bytes(logs.file(1)), log_line_bytes(1024 * 1024));
    EXPECT_EQ(read_file(logs.file(2)), "number 1");
    EXPECT_FALSE(logs.has(3));
    EXPECT_EQ(read_file(logs.file(4)), "number 3");
    EXPECT_FALSE(logs.has(5));
}

// The numbers begin at 1.
TEST(LoggerFiles, FileWithTheNumberZeroStays) {
    const OwnLogFolder logs("_zero", "t_zero");
    const std::string other = logs.folder() + "\\t_zero0.log";
    Logger log("t_zero", 1, 5, 0);
    support::write_file(other, "number 0");
    log.Write(std::string(1024 * 1024, 'y'), "INFO");
    EXPECT_EQ(file_bytes(logs.file(1)), log_line_bytes(1024 * 1024));
    EXPECT_EQ(read_file(other), "number 0");
    std::remove(other.c_str());
}

TEST(LoggerFiles, OpenCreatesAMissingFolder) {
    const OwnLogFolder logs("_again", "t_again");
    Logger log;
    ASSERT_TRUE(logs.remove_folder());
    log.Open("t_again");
    log.SetMaxSizeMB(5);
    log.Write("here", "INFO");
    EXPECT_TRUE(tarvo::PathExists(logs.folder()));
    EXPECT_NE(read_file(logs.file()).find("[INFO] here"), std::string::npos);
}

// Neither size nor number of files is set: every line fills the file.
TEST(LoggerFiles, WithoutSettingsTheFirstLineRotatesTheFile) {
    const OwnLogFolder logs("_bare", "t_bare");
    Logger log;
    log.Open("t_bare");
    log.Write("1", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), 0u);
    EXPECT_EQ(file_bytes(logs.file(1)), log_line_bytes(1));
// Only Windows refuses to rename a file to an existing name, so the file keeps growing.
#ifdef _WIN32
    log.Write("22", "INFO");
    log.Write("333", "INFO");
    EXPECT_EQ(file_bytes(logs.file(1)), log_line_bytes(1));
    EXPECT_EQ(file_bytes(logs.file()), log_line_bytes(2) + log_line_bytes(3));
    EXPECT_FALSE(logs.has(2));
#endif
}

} // namespace
