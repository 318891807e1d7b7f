#include "RCAlloc.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace {

// Blocks of every size, small and large, live side by side without overlapping, and blocks given
// back come out again whole.
TEST(RCAllocSmall, BlocksOfEverySizeStayApartAcrossReuse) {
    std::vector<std::pair<unsigned char*, std::size_t>> blocks;
    for (int round = 0; round < 2; ++round) {
        for (std::size_t size = 0; size <= 700; size += 7) {
            auto* block = static_cast<unsigned char*>(RCAllocSmall(size));
            ASSERT_NE(block, nullptr);
            std::memset(block, static_cast<int>(size & 0xFF), size);
            blocks.emplace_back(block, size);
        }
        for (auto const& [block, size] : blocks)
            for (std::size_t at = 0; at < size; ++at) ASSERT_EQ(block[at], size & 0xFF) << size;
        for (std::size_t i = 0; i < blocks.size(); i += 2) RCFreeSmall(blocks[i].first, blocks[i].second);
        std::vector<std::pair<unsigned char*, std::size_t>> kept;
        for (std::size_t i = 1; i < blocks.size(); i += 2) kept.push_back(blocks[i]);
        blocks = kept;
    }
    for (auto const& [block, size] : blocks) RCFreeSmall(block, size);
    RCFreeSmall(nullptr, 16);
}

// Many blocks given back at once are all taken again before any new memory is used, so a burst of
// expressions costs no more memory the second time.
TEST(RCAllocSmall, ABurstGivenBackIsReusedWhole) {
    constexpr int kCount = 10000;
    std::set<void*> first;
    for (int i = 0; i < kCount; ++i) first.insert(RCAllocSmall(40));
    for (void* block : first) RCFreeSmall(block, 40);
    std::set<void*> second;
    for (int i = 0; i < kCount; ++i) second.insert(RCAllocSmall(40));
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_EQ(first, second);
#endif
    for (void* block : second) RCFreeSmall(block, 40);
}

}  // namespace
