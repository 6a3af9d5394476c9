// Creates the plugin's folder, so that its logs can be opened, and deletes the ini file of earlier programs:
// without it the client counts as not set up.
#include "tests/product/module/data_folder.h"
#include "tests/support/hang_watch.h"

#include <gtest/gtest.h>

int main(int argument_count, char** arguments) {
    ::testing::InitGoogleTest(&argument_count, arguments);
    support::HangWatch::install();
    ::CreateDirectoryW(plugin_folder().c_str(), nullptr);
    ::DeleteFileW((plugin_folder() + L"\\script\\qfx_plugin.ini").c_str());
    return RUN_ALL_TESTS();
}
