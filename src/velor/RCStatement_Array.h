// RCStatement_Array: a statement list laid once per element that the value list holds. An array
// has a fixed count, or a name by which $$CountOf and $$ArrayIndex reach it, or neither.
#pragma once

#include "RCPtr.h"
#include "RCStatement.h"

class RCTraceScope;

class RCStatement_Array final : public RCStatement_Multiple {
public:
    // Each takes the list; the second takes the expression too.
    RCStatement_Array(UniqueStruct* arrayName, RCStatementList& statements);
    RCStatement_Array(RCExpression* length, RCStatementList& statements);
    explicit RCStatement_Array(RCStatementList& statements);

    static RCStatement* ParseArray(RCScanner* aScanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    // The elements and the closing brace with its separator. After a failing element the rest is
    // skipped up to the brace.
    bool CreateElements(RCBindings* bindings, RCScanner* scanner, long limit, RCTraceScope const& trace);
    // One element in its own scope, traced as a list of its own; false after a message.
    bool CreateElement(RCBindings* bindings, RCScanner* scanner, unsigned long& lastTokenCount,
                       RCTraceScope const& trace);

    UniqueStruct* fArrayName;
    RCPtr<RCExpression> fLengthExpr;
};
