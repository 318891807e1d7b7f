#include "RCNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(RCNumber, FloatTruncatesTowardZero) {
    EXPECT_EQ(RCNumber(2.9).AsInteger(), 2);
    EXPECT_EQ(RCNumber(-2.9).AsInteger(), -2);
    EXPECT_FALSE(RCNumber(2.0).IsInteger());
    EXPECT_DOUBLE_EQ(RCNumber(7L).AsDouble(), 7.0);
}

TEST(RCNumber, FloatsWithoutALongSaturateAndNaNIsZero) {
    EXPECT_EQ(RCNumber(1e300).AsInteger(), std::numeric_limits<long>::max());
    EXPECT_EQ(RCNumber(-1e300).AsInteger(), std::numeric_limits<long>::min());
    EXPECT_EQ(RCNumber(std::nan("")).AsInteger(), 0);
}

TEST(RCNumber, IncrementKeepsTheKindAndWraps) {
    RCNumber integer(std::numeric_limits<long>::max());
    RCNumber result = integer.Increment(1);
    EXPECT_TRUE(result.IsInteger());
    EXPECT_EQ(result.AsInteger(), std::numeric_limits<long>::min());
    EXPECT_EQ(integer.AsInteger(), std::numeric_limits<long>::min());

    RCNumber real(1.5);
    EXPECT_DOUBLE_EQ(real.Increment(2).AsDouble(), 3.5);
    EXPECT_FALSE(real.IsInteger());
}
