#include <gtest/gtest.h>

#include "PPInput.h"
#include "PPMemMgr.h"
#include "PPText.h"

namespace {

TEST(PPMemMgr, TempBlockSizesFollowTheRequest) {
    PP_CMemoryManager_Basic memory;
    memory.AllocTemp(4095);
    EXPECT_EQ(memory.GetAllocPermCount(), 1u);
    memory.AllocTemp(4096);  // too big for what is left: a block of 4136 with 16 bytes to spare
    EXPECT_EQ(memory.GetAllocPermCount(), 2u);
    memory.AllocTemp(16);
    EXPECT_EQ(memory.GetAllocPermCount(), 2u);
    memory.AllocTemp(1);
    EXPECT_EQ(memory.GetAllocPermCount(), 3u);
    memory.FreeTemp();
    EXPECT_EQ(memory.GetAllocPermCount(), 1u);
    memory.ReleaseTemp();
    EXPECT_EQ(memory.GetAllocPermCount(), 0u);
}

TEST(PPMemMgr, TempAllocationsAreAlignedAndTheKeptBlockIsRewound) {
    PP_CMemoryManager_Basic memory;
    char* first = static_cast<char*>(memory.AllocTemp(3));
    char* second = static_cast<char*>(memory.AllocTemp(5));
    EXPECT_EQ(second - first, 8);
    EXPECT_EQ(reinterpret_cast<unsigned long>(first) % 8, 0u);
    memory.FreeTemp();
    EXPECT_EQ(memory.AllocTemp(1), first);
    memory.ReleaseTemp();
}

TEST(PPMemMgr, BlocksPastOneGigabyteTogetherEndTheRunAsAnExhaustedHeap) {
    PP_CMemoryManager_Basic memory;
    EXPECT_EXIT(memory.AllocPerm((1UL << 30) + 1), testing::ExitedWithCode(1), "^$");
    // What is freed counts no more: two blocks of half the heap fit one after the other.
    memory.FreePerm(memory.AllocPerm(1UL << 29));
    void* half = memory.AllocPerm(1UL << 29);
    EXPECT_EXIT(memory.AllocPerm(1UL << 29 | 1), testing::ExitedWithCode(1), "^$");
    memory.FreePerm(half);
}

TEST(PPMemMgr, PermanentCountIgnoresNull) {
    PP_CMemoryManager_Basic memory;
    void* block = memory.AllocPerm(0);
    memory.FreePerm(nullptr);
    EXPECT_EQ(memory.GetAllocPermCount(), 1u);
    memory.FreeStringPerm(memory.SaveStringPerm("abc"));
    memory.FreePerm(block);
    EXPECT_EQ(memory.GetAllocPermCount(), 0u);
}

TEST(PPMemMgr, InputRecordsAreRecycled) {
    PP_CMemoryManager_Basic memory;
    PP_CInput* input = memory.AllocInput("ab", 2);
    EXPECT_EQ(input->Readable(), 2u);
    EXPECT_EQ(input->fFileInfo, nullptr);
    memory.FreeInput(input);
    EXPECT_EQ(memory.AllocInput("c", 1), input);
    EXPECT_EQ(memory.GetAllocInputCount(), 1u);
    memory.FreeInput(input);
    memory.ReleaseInput();
    EXPECT_EQ(memory.GetAllocPermCount(), 0u);
}

TEST(PPMemMgrDeathTest, BrokenInvariantsStopWithTheCondition) {
    EXPECT_DEATH(
        {
            PP_CMemoryManager_Basic memory;
            memory.AllocPerm(1);
        },
        "fAllocPermCount == 0");
    EXPECT_DEATH(
        {
            PP_CMemoryManager_Basic memory;
            memory.FreeInput(memory.AllocInput("", 0));
            memory.AllocInput("", 0);
            memory.ReleaseInput();
        },
        "fAllocInputCount == 0");
}

} // namespace
