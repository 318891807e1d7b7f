// The mark-and-release arena: chunks allocated by bumping a pointer and released back to a mark.

#include "MarkRelease.h"

#include "Assertion.h"
#include "Msgs.h"

MarkRelease gPermanentMemory(MarkRelease::kDefaultChunkSize);

static_assert(sizeof(MarkReleaseChunk) <= MarkRelease::kChunkOverhead);

namespace {

constexpr size_t kAlignment = 8;

size_t RoundUp(size_t size) { return (size + kAlignment - 1) / kAlignment * kAlignment; }

void* AllocateOrDie(size_t size, MarkRelease* arena, char const* failure) {
    long err = 0;
    void* memory = arena->Allocate(size, &err);
    if (err != 0) {
        Msgs::Display(Msgs::kError, failure, err);
        Msgs::Display(Msgs::kFatal, static_cast<int>(err));
    }
    return memory;
}

}  // namespace

void* MarkReleaseChunk::Allocate(size_t size) {
    size_t const rounded = RoundUp(size);
    if (rounded > static_cast<size_t>(fLimit - fMark)) return nullptr;
    char* result = fMark;
    fMark += rounded;
    return result;
}

void MarkRelease::SetChunkSize(size_t size) {
    Release();
    fChunkSize = size < kChunkOverhead ? kDefaultChunkSize : size + kChunkOverhead;
}

void* MarkRelease::Allocate(size_t size, long* err) {
    *err = 0;
    if (fChunk != nullptr) {
        if (void* hit = fChunk->Allocate(size)) return hit;
    }
    size_t const chunkSize = size + kChunkOverhead > fChunkSize ? size + kChunkOverhead : fChunkSize;
    HandleManager* manager = fChunk != nullptr ? fChunk->fManager : HandleManager::GetLargestManager();
    Handle handle = manager->NewHandle(chunkSize, err);
    if (*err == 0) manager->MoveHHi(handle, err);
    if (*err == 0) manager->HLock(handle, err);
    if (*err != 0) return nullptr;
    auto* chunk = static_cast<MarkReleaseChunk*>(*handle);
    char* block = static_cast<char*>(*handle);
    *chunk = MarkReleaseChunk{fChunk, chunk->Start(), block + chunkSize, manager, handle};
    fChunk = chunk;
    return chunk->Allocate(size);
}

void MarkRelease::Release() { Release(nullptr); }

long MarkRelease::Release(void* aMark) {
    char* const mark = static_cast<char*>(aMark);
    while (fChunk != nullptr) {
        if (mark >= fChunk->Start() && mark <= fChunk->fLimit) {
            VELOR_ASSERT_TEXT("aMark <= fMark", mark <= fChunk->fMark);
            fChunk->fMark = mark;
            return 0;
        }
        MarkReleaseChunk* next = fChunk->fNextChunk;
        long err = 0;
        fChunk->fManager->DisposeHandle(fChunk->fHandle, &err);
        fChunk = next;
    }
    return mark == nullptr ? 0 : kMemFullErr;
}

void* operator new(size_t size, MarkRelease* arena) {
    return AllocateOrDie(size, arena, "::new(size_t, MarkRelease *) failed.  Error(%ld)\n");
}

void* operator new[](size_t size, MarkRelease* arena) {
    return AllocateOrDie(size, arena, "::new[](size_t, MarkRelease *) failed.  Error(%ld)\n");
}
