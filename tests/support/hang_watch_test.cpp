// The test that tests.hanging_test_is_named runs; see tests/CMakeLists.txt.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

TEST(HangWatch, DISABLED_NeverEnds) {
    for (;;) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}

} // namespace
