#include "common/logger.h"
#include "tests/support/own_log_folder.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <regex>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace {

using tarvo::Logger;

std::string numbered(const std::string& channel, int number) {
    return support::log_file(channel + std::to_string(number));
}

void remove_logs(const std::string& channel) {
    std::remove(support::log_file(channel).c_str());
    for (int number = 1; number < 6; ++number) {
        std::remove(numbered(channel, number).c_str());
    }
}

std::string first_line(const std::string& path) {
    const std::string content = support::read_file(path);
    return content.substr(0, content.find_first_of("\r\n"));
}

TEST(Logger, LineHasStampLevelAndMessage) {
    remove_logs("t_line");
    {
        Logger log("t_line", 5, 2, 0);
        log.Write("Create camera table successfully.", "INFO");
    }
    const std::regex form(
        "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d:\\d{3} \\[INFO\\] Create camera table successfully\\.");
    EXPECT_TRUE(std::regex_match(first_line(support::log_file("t_line")), form));
}

TEST(Logger, VersionIsAppendedToTheFolder) {
    const support::OwnLogFolder logs("2019", "t_version");
    EXPECT_EQ(logs.folder(), support::plugin_folder() + "/log2019");
    Logger("t_version", 1, 2, 0).Write("a", "INFO");
    EXPECT_TRUE(logs.has(0));
}

TEST(Logger, CompactStampHasNoHyphens) {
    remove_logs("t_compact");
    {
        Logger log("t_compact", 5, 2, 1);
        log.Write("x", "WARN");
    }
    const std::regex form("\\d{8} \\d\\d:\\d\\d:\\d\\d:\\d{3} \\[WARN\\] x");
    EXPECT_TRUE(std::regex_match(first_line(support::log_file("t_compact")), form));
}

TEST(Logger, LineIsWrittenImmediatelyAndOtherProgramsMayAppend) {
    remove_logs("t_shared");
    Logger log("t_shared", 5, 2, 0);
    log.Write("first", "INFO");
    EXPECT_EQ(support::log_lines("t_shared"), (std::vector<std::string>{"[INFO] first"}));
    {
        std::ofstream other(support::log_file("t_shared"), std::ios::app);
        other << "2024-03-07 09:05:02:045 [INFO] other" << std::endl;
    }
    log.Write("second", "INFO");
    EXPECT_EQ(support::log_lines("t_shared"),
              (std::vector<std::string>{"[INFO] first", "[INFO] other", "[INFO] second"}));
}

TEST(Logger, RotatesOnTheLineThatReachesTheLimit) {
    remove_logs("t_limit");
    {
        // Just below 1024 KB, so that a full KB is only reached by the second line.
        support::write_file(support::log_file("t_limit"), std::string(1024 * 1024 - 100, 'x') + "\n");
        Logger log("t_limit", 1, 2, 0);
        log.Write("stays below", "INFO");
        EXPECT_EQ(support::read_file(numbered("t_limit", 1)), "");
        log.Write(std::string(100, 'y'), "INFO");
        log.Write("in the new file", "INFO");
    }
    EXPECT_NE(support::read_file(numbered("t_limit", 1)).find(std::string(100, 'y')), std::string::npos);
    EXPECT_EQ(support::log_lines("t_limit"), (std::vector<std::string>{"[INFO] in the new file"}));
}

TEST(Logger, KeepsTheConfiguredNumberOfFiles) {
    remove_logs("t_keep");
    Logger log("t_keep", 1, 3, 0);
    for (int round = 0; round < 5; ++round) {
        log.Write(std::string(1024 * 1024, static_cast<char>('a' + round)), "INFO");
    }
    EXPECT_NE(support::read_file(numbered("t_keep", 1)).find("eeee"), std::string::npos);
    EXPECT_NE(support::read_file(numbered("t_keep", 2)).find("dddd"), std::string::npos);
    EXPECT_EQ(support::read_file(numbered("t_keep", 3)), "");
}

// Only Windows refuses to rename a file to an existing name, so the file keeps growing.
#ifdef _WIN32
TEST(Logger, WithOneFileTheCurrentFileGrowsAfterTheFirstRotation) {
    remove_logs("t_one");
    Logger log("t_one", 1, 1, 0);
    const std::string big(1024 * 1024, 'a');
    log.Write(big, "INFO");
    log.Write(big, "INFO");
    log.Write("after", "INFO");
    EXPECT_GT(support::read_file(support::log_file("t_one")).size(), big.size());
    EXPECT_GT(support::read_file(numbered("t_one", 1)).size(), big.size());
}
#endif

TEST(Logger, WritingWithoutAFileIsIgnored) {
    Logger unopened;
    unopened.Write("lost", "INFO");
    Logger log("no such folder/t_none", 1, 2, 0);
    log.Write("lost", "ERROR");
    EXPECT_EQ(support::read_file(support::log_file("no such folder/t_none")), "");
}

#ifndef _WIN32
TEST(Logger, FullDiskLosesTheLinesWithoutAnError) {
    const std::string file = support::log_file("t_full");
    std::remove(file.c_str());
    ASSERT_EQ(::symlink("/dev/full", file.c_str()), 0);
    Logger log("t_full", 1, 2, 0);
    log.Write("lost", "INFO");
    log.Write(std::string(3 * 1024 * 1024, 'x'), "INFO");
    EXPECT_EQ(support::read_file(numbered("t_full", 1)), "");
    std::remove(file.c_str());
}

TEST(Logger, LinesAfterAFailedWriteAreWritten) {
    remove_logs("t_glitch");
    Logger log("t_glitch", 5, 2, 0);
    log.Write("before", "INFO");
    rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit nothing_more = {1, limit.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &nothing_more), 0);
    log.Write("meanwhile", "INFO");
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    log.Write("after", "INFO");
    const std::vector<std::string> lines = support::log_lines("t_glitch");
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines.front(), "[INFO] before");
    EXPECT_EQ(lines.back(), "[INFO] after");
}
#endif

TEST(Logger, LineFeedInAMessageIsWrittenUnchanged) {
    remove_logs("t_feed");
    Logger log("t_feed", 5, 2, 0);
    log.Write("one\ntwo", "INFO");
    const std::vector<std::string> lines = support::log_lines("t_feed");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "[INFO] one");
    EXPECT_EQ(lines[1], "two");
}

TEST(Logger, NamesLongerThanAHundredBytesAreNotCut) {
    const std::string channel = "t_" + std::string(120, 'n');
    remove_logs(channel);
    Logger log(channel, 1, 2, 0);
    log.Write(std::string(1024 * 1024, 'a'), "INFO");
    log.Write("after", "INFO");
    EXPECT_EQ(support::log_lines(channel), (std::vector<std::string>{"[INFO] after"}));
    EXPECT_GT(support::read_file(numbered(channel, 1)).size(), 1024u * 1024u);
}

} // namespace
