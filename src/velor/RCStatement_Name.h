// RCStatement_Name: a field whose type is a named type, with class parameters for it. The value
// list may choose a subtype of the declared type by naming it; its values then stand in
// parentheses.
#pragma once

#include "RCNamedExpression.h"
#include "RCNamedValue.h"
#include "RCStatement.h"

class RCDefinition;

class RCStatement_Name : public RCStatement {
public:
    RCStatement_Name(UniqueStruct* name, RCDefinition* definition);

    // Entered behind the name. The type must be defined already, so no type contains itself.
    static RCStatement* ParseName(RCScanner* scanner, UniqueStruct* name);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    // A value list that opens with a type name: an instance of that type if it derives from the
    // declared one, otherwise an instance of the declared type that starts at the name.
    bool CreateResource_SubClass(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* values);
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

private:
    // Reads the parameters behind the '(' through the ')'; false after a message.
    bool ParseParameters(RCScanner* scanner);
    bool ParseParameter(RCScanner* scanner);
    // The instance that the value list's first token calls for.
    bool CreateInstance(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* values);

    UniqueStruct* fName;
    RCDefinition* fDefinition;
    RCNamedExpressionList fParameters;
};
