#include <gtest/gtest.h>

#include <string>

#include "RCLanguagePeek.h"

namespace {

RCLanguagePeek Peek(std::string const& text) { return PeekLanguage(text.data(), text.data() + text.size()); }

TEST(RCLanguagePeek, TagOfTheFirstWordSetsTheLanguage) {
    EXPECT_EQ(1, Peek("{ k_jaJP\n").language);
    EXPECT_EQ(2, Peek("{k_zhCN;").language);
    EXPECT_EQ(3, Peek("{ 1, k_zhTW").language);
    EXPECT_EQ(4, Peek("{\n  k_koKR").language);
}

TEST(RCLanguagePeek, BytesNextToTheLettersAreNoWord) {
    EXPECT_EQ(1, Peek("{ @[`{\xC1\xE1\xDA k_jaJP").language);
}

// Every byte value, at every offset within and past the first eight bytes, either is the first
// word (a letter) or is skipped on the way to the tag behind it.
TEST(RCLanguagePeek, EveryByteIsToldLetterOrNotAtEveryOffset) {
    for (int offset = 0; offset < 20; ++offset) {
        for (int value = 0; value < 256; ++value) {
            char const byte = static_cast<char>(value);
            bool const isLetter = (value >= 'a' && value <= 'z') || (value >= 'A' && value <= 'Z');
            std::string text = std::string(static_cast<std::size_t>(offset), '0') + byte + " k_jaJP";
            EXPECT_EQ(isLetter ? 0 : 1, Peek(text).language) << "offset " << offset << " byte " << value;
        }
    }
}

TEST(RCLanguagePeek, OnlyTheFirstWordCounts) {
    RCLanguagePeek peek = Peek("{ red, k_jaJP }");
    EXPECT_EQ(0, peek.language);
    EXPECT_FALSE(peek.encodingWordMissing);
}

TEST(RCLanguagePeek, EncodingWordOnTheNextLineMarksUtf8) {
    EXPECT_EQ(5, Peek("{ k_jaJP,\r\n  kResourceUTF8Encoded, \"x\" }").language);
    EXPECT_EQ(6, Peek("{ k_enUS,\n\tkResourceUTF8Encoded }").language);
}

TEST(RCLanguagePeek, TagWithoutEncodingWordIsFlagged) {
    RCLanguagePeek sameLine = Peek("{ k_jaJP kResourceUTF8Encoded }");
    EXPECT_EQ(1, sameLine.language);
    EXPECT_TRUE(sameLine.encodingWordMissing);
    EXPECT_TRUE(Peek("{ k_xx\n other }").encodingWordMissing);
}

TEST(RCLanguagePeek, StopsAtTheEndOfTheText) {
    EXPECT_EQ(0, Peek("").language);
    EXPECT_EQ(0, Peek("{ 1, 2").language);
    EXPECT_EQ(0, Peek("{ k_jaJ").language);
    RCLanguagePeek cut = Peek("{ k_jaJP\n kResourceUTF8Enc");
    EXPECT_EQ(1, cut.language);
    EXPECT_TRUE(cut.encodingWordMissing);
    // The bound is the end pointer, not a terminating zero.
    std::string text = "{ k_koKR\n kResourceUTF8Encoded";
    EXPECT_EQ(4, PeekLanguage(text.data(), text.data() + 9).language);
}

}  // namespace
