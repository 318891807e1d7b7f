// Allocation for the resource language over the C heap: a request for 0 bytes gets 1. Small
// blocks are recycled through one free list per size class, carved from chunks that live as long
// as the process; a block given back is reused by the next request of its class, however many
// were given back at once, which the C heap's own caches don't promise.

#include "RCAlloc.h"

#include <cstdlib>
#include <new>

void* RCAlloc(std::size_t size) {
    // Asking for 0 bytes may give null, which callers would take for exhaustion.
    return std::malloc(size == 0 ? 1 : size);
}

void RCFree(void* block) {
    std::free(block);
}

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kLargestSmall = 512;
constexpr std::size_t kClassCount = kLargestSmall / kGranule;
constexpr std::size_t kChunkSize = 64 * 1024;

struct FreeBlock {
    FreeBlock* fNext;
};

// The classes' free lists and the unused rest of the newest chunk. The chunks themselves are
// linked through their first block so that they stay reachable until the process ends.
struct SmallBlocks {
    FreeBlock* fFree[kClassCount] = {};
    char* fRest = nullptr;
    std::size_t fRestSize = 0;
    FreeBlock* fChunks = nullptr;

    void* Take(std::size_t index) {
        if (FreeBlock* block = fFree[index]) {
            fFree[index] = block->fNext;
            return block;
        }
        std::size_t const size = (index + 1) * kGranule;
        if (fRestSize < size && !NewChunk()) return nullptr;
        void* block = fRest;
        fRest += size;
        fRestSize -= size;
        return block;
    }

    void Give(void* block, std::size_t index) { fFree[index] = new (block) FreeBlock{fFree[index]}; }

    bool NewChunk() {
        char* chunk = static_cast<char*>(std::malloc(kChunkSize));
        if (chunk == nullptr) return false;
        fChunks = new (chunk) FreeBlock{fChunks};
        fRest = chunk + kGranule;
        fRestSize = kChunkSize - kGranule;
        return true;
    }
};

SmallBlocks gSmallBlocks;

std::size_t ClassOf(std::size_t size) { return size == 0 ? 0 : (size - 1) / kGranule; }

}  // namespace

// Under AddressSanitizer every block goes to the heap, so that a use after RCFreeSmall is caught.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kRecycle = false;
#else
constexpr bool kRecycle = true;
#endif

void* RCAllocSmall(std::size_t size) {
    if (!kRecycle || size > kLargestSmall) return RCAlloc(size);
    return gSmallBlocks.Take(ClassOf(size));
}

void RCFreeSmall(void* block, std::size_t size) {
    if (block == nullptr) return;
    if (!kRecycle || size > kLargestSmall) return RCFree(block);
    gSmallBlocks.Give(block, ClassOf(size));
}

void* RCRecycled::operator new(std::size_t size) {
    if (void* block = RCAllocSmall(size)) return block;
    throw std::bad_alloc();
}

void RCRecycled::operator delete(void* block, std::size_t size) {
    RCFreeSmall(block, size);
}
