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

constexpr std::size_t kChunkSize = 64 * 1024;

// The unused rest of the newest chunk. The chunks themselves are linked through their first
// granule so that they stay reachable until the process ends.
struct Chunks {
    char* fRest = nullptr;
    std::size_t fRestSize = 0;
    void* fNewest = nullptr;

    bool NewChunk() {
        char* chunk = static_cast<char*>(std::malloc(kChunkSize));
        if (chunk == nullptr) return false;
        *reinterpret_cast<void**>(chunk) = fNewest;
        fNewest = chunk;
        fRest = chunk + RCSmallBlocks::kGranule;
        fRestSize = kChunkSize - RCSmallBlocks::kGranule;
        return true;
    }
};

Chunks gChunks;

}  // namespace

RCSmallBlocks::FreeBlock* RCSmallBlocks::fgFree[kLargest / kGranule] = {};

void* RCSmallBlocks::Carve(std::size_t index) {
    std::size_t const size = (index + 1) * kGranule;
    if (gChunks.fRestSize < size && !gChunks.NewChunk()) return nullptr;
    void* block = gChunks.fRest;
    gChunks.fRest += size;
    gChunks.fRestSize -= size;
    return block;
}

void RCThrowBadAlloc() {
    throw std::bad_alloc();
}
