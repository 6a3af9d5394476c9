// While it lives, what the plugin prints for a developer stays out of the test's report, where it would bury
// a failure.
#pragma once

#include <iostream>
#include <sstream>

namespace support {

class QuietOutput {
public:
    QuietOutput() : before_(std::cout.rdbuf(printed_.rdbuf())) {}
    ~QuietOutput() { std::cout.rdbuf(before_); }
    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

private:
    std::ostringstream printed_;
    std::streambuf* before_;
};

} // namespace support
