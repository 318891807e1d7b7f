// RCStatement_NamedValue: the common part of the variable statements `static`, `auto` and `set`:
// a name with an expression. None of them lays bits or reads the value list.
#pragma once

#include "RCDescription.h"
#include "RCNamedExpression.h"
#include "RCPtr.h"
#include "RCStatement.h"

class RCStatement_NamedValue : public RCStatement_Null {
public:
    // Takes the expression.
    RCStatement_NamedValue(UniqueStruct* name, RCExpression* value);

protected:
    // "name = expression" behind the keyword, which must be current; the keyword is checked by
    // the caller. Null after an error was reported.
    static RCNamedExpression* ParseVariable(RCScanner* scanner);
    // The same for a numeric expression, the only kind that `auto` and `set` can hold.
    static RCNamedExpression* ParseNumericVariable(RCScanner* scanner);

    // A statement of the variable's name and expression, which it takes over with the item.
    template <class Statement>
    static RCStatement* MakeFrom(RCNamedExpression* variable) {
        RCPtr<RCNamedExpression> owned(variable);
        RCExpression* value = owned->fValue;
        owned->fValue = nullptr;
        return new Statement(owned->fName, value);
    }

    // "(word name expression)".
    void WriteNameAndValue(DataArea* area, int indent, RCDescriptionKeyword word);

    UniqueStruct* Name() const { return fNamedExpression.fName; }
    RCExpression* Value() const { return fNamedExpression.fValue; }

private:
    RCNamedExpression fNamedExpression;
};
