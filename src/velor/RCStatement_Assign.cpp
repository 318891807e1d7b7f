// `set` assigns an auto of the current frame or a static; an unknown name is reported by the
// bindings when the resource reaches the statement.
#include "RCStatement_Assign.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCScanner.h"

// set = "set" name "=" expression
RCStatement* RCStatement_Assign::ParseAssign(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Set);
    RCNamedExpression* variable = ParseNumericVariable(aScanner);
    return variable ? MakeFrom<RCStatement_Assign>(variable) : nullptr;
}

bool RCStatement_Assign::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    // As with auto, a failed assignment shows in the error count only.
    bindings->AssignValue(scanner, Name(), Value());
    return true;
}

void RCStatement_Assign::WriteDescription(DataArea* area, int indent) { WriteNameAndValue(area, indent, kDesc_Set); }
