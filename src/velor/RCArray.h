// Arrays of one type instance and the positions of labels inside them.
//
// RCArray counts the elements of one array, for $$CountOf and $$ArrayIndex. RCArrayLabel keeps the
// bit positions that a label takes in successive elements, so that name[i] can read them, also at
// the end of the type instance. RCNamedArrayLabel ties such a table to the label's name.
#pragma once

#include <cstddef>

#include "RCAlloc.h"

struct UniqueStruct;
class RCScanner;

class RCArray : public RCRecycled {
public:
    // A null name makes the private array of an unnamed array statement.
    explicit RCArray(UniqueStruct* name) : fName(name), fCount(0), fIsDefined(false) {}

    UniqueStruct* Name() const { return fName; }

    // An array exists undefined while only $$CountOf has named it; opening it defines it.
    void SetDefined() { fIsDefined = true; }
    bool IsDefined() const { return fIsDefined; }

    void NewArrayElement() { ++fCount; }
    // Elements begun so far, which is also the 1-based index of the current element.
    long Index() const { return fCount; }
    long CountOf() const { return fCount; }

private:
    UniqueStruct* fName;
    long fCount;
    bool fIsDefined;
};

// A table of positions by subscript. All levels of a multi-dimensional label share the one table
// of the node that is asked, so the last subscript alone picks the entry; node i holds subscript
// i + 1. Children never get tables of their own.
class RCArrayLabel : public RCRecycled {
public:
    RCArrayLabel() : fChildren(nullptr), fValue(0), fCount(0), fCapacity(0) {}
    virtual ~RCArrayLabel();

    RCArrayLabel(RCArrayLabel const&) = delete;
    RCArrayLabel& operator=(RCArrayLabel const&) = delete;

    // name[subscripts...]; 0 after a message, or silently for an entry never assigned.
    long Lookup(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts);
    // Records the position of the label in the element that the subscripts name.
    void Assign(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts, long value);
    // The node for the subscripts, grown into existence when create is set. Null after a message,
    // or silently when the walk meets an entry that a jump in the subscripts left empty.
    RCArrayLabel* Fetch(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts, bool create);

private:
    void GrowToHold(long index);
    static std::size_t TableBytes(long capacity);
    void AppendUpTo(long index);
    // Reports "too few indices" when the node still has a table under it.
    static bool IsLeaf(RCScanner* scanner, UniqueStruct* name, RCArrayLabel const* node);

    RCArrayLabel** fChildren;
    long fValue;
    long fCount;
    long fCapacity;
};

// The table of one label name in a frame; it owns the table.
class RCNamedArrayLabel : public RCRecycled {
public:
    RCNamedArrayLabel(UniqueStruct* name, RCArrayLabel* arrayLabel) : fName(name), fArrayLabel(arrayLabel) {}
    ~RCNamedArrayLabel() { delete fArrayLabel; }

    RCNamedArrayLabel(RCNamedArrayLabel const&) = delete;
    RCNamedArrayLabel& operator=(RCNamedArrayLabel const&) = delete;

    UniqueStruct* Name() const { return fName; }
    RCArrayLabel* ArrayLabel() const { return fArrayLabel; }

private:
    UniqueStruct* fName;
    RCArrayLabel* fArrayLabel;
};
