#include "RCScope.h"

#include <gtest/gtest.h>

#include "UniqueNames.h"

#include <vector>

namespace {

UniqueStruct* Name(char const* text) { return uniqueOf(text); }

using IntItem = RCListItem<int>;
using IntList = RCList<IntItem>;

std::vector<int> Values(IntList& list) {
    std::vector<int> values;
    RCListIterator<IntList> items(list);
    while (IntItem* item = items.Next()) values.push_back(item->fValue);
    return values;
}

IntList ListOf(std::vector<int> const& values) {
    IntList list;
    for (int value : values) list.Append(new IntItem(value));
    return list;
}

// A named object that counts its deletions, to see what a scope owns.
struct Tracked {
    Tracked(UniqueStruct* name, int* deletions) : fName(name), fDeletions(deletions) {}
    ~Tracked() { ++*fDeletions; }
    UniqueStruct* Name() const { return fName; }

    UniqueStruct* fName;
    int* fDeletions;
};

TEST(RCList, PushAppendPopAndRemoveKeepTheChain) {
    IntList list;
    EXPECT_EQ(list.First(), nullptr);
    EXPECT_EQ(list.Pop(), nullptr);
    EXPECT_TRUE(Values(list).empty());

    list.Append(new IntItem(2));
    list.Push(new IntItem(1));
    list.Append(new IntItem(3));
    list.Push(new IntItem(0));
    list.Append(new IntItem(4));
    EXPECT_EQ(Values(list), (std::vector<int>{0, 1, 2, 3, 4}));

    delete list.Pop();
    for (IntItem* item : {list.First()->fNext, list.Last(), list.First()}) {
        list.Remove(item);
        delete item;
    }
    IntItem stranger(9);
    list.Remove(&stranger);
    EXPECT_EQ(Values(list), (std::vector<int>{3}));

    // Relinking past the head cannot unlink the only item of a list.
    list.Remove(list.First());
    EXPECT_EQ(Values(list), (std::vector<int>{3}));
}

TEST(RCList, CopyAssignmentAndAdoptionTakeTheWholeChain) {
    IntList source = ListOf({1, 2});
    IntList copy(source);
    IntList target = ListOf({8, 9});
    target = copy;
    IntList adopter;
    adopter = target.Release();
    EXPECT_EQ(source.First(), nullptr);
    EXPECT_EQ(copy.First(), nullptr);
    EXPECT_EQ(target.First(), nullptr);
    EXPECT_EQ(Values(adopter), (std::vector<int>{1, 2}));
}

TEST(RCScope, InnerNamesHideOuterOnesAndPoppingLeavesTheObjects) {
    int deletions = 0;
    Tracked outer(Name("n"), &deletions), other(Name("m"), &deletions);
    Tracked inner(Name("n"), &deletions);
    RCScope<Tracked> scope;
    scope.Insert(&outer);
    scope.Insert(&other);
    scope.PushScope();
    scope.Insert(&inner);

    EXPECT_EQ(scope.Lookup(Name("m")), nullptr);
    EXPECT_EQ(scope.Lookup(Name("m"), true), &other);
    EXPECT_EQ(scope.Lookup(Name("n"), true), &inner);

    delete scope.PopScope();
    EXPECT_EQ(scope.Lookup(Name("n")), &outer);
    EXPECT_EQ(deletions, 0);
    EXPECT_DEATH(scope.Insert(&outer), "Lookup");
}

TEST(RCScope, ReleaseDeletesTheNamedObjectsOfEveryScope) {
    int deletions = 0;
    RCScope<Tracked> scope;
    scope.Insert(new Tracked(Name("a"), &deletions));
    scope.PushScope();
    scope.Insert(new Tracked(Name("b"), &deletions));
    scope.ReleaseScope();
    EXPECT_EQ(deletions, 2);
    EXPECT_EQ(scope.Lookup(Name("a"), true), nullptr);
}

}  // namespace
