// Rotation on real files, to the byte and to the number, and the settings of the channels.
#include "common/logger.h"
#include "scene/scene_data.h"
#include "submit/http_log.h"
#include "tests/support/log_settings.h"
#include "tests/support/own_log_folder.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

namespace {

using tarvo::Logger;
using tarvo_test::file_bytes;
using tarvo_test::log_line_bytes;
using tarvo_test::OwnLogFolder;
using tarvo_test::read_file;

constexpr std::size_t kFiveMegabytes = 5242880;
constexpr std::size_t kTwoMegabytes = 2097152;

TEST(LoggerFiles, OneByteBelowTheLimitIsNotTheLimit) {
    const OwnLogFolder logs("_below", "t_border");
    Logger log("t_border", 5, 2, 0);
    tarvo_test::fill_log(logs, kFiveMegabytes - 1 - log_line_bytes(5));
    log.Write("below", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), kFiveMegabytes - 1);
    EXPECT_FALSE(logs.has(1));
}

TEST(LoggerFiles, TheLineThatFillsTheFileToTheLimitRotatesIt) {
    const OwnLogFolder logs("_reached", "t_border");
    Logger log("t_border", 5, 2, 0);
    tarvo_test::fill_log(logs, kFiveMegabytes - log_line_bytes(5));
    log.Write("there", "INFO");
    EXPECT_EQ(file_bytes(logs.file()), 0u);
    EXPECT_EQ(file_bytes(logs.file(1)), kFiveMegabytes);
}

TEST(LoggerFiles, SceneChannelKeepsTwoFilesOfFiveMegabytes) {
    const OwnLogFolder logs("_data", "qfx_data");
    tarvo::SceneData scene;
    tarvo_test::expect_log_settings(scene.log(), logs, kFiveMegabytes, 2);
}

TEST(LoggerFiles, ClientChannelKeepsFiveFilesOfTwoMegabytes) {
    const OwnLogFolder logs("_http", "qfx_http");
    tarvo::HttpLog log;
    tarvo_test::expect_log_settings(log, logs, kTwoMegabytes, 5);
}

} // namespace
