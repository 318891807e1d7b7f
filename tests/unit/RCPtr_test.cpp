#include "RCPtr.h"

#include <gtest/gtest.h>

namespace {

struct Counted {
    explicit Counted(int* deletions) : fDeletions(deletions) {}
    ~Counted() { ++*fDeletions; }
    int* fDeletions;
};

TEST(RCPtr, CopyingMovesOwnership) {
    int deletions = 0;
    {
        RCPtr<Counted> first(new Counted(&deletions));
        RCPtr<Counted> second(first);
        EXPECT_EQ(first.GetRep(), nullptr);
        RCPtr<Counted> third;
        third = second;
        EXPECT_EQ(second.GetRep(), nullptr);
        EXPECT_NE(third.GetRep(), nullptr);
    }
    EXPECT_EQ(deletions, 1);
}

TEST(RCPtr, AssigningAPointerDeletesTheOldOneUnlessItIsTheSame) {
    int deletions = 0;
    RCPtr<Counted> holder(new Counted(&deletions));
    holder = holder.GetRep();
    EXPECT_EQ(deletions, 0);
    holder = new Counted(&deletions);
    EXPECT_EQ(deletions, 1);
    delete holder.Release();
    EXPECT_EQ(deletions, 2);
    EXPECT_EQ(static_cast<Counted*>(holder), nullptr);
}

TEST(RCAlloc, ZeroBytesStillGiveABlock) {
    RCVoidPtr block(RCAlloc(0));
    void* raw = RCAlloc(0);
    EXPECT_NE(raw, nullptr);
    RCFree(raw);
    RCFree(nullptr);
}

}  // namespace
