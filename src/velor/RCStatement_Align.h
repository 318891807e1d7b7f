// RCStatement_Align: `align size`, which pads the output with zero bits up to the next multiple of
// a size. It reads nothing from the value list.
#pragma once

#include "RCStatement.h"

class RCStatement_Align final : public RCStatement {
public:
    explicit RCStatement_Align(int width);

    static RCStatement* ParseAlign(RCScanner* aScanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

private:
    int fWidth;
};
