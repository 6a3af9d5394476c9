// The tests that tests.hanging_test_is_named and tests.crash_ends_program run; see tests/CMakeLists.txt and
// tests/windows_tests.cmake.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(HangWatch, DISABLED_NeverEnds) {
    for (;;) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

TEST(HangWatch, DISABLED_Crashes) {
    volatile int* const nowhere = nullptr;
    *nowhere = 1;
}

} // namespace
