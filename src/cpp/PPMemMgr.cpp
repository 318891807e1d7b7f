// The per-file arena: permanent blocks, recycled input records and bulk-dropped temp memory.

#include "PPMemMgr.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Assertion.h"
#include "PPInput.h"

namespace {

constexpr unsigned long kTempBlockSize = 8192;
constexpr unsigned long kLargeTempRequest = 4096;
constexpr unsigned long kLargeTempBlockSlack = 40;
constexpr unsigned long kTempAlignment = 8;
// The heap is taken to hold this much for one input file. Expansion text grows by doubling and
// every level of a nest keeps its own, so a macro whose text doubles at each level meets this
// bound long before it could exhaust the machine, and ends the run as an exhausted heap does.
constexpr unsigned long kHeapSize = 1UL << 30;
// Each block carries its size in front, so that freeing it gives the size back.
constexpr unsigned long kBlockHeader = alignof(std::max_align_t);

unsigned long roundUpToAlignment(unsigned long size) { return (size + kTempAlignment - 1) & ~(kTempAlignment - 1); }

} // namespace

PP_CInput* PP_CMemoryManager::AllocInput(char const* text, unsigned long length) {
    void* place = fFreeInputList;
    if (place != nullptr)
        fFreeInputList = fFreeInputList->GetNext();
    else
        place = AllocPerm(sizeof(PP_CInput));
    ++fAllocInputCount;
    return new (place) PP_CInput(text, length);
}

void PP_CMemoryManager::FreeInput(PP_CInput* input) {
    --fAllocInputCount;
    input->~PP_CInput();
    input->SetNext(fFreeInputList);
    fFreeInputList = input;
}

void PP_CMemoryManager::ReleaseInput() {
    VELOR_ASSERT(fAllocInputCount == 0);
    while (fFreeInputList != nullptr) {
        PP_CInput* next = fFreeInputList->GetNext();
        FreePerm(fFreeInputList);
        fFreeInputList = next;
    }
}

char* PP_CMemoryManager::SaveStringPerm(char const* text) {
    return std::strcpy(static_cast<char*>(AllocPerm(std::strlen(text) + 1)), text);
}

char* PP_CMemoryManager::SaveStringTemp(char const* text) {
    return std::strcpy(static_cast<char*>(AllocTemp(std::strlen(text) + 1)), text);
}

void* PP_TempMem::Alloc(unsigned long size) {
    unsigned long nAlign = roundUpToAlignment(size);
    VELOR_ASSERT_TEXT("fFree + nAlign <= fLast", nAlign <= Available());
    char* block = fFree;
    fFree += nAlign;
    return block;
}

void PP_TempMem::Release(char* position) {
    VELOR_ASSERT_TEXT("&fFirst <= p && p <= fFree", First() <= position && position <= fFree);
    fFree = position;
}

PP_CMemoryManager_Basic::~PP_CMemoryManager_Basic() {
    VELOR_ASSERT(fTempMemUsageCount == 0);
    VELOR_ASSERT(fAllocPermCount == 0);
}

void* PP_CMemoryManager_Basic::AllocPerm(unsigned long size) {
    if (size > kHeapSize - fPermBytes)
        std::exit(1);
    char* block = new (std::nothrow) char[kBlockHeader + (size == 0 ? 1 : size)];
    if (block == nullptr)
        std::exit(1);
    std::memcpy(block, &size, sizeof size);
    fPermBytes += size;
    ++fAllocPermCount;
    return block + kBlockHeader;
}

void PP_CMemoryManager_Basic::FreePerm(void* block) {
    if (block == nullptr)
        return;
    char* start = static_cast<char*>(block) - kBlockHeader;
    unsigned long size;
    std::memcpy(&size, start, sizeof size);
    fPermBytes -= size;
    --fAllocPermCount;
    delete[] start;
}

void* PP_CMemoryManager_Basic::AllocTemp(unsigned long size) {
    if (fTempList == nullptr || fTempList->Available() < size)
        OpenTempBlock(size < kLargeTempRequest ? kTempBlockSize : size + kLargeTempBlockSlack);
    return fTempList->Alloc(size);
}

// A new block becomes the current one; older blocks are never searched for room.
void PP_CMemoryManager_Basic::OpenTempBlock(unsigned long size) {
    char* start = static_cast<char*>(AllocPerm(size));
    PP_TempMem* block = reinterpret_cast<PP_TempMem*>(start);
    block->fFree = block->First();
    block->fLast = start + (size & ~(kTempAlignment - 1));
    block->fNext = fTempList;
    fTempList = block;
}

// Keeps the oldest block, rewound, for the next expansion to reuse at once.
void PP_CMemoryManager_Basic::FreeTemp() {
    if (fTempList == nullptr)
        return;
    while (fTempList->fNext != nullptr) {
        PP_TempMem* older = fTempList->fNext;
        FreePerm(fTempList);
        fTempList = older;
    }
    fTempList->Release(fTempList->First());
}

// Gives back every block, not only the head. Temp text read after the last return to a file (a
// long run of #if lines at the end of the main file, say) may have opened several, and leaving
// them counted would stop a good run at the final assertion of the destructor.
void PP_CMemoryManager_Basic::ReleaseTemp() {
    VELOR_ASSERT(fTempMemUsageCount == 0);
    while (fTempList != nullptr) {
        PP_TempMem* older = fTempList->fNext;
        FreePerm(fTempList);
        fTempList = older;
    }
}

void* operator new(std::size_t size, PP_CMemoryManager* memory, PP_AllocPerm) { return memory->AllocPerm(size); }

void* operator new(std::size_t size, PP_CMemoryManager* memory, PP_AllocTemp) { return memory->AllocTemp(size); }
