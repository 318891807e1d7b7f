// Parsing of "name [= expression]" entries, shared by symbolic values and named parameters.

#include "RCNamedExpression.h"

#include "MsgIds.h"
#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"

namespace {


}  // namespace

RCNamedExpression::RCNamedExpression(UniqueStruct* name, RCExpression* value)
    : RCNamedListItem(name, value) {}

RCNamedExpression::~RCNamedExpression() { delete fValue; }

// named-value = name [ "=" expression ]; the value may be left out only where a default is given.
RCNamedExpression* RCNamedExpression::ParseNamedValue(RCScanner* scanner, RCExpression* defaultValue) {
    RCPtr<RCExpression> value(defaultValue);
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    if (!name) return new RCNamedExpression(nullptr, nullptr);
    if (scanner->TokenType() == kPPScan_Assign || !value) {
        value = nullptr;
        if (scanner->Scan(kPPScan_Assign, kMsg_ExpectedEquals))
            value = RCExpression::ParseExpression(scanner, -1);
    }
    if (!value) return new RCNamedExpression(nullptr, nullptr);
    return new RCNamedExpression(name, value.Release());
}

bool RCNamedExpression::IsNumber(RCScanner* scanner) {
    if (!fValue) return false;
    if (fValue->IsNumber()) return true;
    scanner->Error(kMsg_NotNumeric, 0);
    delete fValue;
    fValue = nullptr;
    return false;
}
