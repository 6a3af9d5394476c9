// Finds the texts, and makes the plugin's folder before the first store opens its log.
#include "tests/support/hang_watch.h"
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#ifdef _WIN32
#include "common/string_table.h"

#include <windows.h>
#endif

namespace {

// The program as another process (see logger_shared_test.cpp): reads the file, appends a line, and answers
// with the number of lines it found.
int append_to(const std::string& file) {
    std::ifstream reader(file);
    int lines = 0;
    for (std::string line; std::getline(reader, line);) {
        ++lines;
    }
    std::ofstream writer(file, std::ios::app);
    writer << "2024-03-07 09:05:02:045 [INFO] other" << std::endl;
    return writer ? lines : -1;
}

} // namespace

int main(int argument_count, char** arguments) {
    if (argument_count == 3 && std::string(arguments[1]) == "--append-to") {
        return append_to(arguments[2]);
    }
    ::testing::InitGoogleTest(&argument_count, arguments);
    support::HangWatch::install();
#ifdef _WIN32
    // The test program carries the module's own resources.
    tarvo::SetModuleInstance(::GetModuleHandleW(nullptr));
#endif
    // What an earlier program left in the ini file would move the logs to another folder.
    std::remove((support::plugin_folder() + "/script/qfx_plugin.ini").c_str());
    return RUN_ALL_TESTS();
}
