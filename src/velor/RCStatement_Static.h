// RCStatement_Static: `static name = expression`, a variable of the whole run. Its value is fixed
// when the type is parsed; a `set` changes it for one resource only.
#pragma once

#include "RCStatement_NamedValue.h"

class RCStatement_Static : public RCStatement_NamedValue {
public:
    using RCStatement_NamedValue::RCStatement_NamedValue;

    static RCStatement* ParseStatic(RCScanner* aScanner);

    void WriteDescription(DataArea* area, int indent) override;
};
