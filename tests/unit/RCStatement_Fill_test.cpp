// Fill and alignment: the fill value rule, the size keywords, 64-bit parts, and recovery from a
// failed fill unit.
#include <climits>

#include "RCStatement.h"
#include "RCTestCompilation.h"
#include "RCTestScanner.h"

namespace {

TEST(VerifyValue, KeepsTheLowBitsUnlessNoBitStandsBelowTheWidth) {
    EXPECT_EQ(5, RCStatement::VerifyValue(nullptr, 5, 8));
    EXPECT_EQ(5, RCStatement::VerifyValue(nullptr, 0x105, 8));
    EXPECT_EQ(0xFF, RCStatement::VerifyValue(nullptr, -1, 8));
    // Nothing below the width: the value comes back whole and spills into the parts to its left.
    EXPECT_EQ(0x100, RCStatement::VerifyValue(nullptr, 0x100, 8));
    EXPECT_EQ(0, RCStatement::VerifyValue(nullptr, 0, 8));
    // A part as wide as the value has no bits above it to clear.
    EXPECT_EQ(-2, RCStatement::VerifyValue(nullptr, -2, 64));
    EXPECT_EQ(LONG_MIN, RCStatement::VerifyValue(nullptr, LONG_MIN, 64));
}

TEST(ScanAlignSize, GivesTheBitsOfEachSizeWordAndLeavesAnyOtherToken) {
    RCTestScanner scanner("bit boolean nibble byte word integer long single float double longint");
    for (int expected : {1, 1, 4, 8, 16, 16, 32, 32, 32, 64})
        EXPECT_EQ(expected, RCStatement::ScanAlignSize(scanner, 32709));
    RCCapturedMessages messages;
    EXPECT_EQ(0, RCStatement::ScanAlignSize(scanner, 32709));
    EXPECT_EQ(kRCScan_Longint, scanner->TokenType());
    EXPECT_NE(std::string::npos, messages.Text().find("after 'align'."));
}

TEST_F(Compilation, SixtyFourBitPartsPackWithoutOverflowAndAreRefusedAsFields) {
    Compile("type T('TEST') { fill double { double }; fill double { long; word; byte; nibble; bit; bit; bit; bit }; };"
            "resource T (1) { { -1 }; { 1, 2, 3, 4, 1, 0, 1, 0 } };");
    // A 64-bit unit is wider than any integer field: the bindings refuse each with their message,
    // and the fill still counts as laid.
    EXPECT_EQ(2u, fErrors);
    EXPECT_EQ("", Bytes(1));
}

TEST_F(Compilation, OnlyAFillWithSpecifiersReadsValues) {
    Compile("type T('TEST') { fill word; fill long { word; word }; }; type U('TEST' + 1) { fill byte[2]; align long; };");
    EXPECT_TRUE(fSymbols.LookupDefinition(uniqueOf("T"))->ConsumesInput());
    EXPECT_FALSE(fSymbols.LookupDefinition(uniqueOf("U"))->ConsumesInput());
}

TEST_F(Compilation, AFailedFillUnitSkipsToTheFillsOwnBrace) {
    std::string messages = Compile("type T('TEST') { fill word[2] { byte; byte }; byte; };"
                                   "resource T (1) { { { 1 x }; { 3, 4 } }; 9 };"
                                   "resource T (2) { { 1, 2; 3, 4 }; 9 };"
                                   "resource T (3) { { { 1, 2 }; 3, 4 }; 9 };");
    EXPECT_EQ(2, countOf(messages, "Error"));
    EXPECT_EQ("missing", Bytes(1));
    EXPECT_EQ("missing", Bytes(2));
    EXPECT_EQ("02 01 04 03 09", Bytes(3));
}

TEST_F(Compilation, ACountBelowOneFillsNothing) {
    Compile("type T('TEST') { fill byte[-2]; fill word[0] { byte; byte }; byte; }; resource T (1) { { }; 7 };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("07", Bytes(1));
}

}  // namespace
