#include "dialog/number_step.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

using tarvo::OneDecimal;
using tarvo::StepNumber;
using tarvo::TruncateToInt32;

constexpr float kStep = 0.1f;
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct StepCase {
    const char* name;
    double value;
    float delta;
    float minimum;
    float maximum;
    const wchar_t* shown;
};

constexpr StepCase kGammaAndRadius[] = {
    {"gamma one up", 2.2, 1, 0.1f, 5.0f, L"2.3"},
    {"gamma one down", 2.2, -1, 0.1f, 5.0f, L"2.1"},
    {"several steps at once", 2.2, 5, 0.1f, 5.0f, L"2.7"},
    {"no step", 2.2, 0, 0.1f, 5.0f, L"2.2"},
    {"beyond the upper limit", 4.95, 1, 0.1f, 5.0f, L"5.0"},
    {"at the upper limit", 5.0, 1, 0.1f, 5.0f, L"5.0"},
    {"at the lower limit", 0.1, -1, 0.1f, 5.0f, L"0.1"},
    {"exactly onto the lower limit", 0.0, 1, 0.1f, 5.0f, L"0.1"},
    {"typed far above", 1e300, 1, 0.1f, 5.0f, L"5.0"},
    {"typed far below", -1e300, 1, 0.1f, 5.0f, L"0.1"},
    {"infinite", kInfinity, -1, 0.1f, 5.0f, L"5.0"},
    {"not a number", kNotANumber, 1, 0.1f, 5.0f, L"0.1"},
    {"radius from a text without a number", 0.0, 1, 10.0f, 1000000000.0f, L"10.0"},
    {"radius one up", 1000.0, 1, 10.0f, 1000000000.0f, L"1000.1"},
    {"radius at its upper limit", 1000000000.0, 1, 10.0f, 1000000000.0f, L"1000000000.0"},
    {"radius just below its upper limit", 999999999.9, 1, 10.0f, 1000000000.0f, L"1000000000.0"},
};

TEST(NumberStep, KeepsTheFieldInsideItsLimits) {
    for (const StepCase& step : kGammaAndRadius) {
        SCOPED_TRACE(step.name);
        EXPECT_EQ(OneDecimal(StepNumber(step.value, step.delta, kStep, step.minimum, step.maximum)),
                  step.shown);
    }
}

TEST(NumberStep, MultipliesIn32BitsAndAddsIn64Bits) {
    const double stepped = StepNumber(1.0, 3.0f, kStep, 0.1f, 5.0f);
    EXPECT_EQ(stepped, 1.0 + static_cast<double>(3.0f * 0.1f));
    EXPECT_NE(stepped, 1.0 + 3.0 * static_cast<double>(0.1f));
    EXPECT_NE(stepped, static_cast<double>(static_cast<float>(stepped)));
}

TEST(NumberStep, TheLimitsAre32BitNumbers) {
    EXPECT_EQ(StepNumber(0.0, -1.0f, kStep, 0.1f, 5.0f), static_cast<double>(0.1f));
}

TEST(NumberStep, OneDecimalRoundsAndKeepsEveryDigitBeforeThePoint) {
    EXPECT_EQ(OneDecimal(0.0), L"0.0");
    EXPECT_EQ(OneDecimal(2.2f), L"2.2");
    EXPECT_EQ(OneDecimal(-0.26), L"-0.3");
    EXPECT_EQ(OneDecimal(0.949), L"0.9");
    EXPECT_EQ(OneDecimal(1e300).size(), 303u);
}

TEST(NumberStep, TruncatesTowardsZero) {
    EXPECT_EQ(TruncateToInt32(16.9), 16);
    EXPECT_EQ(TruncateToInt32(-3.7), -3);
    EXPECT_EQ(TruncateToInt32(-0.9), 0);
    EXPECT_EQ(TruncateToInt32(2147483647.9), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(TruncateToInt32(-2147483648.9), std::numeric_limits<std::int32_t>::min());
}

TEST(NumberStep, OutOfRangeTruncatesToTheLowestValue) {
    for (const double value : {2147483648.0, -2147483649.0, 1e300, kInfinity, -kInfinity, kNotANumber}) {
        EXPECT_EQ(TruncateToInt32(value), std::numeric_limits<std::int32_t>::min()) << value;
    }
}

} // namespace
