#include "MarkRelease.h"

#include <gtest/gtest.h>

namespace {

char* Allocate(MarkRelease& arena, size_t size) {
    long err = -1;
    auto* memory = static_cast<char*>(arena.Allocate(size, &err));
    EXPECT_EQ(0, err);
    return memory;
}

TEST(MarkRelease, ChunkSizeCountsTheHeaderAndHasAFloor) {
    MarkRelease arena(MarkRelease::kDefaultChunkSize);
    arena.SetChunkSize(47);
    EXPECT_EQ(4096u, arena.GetChunkSize());
    arena.SetChunkSize(48);
    EXPECT_EQ(96u, arena.GetChunkSize());
    arena.SetChunkSize(20000);
    EXPECT_EQ(20048u, arena.GetChunkSize());
}

TEST(MarkRelease, AllocationsAreRoundedToEightBytes) {
    MarkRelease arena(256);
    char* first = Allocate(arena, 1);
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(first) % 8);
    EXPECT_EQ(first + 8, Allocate(arena, 3));
    void* mark = arena.Mark();
    EXPECT_EQ(mark, Allocate(arena, 0));
    EXPECT_EQ(mark, arena.Mark());
}

TEST(MarkRelease, ALargeAllocationTakesANewChunkAndTheOldTailIsLost) {
    MarkRelease arena(0);
    arena.SetChunkSize(100);
    char* small = Allocate(arena, 8);
    char* large = Allocate(arena, 496);
    EXPECT_EQ(large + 496, arena.Mark());
    // Only the newest chunk is tried: the rest of the first one is never used again.
    char* next = Allocate(arena, 8);
    EXPECT_EQ(large + 496, next);
    EXPECT_NE(small + 8, next);
}

TEST(MarkRelease, ReleaseGoesBackToAMarkAcrossChunks) {
    MarkRelease arena(0);
    arena.SetChunkSize(64);
    Allocate(arena, 16);
    void* mark = arena.Mark();
    Allocate(arena, 200);
    Allocate(arena, 200);
    ASSERT_EQ(0, arena.Release(mark));
    EXPECT_EQ(mark, arena.Mark());
    EXPECT_EQ(mark, Allocate(arena, 8));
    char foreign[8];
    EXPECT_EQ(kMemFullErr, arena.Release(foreign));
    EXPECT_EQ(nullptr, arena.Mark());
}

TEST(MarkRelease, ObjectsLiveInTheArena) {
    MarkRelease arena(256);
    void* mark = arena.Mark();
    auto* numbers = new (&arena) long[4]{1, 2, 3, 4};
    EXPECT_EQ(4, numbers[3]);
    EXPECT_NE(mark, arena.Mark());
}

TEST(MarkReleaseDeathTest, AMarkAboveTheCurrentOneStops) {
    MarkRelease arena(256);
    char* first = Allocate(arena, 8);
    arena.Release(first);
    EXPECT_DEATH(arena.Release(first + 8), "aMark <= fMark");
}

}  // namespace
