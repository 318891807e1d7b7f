#include "DataArea.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// Bytes the application heap gained while the body ran.
template <typename Body>
long HeapGrowth(Body body) {
    uint64_t before = gHandleProcApp.GetAmountInUse();
    body();
    return static_cast<long>(gHandleProcApp.GetAmountInUse() - before);
}

void WriteText(DataArea& area, char const* text) { ASSERT_EQ(std::strlen(text), area.Write(text, std::strlen(text))); }

TEST(DataArea, PreSizedAreaCountsItsAllocationAsData) {
    DataArea area(4096, 4096, true);
    EXPECT_EQ(4096u, area.GetSize());
    EXPECT_EQ(0u, area.GetCursor());
    EXPECT_EQ(4096u, area.Require(10));
}

TEST(DataArea, GrowsByItsStepCountedFromTheCursor) {
    DataArea area(8, 16, false);
    WriteText(area, "12345678");
    area.SetCursor(4);
    // Eight more bytes from cursor 4 overflow the block: it becomes 4 + 16 bytes, not 8 + 16.
    EXPECT_EQ(12, HeapGrowth([&] { EXPECT_EQ(8u, area.Require(8)); }));
    EXPECT_EQ(12u, area.GetSize());
    // Room up to 20 bytes is there without asking the heap.
    area.SetCursor(12);
    EXPECT_EQ(0, HeapGrowth([&] { EXPECT_EQ(8u, area.Require(8)); }));
    // A request larger than the step gets exactly what it asks for.
    EXPECT_EQ(92, HeapGrowth([&] { EXPECT_EQ(100u, area.Require(100)); }));
    EXPECT_EQ(112u, area.GetSize());
}

TEST(DataArea, GrowingKeepsTheDataAndAnEmptyAreaStartsABlock) {
    DataArea area;
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(i & 0xFF, area.PutChar(i & 0xFF));
    area.SetCursor(0);
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(i & 0xFF, area.GetChar());
    EXPECT_EQ(-1, area.GetChar());
}

TEST(DataArea, PutCharReturnsTheByteInsideTheDataAndTheArgumentWhenGrowing) {
    DataArea area(1, 4, true);
    EXPECT_EQ(0xFF, area.PutChar(-1));
    EXPECT_EQ(0x141, area.PutChar(0x141));
    area.SetCursor(1);
    EXPECT_EQ(0x41, area.GetChar());
}

TEST(DataArea, AppendingWithinTheBlockGrowsTheDataWithoutTheHeap) {
    DataArea area(4, 4, false);
    EXPECT_EQ(0, HeapGrowth([&] {
        for (int c : {1, 2, 3, 4}) EXPECT_EQ(c, area.PutChar(c));
    }));
    EXPECT_EQ(4u, area.GetSize());
    EXPECT_EQ(4, HeapGrowth([&] { EXPECT_EQ(5, area.PutChar(5)); }));
    EXPECT_EQ(5u, area.GetSize());
}

TEST(DataArea, AdvanceInBlockStopsAtTheBlockAndLeavesTheAreaAsItWas) {
    DataArea area(4, 4, false);
    unsigned char* first = area.AdvanceInBlock(3);
    ASSERT_NE(nullptr, first);
    EXPECT_EQ(3u, area.GetSize());
    EXPECT_EQ(nullptr, area.AdvanceInBlock(2));
    EXPECT_EQ(3u, area.GetCursor());
    EXPECT_EQ(3u, area.GetSize());
    // Inside the data the size stays; only the cursor moves.
    area.SetCursor(0);
    EXPECT_EQ(first, area.AdvanceInBlock(4));
    EXPECT_EQ(4u, area.GetSize());
}

TEST(DataArea, ResetKeepsTheBlockAndSwapExchangesAreas) {
    DataArea area(8, 8, false);
    WriteText(area, "abc");
    area.MacHLock();
    area.MacHLock();
    area.Reset();
    EXPECT_EQ(0u, area.GetSize());
    EXPECT_EQ(0u, area.GetCursor());
    EXPECT_EQ(8u, area.GetAllocated());

    DataArea empty;
    empty.Swap(area);
    EXPECT_FALSE(area.HasBlock());
    EXPECT_TRUE(empty.HasBlock());
    WriteText(empty, "xy");
    EXPECT_EQ(0, std::memcmp(empty.GetData(0), "xy", 2));
}

TEST(DataArea, ReadStopsAtTheEndOfTheData) {
    DataArea area(0, 16, false);
    WriteText(area, "abcdef");
    area.SetCursor(2);
    char bytes[16] = {};
    EXPECT_EQ(4u, area.Read(bytes, sizeof bytes));
    EXPECT_STREQ("cdef", bytes);
    EXPECT_EQ(0u, area.Read(bytes, 1));
}

TEST(DataArea, AlignCursorSkipsWithoutWriting) {
    DataArea area(0, 16, false);
    WriteText(area, "abc");
    EXPECT_EQ(4u, area.AlignCursor(2));
    EXPECT_EQ(4u, area.AlignCursor(2));
    EXPECT_EQ(4u, area.GetSize());
    EXPECT_EQ(8u, area.AlignCursor(8));
    EXPECT_EQ(8u, area.GetSize());
}

TEST(DataArea, DeleteMovesTheCursorWithTheData) {
    DataArea area(0, 16, false);
    WriteText(area, "abcdefgh");
    area.Delete(2, 4);  // cursor behind the range moves with the data
    EXPECT_EQ(6u, area.GetCursor());
    EXPECT_EQ(0, std::memcmp("abefgh", area.GetData(0), 6));
    area.SetCursor(3);
    area.Delete(2, 5);  // cursor inside the range goes to its start
    EXPECT_EQ(2u, area.GetCursor());
    EXPECT_EQ(3u, area.GetSize());
    EXPECT_EQ(0, std::memcmp("abh", area.GetData(0), 3));
}

TEST(DataArea, TruncateCutsTheBlockAtTheCursor) {
    DataArea area(64, 16, true);
    area.SetCursor(10);
    EXPECT_EQ(-54, HeapGrowth([&] { area.Truncate(); }));
    EXPECT_EQ(10u, area.GetSize());
}

TEST(DataArea, AssignCopiesContentsCursorAndSize) {
    DataArea source(0, 16, false);
    WriteText(source, "hello");
    source.SetCursor(1);
    DataArea empty;
    DataArea used(0, 4, false);
    WriteText(used, "a much longer old text");
    for (DataArea* target : {&empty, &used}) {
        ASSERT_EQ(0, target->Assign(&source));
        EXPECT_EQ(1u, target->GetCursor());
        EXPECT_EQ(5u, target->GetSize());
        EXPECT_EQ(0, std::memcmp("hello", target->GetData(0), 5));
        EXPECT_NE(source.GetData(0), target->GetData(0));
    }
}

TEST(DataArea, HeapAccountingReturnsToZeroAfterDisposal) {
    EXPECT_EQ(0, HeapGrowth([] {
        DataArea area(10, 10, false);
        WriteText(area, "more than ten bytes");
    }));
}

TEST(DataAreaDeathTest, GuardsCursorAndDataAccess) {
    DataArea area(4, 4, true);
    EXPECT_NE(nullptr, area.GetData(4));
    EXPECT_DEATH(area.GetData(5), "i <= fSize");
    EXPECT_DEATH(area.SetCursor(5), "aCursor <= fSize");
    DataArea empty;
    EXPECT_DEATH(empty.GetData(0), "fHandle != 0");
}

}  // namespace
