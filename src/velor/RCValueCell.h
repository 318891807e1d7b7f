// RCValueCell: a named number with a place in the output: a label, an auto or a static variable.
#pragma once

#include "RCAlloc.h"
#include "RCNumber.h"

struct UniqueStruct;

class RCValueCell : public RCRecycled {
public:
    // A cell made by a name alone: undefined, holding 0, until a label or an assignment sets it.
    explicit RCValueCell(UniqueStruct* name) : fName(name), fValue(), fWidth(32), fIsDefined(false) {}
    // A cell made with its value is defined from the start.
    RCValueCell(UniqueStruct* name, RCNumber const& value)
        : fName(name), fValue(value), fWidth(32), fIsDefined(true) {}

    UniqueStruct* Name() const { return fName; }
    RCNumber Value() const { return fValue; }
    void SetValue(RCNumber const& value) { fValue = value; }

    // Width in bits of the field that a label marks; 32 until the label statement stores its own.
    signed char Width() const { return fWidth; }
    void SetWidth(signed char width) { fWidth = width; }

    // Once defined, a cell stays defined: an undefined name is reported only once.
    bool IsDefined() const { return fIsDefined; }
    void SetDefined() { fIsDefined = true; }

private:
    UniqueStruct* fName;
    RCNumber fValue;
    signed char fWidth;
    bool fIsDefined;
};
