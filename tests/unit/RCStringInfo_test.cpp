#include "RCStringInfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "RCByteString.h"
#include "RCScanner.h"

namespace {

// A value of `length` bytes of 'a', of the given literal type; no terminator is needed here.
class Value {
public:
    Value(long length, int stringType) : fText(static_cast<size_t>(length), 'a') {
        fString.fData = fText.data();
        fString.fLength = length;
        fString.fStringType = stringType;
    }
    operator RCByteString const&() const { return fString; }

private:
    std::string fText;
    RCByteString fString;
};

std::string LeadingBytes(RCStringInfo const& info) {
    auto const* bytes = static_cast<unsigned char const*>(info.GetLeadingBytes());
    std::string text;
    char hex[4];
    for (long i = 0; i < info.GetLeadingBytesCount(); ++i) {
        std::snprintf(hex, sizeof hex, i == 0 ? "%02X" : " %02X", bytes[i]);
        text += hex;
    }
    return text;
}

// Nothing checks that a count fits its field: it keeps its low bytes, low byte first.
TEST(RCStringInfoTest, ACountPastItsWidthKeepsItsLowBits) {
    EXPECT_EQ(LeadingBytes(RCStringInfo(Value(300, kPPScan_String), kRCScan_Pstring)), "2C");
    EXPECT_EQ(LeadingBytes(RCStringInfo(Value(70000, kPPScan_String), kRCScan_Wstring)), "70 11");
    EXPECT_EQ(LeadingBytes(RCStringInfo(Value(70000, kPPScan_WideString), kRCScan_Ipstring)), "B8 88");
    EXPECT_EQ(LeadingBytes(RCStringInfo(Value(70000, kPPScan_WideString), kRCScan_Iwstring)), "B8 88 00 00");
}

TEST(RCStringInfoTest, OnlyCountedTypesHaveLeadingBytes) {
    EXPECT_EQ(RCStringInfo(Value(2, kPPScan_String), kRCScan_Cstring).GetLeadingBytes(), nullptr);
    EXPECT_EQ(RCStringInfo(Value(2, kPPScan_WideString), kRCScan_Icstring).GetLeadingBytes(), nullptr);
}

// The parser always gives char a length; without one the text is cut to one character.
TEST(RCStringInfoTest, ACharWithoutLengthKeepsOneCharacter) {
    RCStringInfo cut(Value(3, kPPScan_String), kRCScan_Char);
    EXPECT_EQ(cut.GetBytesCount(), 1);
    EXPECT_TRUE(cut.IsTruncated());
    EXPECT_EQ(cut.GetPaddingCount(), 0);

    RCStringInfo whole(Value(3, kPPScan_String), kRCScan_String);
    EXPECT_EQ(whole.GetBytesCount(), 3);
    EXPECT_FALSE(whole.IsTruncated());
}

// Lengths count characters, terminator included; counts count the characters of the text.
TEST(RCStringInfoTest, FixedLengthsOfWideFieldsCountCharacters) {
    RCStringInfo padded(Value(2, kPPScan_WideString), kRCScan_Ipstring, 3L);
    EXPECT_EQ(padded.GetBytesCount(), 2);
    EXPECT_EQ(padded.GetPaddingCount(), 4);
    EXPECT_EQ(LeadingBytes(padded), "01 00");

    RCStringInfo cut(Value(8, kPPScan_WideString), kRCScan_Icstring, 3L);
    EXPECT_EQ(cut.GetBytesCount(), 4);
    EXPECT_EQ(cut.GetPaddingCount(), 2);
    EXPECT_TRUE(cut.IsTruncated());
}

// A field with no room for its terminator is not checked: the byte count goes negative.
TEST(RCStringInfoTest, ALengthWithoutRoomGivesANegativeByteCount) {
    RCStringInfo info(Value(3, kPPScan_String), kRCScan_Cstring, 0L);
    EXPECT_EQ(info.GetBytesCount(), -1);
    EXPECT_EQ(info.GetPaddingCount(), 1);
    EXPECT_TRUE(info.IsTruncated());
}

TEST(RCStringInfoTest, HexAndDoubleByteLiteralsAreNarrowText) {
    EXPECT_TRUE(RCStringInfo(Value(1, kPPScan_DBString), kRCScan_String).IsCompatible());
    EXPECT_TRUE(RCStringInfo(Value(1, kPPScan_DBHexString), kRCScan_Cstring).IsCompatible());
    EXPECT_TRUE(RCStringInfo(Value(2, kPPScan_WideHexString), kRCScan_Istring).IsCompatible());
    EXPECT_FALSE(RCStringInfo(Value(2, kPPScan_WideString), kRCScan_Char).IsCompatible());
}

}  // namespace
