// Finds the texts, and makes the plugin's folder before the first store opens its log.
#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

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
    tarvo_test::plugin_folder();
    return RUN_ALL_TESTS();
}
