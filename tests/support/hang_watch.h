// Ends the test program when one test runs too long, and prints that test's name; otherwise only the
// program's own limit would end it, and nothing would say which test it was.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

namespace support {

class HangWatch : public ::testing::EmptyTestEventListener {
public:
    // TARVO_HANG_SECONDS sets another limit than 90 seconds. Call it after InitGoogleTest.
    static void install() {
        const char* wanted = std::getenv("TARVO_HANG_SECONDS");
        const int seconds = wanted != nullptr && std::atoi(wanted) > 0 ? std::atoi(wanted) : 90;
        // gtest owns the listener and keeps it to the end of main.
        HangWatch* const watch = new HangWatch;
        ::testing::UnitTest::GetInstance()->listeners().Append(watch);
        watch->watcher_ = std::thread([watch, seconds] { watch->run(seconds); });
    }

    ~HangWatch() override {
        ended_ = true;
        watcher_.join();
    }

private:
    void OnTestStart(const ::testing::TestInfo& test) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        name_ = std::string(test.test_suite_name()) + "." + test.name();
        begin_ = std::chrono::steady_clock::now();
    }

    void OnTestEnd(const ::testing::TestInfo&) override {
        const std::lock_guard<std::mutex> lock(mutex_);
        name_.clear();
    }

    void run(int seconds) {
        while (!ended_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            const std::lock_guard<std::mutex> lock(mutex_);
            if (!name_.empty() && std::chrono::steady_clock::now() - begin_ > std::chrono::seconds(seconds)) {
                std::printf("HANGS: %s runs longer than %d seconds\n", name_.c_str(), seconds);
                std::fflush(stdout);
                std::_Exit(3);
            }
        }
    }

    std::thread watcher_;
    std::atomic<bool> ended_{false};
    std::mutex mutex_;
    std::string name_;
    std::chrono::steady_clock::time_point begin_;
};

} // namespace support
