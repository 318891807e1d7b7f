#include "Vector.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

int CompareTexts(void const* a, void const* b) {
    return std::strcmp(*static_cast<char const* const*>(a), *static_cast<char const* const*>(b));
}

char kA[] = "a", kB[] = "b", kC[] = "c";

TEST(Vector, AddsBeyondItsInitialSizeInOrder) {
    Vector vector;
    ASSERT_EQ(0, vector.IVector(2, 1));
    char items[10];
    for (char& item : items) ASSERT_TRUE(vector.AddItem(&item));
    ASSERT_EQ(10u, vector.Count());
    for (int i = 0; i < 10; ++i) EXPECT_EQ(&items[i], vector.At(i));
    EXPECT_EQ(3, vector.IndexOf(&items[3]));
    EXPECT_EQ(-1, vector.IndexOf(nullptr));
}

TEST(Vector, AddOnceKeepsItemsUnique) {
    Vector first, second;
    first.IVector();
    second.IVector();
    EXPECT_FALSE(first.AddOnce(kA));
    EXPECT_TRUE(first.AddOnce(kA));
    second.AddItem(kB);
    second.AddItem(kA);
    EXPECT_TRUE(first.AddOnce(&second));
    ASSERT_EQ(2u, first.Count());
    EXPECT_EQ(kB, first.At(1));
}

TEST(Vector, SortsAndSearches) {
    Vector vector;
    vector.IVector();
    for (char* item : {kC, kA, kB}) vector.AddItem(item);
    vector.Sort(CompareTexts);
    EXPECT_EQ(kA, vector.At(0));
    EXPECT_EQ(kC, vector.At(2));
    char const* key = "b";
    auto* found = static_cast<void**>(vector.BSearch(&key, CompareTexts));
    ASSERT_NE(nullptr, found);
    EXPECT_EQ(kB, *found);
}

TEST(Vector, CopyAndMakeEmpty) {
    Vector original, copy;
    original.IVector();
    original.AddItem(kA);
    original.AddItem(kB);
    ASSERT_EQ(0, copy.IVector(&original));
    copy.AddItem(kC);
    EXPECT_EQ(2u, original.Count());
    ASSERT_EQ(3u, copy.Count());
    EXPECT_EQ(kB, copy.At(1));
    copy.MakeEmpty();
    EXPECT_EQ(0u, copy.Count());
    copy.AddItem(kC);
    EXPECT_EQ(kC, copy.At(0));
}

TEST(VectorDeathTest, IndexOutOfRangeStops) {
    Vector vector;
    vector.IVector();
    vector.AddItem(kA);
    EXPECT_DEATH(vector.At(1), "i < fCount");
}

}  // namespace
