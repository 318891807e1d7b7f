// The name-and-expression part shared by the variable statements.
#include "RCStatement_NamedValue.h"

#include "RCDescription.h"
#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "UniqueNames.h"

RCStatement_NamedValue::RCStatement_NamedValue(UniqueStruct* name, RCExpression* value)
    : fNamedExpression(name, value) {}

RCNamedExpression* RCStatement_NamedValue::ParseVariable(RCScanner* scanner) {
    scanner->NextToken();
    // Without a default the '=' is required.
    RCNamedExpression* variable = RCNamedExpression::ParseNamedValue(scanner, nullptr);
    if (variable->fValue) return variable;
    delete variable;
    return nullptr;
}

RCNamedExpression* RCStatement_NamedValue::ParseNumericVariable(RCScanner* scanner) {
    RCPtr<RCNamedExpression> variable(ParseVariable(scanner));
    return variable && variable->IsNumber(scanner) ? variable.Release() : nullptr;
}

void RCStatement_NamedValue::WriteNameAndValue(DataArea* area, int indent, RCDescriptionKeyword word) {
    writeHead(area, word);
    writeText(area, nameOf(Name()));
    writeChar(area, ' ');
    Value()->WriteDescription(area, indent + 2);
    writeChar(area, ')');
}
