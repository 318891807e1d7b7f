#include <gtest/gtest.h>

#include "OutputTree.h"
#include "TempFolder.h"

namespace {

TEST(OutputTree, TypesAreReadFromOneToFourCharacters) {
    EXPECT_EQ(0x53545220u, OutputTree::TypeOfText("STR "));
    EXPECT_EQ(0x61620000u, OutputTree::TypeOfText("ab"));
    EXPECT_FALSE(OutputTree::TypeOfText(""));
    EXPECT_FALSE(OutputTree::TypeOfText("abcde"));
}

TEST(OutputTree, ListsResourcesByTypeAndIdAndPassesOverForeignNames) {
    TempFolder folder;
    folder.Put("out/vlbk_WIND/129.vlbk", "ab");
    folder.Put("out/vlbk_WIND/65535.vlbk", "abc");
    folder.Put("out/vlbk_CLRT/1.vlbk");
    folder.Put("out/vlbk_WIND/x.vlbk");
    folder.Put("out/vlbk_WIND/7.vlbk/inside");
    folder.Put("out/vlbk_TOOLONG/1.vlbk");
    folder.Put("out/notes/1.vlbk");
    folder.Put("out/timestamp.vlbk");
    OutputTree tree(folder / "out");
    std::vector<TreeResource> all = tree.Resources();
    ASSERT_EQ(3u, all.size());
    EXPECT_EQ(0x434C5254u, all[0].type);
    EXPECT_EQ(-1, all[1].id);
    EXPECT_EQ(3u, all[1].size);
    EXPECT_EQ(129, all[2].id);
    EXPECT_EQ(2u, tree.Resources(0x57494E44).size());
    EXPECT_TRUE(tree.Has(0x57494E44, -1));
    EXPECT_FALSE(tree.Has(0x57494E44, 7));
    EXPECT_TRUE(OutputTree(folder / "nowhere").Resources().empty());
    EXPECT_FALSE(OutputTree(folder / "nowhere").Exists());
    EXPECT_FALSE(OutputTree::ReadFile(folder / "out/vlbk_WIND/7.vlbk"));
}

}  // namespace
