#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>

#include "DescriptionIndex.h"
#include "TempFolder.h"

namespace {

constexpr std::uint32_t kFoo = 0x464F4F20;  // 'FOO '

std::string InstanceFile(std::int16_t id) {
    return "out/vlbk_FWrD/" + std::to_string(static_cast<std::uint16_t>(id)) + ".vlbk";
}

std::int16_t Next(std::int16_t id) { return static_cast<std::int16_t>(static_cast<std::uint16_t>(id) + 1); }

// Two ids of type Foo whose instance descriptions first try hashes that differ by `distance`.
std::pair<std::int16_t, std::int16_t> IdsWithHashesApart(int distance) {
    std::map<std::int16_t, std::int16_t> idOfHash;
    for (std::int16_t id = 1; id < 4000; ++id) idOfHash.emplace(DescriptionIndex::InstanceHash("Foo", id), id);
    for (std::int16_t b = 1; b < 4000; ++b) {
        auto a = idOfHash.find(static_cast<std::int16_t>(DescriptionIndex::InstanceHash("Foo", b) - distance));
        if (a != idOfHash.end() && a->second != b) return {a->second, b};
    }
    ADD_FAILURE() << "no such ids";
    return {0, 0};
}

class DescriptionIndexTest : public testing::Test {
protected:
    void AddResource(std::int16_t id) { fFolder.Put("out/vlbk_FOO /" + std::to_string(id) + ".vlbk", "x"); }
    void AddInstance(std::int16_t at, char const* name = "Foo") {
        fFolder.Put(InstanceFile(at), std::string("(type ") + name + " (prog))" + '\0');
    }
    // Two resources whose hashes lie `distance` apart, the first compiled first: its description
    // takes its hash, the second's the id after it. Returns the two ids and the first hash.
    std::tuple<std::int16_t, std::int16_t, std::int16_t> AddCollidingPair(int distance) {
        auto [first, second] = IdsWithHashesApart(distance);
        std::int16_t hash = DescriptionIndex::InstanceHash("Foo", first);
        AddResource(first);
        AddResource(second);
        AddInstance(hash);
        AddInstance(Next(hash));
        return {first, second, hash};
    }
    std::vector<std::int16_t> Find(std::int16_t id) {
        OutputTree tree(fFolder / "out");
        DescriptionIndex index(tree);
        return index.FindInstance("Foo", kFoo, id);
    }

    TempFolder fFolder;
};

TEST_F(DescriptionIndexTest, OtherTypesInTheRunArePassedOver) {
    std::int16_t hash = DescriptionIndex::InstanceHash("Foo", 5);
    AddResource(5);
    AddInstance(hash, "Bar");
    AddInstance(Next(hash));
    EXPECT_EQ(std::vector<std::int16_t>{Next(hash)}, Find(5));
    EXPECT_TRUE(Find(6).empty());
}

TEST_F(DescriptionIndexTest, AChainOfCollisionsIsSettledWhereOnlyOneOrderFits) {
    auto [first, second, hash] = AddCollidingPair(1);
    EXPECT_EQ(std::vector<std::int16_t>{hash}, Find(first));
    EXPECT_EQ(std::vector<std::int16_t>{Next(hash)}, Find(second));
}

TEST_F(DescriptionIndexTest, EqualHashesLeaveTheOrderUnknownAndBothCandidatesStand) {
    auto [first, second, hash] = AddCollidingPair(0);
    EXPECT_EQ(2u, Find(first).size());
}

TEST(DescriptionIndex, TextsAreDescriptionsOnlyWhenWholeAndOpenedByAType) {
    EXPECT_EQ("Foo", DescriptionIndex::DescribedName("(type Foo\n  (prog))"));
    for (char const* text : {"(typ Foo)", "(type (x))", "", "type Foo", "(type"})
        EXPECT_FALSE(DescriptionIndex::DescribedName(text)) << text;
    EXPECT_EQ("(type A)", DescriptionIndex::TextOf(std::string("(type A)") + '\0'));
    EXPECT_FALSE(DescriptionIndex::TextOf("(type A)"));
    EXPECT_FALSE(DescriptionIndex::TextOf(std::string("(type\0 A)", 9) + '\0'));
    EXPECT_FALSE(DescriptionIndex::TextOf(""));
}

}  // namespace
