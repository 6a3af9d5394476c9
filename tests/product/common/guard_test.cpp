#include "common/guard.h"

#include "tests/support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

// What a guarded function that does this answers, with 7 as the fallback, and the new lines of `channel`.
template <class Function>
int guarded(Function function, Lines& lines, const tarvo::LogChannel& channel = tarvo::kDataChannel) {
    support::plugin_folder();
    const std::size_t mark = support::log_mark(channel.name);
    const int result = tarvo::Guarded("a place", 7, function, channel);
    lines = support::log_lines_since(channel.name, mark);
    return result;
}

TEST(Guard, PassesTheResultOnWithoutALine) {
    Lines lines;
    EXPECT_EQ(guarded([] { return 3; }, lines), 3);
    EXPECT_TRUE(lines.empty());
}

TEST(Guard, AnExceptionGivesTheFallbackAndALineWithPlaceAndText) {
    for (const tarvo::LogChannel& channel : {tarvo::kDataChannel, tarvo::kUiChannel}) {
        Lines lines;
        EXPECT_EQ(guarded([]() -> int { throw std::runtime_error("the reason"); }, lines, channel), 7);
        EXPECT_EQ(lines, Lines{"[ERROR] An exception was stopped in a place: the reason"});
    }
}

TEST(Guard, WhatIsNoStandardExceptionHasALineToo) {
    Lines lines;
    EXPECT_EQ(guarded([]() -> int { throw 1; }, lines), 7);
    EXPECT_EQ(lines, Lines{"[ERROR] An exception was stopped in a place: not a standard exception"});
}

TEST(Guard, CodeWithoutAResultIsGuardedToo) {
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

// The store that owns the channel has its file open and is the one to rotate it.
TEST(Guard, TheLineDoesNotRotateTheFile) {
    const std::string file = support::log_file("t_guard");
    support::plugin_folder();
    support::write_file(file, std::string(3 << 20, 'x'));
    const tarvo::LogChannel channel = {"t_guard", 1, 2};
    tarvo::WriteErrorLine(channel, "a");
    EXPECT_GT(support::read_file(file).size(), std::size_t{3} << 20);
    std::remove(file.c_str());
}

} // namespace
