#include "UniqueNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MarkRelease.h"

namespace {

TEST(UniqueNames, EqualTextsInternToOnePointer) {
    std::string text = "Resource";
    UniqueStruct* first = uniqueOf(text.c_str());
    UniqueStruct* second = uniqueOf("Resource");
    EXPECT_EQ(first, second);
    EXPECT_NE(text.c_str(), nameOf(first));
    EXPECT_STREQ("Resource", nameOf(first));
    EXPECT_NE(first, uniqueOf("resource"));
    EXPECT_EQ(saveString("Resource"), nameOf(first));
    // A token inside a larger text interns by its bytes alone, and its saved copy ends in a NUL.
    char const source[] = "ResourceType";
    EXPECT_EQ(first, uniqueOf(source, 8));
    EXPECT_STREQ("Resour", nameOf(uniqueOf(source, 6)));
}

TEST(UniqueNames, HashUsesEightBitsOfTextAndTwoOfLength) {
    EXPECT_EQ(0, hashTableHasher("", 0));
    EXPECT_EQ('a' + (1 << 8), hashTableHasher("a", 1));
    // "ab": rotate 'a' (0x61) left by 5 in 8 bits gives 0x2C, plus 'b' (0x62).
    EXPECT_EQ(0x8E + (2 << 8), hashTableHasher("ab", 2));
    // From 256 bytes on only the first (length & 255) bytes count.
    std::string longText(257, 'x');
    longText[0] = 'a';
    EXPECT_EQ('a' + (1 << 8), hashTableHasher(longText.data(), 257));
}

bool Collect(char const* text, long length, void* value, void* parameter) {
    auto* seen = static_cast<std::vector<std::string>*>(parameter);
    seen->push_back(text == nullptr ? "|" : std::string(text, length) + "=" + static_cast<char*>(value));
    return seen->size() < 4;
}

class SymNameTableTest : public testing::Test {
protected:
    void SetUp() override { fTable.ISymNameTable(true, &fArena); }

    MarkRelease fArena{1024};
    SymNameTable fTable;
    char fOne[2] = "1", fTwo[2] = "2";
};

TEST_F(SymNameTableTest, LookupWithAValueAddsOnlyWhenMissing) {
    EXPECT_EQ(nullptr, fTable.Lookup("name"));
    EXPECT_EQ(fOne, fTable.Lookup("name", fOne));
    EXPECT_EQ(fOne, fTable.Lookup("name", fTwo));
    EXPECT_EQ(nullptr, fTable.Lookup("Name"));
    EXPECT_EQ(fOne, fTable.Lookup("name and more", 4));
}

TEST_F(SymNameTableTest, EnterShadowsAndReplaceOverwrites) {
    fTable.Enter("name", fOne);
    fTable.Enter("name", fTwo);
    EXPECT_EQ(fTwo, fTable.Lookup("name"));
    fTable.Replace("name", fOne);
    EXPECT_EQ(fOne, fTable.Lookup("name"));
    fTable.Replace("other", fTwo);
    EXPECT_EQ(fTwo, fTable.Lookup("other"));
}

TEST_F(SymNameTableTest, CopyingTableOwnsItsTexts) {
    std::string text = "transient";
    fTable.Enter(text.c_str(), fOne);
    text = "overwrite";
    EXPECT_EQ(fOne, fTable.Lookup("transient"));
}

TEST_F(SymNameTableTest, ForEachEntryWalksBucketsInOrderAndStops) {
    // "b" (bucket 354) comes before "ab" (bucket 654); the walk stops when Collect says so.
    fTable.Enter("ab", fOne);
    fTable.Enter("b", fTwo);
    std::vector<std::string> seen;
    EXPECT_TRUE(fTable.ForEachEntry(Collect, &seen, false));
    EXPECT_EQ((std::vector<std::string>{"b=2", "ab=1"}), seen);
    seen.clear();
    EXPECT_FALSE(fTable.ForEachEntry(Collect, &seen, true));
    EXPECT_EQ((std::vector<std::string>{"|", "|", "|", "|"}), seen);
}

TEST(Ustreql, IgnoresCaseButNotLength) {
    EXPECT_TRUE(ustreql("", ""));
    EXPECT_TRUE(ustreql("SingleFile", "singlefile"));
    EXPECT_FALSE(ustreql("a", "ab"));
    EXPECT_FALSE(ustreql("ab", "a"));
    char const* same = "x";
    EXPECT_TRUE(ustreql(same, same));
    char text[] = "MiXeD";
    lower(text);
    EXPECT_STREQ("mixed", text);
}

}  // namespace
