#include "common/guard.h"

#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

// Returns the result of Guarded (7 is the fallback) and sets `lines` to the new lines of `channel`.
template <class Function>
int guarded(Function function, Lines& lines, const tarvo::LogChannel& channel = tarvo::kDataChannel) {
    support::plugin_folder();
    const std::size_t mark = support::log_mark(channel.name);
    const int result = tarvo::Guarded("a place", 7, function, channel);
    lines = support::log_lines_since(channel.name, mark);
    return result;
}

TEST(Guard, ReturnsTheResultAndLogsNothing) {
    Lines lines;
    EXPECT_EQ(guarded([] { return 3; }, lines), 3);
    EXPECT_TRUE(lines.empty());
}

TEST(Guard, ExceptionGivesTheFallbackAndALogLineWithPlaceAndText) {
    for (const tarvo::LogChannel& channel : {tarvo::kDataChannel, tarvo::kUiChannel}) {
        Lines lines;
        EXPECT_EQ(guarded([]() -> int { throw std::runtime_error("the reason"); }, lines, channel), 7);
        EXPECT_EQ(lines, Lines{"[ERROR] An exception was stopped in a place: the reason"});
    }
}

TEST(Guard, NonStandardExceptionIsLoggedToo) {
    Lines lines;
    EXPECT_EQ(guarded([]() -> int { throw 1; }, lines), 7);
    EXPECT_EQ(lines, Lines{"[ERROR] An exception was stopped in a place: not a standard exception"});
}

TEST(Guard, FunctionWithoutAResultIsGuardedToo) {
    for (const tarvo::LogChannel& channel : {tarvo::kDataChannel, tarvo::kUiChannel}) {
        support::plugin_folder();
        const std::size_t mark = support::log_mark(channel.name);
        bool ran = false;
        tarvo::RunGuarded(
            "a place", [&ran] { ran = true; }, channel);
        EXPECT_TRUE(ran);
        tarvo::RunGuarded(
            "a place", [] { throw std::runtime_error("the reason"); }, channel);
        EXPECT_EQ(support::log_lines_since(channel.name, mark),
                  Lines{"[ERROR] An exception was stopped in a place: the reason"});
    }
}

// Only the logger that owns the channel rotates its file.
TEST(Guard, ErrorLineDoesNotRotateTheFile) {
    const std::string file = support::log_file("t_guard");
    support::plugin_folder();
    support::write_file(file, std::string(3 << 20, 'x'));
    const tarvo::LogChannel channel = {"t_guard", 1, 2};
    tarvo::WriteErrorLine(channel, "a");
    EXPECT_GT(support::read_file(file).size(), std::size_t{3} << 20);
    std::remove(file.c_str());
}

} // namespace
