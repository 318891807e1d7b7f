// RCStatement_ByteString: a field that holds text, of 1-byte or 2-byte characters, with or without
// a count in front and a terminator behind. The keyword's token is the field's string type; the
// binding engine turns a value and that type into bytes. An optional length in brackets fixes the
// field's size in characters, so the text is padded or cut to fit.
#pragma once

#include "RCNamedExpression.h"
#include "RCPtr.h"
#include "RCStatement.h"

struct RCByteString;

// Like a number field, a string field has a constant value, or a list of names with values, or
// neither: never both. Unlike a number's, a symbolic string needs its "= string" part.
class RCStatement_ByteString : public RCStatement {
public:
    // Each constructor takes what it is passed.
    RCStatement_ByteString(int stringType, RCExpression* length);
    RCStatement_ByteString(int stringType, RCExpression* length, RCExpression* value);
    RCStatement_ByteString(int stringType, RCExpression* length, RCNamedExpressionList& values);
    ~RCStatement_ByteString() override;

    // Entered at one of the nine string keywords.
    static RCStatement* ParseByteString(RCScanner* scanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

    // A string expression's value, laid in the field. A null expression fails without a message
    // of its own: whoever made it null has reported why.
    bool AddString(RCBindings* bindings, RCScanner* scanner, RCExpression* expression);
    bool AddString(RCBindings* bindings, RCScanner* scanner, RCByteString const& value);

    // "S" and the field's count, character and terminator sizes in bytes, as "S110" for pstring.
    char const* DescribeStringType() const;

private:
    // Reads "name = string {, name = string}" behind the keyword and its length.
    static bool ParseSymbolicValues(RCScanner* scanner, RCNamedExpressionList& values);
    // One value of a value list: a symbolic name or a string expression.
    bool AddInputValue(RCBindings* bindings, RCScanner* scanner);
    bool AddSymbolicValue(RCBindings* bindings, RCScanner* scanner);
    // The instance trace: the bytes that the field took since startBit, alignment included.
    void TraceLength(RCBindings* bindings, long startBit) const;

    int fStringType;
    RCPtr<RCExpression> fLengthExpr;
    RCPtr<RCExpression> fValueExpr;
    RCNamedExpressionList fValues;
};
