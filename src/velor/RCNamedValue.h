// RCNamedValue: a named number in a list: a class parameter of a type instance, or a symbolic
// value of a number field.
#pragma once

#include "RCNumber.h"
#include "RCScope.h"

class RCNamedValue : public RCNamedListItem<RCNumber> {
public:
    RCNamedValue(UniqueStruct* name, RCNumber const& value) : RCNamedListItem<RCNumber>(name, value) {}
};
