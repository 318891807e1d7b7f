// RCStatement_Assign: `set name = expression`, which gives an existing auto or static a new value
// while a resource is laid. The name is looked up then, not when the type is parsed.
#pragma once

#include "RCStatement_NamedValue.h"

class RCStatement_Assign : public RCStatement_NamedValue {
public:
    using RCStatement_NamedValue::RCStatement_NamedValue;

    static RCStatement* ParseAssign(RCScanner* aScanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
};
