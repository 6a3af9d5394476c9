// Support reads a log, and another program appends to it, while the plugin has it open.
#include "common/logger.h"
#include "common/platform.h"
#include "tests/support/own_log_folder.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {

std::string backslashes(std::string path) {
    for (char& character : path) {
        character = character == '/' ? '\\' : character;
    }
    return path;
}

TEST(LoggerShared, AnotherProcessReadsAndAppends) {
    const std::string file = backslashes(support::log_file("t_process"));
    std::remove(file.c_str());
    tarvo::Logger log("t_process", 5, 2, 0);
    log.Write("first", "INFO");
    char program[MAX_PATH] = {};
    ::GetModuleFileNameA(nullptr, program, MAX_PATH);
    const std::string command = std::string("\"\"") + program + "\" --append-to \"" + file + "\"\"";
    EXPECT_EQ(std::system(command.c_str()), 1);
    log.Write("second", "INFO");
    EXPECT_EQ(support::log_lines("t_process"),
              (std::vector<std::string>{"[INFO] first", "[INFO] other", "[INFO] second"}));
}

// The log's folder is a file: lines are lost without an error.
TEST(LoggerShared, FolderThatCannotBeCreatedLosesTheLines) {
    const std::string ini = support::plugin_folder() + "/script/qfx_plugin.ini";
    tarvo::CreateFolder(support::plugin_folder() + "/script");
    support::write_file(ini, "[general]\r\nlowerversion=taken\r\n");
    support::write_file(support::plugin_folder() + "/logtaken", "a file in the folder's place");
    {
        tarvo::Logger log("t_taken", 5, 2, 0);
        log.Write("lost", "ERROR");
    }
    EXPECT_EQ(support::read_file(support::plugin_folder() + "/logtaken"), "a file in the folder's place");
    std::remove(ini.c_str());
    std::remove((support::plugin_folder() + "/logtaken").c_str());
}

// Lost lines are no error: the plugin continues.
void expect_lines_are_lost(const std::string& channel) {
    tarvo::Logger log(channel, 5, 2, 0);
    log.Write("lost", "INFO");
    log.Write("lost as well", "ERROR");
}

TEST(LoggerShared, FolderWithTheFilesNameLosesTheLines) {
    const std::string file = backslashes(support::log_file("t_folder"));
    ASSERT_TRUE(tarvo::CreateFolder(file) || tarvo::PathExists(file));
    expect_lines_are_lost("t_folder");
    EXPECT_NE(::RemoveDirectoryA(file.c_str()), FALSE);
}

TEST(LoggerShared, FileLockedByAnotherProgramLosesTheLines) {
    const std::string file = backslashes(support::log_file("t_locked"));
    HANDLE held = ::CreateFileA(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    expect_lines_are_lost("t_locked");
    ::CloseHandle(held);
    EXPECT_EQ(support::read_file(file), "");
    std::remove(file.c_str());
}

TEST(LoggerShared, AReadOnlyFileLosesTheLines) {
    const std::string file = backslashes(support::log_file("t_read_only"));
    support::write_file(file, "mine");
    ASSERT_NE(::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY), FALSE);
    expect_lines_are_lost("t_read_only");
    ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    // Root, as whom the emulator may run, writes to such a file all the same.
    EXPECT_EQ(support::read_file(file).substr(0, 4), "mine");
    std::remove(file.c_str());
}

// On Windows NUL.log is the device as well.
TEST(LoggerShared, DeviceNameLosesTheLines) {
    expect_lines_are_lost("NUL");
    std::remove(support::log_file("NUL").c_str());
}

// The lowest version follows "log" without a separator.
TEST(LoggerShared, LowestVersionIsAppendedToTheFolderName) {
    const std::string ini = support::plugin_folder() + "/script/qfx_plugin.ini";
    tarvo::CreateFolder(support::plugin_folder() + "/script");
    support::write_file(ini, "[general]\r\nlowerversion=2019\r\n");
    {
        tarvo::Logger log("t_version", 5, 2, 0);
        log.Write("here", "INFO");
    }
    const std::string file = support::plugin_folder() + "/log2019/t_version.log";
    EXPECT_NE(support::read_file(file).find("[INFO] here"), std::string::npos);
    std::remove(ini.c_str());
    std::remove(file.c_str());
}

// The key exists and has no value.
TEST(LoggerShared, EmptyLowestVersionGivesTheFolderLog) {
    const support::OwnLogFolder logs("", "t_empty");
    {
        tarvo::Logger log("t_empty", 5, 2, 0);
        log.Write("here", "INFO");
    }
    const std::string file = support::plugin_folder() + "/log/t_empty.log";
    EXPECT_NE(support::read_file(file).find("[INFO] here"), std::string::npos);
}

} // namespace
