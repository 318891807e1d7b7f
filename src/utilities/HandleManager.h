// The accounting layer between the compiler and handle memory.
#pragma once

#include <cstdint>

#include "Platform.h"

enum HandleManagerHeap {
    kApplicationHeap = 0,
    kTemporaryHeap = 1,
};

// A thin accounting layer over handle memory: it keeps the bytes in use and their peak. Every
// operation reports its result code through err: 0, or kMemFullErr when memory ran out.
class HandleManager {
public:
    virtual ~HandleManager() = default;

    virtual void SetHandleSize(Handle handle, unsigned long size, long* err);
    virtual long GetHandleSize(Handle handle, long* err);
    virtual void HLock(Handle handle, long* err);
    virtual void HUnlock(Handle handle, long* err);
    virtual void MoveHHi(Handle handle, long* err);
    virtual Handle NewHandle(unsigned long size, long* err);
    virtual void DisposeHandle(Handle handle, long* err);
    virtual void Duplicate(Handle handle, Handle* copy, long* err);

    // The application heap for every value but the temporary heap, which doesn't exist here.
    static HandleManager* GetManager(HandleManagerHeap heap);
    static HandleManager* GetLargestManager();

    // Kept for the command line's sake; the memory layer doesn't act on them.
    static void SetMaySpecifyTempMemory(bool may) { fMaySpecifyTempMemory = may; }
    static void ReportTempMemoryLossage(bool report);

    uint64_t GetAmountInUse() const { return fAmountInUse; }
    uint64_t GetPeakInUse() const { return fPeakInUse; }

private:
    void IncrAmountInUse(uint64_t amount);
    void DecrAmountInUse(uint64_t amount);

    static bool fMaySpecifyTempMemory;

    uint64_t fAmountInUse = 0;
    uint64_t fPeakInUse = 0;
};

extern HandleManager gHandleProcApp;
extern bool gReportTempMemoryLossage;

// Locks a handle for a scope and gives it back its former lock state.
class WithLockedHandle {
public:
    explicit WithLockedHandle(Handle handle) : fHandle(handle), fState(HGetState(handle)) { ::HLock(handle); }
    ~WithLockedHandle() { HSetState(fHandle, fState); }
    WithLockedHandle(WithLockedHandle const&) = delete;
    WithLockedHandle& operator=(WithLockedHandle const&) = delete;

private:
    Handle fHandle;
    signed char fState;
};
