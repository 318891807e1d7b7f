#include "RCPtr.h"

#include <gtest/gtest.h>

namespace {

struct Counted {
    explicit Counted(int* deletions) : fDeletions(deletions) {}
    ~Counted() { ++*fDeletions; }
    int* fDeletions;
};

TEST(RCPtr, OwnershipMovesOnCopyAndTheOldObjectDiesOnAssignment) {
    int deletions = 0;
    {
        RCPtr<Counted> first(new Counted(&deletions));
        RCPtr<Counted> second(first);
        RCPtr<Counted> third;
        third = second;
        EXPECT_EQ(first.GetRep(), nullptr);
        EXPECT_EQ(second.GetRep(), nullptr);
        third = third.GetRep();
        EXPECT_EQ(deletions, 0);
        third = new Counted(&deletions);
        EXPECT_EQ(deletions, 1);
        delete second.Release();
    }
    EXPECT_EQ(deletions, 2);
}

}  // namespace
