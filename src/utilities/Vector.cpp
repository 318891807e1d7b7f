// The pointer vector, stored in a DataArea so that it grows like any other buffer.

#include "Vector.h"

#include <cstdlib>

#include "Assertion.h"

long Vector::IVector(uint64_t count, uint64_t increment) {
    fCount = 0;
    return fArea.IDataArea(count * kItemSize, increment * kItemSize, true);
}

long Vector::IVector(Vector const* aVector) {
    VELOR_ASSERT(aVector != 0);
    fCount = aVector->fCount;
    return fArea.Assign(&aVector->fArea);
}

void Vector::MakeEmpty() {
    fCount = 0;
    fArea.SetCursor(0);
    fArea.Truncate();
}

void* Vector::At(uint64_t i) const {
    VELOR_ASSERT(i < fCount);
    return _At(i);
}

bool Vector::AddItem(void* item) {
    if (fArea.Require(kItemSize) < kItemSize) return false;
    _AtPut(fCount++, item);
    fArea.IncrCursor(kItemSize);
    return true;
}

long Vector::IndexOf(void const* item) const {
    for (uint64_t i = 0; i < fCount; ++i)
        if (_At(i) == item) return static_cast<long>(i);
    return -1;
}

bool Vector::AddOnce(void* item) {
    if (IndexOf(item) >= 0) return true;
    AddItem(item);
    return false;
}

bool Vector::AddOnce(Vector const* other) {
    for (uint64_t i = 0; i < other->fCount; ++i)
        if (IndexOf(other->_At(i)) < 0 && !AddItem(other->_At(i))) return false;
    return true;
}

void Vector::Sort(Compare compare) {
    if (fCount < 2) return;
    WithLockedVector lock(this);
    std::qsort(Elements(), fCount, kItemSize, compare);
}

void* Vector::BSearch(void const* key, Compare compare) {
    if (fCount == 0) return nullptr;
    return std::bsearch(key, Elements(), fCount, kItemSize, compare);
}
