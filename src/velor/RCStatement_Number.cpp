// Number fields: integer and float fields with a constant value, symbolic values, or one read
// from the value list.

#include "RCStatement_Number.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCNamedExpression.h"
#include "RCScanner.h"
#include "UniqueNames.h"

namespace {

// The width of the field that the keyword opens; bitstring's width is read separately.
short WidthOfKeyword(int token) {
    switch (token) {
    case kRCScan_Boolean: return 1;
    case kRCScan_Byte: return 8;
    case kRCScan_Integer: return 16;
    case kRCScan_Longint: return 32;
    case kRCScan_Single: return 32;
    case kRCScan_Double: return 64;
    default:
        VELOR_ASSERT_TEXT("RCStatement_Number::ParseNumber", false);
        return 0;
    }
}

}  // namespace

RCStatement_Number::RCStatement_Number(short width, bool isInteger)
    : fWidth(width), fIsInteger(isInteger) {}

RCStatement_Number::RCStatement_Number(short width, bool isInteger, RCExpression* value)
    : fValueExpr(value),
      fValueDependsOnOutput(value->Dependence() == RCDependence::kOutput),
      fWidth(width),
      fIsInteger(isInteger) {}

RCStatement_Number::RCStatement_Number(short width, bool isInteger, RCNamedList<RCNamedValue>& values)
    : fValues(values), fWidth(width), fIsInteger(isInteger) {}

// number-field = ( "bitstring" "[" length | "boolean" | "byte" | "integer" | "longint" | "single"
//                | "float" | "double" ) [ "=" expression | symbolic-values ]
RCStatement* RCStatement_Number::ParseNumber(RCScanner* scanner, bool isInteger) {
    int keyword = scanner->TokenType();
    scanner->NextToken();

    short width;
    if (keyword == kRCScan_Bitstring) {
        if (!scanner->Scan(kPPScan_LBrace, kMsg_ExpectedBracketAfterBitstring)) return nullptr;
        RCPtr<RCExpression> length(ScanLength(scanner));
        if (!length) return nullptr;
        width = static_cast<short>(EvalNumber(length, scanner));
    } else {
        width = WidthOfKeyword(keyword);
    }

    if (scanner->Scan(kPPScan_Assign)) {
        RCExpression* value = ScanNumber(scanner);
        return value ? new RCStatement_Number(width, isInteger, value) : nullptr;
    }
    if (scanner->TokenType() == kPPScan_Ident) {
        RCNamedList<RCNamedValue> values;
        if (!ParseSymbolicValues(scanner, values)) return nullptr;
        return new RCStatement_Number(width, isInteger, values);
    }
    return new RCStatement_Number(width, isInteger);
}

// symbolic-values = named-value { "," named-value }
bool RCStatement_Number::ParseSymbolicValues(RCScanner* scanner, RCNamedList<RCNamedValue>& values) {
    // Values must be known now: the scratch bindings have no resource to refer to.
    RCBindings scratch(scanner->GetSymbolTable());
    RCNumber next(0L);
    for (;;) {
        RCPtr<RCNamedExpression> entry(
            RCNamedExpression::ParseNamedValue(scanner, RCExpression::Number(next)));
        if (!entry->fValue) return false;
        bool isConstant = false;
        RCPtr<RCExpression> reduced(entry->fValue->Reduce(scanner, &scratch, isConstant));
        if (!isConstant) {
            scanner->Error(kMsg_ForwardExpressionFailed, 0);
            return false;
        }
        RCNumber value = reduced->Evaluate(scanner, &scratch);
        values.Append(entry->fName, value);
        if (!scanner->Scan(kPPScan_Comma)) return true;
        next = value.Increment(1);
    }
}

bool RCStatement_Number::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    TraceKindAndWidth(bindings);
    if (fValueDependsOnOutput) return bindings->AddOutputValue(scanner, fValueExpr, fWidth, fIsInteger);
    if (!ConsumesInput()) return bindings->AddValue(scanner, fValueExpr, fWidth, fIsInteger);
    if (!AddInputValue(bindings, scanner)) return false;
    ScanValueSeparator(scanner);
    return true;
}

bool RCStatement_Number::AddInputValue(RCBindings* bindings, RCScanner* scanner) {
    // An identifier here always names one of the field's symbolic values; labels and variables
    // must be written in a form that does not start with an identifier.
    if (scanner->TokenType() == kPPScan_Ident) return AddSymbolicValue(bindings, scanner);
    RCNumber literal;
    RCPtr<RCExpression> value;
    if (!ScanNumber(scanner, literal, value)) return false;
    if (!value) return bindings->AddValue(scanner, literal, fWidth, fIsInteger);
    return bindings->AddValue(scanner, value, fWidth, fIsInteger);
}

bool RCStatement_Number::AddSymbolicValue(RCBindings* bindings, RCScanner* scanner) {
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    RCNamedValue* symbol = fValues.Lookup(name);
    if (!symbol) {
        scanner->Error(kMsg_NotANumericName, 1, nameOf(name));
        return false;
    }
    return bindings->AddValue(scanner, symbol->fValue, fWidth, fIsInteger);
}

RCDescriptionKeyword RCStatement_Number::Kind() const { return fIsInteger ? kDesc_Bitstring : kDesc_Float; }

void RCStatement_Number::TraceKindAndWidth(RCBindings* bindings) const {
    RCTraceScope trace(bindings, Kind());
    if (trace.Area()) writeNumber(trace.Area(), static_cast<long>(fWidth));
}

void RCStatement_Number::WriteDescription(DataArea* area, int indent) {
    writeHead(area, Kind());
    writeNumber(area, static_cast<long>(fWidth));
    if (fValueExpr) {
        newLineIndent(area, indent + 2);
        writeExpressionGroup(area, kDesc_Value, fValueExpr, indent + 4);
    }
    writeNamedNumbers(area, indent + 2, kDesc_Oneof, fValues);
    writeChar(area, ')');
}

char RCStatement_Number::LabelWidth() { return static_cast<char>(fWidth); }

bool RCStatement_Number::ConsumesInput() const { return !fValueExpr; }
