// RCStatement_MultiString: the body of the predefined type MULTISTRING, a table of numbered
// strings. The value list pairs an id with a string; the resource holds a count, an index sorted
// by id and the strings themselves, which stay in the order of the source.
#pragma once

#include "RCStatement.h"

class RCStatement_MultiString final : public RCStatement {
public:
    // multi-string-value: number-expression `,` string-expression { `;` number-expression `,`
    // string-expression } [ `;` ]
    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;
};
