// A mark-and-release arena: objects that die together are freed together, by going back to a mark.
#pragma once

#include <cstddef>
#include <cstdint>

#include "HandleManager.h"

// One block of a mark-and-release arena; its header sits at the start of the block and the
// space for allocation follows.
struct MarkReleaseChunk {
    MarkReleaseChunk* fNextChunk;
    char* fMark;
    char* fLimit;
    HandleManager* fManager;
    Handle fHandle;

    // Returns the next size bytes (rounded up to 8), or null when the chunk is full.
    void* Allocate(size_t size);
    char* Start() { return reinterpret_cast<char*>(this + 1); }
};

// An arena that allocates by moving a mark through chunks and frees only in bulk, back to a mark.
// Only the newest chunk is ever allocated from, so what an allocation too big for it leaves
// behind in the chunk is lost.
class MarkRelease {
public:
    // What a chunk is counted to spend on its header.
    static constexpr size_t kChunkOverhead = 48;
    static constexpr size_t kDefaultChunkSize = 4096;

    explicit MarkRelease(size_t chunkSize) : fChunkSize(chunkSize) {}
    virtual ~MarkRelease() { Release(); }
    MarkRelease(MarkRelease const&) = delete;
    MarkRelease& operator=(MarkRelease const&) = delete;

    // Releases everything, then sets the size of the chunks to come.
    void SetChunkSize(size_t size);
    size_t GetChunkSize() const { return fChunkSize; }

    // Returns null with *err set when memory ran out.
    void* Allocate(size_t size, long* err);
    // The next free byte of the newest chunk, or null without a chunk.
    void* Mark() const { return fChunk == nullptr ? nullptr : fChunk->fMark; }
    void Release();
    // Frees every chunk made after the one that holds the mark, and resets that chunk's mark.
    // A null mark frees everything. Returns kMemFullErr when no chunk held the mark.
    long Release(void* aMark);

private:
    size_t fChunkSize;
    MarkReleaseChunk* fChunk = nullptr;
    HandleManager* fManager = HandleManager::GetManager(kApplicationHeap);
};

// Base of objects that live in an arena and are never deleted one by one.
class MarkReleaseObject {
public:
    virtual ~MarkReleaseObject() = default;
};

// The arena of everything that lives until the process ends.
extern MarkRelease gPermanentMemory;

// Failure reports an error and is fatal.
void* operator new(size_t size, MarkRelease* arena);
void* operator new[](size_t size, MarkRelease* arena);
