// An auto lives in the frame of the type instance that lays it.
#include "RCStatement_Auto.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCScanner.h"

// auto = "auto" name "=" expression
RCStatement* RCStatement_Auto::ParseAuto(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Auto);
    RCNamedExpression* variable = ParseNumericVariable(aScanner);
    return variable ? MakeFrom<RCStatement_Auto>(variable) : nullptr;
}

bool RCStatement_Auto::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    // A value that cannot be known yet is reported by the bindings and counts in the error count;
    // the statement itself never stops the walk.
    bindings->AssignValue_Auto(scanner, Name(), Value());
    return true;
}

void RCStatement_Auto::WriteDescription(DataArea* area, int indent) { WriteNameAndValue(area, indent, kDesc_Auto); }
