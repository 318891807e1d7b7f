#include <gtest/gtest.h>

#include <cctype>

#include "PPCharClass.h"

namespace {

// Every byte against the C library's classes in the C locale, which the table stands in for,
// and the end of input and values beyond a byte in no class at all.
TEST(PPCharClass, TheTableAgreesWithTheCLibraryForEveryByte) {
    for (int c = 0; c < 256; ++c) {
        bool const lineEnd = c == '\n' || c == '\r';
        EXPECT_EQ(inCharClass(c, kPPChar_Blank), (std::isspace(c) && !lineEnd) || c == 0xCA) << c;
        EXPECT_EQ(inCharClass(c, kPPChar_EOL), lineEnd) << c;
        EXPECT_EQ(inCharClass(c, kPPChar_IdentStart), std::isalpha(c) || c == '_' || c == '$') << c;
        EXPECT_EQ(inCharClass(c, kPPChar_Decimal), std::isdigit(c) != 0) << c;
        EXPECT_EQ(inCharClass(c, kPPChar_Hex), std::isxdigit(c) != 0) << c;
        EXPECT_EQ(inCharClass(c, kPPChar_Octal), c >= '0' && c <= '7') << c;
        EXPECT_EQ(inCharClass(c, kPPChar_Binary), c == '0' || c == '1') << c;
        EXPECT_EQ(inCharClass(c, kPPChar_Ident), std::isalnum(c) || c == '_' || c == '$') << c;
        EXPECT_EQ(inCharClass(c, kPPChar_LiteralPlain), !lineEnd && c != '"' && c != '\'' && c != '\\') << c;
    }
    for (int outside : {-1, 256, 0x10A})
        EXPECT_EQ(charClassOf(outside), 0) << outside;
}

} // namespace
