#include "RCStatement_ByteString.h"

#include <gtest/gtest.h>

#include <string>

#include "RCScanner.h"

namespace {

std::string Describe(int stringType) { return RCStatement_ByteString(stringType, nullptr).DescribeStringType(); }

// File-backed fields carry the type of a plain literal, which no keyword of a type body gives.
TEST(RCStatement_ByteStringTest, LiteralTypesAreDescribedAsTheFieldsTheyFit) {
    EXPECT_EQ(Describe(kPPScan_String), "S010");
    EXPECT_EQ(Describe(kPPScan_HexString), "S010");
    EXPECT_EQ(Describe(kPPScan_DBHexString), "S010");
    EXPECT_EQ(Describe(kPPScan_WideString), "S020");
}

TEST(RCStatement_ByteStringDeathTest, AnUnknownStringTypeStopsOnAnAssertion) {
    EXPECT_DEATH(Describe(kPPScan_WideHexString), "false");
}

}  // namespace
