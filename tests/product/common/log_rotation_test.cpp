#include "common/log_rotation.h"

#include <gtest/gtest.h>

#include <set>

namespace {

std::vector<std::string> plan(std::uint32_t max_files, const std::set<std::string>& existing) {
    std::vector<std::string> steps;
    const auto exists = [&existing](const std::string& name) { return existing.count(name) != 0; };
    for (const tarvo::RotationStep& step : tarvo::PlanRotation("c", max_files, exists)) {
        steps.push_back(step.from + (step.to.empty() ? " gone" : " > " + step.to));
    }
    return steps;
}

using Steps = std::vector<std::string>;

TEST(LogRotation, TwoFilesDropTheOlderOne) {
    EXPECT_EQ(plan(2, {"c1.log"}), (Steps{"c1.log gone", "c.log > c1.log"}));
    EXPECT_EQ(plan(2, {}), (Steps{"c.log > c1.log"}));
}

TEST(LogRotation, FiveFilesMoveFromTheOldestOn) {
    EXPECT_EQ(
        plan(5, {"c1.log", "c2.log", "c3.log", "c4.log"}),
        (Steps{"c4.log gone", "c3.log > c4.log", "c2.log > c3.log", "c1.log > c2.log", "c.log > c1.log"}));
}

TEST(LogRotation, GapIsSkipped) {
    EXPECT_EQ(plan(5, {"c1.log", "c3.log"}), (Steps{"c3.log > c4.log", "c1.log > c2.log", "c.log > c1.log"}));
}

TEST(LogRotation, OneFileStillMovesTheCurrentOne) {
    EXPECT_EQ(plan(1, {"c1.log"}), (Steps{"c.log > c1.log"}));
    EXPECT_EQ(plan(0, {}), (Steps{"c.log > c1.log"}));
}

} // namespace
