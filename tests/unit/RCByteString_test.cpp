#include "RCByteString.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

RCByteString Filled(char const* text) {
    RCByteString string;
    long const length = static_cast<long>(std::strlen(text));
    EXPECT_TRUE(string.Expand(length + 1));
    std::memcpy(string.fData, text, static_cast<size_t>(length) + 1);
    string.fLength = length;
    string.fStringType = 16;
    return string;
}

TEST(RCByteStringTest, ExpandKeepsTheTextAndMakesRoomBehindIt) {
    RCByteString string = Filled("abc");
    ASSERT_TRUE(string.Expand(100));
    std::memset(string.Bytes() + string.fLength, 'x', 100);
    EXPECT_EQ(0, std::memcmp(string.fData, "abcxx", 5));
    string.Destroy();
}

TEST(RCByteStringTest, CloneOwnsATerminatedCopy) {
    RCByteString original = Filled("abc");
    RCByteString copy = original.Clone();
    original.Bytes()[0] = 'z';
    EXPECT_NE(original.fData, copy.fData);
    EXPECT_EQ(3, copy.fLength);
    EXPECT_EQ(16, copy.fStringType);
    EXPECT_STREQ("abc", copy.Bytes());
    EXPECT_EQ(0, copy.Bytes()[4]);
    original.Destroy();
    copy.Destroy();
}

// A literal is written behind the length before it counts, so growing must keep every byte of
// the storage, also when it moves from a small block to a larger one and on into the heap.
TEST(RCByteStringTest, GrowingKeepsBytesWrittenBehindTheLength) {
    RCByteString string = Filled("abc");
    long written = 0;
    for (long room : {8L, 40L, 600L, 5000L}) {
        ASSERT_TRUE(string.Expand(room));
        for (; written < room; ++written) string.Bytes()[string.fLength + written] = static_cast<char>('a' + written % 26);
    }
    for (long i = 0; i < written; ++i) ASSERT_EQ(static_cast<char>('a' + i % 26), string.Bytes()[string.fLength + i]) << i;
    EXPECT_EQ(0, std::memcmp(string.fData, "abc", 3));
    string.Destroy();
    EXPECT_EQ(nullptr, string.fData);
}

TEST(RCByteStringTest, EmptyStringsCloneAndDestroyToEmptyStrings) {
    RCByteString empty;
    RCByteString copy = empty.Clone();
    EXPECT_EQ(nullptr, copy.fData);
    EXPECT_EQ(RCByteString::kEmptyType, copy.fStringType);
    copy.Destroy();
    EXPECT_EQ(0, copy.fLength);
}

}  // namespace
