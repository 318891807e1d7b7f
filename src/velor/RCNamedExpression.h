// Named expressions: the entries of value lists and of named parameters.
#pragma once

#include "RCScope.h"

class RCExpression;
class RCScanner;

// A name with an owned expression: an entry of a string field's value list or a parameter of a
// named field. Both are null when parsing failed.
class RCNamedExpression : public RCNamedListItem<RCExpression*> {
public:
    RCNamedExpression(UniqueStruct* name, RCExpression* value);
    RCNamedExpression(RCNamedExpression const&) = delete;
    RCNamedExpression& operator=(RCNamedExpression const&) = delete;
    ~RCNamedExpression();

    // Reads "name = expression". With a default the "= expression" part may be left out, and the
    // default, which the item takes over, stands in for it.
    static RCNamedExpression* ParseNamedValue(RCScanner* scanner, RCExpression* defaultValue);

    // True if the item holds a numeric expression. A non-numeric one is reported and dropped.
    bool IsNumber(RCScanner* scanner);
};

// Owns its items; Lookup finds the first item of a name, so the first of two like names wins.
using RCNamedExpressionList = RCNamedList<RCNamedExpression>;
