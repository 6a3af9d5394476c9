// The current file cannot be opened again after a rotation.
#include "common/logger.h"
#include "tests/support/log_settings.h"
#include "tests/support/own_log_folder.h"
#include "tests/support/patched_import.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <memory>

namespace {

// Moves the file and creates a folder of its name before the logger can create a new file.
int rename_and_take_the_name(const char* from, const char* to) {
    const bool moved = ::MoveFileA(from, to) != FALSE;
    return moved && ::CreateDirectoryA(from, nullptr) != FALSE ? 0 : -1;
}

// With a limit of nothing every line rotates: a logger that is not silent would try again at the next.
class LoggerSilent : public ::testing::Test {
protected:
    LoggerSilent() : logs("_silent", "t_silent"), silent(new tarvo::Logger("t_silent", 0, 2, 0)) {}

    // Afterwards the name is free again.
    void fail_to_reopen() {
        {
            const support::PatchedImport rename("msvcrt.dll", "rename",
                                                reinterpret_cast<void*>(&rename_and_take_the_name));
            ASSERT_TRUE(rename.installed());
            silent->Write("1", "INFO");
        }
        ASSERT_EQ(support::file_bytes(logs.file(1)), support::log_line_bytes(1));
        silent->Write("lost", "INFO");
        ASSERT_NE(::RemoveDirectoryA(logs.file().c_str()), FALSE);
    }

    const support::OwnLogFolder logs;
    const std::unique_ptr<tarvo::Logger> silent;
};

TEST_F(LoggerSilent, NothingIsWrittenAfterReopeningFails) {
    ASSERT_NO_FATAL_FAILURE(fail_to_reopen());
    silent->Write("lost", "WARN");
    silent->Write("lost", "ERROR");
    EXPECT_FALSE(logs.has(0));
    EXPECT_EQ(support::file_bytes(logs.file(1)), support::log_line_bytes(1));
}

TEST_F(LoggerSilent, LoggerCreatedLaterWrites) {
    ASSERT_NO_FATAL_FAILURE(fail_to_reopen());
    tarvo::Logger later("t_silent", 5, 2, 0);
    later.Write("22", "INFO");
    silent->Write("lost", "INFO");
    EXPECT_EQ(support::file_bytes(logs.file()), support::log_line_bytes(2));
}

} // namespace
