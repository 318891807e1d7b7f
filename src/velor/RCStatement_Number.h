// The number field statement: integers of up to 32 bits and floats.
#pragma once

#include "RCDescription.h"
#include "RCNamedValue.h"
#include "RCPtr.h"
#include "RCStatement.h"

// A field of a fixed number of bits: an integer of up to 32 bits, or a float of 32 or 64. It has a
// constant value, or a list of names with values, or neither: never both.
class RCStatement_Number : public RCStatement {
public:
    RCStatement_Number(short width, bool isInteger);
    // A constant field; takes the expression.
    RCStatement_Number(short width, bool isInteger, RCExpression* value);
    // A field with symbolic values; takes the list's items.
    RCStatement_Number(short width, bool isInteger, RCNamedList<RCNamedValue>& values);

    // Entered at the field's keyword. isInteger is false for double, single and float.
    static RCStatement* ParseNumber(RCScanner* scanner, bool isInteger);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    char LabelWidth() override;
    bool ConsumesInput() const override;

private:
    // Reads "name [= expression] {, name [= expression]}" behind the keyword. A name without a
    // value takes the one after its predecessor's; the first defaults to 0.
    static bool ParseSymbolicValues(RCScanner* scanner, RCNamedList<RCNamedValue>& values);
    // One value of a value list: a symbolic name or an expression.
    bool AddInputValue(RCBindings* bindings, RCScanner* scanner);
    bool AddSymbolicValue(RCBindings* bindings, RCScanner* scanner);
    // The description keyword of the field's kind: bitstring or float.
    RCDescriptionKeyword Kind() const;
    // The instance trace of the field, written before its value is laid.
    void TraceKindAndWidth(RCBindings* bindings) const;

    RCNamedList<RCNamedValue> fValues;
    RCPtr<RCExpression> fValueExpr;
    // The constant value depends on the output alone, such as $$Word(0) ^ 0xFFF, so every
    // instance patches it from the tree as it stands.
    bool fValueDependsOnOutput = false;
    short fWidth;
    bool fIsInteger;
};
