#include "RCArray.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "RCTestScanner.h"
#include "UniqueNames.h"

namespace {

class RCArrayLabelTest : public testing::Test {
protected:
    RCTestScanner scanner{""};
    RCArrayLabel label;
    UniqueStruct* name = uniqueOf("mark");

    void Assign(std::initializer_list<long> subscripts, long value) {
        std::vector<long> list(subscripts);
        label.Assign(scanner, name, static_cast<int>(list.size()), list.data(), value);
    }

    long Lookup(std::initializer_list<long> subscripts) {
        std::vector<long> list(subscripts);
        return label.Lookup(scanner, name, static_cast<int>(list.size()), list.data());
    }
};

TEST_F(RCArrayLabelTest, OneLevelKeepsAPositionPerElement) {
    Assign({1}, 8);
    Assign({2}, 24);
    Assign({3}, 40);
    EXPECT_EQ(Lookup({1}), 8);
    EXPECT_EQ(Lookup({2}), 24);
    EXPECT_EQ(Lookup({3}), 40);

    RCCapturedMessages messages;
    EXPECT_EQ(Lookup({4}), 0);
    EXPECT_EQ(Lookup({0}), 0);
    std::string text = messages.Text();
    EXPECT_NE(text.find("Array label 'mark': index out of bounds"), std::string::npos);
    EXPECT_NE(text.find("Array label 'mark': index negative"), std::string::npos);
}

// Every level walks the one table, so the last subscript alone picks the entry.
TEST_F(RCArrayLabelTest, AllLevelsShareOneTable) {
    Assign({1, 1}, 10);
    Assign({1, 2}, 20);
    Assign({1, 3}, 30);
    Assign({2, 1}, 40);
    EXPECT_EQ(Lookup({1, 1}), 40);
    EXPECT_EQ(Lookup({2, 1}), 40);
    EXPECT_EQ(Lookup({3, 1}), 40);
    EXPECT_EQ(Lookup({1, 2}), 20);
    EXPECT_EQ(Lookup({1, 1, 3}), 30);

    RCCapturedMessages messages;
    EXPECT_EQ(Lookup({9, 2}), 0);
    EXPECT_NE(messages.Text().find("index out of bounds"), std::string::npos);
}

TEST_F(RCArrayLabelTest, ASkippedElementLeavesAGap) {
    Assign({3}, 72);
    RCCapturedMessages messages;
    EXPECT_EQ(Lookup({1}), 0);
    EXPECT_EQ(Lookup({3}), 72);
    EXPECT_EQ(messages.Text(), "");

    RCCapturedMessages later;
    Assign({1}, 8);
    EXPECT_NE(later.Text().find("Array label 'mark': not found"), std::string::npos);
    EXPECT_EQ(Lookup({1}), 0);
}

TEST_F(RCArrayLabelTest, TheTableGrowsPastItsFirstCapacity) {
    for (long i = 1; i <= 40; ++i) Assign({i}, i * 8);
    for (long i = 1; i <= 40; ++i) EXPECT_EQ(Lookup({i}), i * 8);
    RCArrayLabel sparse;
    long second[] = {2};
    sparse.Assign(scanner, name, 1, second, 16);
    EXPECT_EQ(sparse.Lookup(scanner, name, 1, second), 16);
}

TEST_F(RCArrayLabelTest, TheRootWithATableNeedsSubscripts) {
    Assign({1}, 8);
    RCCapturedMessages messages;
    EXPECT_EQ(Lookup({}), 0);
    EXPECT_NE(messages.Text().find("Array label 'mark': too few indices."), std::string::npos);
}

} // namespace
