#include "common/text.h"

#include <gtest/gtest.h>

namespace {

using tarvo::DecimalInt;

TEST(DecimalInt, ReadsLeadingDigits) {
    EXPECT_EQ(DecimalInt("1920"), 1920);
    EXPECT_EQ(DecimalInt("  12"), 12);
    EXPECT_EQ(DecimalInt("-7px"), -7);
    EXPECT_EQ(DecimalInt("8080abc"), 8080);
}

TEST(DecimalInt, TextWithoutANumberIsZero) {
    EXPECT_EQ(DecimalInt(""), 0);
    EXPECT_EQ(DecimalInt("abc"), 0);
    EXPECT_EQ(DecimalInt("+"), 0);
}

TEST(DecimalInt, OutOfRangeIsClampedToTheLimit) {
    EXPECT_EQ(DecimalInt("99999999999999999999"), 2147483647);
    EXPECT_EQ(DecimalInt("-99999999999999999999"), -2147483647 - 1);
    EXPECT_EQ(DecimalInt("2147483648"), 2147483647);
}

} // namespace
