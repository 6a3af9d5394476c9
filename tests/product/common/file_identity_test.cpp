#include "common/platform.h"

#include <gtest/gtest.h>

namespace {

using tarvo::FileIdentity;

TEST(FileIdentity, EqualsOnlyTheSameFileOnTheSameVolume) {
    const FileIdentity file = {true, 1, 2};
    EXPECT_TRUE(file == (FileIdentity{true, 1, 2}));
    EXPECT_FALSE(file == (FileIdentity{true, 1, 3}));
    EXPECT_FALSE(file == (FileIdentity{true, 3, 2}));
}

TEST(FileIdentity, UnknownIdentityEqualsNone) {
    const FileIdentity known = {true, 1, 2};
    const FileIdentity unknown = {false, 1, 2};
    EXPECT_FALSE(known == unknown);
    EXPECT_FALSE(unknown == known);
    EXPECT_FALSE(unknown == unknown);
}

} // namespace
