#include "velor/ResourceTree.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

using velor::Access;
using velor::ResourceTree;
using velor::ResourceType;

namespace {

std::vector<std::int16_t> Ids(ResourceTree const& tree, ResourceType type) {
    auto entries = tree.Resources(type);
    EXPECT_TRUE(entries) << entries.error().message;
    std::vector<std::int16_t> ids;
    if (entries)
        for (auto const& entry : *entries) ids.push_back(entry.id);
    return ids;
}

}  // namespace

TEST(ResourceTree, TypeNamesItsFolderByItsCharactersUpToAZeroByte) {
    EXPECT_EQ(0x53545220u, ResourceType("STR ").Code());
    EXPECT_EQ("vlbk_STR ", ResourceType("STR ").FolderName());
    EXPECT_EQ("vlbk_AB", ResourceType(0x41420043).FolderName());
    EXPECT_EQ("vlbk_", ResourceType(0x00414243).FolderName());
    EXPECT_EQ("ab", ResourceType(0x61620063).Text());
}

TEST(ResourceTree, FileNamesAreIdsOnlyInTheFormTheCompilerWrites) {
    for (std::int16_t id : {-1, 0, 128, -32768, 32767})
        EXPECT_EQ(id, ResourceTree::IdOfFileName(ResourceTree::FileNameOf(id)));
    EXPECT_EQ("65535.vlbk", ResourceTree::FileNameOf(-1));
    for (char const* name : {"01.vlbk", "65536.vlbk", "-1.vlbk", "1.txt", ".vlbk", "1a.vlbk", "123456.vlbk"})
        EXPECT_FALSE(ResourceTree::IdOfFileName(name)) << name;
}

TEST(ResourceTree, LoadsTheSameBytesMappedAndRead) {
    TempFolder temp;
    temp.Put("out/vlbk_TEXT/128.vlbk", std::string("hi\0there", 8));
    temp.Put("out/vlbk_TEXT/65535.vlbk", "minus one");
    temp.Put("out/vlbk_TEXT/0.vlbk");
    auto tree = ResourceTree::Open(temp / "out");
    ASSERT_TRUE(tree) << tree.error().message;

    for (Access access : {Access::kMap, Access::kRead}) {
        auto bytes = tree->Load("TEXT", 128, access);
        ASSERT_TRUE(bytes) << bytes.error().message;
        EXPECT_EQ(access == Access::kMap, bytes->IsMapped());
        EXPECT_EQ(std::string("hi\0there", 8), bytes->Text());
        EXPECT_EQ("minus one", tree->Load("TEXT", -1, access)->Text());
        auto empty = tree->Load("TEXT", 0, access);
        ASSERT_TRUE(empty);
        EXPECT_EQ(0u, empty->size());
    }
    // A mapping stays valid as it moves and after the tree is gone.
    velor::Bytes kept = std::move(*tree->Load("TEXT", 128));
    tree = velor::Error{"dropped"};
    EXPECT_EQ('t', kept.data()[3]);
}

TEST(ResourceTree, MissingTreeAndMissingResourceAreErrorsThatSayWhat) {
    TempFolder temp;
    temp.Put("file");
    temp.Put("out/vlbk_TEXT/4.vlbk/inside");
    for (auto place : {"absent", "file"}) {
        auto missing = ResourceTree::Open(temp / place);
        ASSERT_FALSE(missing);
        EXPECT_NE(std::string::npos, missing.error().message.find(temp / place));
    }
    auto tree = ResourceTree::Open(temp / "out");
    ASSERT_TRUE(tree);
    for (Access access : {Access::kMap, Access::kRead}) {
        auto absent = tree->Load("TEXT", -2, access);
        ASSERT_FALSE(absent);
        EXPECT_EQ("no resource 'TEXT' -2 in '" + (temp / "out") + "'", absent.error().message);
        EXPECT_FALSE(tree->Load("PICT", 1, access));
        EXPECT_FALSE(tree->Load("TEXT", 4, access)) << "a folder is no resource";
    }
}

TEST(ResourceTree, ListsTheResourcesOfATypeBySignedIdAndNothingElse) {
    TempFolder temp;
    for (auto name : {"7", "65535", "0", "32768", "300"}) temp.Put(std::string("out/vlbk_TEXT/") + name + ".vlbk");
    for (auto name : {"007.vlbk", "-1.vlbk", "x.vlbk", "65536.vlbk", "1.vlbk.bak", ".vlbk", "9.vlbk/inside"})
        temp.Put(std::string("out/vlbk_TEXT/") + name);
    temp.Put("out/vlbk_PICT/1.vlbk");
    auto tree = ResourceTree::Open(temp / "out");
    ASSERT_TRUE(tree);

    EXPECT_EQ((std::vector<std::int16_t>{-32768, -1, 0, 7, 300}), Ids(*tree, "TEXT"));
    EXPECT_EQ(std::vector<std::int16_t>{}, Ids(*tree, "snd "));
    auto pictures = tree->Resources("PICT");
    ASSERT_EQ(1u, pictures->size());
    EXPECT_EQ(tree->PathOf("PICT", 1), pictures->front().path);
}
