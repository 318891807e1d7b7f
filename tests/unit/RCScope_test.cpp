#include "RCScope.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

// Names only need distinct addresses here; they stand in for interned names.
UniqueStruct* Name(char const* text) {
    return reinterpret_cast<UniqueStruct*>(const_cast<char*>(text));
}

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

// Counts its own deletions, to see what a list owns.
struct Tracked {
    Tracked(UniqueStruct* name, int* deletions) : fName(name), fDeletions(deletions) {}
    ~Tracked() { ++*fDeletions; }
    UniqueStruct* Name() const { return fName; }

    UniqueStruct* fName;
    int* fDeletions;
};

TEST(RCList, PushAppendAndPopKeepTheirEnds) {
    IntList list;
    EXPECT_EQ(list.First(), nullptr);
    EXPECT_EQ(list.Pop(), nullptr);
    EXPECT_TRUE(Values(list).empty());

    list.Append(new IntItem(2));
    list.Push(new IntItem(1));
    list.Append(new IntItem(3));
    list.Push(new IntItem(0));
    EXPECT_EQ(Values(list), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(list.Last()->fValue, 3);

    IntItem* head = list.Pop();
    EXPECT_EQ(head->fValue, 0);
    delete head;
    EXPECT_EQ(Values(list), (std::vector<int>{1, 2, 3}));

    while (IntItem* item = list.Pop()) delete item;
    EXPECT_EQ(list.Last(), nullptr);
}

TEST(RCList, RemoveRelinksHeadMiddleAndTail) {
    IntList list = ListOf({1, 2, 3, 4});
    IntItem* head = list.First();
    list.Remove(head);
    delete head;
    EXPECT_EQ(Values(list), (std::vector<int>{2, 3, 4}));

    IntItem* tail = list.Last();
    list.Remove(tail);
    delete tail;
    EXPECT_EQ(Values(list), (std::vector<int>{2, 3}));
    EXPECT_EQ(list.Last()->fValue, 3);

    IntItem stranger(9);
    list.Remove(&stranger);
    EXPECT_EQ(Values(list), (std::vector<int>{2, 3}));
}

TEST(RCList, RemoveCannotUnlinkTheOnlyItem) {
    IntList list = ListOf({7});
    list.Remove(list.First());
    EXPECT_EQ(Values(list), (std::vector<int>{7}));
}

TEST(RCList, CopyAndAssignmentTakeTheWholeChain) {
    IntList source = ListOf({1, 2});
    IntList copy(source);
    EXPECT_EQ(source.First(), nullptr);
    EXPECT_EQ(Values(copy), (std::vector<int>{1, 2}));

    IntList target = ListOf({8, 9});
    target = copy;
    EXPECT_EQ(copy.First(), nullptr);
    EXPECT_EQ(Values(target), (std::vector<int>{1, 2}));

    IntList adopter;
    adopter = target.Release();
    EXPECT_EQ(target.GetList(), nullptr);
    EXPECT_EQ(Values(adopter), (std::vector<int>{1, 2}));
}

TEST(RCList, ReleaseDeletesItemsAndWhatTheyPointAt) {
    int deletions = 0;
    RCList<RCListItem<Tracked*>> list;
    for (char const* text : {"a", "b", "c"})
        list.Append(new RCListItem<Tracked*>(new Tracked(Name(text), &deletions)));
    release(list);
    EXPECT_EQ(deletions, 3);
    EXPECT_EQ(list.First(), nullptr);
}

TEST(RCNamedList, LookupFindsTheFirstOfTheName) {
    using Item = RCNamedListItem<long>;
    RCNamedList<Item> list;
    EXPECT_EQ(list.Lookup(Name("x")), nullptr);

    UniqueStruct* x = Name("x");
    list.Append(x, 1L);
    list.Append(Name("y"), 2L);
    list.Append(x, 3L);
    EXPECT_EQ(list.Lookup(x)->fValue, 1);
    EXPECT_EQ(list.Lookup(Name("y"))->fValue, 2);
    EXPECT_EQ(list.Lookup(Name("z")), nullptr);
}

class RCScopeTest : public ::testing::Test {
protected:
    Tracked* Make(char const* text) {
        owned.push_back(std::make_unique<Tracked>(Name(text), &deletions));
        return owned.back().get();
    }

    int deletions = 0;
    std::vector<std::unique_ptr<Tracked>> owned;
};

TEST_F(RCScopeTest, InnerNamesHideOuterOnesUntilPopped) {
    RCScope<Tracked> scope;
    Tracked* outer = Make("n");
    Tracked* other = Make("m");
    scope.Insert(outer);
    scope.Insert(other);

    scope.PushScope();
    EXPECT_EQ(scope.Lookup(Name("m")), nullptr);
    EXPECT_EQ(scope.Lookup(Name("m"), true), other);

    Tracked* inner = Make("n");
    scope.Insert(inner);
    EXPECT_EQ(scope.Lookup(Name("n")), inner);
    EXPECT_EQ(scope.Lookup(Name("n"), true), inner);

    delete scope.PopScope();
    EXPECT_EQ(scope.Lookup(Name("n")), outer);
    EXPECT_EQ(deletions, 0);
}

TEST_F(RCScopeTest, IteratorsWalkScopesInnermostFirst) {
    RCScope<Tracked> scope;
    scope.Insert(Make("a"));
    scope.PushScope();
    scope.Insert(Make("b"));
    scope.Insert(Make("c"));

    std::vector<std::string> seen;
    RCScopeIterator<Tracked> scopes(scope);
    while (RCScopeList<Tracked>* list = scopes.Next()) {
        RCScopeListIterator<Tracked> items(*list);
        while (RCScopeListItem<Tracked>* item = items.Next())
            seen.push_back(reinterpret_cast<char const*>(item->Name()));
        seen.push_back("|");
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"c", "b", "|", "a", "|"}));
}

TEST(RCScope, ReleaseScopeDeletesTheNamedObjects) {
    int deletions = 0;
    {
        RCScope<Tracked> scope;
        scope.Insert(new Tracked(Name("a"), &deletions));
        scope.PushScope();
        scope.Insert(new Tracked(Name("b"), &deletions));
        scope.ReleaseScope();
        EXPECT_EQ(deletions, 2);
        EXPECT_EQ(scope.Lookup(Name("a"), true), nullptr);
    }
    EXPECT_EQ(deletions, 2);
}

TEST_F(RCScopeTest, ADuplicateInOneScopeStops) {
    RCScope<Tracked> scope;
    scope.Insert(Make("d"));
    EXPECT_DEATH(scope.Insert(Make("d")), "Lookup");
}

}  // namespace
