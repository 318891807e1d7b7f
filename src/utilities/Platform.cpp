// Handles and the other platform calls over the standard heap: a handle is a stable master
// pointer to a block that may move when it grows.

#include "Platform.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// The block pointer comes first so that a pointer to the record is the handle itself.
struct MasterPointer {
    void* block;
    unsigned long size;
    signed char state;
    unsigned long capacity;  // what the heap block holds; at least the size
};

constexpr signed char kLockedState = static_cast<signed char>(0x80);

long gMemError = 0;

MasterPointer* MasterOf(Handle handle) { return reinterpret_cast<MasterPointer*>(handle); }

// The heap is asked for at least one byte so that an empty block is still a block.
unsigned long HeapSize(unsigned long size) { return size == 0 ? 1 : size; }

long Result(bool succeeded) {
    gMemError = succeeded ? 0 : kMemFullErr;
    return gMemError;
}

}  // namespace

Handle NewHandleClear(unsigned long size) {
    void* block = std::calloc(HeapSize(size), 1);
    auto* master = block == nullptr ? nullptr : new (std::nothrow) MasterPointer{block, size, 0, HeapSize(size)};
    if (master == nullptr) std::free(block);
    Result(master != nullptr);
    return master == nullptr ? nullptr : &master->block;
}

// Callers grow their handles in small steps, and a heap that cannot extend a block in place
// copies it at every step; so a block that must grow takes half as much again as it holds,
// which keeps the copies few. Shrinking keeps the block.
void SetHandleSize(Handle handle, unsigned long size) {
    MasterPointer* master = MasterOf(handle);
    if (size > master->capacity) {
        unsigned long const roomy = std::max(size, master->capacity + master->capacity / 2);
        void* block = std::realloc(master->block, roomy);
        unsigned long capacity = roomy;
        if (block == nullptr) block = std::realloc(master->block, capacity = size);
        if (Result(block != nullptr) != 0) return;
        master->block = block;
        master->capacity = capacity;
    }
    Result(true);
    master->size = size;
}

long GetHandleSize(Handle handle) {
    Result(true);
    return static_cast<long>(MasterOf(handle)->size);
}

void DisposeHandle(Handle handle) {
    Result(true);
    if (handle == nullptr) return;
    MasterPointer* master = MasterOf(handle);
    std::free(master->block);
    delete master;
}

long HandToHand(Handle* handle) {
    MasterPointer const* original = MasterOf(*handle);
    Handle copy = NewHandleClear(original->size);
    if (copy == nullptr) return gMemError;
    std::memcpy(*copy, original->block, original->size);
    *handle = copy;
    return Result(true);
}

void HLock(Handle handle) {
    Result(true);
    MasterOf(handle)->state |= kLockedState;
}

void HUnlock(Handle handle) {
    Result(true);
    MasterOf(handle)->state &= ~kLockedState;
}

signed char HGetState(Handle handle) {
    Result(true);
    return MasterOf(handle)->state;
}

void HSetState(Handle handle, signed char state) {
    Result(true);
    MasterOf(handle)->state = state;
}

long MemError() { return gMemError; }

void DebugStr(unsigned char const*) {}

void DebugTrace(char const* text) {
    unsigned char pascalText[256];
    size_t const length = std::min<size_t>(std::strlen(text), 255);
    pascalText[0] = static_cast<unsigned char>(length);
    std::memcpy(pascalText + 1, text, length);
    DebugStr(pascalText);
}
