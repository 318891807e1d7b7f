// RCStatement_Auto: `auto name = expression`, a variable of one type instance, made the first
// time the statement is laid and given the value each time.
#pragma once

#include "RCStatement_NamedValue.h"

class RCStatement_Auto : public RCStatement_NamedValue {
public:
    using RCStatement_NamedValue::RCStatement_NamedValue;

    static RCStatement* ParseAuto(RCScanner* aScanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
};
