// Handle memory with its bytes in use and their peak counted on every call.

#include "HandleManager.h"

#include <cstdio>

HandleManager gHandleProcApp;
bool gReportTempMemoryLossage = false;
bool HandleManager::fMaySpecifyTempMemory = false;

HandleManager* HandleManager::GetManager(HandleManagerHeap heap) {
    return heap == kTemporaryHeap ? nullptr : &gHandleProcApp;
}

HandleManager* HandleManager::GetLargestManager() { return &gHandleProcApp; }

void HandleManager::ReportTempMemoryLossage(bool report) { gReportTempMemoryLossage = report; }

void HandleManager::SetHandleSize(Handle handle, unsigned long size, long* err) {
    auto oldSize = static_cast<unsigned long>(GetHandleSize(handle, err));
    if (*err != 0 || size == oldSize) return;
    ::SetHandleSize(handle, size);
    *err = MemError();
    if (*err != 0) return;
    if (size > oldSize)
        IncrAmountInUse(size - oldSize);
    else
        DecrAmountInUse(oldSize - size);
}

long HandleManager::GetHandleSize(Handle handle, long* err) {
    long size = ::GetHandleSize(handle);
    *err = MemError();
    return size;
}

void HandleManager::HLock(Handle handle, long* err) {
    ::HLock(handle);
    *err = MemError();
}

void HandleManager::HUnlock(Handle handle, long* err) {
    ::HUnlock(handle);
    *err = MemError();
}

// Blocks never move to make room here, so there is nothing to do but report.
void HandleManager::MoveHHi(Handle, long* err) { *err = MemError(); }

Handle HandleManager::NewHandle(unsigned long size, long* err) {
    Handle handle = NewHandleClear(size);
    *err = MemError();
    if (*err != 0) return handle;
    if (handle == nullptr)
        *err = kMemFullErr;
    else
        IncrAmountInUse(size);
    return handle;
}

void HandleManager::DisposeHandle(Handle handle, long* err) {
    auto size = static_cast<unsigned long>(GetHandleSize(handle, err));
    ::DisposeHandle(handle);
    *err = MemError();
    if (*err == 0) DecrAmountInUse(size);
}

void HandleManager::Duplicate(Handle handle, Handle* copy, long* err) {
    *copy = handle;
    *err = HandToHand(copy);
    if (*err == 0) IncrAmountInUse(static_cast<unsigned long>(::GetHandleSize(*copy)));
}

void HandleManager::IncrAmountInUse(uint64_t amount) {
    fAmountInUse += amount;
    if (fAmountInUse > fPeakInUse) fPeakInUse = fAmountInUse;
}

// Giving back more than was taken means the books are wrong: leave a trace and start again at 0.
void HandleManager::DecrAmountInUse(uint64_t amount) {
    if (fAmountInUse >= amount) {
        fAmountInUse -= amount;
        return;
    }
    char trace[128];
    std::snprintf(trace, sizeof trace, "HandleManager::DecrAmountInUse - %ld < %ld", static_cast<long>(fAmountInUse),
                  static_cast<long>(amount));
    DebugTrace(trace);
    fAmountInUse = 0;
}
