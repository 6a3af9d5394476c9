// Finds the texts, and makes the plugin's folder before the first store opens its log.
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>

#ifdef _WIN32
#include "common/module_instance.h"

#include <windows.h>
#endif

int main(int argument_count, char** arguments) {
    ::testing::InitGoogleTest(&argument_count, arguments);
#ifdef _WIN32
    // The test program carries the module's own resources.
    tarvo::SetModuleInstance(::GetModuleHandleW(nullptr));
#endif
    // What an earlier program left in the ini file would move the logs to another folder.
    std::remove((tarvo_test::plugin_folder() + "/script/qfx_plugin.ini").c_str());
    return RUN_ALL_TESTS();
}
