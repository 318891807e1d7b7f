// A vector of untyped pointers over a DataArea.
#pragma once

#include <cstdint>

#include "DataArea.h"

// A vector of untyped pointers, stored in a DataArea whose cursor stands behind the last element.
class Vector {
public:
    using Compare = int (*)(void const*, void const*);

    Vector() = default;
    virtual ~Vector() = default;
    virtual void MakeEmpty();

    long IVector() { return IVector(0, 4); }
    long IVector(uint64_t count, uint64_t increment);
    long IVector(Vector const* aVector);

    uint64_t Count() const { return fCount; }
    void* At(uint64_t i) const;
    void* _At(uint64_t i) const { return Elements()[i]; }
    void _AtPut(uint64_t i, void* item) { Elements()[i] = item; }

    // Returns false when memory ran out.
    bool AddItem(void* item);
    long IndexOf(void const* item) const;
    // Returns true when the item was already there.
    bool AddOnce(void* item);
    // Returns false at the first item that could not be added.
    bool AddOnce(Vector const* other);

    void Sort(Compare compare);
    // Returns the address of the matching element, or null.
    void* BSearch(void const* key, Compare compare);

private:
    friend class WithLockedVector;
    void** Elements() const { return reinterpret_cast<void**>(fArea.GetData(0)); }

    static constexpr uint64_t kItemSize = sizeof(void*);

    DataArea fArea;
    uint64_t fCount = 0;
};

// Keeps a vector's storage in place for the scope of an operation.
class WithLockedVector {
public:
    explicit WithLockedVector(Vector* vector) : fLock(&vector->fArea) {}

private:
    WithLockedDataArea fLock;
};
