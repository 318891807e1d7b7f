// A growable byte buffer with one cursor, the storage of vectors, descriptions and output.
#pragma once

#include <cstdint>

#include "HandleManager.h"

// A growable byte buffer with one cursor for reading and writing, over handle memory.
//
// Invariant: fCursor <= fSize <= fAllocated (Assign may leave fAllocated below the block's real
// size). Bytes between fCursor and fSize are data; a pre-sized area counts its whole allocation
// as data from the start, so its users take the cursor as the length of what they wrote.
// A pointer from GetData is good only until the next growth, unless the area is locked.
class DataArea {
public:
    DataArea();
    DataArea(uint64_t allocate, uint64_t increment, bool preSized);
    virtual ~DataArea();
    DataArea(DataArea const&) = delete;
    DataArea& operator=(DataArea const&) = delete;

    // Takes over the contents, cursor and growth step of another area; returns a result code.
    virtual long Assign(DataArea const* other);

    // Two-phase set-up: a failed allocation is returned and leaves the area as it was.
    long IDataArea(uint64_t allocate, uint64_t increment, bool preSized);
    long IDataArea(DataArea const* other);

    // Makes n bytes writable behind the cursor; they count as data from then on. Returns the
    // bytes between cursor and end of data, or 0 when memory ran out.
    uint64_t Require(uint64_t n) {
        uint64_t const want = fCursor + n;
        if (want <= fSize) return fSize - fCursor;
        if (want <= fAllocated) {
            fSize = want;
            return n;
        }
        return PrivateRequire(n);
    }
    // Overwrites n bytes at the cursor and moves past them; returns n, or 0 when out of memory.
    uint64_t Write(void const* bytes, uint64_t n);
    // Moves the cursor past n bytes, which the caller fills, and returns where they start; null
    // when memory ran out. The area must hold a block. Inline, for the few bytes of one field.
    unsigned char* Advance(uint64_t n) {
        if (Require(n) < n) return nullptr;
        unsigned char* at = Bytes() + fCursor;
        fCursor += n;
        return at;
    }
    // Copies up to n bytes from the cursor and moves past them; returns the count copied.
    uint64_t Read(void* bytes, uint64_t n);
    // Returns the byte stored inside the data, the argument when the data grows, or -1 when out
    // of memory. Growing within the block is the common case and stays inline.
    int PutChar(int c) {
        unsigned char byte = static_cast<unsigned char>(c);
        if (fCursor < fSize) {
            Bytes()[fCursor++] = byte;
            return byte;
        }
        if (fSize >= fAllocated) return PutCharGrowing(c);
        ++fSize;
        Bytes()[fCursor++] = byte;
        return c;
    }
    // Returns the next byte, or -1 at the end of the data.
    int GetChar() { return fCursor < fSize ? Bytes()[fCursor++] : -1; }

    uint64_t GetCursor() const { return fCursor; }
    uint64_t GetSize() const { return fSize; }
    void SetCursor(uint64_t aCursor);
    void IncrCursor(uint64_t n) { SetCursor(fCursor + n); }

    char* GetData(uint64_t i) const;
    char* GetData() const { return GetData(fCursor); }
    char* GetData(uint64_t index, uint64_t elementSize) const { return GetData(index * elementSize); }

    // Moves the cursor up to the next multiple of n without writing the bytes passed over.
    // Returns the new cursor, or 0 when out of memory.
    uint64_t AlignCursor(uint64_t n);
    // Removes the bytes from start up to end; a cursor inside them lands on start.
    void Delete(uint64_t start, uint64_t end);
    // Cuts the block down to the cursor, which becomes the end of the data.
    void Truncate();

    bool HasBlock() const { return fHandle != nullptr; }
    uint64_t GetAllocated() const { return fAllocated; }
    // Exchanges blocks, cursors, sizes, growth steps and locks with another area.
    void Swap(DataArea& other);
    // Forgets the data and every lock but keeps the block, for new data.
    void Reset();

    // Locks nest; only the outermost pair reaches the block.
    void MacHLock();
    void MacHUnlock();

private:
    unsigned char* Bytes() const { return static_cast<unsigned char*>(*fHandle); }
    uint64_t PrivateRequire(uint64_t n);
    int PutCharGrowing(int c);
    void DisposeBlock();

    Handle fHandle;
    uint64_t fCursor;
    uint64_t fSize;
    uint64_t fAllocated;
    uint64_t fIncrement;
    uint64_t fLockCount;
    HandleManager* fManager;
};

// Keeps an area locked for a scope; a null area is allowed and left alone.
class WithLockedDataArea {
public:
    explicit WithLockedDataArea(DataArea* area) : fArea(area) {
        if (fArea != nullptr) fArea->MacHLock();
    }
    ~WithLockedDataArea() {
        if (fArea != nullptr) fArea->MacHUnlock();
    }
    WithLockedDataArea(WithLockedDataArea const&) = delete;
    WithLockedDataArea& operator=(WithLockedDataArea const&) = delete;

private:
    DataArea* fArea;
};
