// RCStatement_Fill: `fill size [count] [{ specifiers }]`. A plain fill lays zero units of a size
// and reads nothing; a fill with specifiers splits each unit into parts whose values the value
// list gives, packed left to right into the unit.
#pragma once

#include "RCNamedValue.h"
#include "RCPtr.h"
#include "RCStatement.h"

class RCStatement_Fill final : public RCStatement {
public:
    // Takes the expression and the specifiers' items.
    RCStatement_Fill(int width, RCExpression* count, RCNamedList<RCNamedValue>& fillSpecs);

    static RCStatement* ParseFill(RCScanner* aScanner);
    // The parts must add up to the unit exactly. Ends in front of the '}'.
    static bool ParseFillSpec(RCScanner* scanner, int width, RCNamedList<RCNamedValue>& fillSpecs);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

private:
    // "(fill width (count n))": the instance description of any fill.
    void TraceCount(RCBindings* bindings, long count) const;
    // The units of the value list; after a failure the rest is skipped up to the fill's brace.
    bool CreateUnits(RCBindings* bindings, RCScanner* scanner, long count);
    // One unit, and the ';' that must follow it unless it is the last.
    bool CreateUnit(RCBindings* bindings, RCScanner* scanner, bool unitsRemain);
    // One value per specifier, packed into the accumulator; false after a message.
    bool ScanParts(RCBindings* bindings, RCScanner* scanner, unsigned long& unit);

    RCNamedList<RCNamedValue> fFillSpecs;
    RCPtr<RCExpression> fLengthExpr;
    int fWidth;
};
