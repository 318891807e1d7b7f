// The growable byte buffer over handle memory; growth takes half as much again as it holds, so
// appending stays linear.

#include "DataArea.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Assertion.h"

DataArea::DataArea()
    : fHandle(nullptr),
      fCursor(0),
      fSize(0),
      fAllocated(0),
      fIncrement(0),
      fLockCount(0),
      fManager(HandleManager::GetManager(kApplicationHeap)) {}

DataArea::DataArea(uint64_t allocate, uint64_t increment, bool preSized) : DataArea() {
    IDataArea(allocate, increment, preSized);
    VELOR_ASSERT(fHandle != 0);
}

DataArea::~DataArea() { DisposeBlock(); }

void DataArea::DisposeBlock() {
    if (fHandle == nullptr) return;
    long err = 0;
    fManager->DisposeHandle(fHandle, &err);
    fHandle = nullptr;
}

long DataArea::IDataArea(uint64_t allocate, uint64_t increment, bool preSized) {
    long err = 0;
    Handle block = fManager->NewHandle(allocate, &err);
    if (err != 0) return err;
    DisposeBlock();
    fHandle = block;
    fCursor = 0;
    fSize = preSized ? allocate : 0;
    fAllocated = allocate;
    fIncrement = increment;
    return 0;
}

long DataArea::IDataArea(DataArea const* other) {
    Handle copy = nullptr;
    if (other->fHandle != nullptr) {
        long err = 0;
        fManager->Duplicate(other->fHandle, &copy, &err);
        if (err != 0) return err;
    }
    DisposeBlock();
    fHandle = copy;
    fCursor = other->fCursor;
    fSize = other->fSize;
    fAllocated = other->fAllocated;
    fIncrement = other->fIncrement;
    return 0;
}

long DataArea::Assign(DataArea const* other) {
    if (fHandle == nullptr) return IDataArea(other);
    if (other->fHandle != nullptr) {
        fCursor = 0;
        if (Require(other->fSize) < other->fSize) return kMemFullErr;
        std::memcpy(Bytes(), *other->fHandle, other->fSize);
    }
    fCursor = other->fCursor;
    fSize = other->fSize;
    fAllocated = other->fSize;
    fIncrement = other->fIncrement;
    return 0;
}

// Growth beyond the block is counted from the cursor: a step of fIncrement beyond it when the
// request fits in a step, else exactly what is wanted. A block that can't grow in place is
// replaced by a copy.
uint64_t DataArea::PrivateRequire(uint64_t n) {
    uint64_t const want = fCursor + n;
    bool const stepSuffices = n <= fIncrement;
    uint64_t asked = 0;
    long err = kMemFullErr;
    if (fHandle != nullptr) {
        if (stepSuffices) fManager->SetHandleSize(fHandle, asked = fCursor + fIncrement, &err);
        if (err != 0) fManager->SetHandleSize(fHandle, asked = want, &err);
    }
    if (err != 0) {
        Handle block = nullptr;
        if (stepSuffices) block = fManager->NewHandle(asked = fCursor + fIncrement, &err);
        if (block == nullptr || err != 0) block = fManager->NewHandle(asked = want, &err);
        if (block == nullptr || err != 0) return 0;
        if (fHandle != nullptr) std::memcpy(*block, *fHandle, fSize);
        DisposeBlock();
        fHandle = block;
    }
    fSize = want;
    fAllocated = asked;
    return fSize - fCursor;
}

int DataArea::PutCharGrowing(int c) {
    if (Require(1) == 0) return -1;
    Bytes()[fCursor++] = static_cast<unsigned char>(c);
    return c;
}

uint64_t DataArea::Write(void const* bytes, uint64_t n) {
    if (fCursor + n > fSize && Require(n) < n) return 0;
    if (n != 0) std::memcpy(Bytes() + fCursor, bytes, n);
    fCursor += n;
    return n;
}

uint64_t DataArea::Read(void* bytes, uint64_t n) {
    uint64_t const count = std::min(n, fSize - fCursor);
    if (count != 0) std::memcpy(bytes, Bytes() + fCursor, count);
    fCursor += count;
    return count;
}

void DataArea::SetCursor(uint64_t aCursor) {
    VELOR_ASSERT(aCursor <= fSize);
    fCursor = aCursor;
}

char* DataArea::GetData(uint64_t i) const {
    VELOR_ASSERT(i <= fSize);
    VELOR_ASSERT(fHandle != 0);
    return static_cast<char*>(*fHandle) + i;
}

uint64_t DataArea::AlignCursor(uint64_t n) {
    VELOR_ASSERT(n != 0);
    uint64_t const aligned = (fCursor + n - 1) / n * n;
    uint64_t const skip = aligned - fCursor;
    if (skip != 0 && Require(skip) < skip) return 0;
    fCursor = aligned;
    return fCursor;
}

void DataArea::Delete(uint64_t start, uint64_t end) {
    VELOR_ASSERT(start <= end && start <= fSize);
    end = std::min(end, fSize);  // nothing lies past the data to move down
    uint64_t const removed = end - start;
    if (removed == 0) return;
    std::memmove(Bytes() + start, Bytes() + end, fSize - end);
    fSize -= removed;
    if (fCursor >= end)
        fCursor -= removed;
    else if (fCursor > start)
        fCursor = start;
}

void DataArea::Truncate() {
    if (fHandle != nullptr) {
        long err = 0;
        fManager->SetHandleSize(fHandle, fCursor, &err);
    }
    fSize = fCursor;
    fAllocated = fCursor;
}

void DataArea::Swap(DataArea& other) {
    std::swap(fHandle, other.fHandle);
    std::swap(fCursor, other.fCursor);
    std::swap(fSize, other.fSize);
    std::swap(fAllocated, other.fAllocated);
    std::swap(fIncrement, other.fIncrement);
    std::swap(fLockCount, other.fLockCount);
    std::swap(fManager, other.fManager);
}

void DataArea::Reset() {
    if (fLockCount != 0) {
        fLockCount = 1;
        MacHUnlock();
    }
    fCursor = 0;
    fSize = 0;
}

void DataArea::MacHLock() {
    if (fHandle == nullptr) return;
    if (fLockCount++ == 0) {
        long err = 0;
        fManager->HLock(fHandle, &err);
    }
}

void DataArea::MacHUnlock() {
    if (fHandle == nullptr || fLockCount == 0) return;
    if (--fLockCount == 0) {
        long err = 0;
        fManager->HUnlock(fHandle, &err);
    }
}
