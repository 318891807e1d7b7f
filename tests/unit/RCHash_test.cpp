#include "RCHash.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(RCHash, GivesTheKnownValuesAndIds) {
    struct Case {
        char const* text;
        long hash;
        short id;
    };
    for (Case c : {Case{"", 2147483647, -1}, Case{"a", 1630279, -8121},
                   Case{"abc", 445368693, -13963}, Case{"MyType", 1966680475, 10651},
                   Case{"MyType(0001)", -33156796222526, 29634}}) {
        long hash = RCHash(c.text, static_cast<int>(std::strlen(c.text)));
        EXPECT_EQ(hash, c.hash) << c.text;
        EXPECT_EQ(static_cast<short>(hash), c.id) << c.text;
    }
    EXPECT_EQ(RCHash("abc", -5), 2147483647);
    unsigned char const high[] = {0xFF};
    EXPECT_EQ(RCHash(high, 1), 16807 * 255);
}

}  // namespace
