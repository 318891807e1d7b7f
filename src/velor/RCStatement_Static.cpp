// A static is entered in the symbol table while its type is parsed; laying the type does nothing
// with it, since every resource starts from the initial values.
#include "RCStatement_Static.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

// static = "static" name "=" expression
RCStatement* RCStatement_Static::ParseStatic(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Static);
    RCPtr<RCNamedExpression> variable(ParseVariable(aScanner));
    if (!variable) return nullptr;
    // One name is one static, across all types of the file.
    RCSymbolTable* symbols = aScanner->GetSymbolTable();
    if (symbols->LookupStatic(variable->fName)) {
        aScanner->Error(kMsg_PreviouslyStatic, 1, nameOf(variable->fName));
        return nullptr;
    }
    symbols->AddStatic(variable->fName, RCNumber(EvalNumber(variable->fValue, aScanner)));
    return MakeFrom<RCStatement_Static>(variable.Release());
}

void RCStatement_Static::WriteDescription(DataArea* area, int indent) { WriteNameAndValue(area, indent, kDesc_Static); }
