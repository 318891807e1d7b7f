// A named-type field lays an instance of its type in a frame of its own. The class parameters are
// evaluated each time against the enclosing instance, and go to whichever type the value list
// chooses.
#include "RCStatement_Name.h"

#include "MsgIds.h"
#include "RCBindings.h"
#include "RCDefinition.h"
#include "RCDescription.h"
#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

namespace {

// The definition of a type name, or null after the message for an unknown type.
RCDefinition* lookupType(RCScanner* scanner, UniqueStruct* name) {
    RCDefinition* definition = scanner->GetSymbolTable()->LookupDefinition(name);
    if (!definition) scanner->Error(kMsg_ExpectedCustomTypeName, 1, nameOf(name));
    return definition;
}

}  // namespace

RCStatement_Name::RCStatement_Name(UniqueStruct* name, RCDefinition* definition)
    : fName(name), fDefinition(definition) {}

// named-field = type-name [ "(" parameter { "," parameter } ")" ], entered behind the name
RCStatement* RCStatement_Name::ParseName(RCScanner* scanner, UniqueStruct* name) {
    RCDefinition* definition = lookupType(scanner, name);
    if (!definition) return nullptr;
    RCPtr<RCStatement_Name> field(new RCStatement_Name(name, definition));
    if (scanner->Scan(kPPScan_LParen) && !field->ParseParameters(scanner)) return nullptr;
    return field.Release();
}

// parameters = parameter { "," parameter } ")", entered behind the "("
bool RCStatement_Name::ParseParameters(RCScanner* scanner) {
    do {
        if (!ParseParameter(scanner)) {
            scanner->ScanUntil(kPPScan_RParen);
            return false;
        }
    } while (scanner->Scan(kPPScan_Comma));
    return scanner->ScanUntil(kPPScan_RParen, kMsg_ExpectedRParen);
}

// parameter = name "=" expression
bool RCStatement_Name::ParseParameter(RCScanner* scanner) {
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    if (!name || !scanner->Scan(kPPScan_Assign, kMsg_ExpectedEquals)) return false;
    RCExpression* value = ScanNumber(scanner);
    if (!value) return false;
    fParameters.Append(name, value);
    return true;
}

// named-value = ( type-name "(" values ")" | "{" values "}" | values ) [ ";" | "," ]
bool RCStatement_Name::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNamedList<RCNamedValue> values;
    RCListIterator<RCNamedExpressionList> parameters(fParameters);
    while (RCNamedExpression* parameter = parameters.Next())
        values.Append(parameter->fName, parameter->fValue->Evaluate(scanner, bindings));
    bool created = CreateInstance(bindings, scanner, &values);
    ScanValueSeparator(scanner);
    return created;
}

bool RCStatement_Name::CreateInstance(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* values) {
    int token = scanner->TokenType();
    if (token == kPPScan_Ident) return CreateResource_SubClass(bindings, scanner, values);
    // A type that reads nothing leaves a '{' to the field after it.
    if (token == kPPScan_LCurly && ConsumesInput()) return fDefinition->CreateResource(bindings, scanner, values);
    return fDefinition->CreateResource_Body(bindings, scanner, values);
}

bool RCStatement_Name::CreateResource_SubClass(RCBindings* bindings, RCScanner* scanner,
                                               RCNamedList<RCNamedValue>* values) {
    UniqueStruct* typeName = scanner->PeekName();
    RCDefinition* chosen = lookupType(scanner, typeName);
    if (!chosen) {
        scanner->NextToken();
        return false;
    }
    if (!chosen->IsSubClassOf(fDefinition)) return fDefinition->CreateResource_Body(bindings, scanner, values);
    scanner->NextToken();
    return chosen->CreateResource(bindings, scanner, values, kPPScan_LParen);
}

void RCStatement_Name::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_Type);
    writeText(area, nameOf(fName));
    writeNamedExpressions(area, indent + 2, false, kDesc_Args, fParameters);
    writeChar(area, ')');
}

bool RCStatement_Name::ConsumesInput() const { return fDefinition->ConsumesInput(); }
