// String fields: the parse of the nine string keywords, and the laying of one value through the
// binding engine, which decides count, text, padding and terminator from the field's type.

#include "RCStatement_ByteString.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCByteString.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "UniqueNames.h"

namespace {

constexpr int kBitsPerByte = 8;

}  // namespace

RCStatement_ByteString::RCStatement_ByteString(int stringType, RCExpression* length)
    : fStringType(stringType), fLengthExpr(length) {}

RCStatement_ByteString::RCStatement_ByteString(int stringType, RCExpression* length, RCExpression* value)
    : fStringType(stringType), fLengthExpr(length), fValueExpr(value) {}

RCStatement_ByteString::RCStatement_ByteString(int stringType, RCExpression* length, RCNamedExpressionList& values)
    : fStringType(stringType), fLengthExpr(length), fValues(values) {}

RCStatement_ByteString::~RCStatement_ByteString() = default;

// string-field: string-keyword [ `[` number-expression `]` ]
//               [ `=` string-expression | symbolic-string { `,` symbolic-string } ]
RCStatement* RCStatement_ByteString::ParseByteString(RCScanner* scanner) {
    int stringType = scanner->TokenType();
    scanner->NextToken();
    RCPtr<RCExpression> length;
    if (scanner->Scan(kPPScan_LBrace)) {
        length = ScanLength(scanner);
        if (!length) return nullptr;
    }
    // A char is one character of a type of its own; given a length it is a plain string.
    if (stringType == kRCScan_Char) {
        if (length)
            stringType = kRCScan_String;
        else
            length = RCExpression::Number(1L);
    }

    if (scanner->Scan(kPPScan_Assign)) {
        RCExpression* value = ScanString(scanner);
        return value ? new RCStatement_ByteString(stringType, length.Release(), value) : nullptr;
    }
    if (scanner->TokenType() != kPPScan_Ident) return new RCStatement_ByteString(stringType, length.Release());
    RCNamedExpressionList values;
    if (!ParseSymbolicValues(scanner, values)) return nullptr;
    return new RCStatement_ByteString(stringType, length.Release(), values);
}

// symbolic-string: identifier `=` string-expression
bool RCStatement_ByteString::ParseSymbolicValues(RCScanner* scanner, RCNamedExpressionList& values) {
    do {
        // Without a default the "= string" part is required.
        RCNamedExpression* entry = RCNamedExpression::ParseNamedValue(scanner, nullptr);
        values.Append(entry);
        if (!entry->fValue) return false;
        if (!entry->fValue->IsString()) {
            scanner->Error(kMsg_ExpectedString, 0);
            return false;
        }
    } while (scanner->Scan(kPPScan_Comma));
    return true;
}

bool RCStatement_ByteString::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    if (!ConsumesInput()) return AddString(bindings, scanner, fValueExpr);
    if (!AddInputValue(bindings, scanner)) return false;
    ScanValueSeparator(scanner);
    return true;
}

// string-value: identifier [ separator ] | string-expression [ separator ]
bool RCStatement_ByteString::AddInputValue(RCBindings* bindings, RCScanner* scanner) {
    // An identifier always names one of the field's symbolic values, as in a number field.
    if (scanner->TokenType() == kPPScan_Ident) return AddSymbolicValue(bindings, scanner);
    RCByteStringOwner literal;
    RCPtr<RCExpression> value;
    if (!RCExpression::ParseStringValue(scanner, literal.Get(), value)) return false;
    if (value) return AddString(bindings, scanner, value);
    return AddString(bindings, scanner, literal.Get());
}

bool RCStatement_ByteString::AddSymbolicValue(RCBindings* bindings, RCScanner* scanner) {
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    RCNamedExpression* symbol = fValues.Lookup(name);
    if (!symbol) {
        scanner->Error(kMsg_NotAStringName, 1, nameOf(name));
        return false;
    }
    return AddString(bindings, scanner, symbol->fValue);
}

bool RCStatement_ByteString::AddString(RCBindings* bindings, RCScanner* scanner, RCExpression* expression) {
    if (!expression) return false;
    RCByteString const* value = expression->StringValue();
    if (!value) {
        scanner->Error(kMsg_ExpectedString, 0);
        return false;
    }
    return AddString(bindings, scanner, *value);
}

bool RCStatement_ByteString::AddString(RCBindings* bindings, RCScanner* scanner, RCByteString const& value) {
    long startBit = bindings->GetResourceBit();
    bool added;
    if (fLengthExpr) {
        // Evaluated per instance: a length may depend on the fields before it.
        long length = fLengthExpr->Evaluate(scanner, bindings).AsInteger();
        added = bindings->AddString(scanner, value, fStringType, length);
    } else {
        added = bindings->AddString(scanner, value, fStringType);
    }
    TraceLength(bindings, startBit);
    return added;
}

// Written once the field is laid, since only then is its length known.
void RCStatement_ByteString::TraceLength(RCBindings* bindings, long startBit) const {
    RCTraceScope trace(bindings, kDesc_String);
    DataArea* area = trace.Area();
    if (!area) return;
    writeText(area, DescribeStringType());
    writeChar(area, ' ');
    writeHead(area, kDesc_Length);
    writeNumber(area, (bindings->GetResourceBit() - startBit) / kBitsPerByte);
    writeChar(area, ')');
}

// Note the blank in front of "(length", "(value" and "(oneof", which a number field's description
// has not.
void RCStatement_ByteString::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_String);
    writeText(area, DescribeStringType());
    if (fLengthExpr) {
        writeChar(area, ' ');
        writeExpressionGroup(area, kDesc_Length, fLengthExpr, indent + 4);
    }
    if (fValueExpr) {
        newLineIndent(area, indent + 2);
        writeChar(area, ' ');
        writeExpressionGroup(area, kDesc_Value, fValueExpr, indent + 4);
    }
    writeNamedExpressions(area, indent + 2, true, kDesc_Oneof, fValues);
    writeChar(area, ')');
}

bool RCStatement_ByteString::ConsumesInput() const { return !fValueExpr; }

// The literal forms that a value or a file-backed field may carry are described as the fields
// they fit: narrow ones as a string, the wide one as an istring.
char const* RCStatement_ByteString::DescribeStringType() const {
    switch (fStringType) {
    case kRCScan_Char:
    case kRCScan_String:
    case kPPScan_String:
    case kPPScan_DBString:
    case kPPScan_HexString:
    case kPPScan_DBHexString:
        return "S010";
    case kRCScan_Istring:
    case kPPScan_WideString:
        return "S020";
    case kRCScan_Cstring: return "S011";
    case kRCScan_Icstring: return "S022";
    case kRCScan_Pstring: return "S110";
    case kRCScan_Ipstring: return "S220";
    case kRCScan_Wstring: return "S210";
    case kRCScan_Iwstring: return "S420";
    default:
        VELOR_ASSERT(false);
        return "";
    }
}
