// Fill: zero units laid without reading anything, or units assembled from specifier parts whose
// values come from the value list. The unit is laid with the bindings' Fill in either case.
#include "RCStatement_Fill.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCScanner.h"

namespace {

// A shift by the whole width of the value gives zero instead of undefined behaviour: a 64-bit
// part replaces everything the unit held.
unsigned long shiftedLeft(unsigned long value, long width) { return width >= 64 ? 0 : value << width; }

}  // namespace

RCStatement_Fill::RCStatement_Fill(int width, RCExpression* count, RCNamedList<RCNamedValue>& fillSpecs)
    : fFillSpecs(fillSpecs), fLengthExpr(count), fWidth(width) {}

// fill = "fill" size-keyword [ "[" expression "]" ] [ "{" fill-specifiers "}" ]
RCStatement* RCStatement_Fill::ParseFill(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Fill);
    aScanner->NextToken();
    int width = ScanAlignSize(aScanner, kMsg_ExpectedFillSize);
    if (width == 0) return nullptr;
    RCPtr<RCExpression> count;
    if (aScanner->Scan(kPPScan_LBrace)) {
        count = ScanLength(aScanner);
        if (!count) return nullptr;
    }
    RCNamedList<RCNamedValue> fillSpecs;
    if (aScanner->Scan(kPPScan_LCurly) &&
        (!ParseFillSpec(aScanner, width, fillSpecs) || !aScanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly)))
        return nullptr;
    return new RCStatement_Fill(width, count.Release(), fillSpecs);
}

// fill-specifiers = size-keyword { [ ";" | "," ] size-keyword } [ ";" | "," ], up to the "}"
bool RCStatement_Fill::ParseFillSpec(RCScanner* scanner, int width, RCNamedList<RCNamedValue>& fillSpecs) {
    if (width != 16 && width != 32 && width != 64) {
        scanner->Error(kMsg_FillOnlyForWordOrLong, 0);
        return false;
    }
    int remaining = width;
    for (;;) {
        int part = ScanAlignSize(scanner, kMsg_ExpectedFillSize);
        remaining -= part;
        if (remaining < 0) {
            scanner->Error(kMsg_FillLargerThanContainer, 0);
            return false;
        }
        fillSpecs.Append(nullptr, RCNumber(static_cast<long>(part)));
        bool separated = scanner->Scan(kPPScan_Semicolon) || scanner->Scan(kPPScan_Comma);
        if (scanner->TokenType() == kPPScan_RCurly) {
            if (remaining == 0) return true;
            scanner->Error(kMsg_NotEnoughFillSpecifiers, 0);
            return false;
        }
        if (!separated) {
            scanner->Error(kMsg_FillLargerThanContainer, 0);
            return false;
        }
    }
}

bool RCStatement_Fill::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    long count = fLengthExpr ? fLengthExpr->Evaluate(scanner, bindings).AsInteger() : 1;
    TraceCount(bindings, count);
    if (!ConsumesInput()) {
        // A unit the bindings refuse, as a double's, has been reported there; the fill still
        // counts as laid.
        bindings->Fill(scanner, static_cast<short>(fWidth), count, 0);
        return true;
    }
    if (!scanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return false;
    if (!CreateUnits(bindings, scanner, count)) return false;
    bool closed = scanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly);
    ScanValueSeparator(scanner);
    return closed;
}

// fill-values = { fill-unit } "}", entered behind the "{"; after success the "}" is still to come
bool RCStatement_Fill::CreateUnits(RCBindings* bindings, RCScanner* scanner, long count) {
    while (count-- > 0) {
        if (!CreateUnit(bindings, scanner, count > 0)) {
            scanner->ScanUntil(kPPScan_RCurly);
            return false;
        }
    }
    return true;
}

// fill-unit = [ "{" ] expression { "," expression } [ "}" ] [ ";" ]
bool RCStatement_Fill::CreateUnit(RCBindings* bindings, RCScanner* scanner, bool unitsRemain) {
    bool inBraces = scanner->Scan(kPPScan_LCurly);
    unsigned long unit = 0;
    if (!ScanParts(bindings, scanner, unit)) {
        if (inBraces) scanner->ScanUntil(kPPScan_RCurly);
        return false;
    }
    bindings->Fill(scanner, static_cast<short>(fWidth), 1, unit);
    if (inBraces && !scanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly)) return false;
    if (unitsRemain) return scanner->Scan(kPPScan_Semicolon, kMsg_ExpectedSemicolon);
    scanner->Scan(kPPScan_Semicolon);
    return true;
}

bool RCStatement_Fill::ScanParts(RCBindings* bindings, RCScanner* scanner, unsigned long& unit) {
    RCListIterator<RCNamedList<RCNamedValue>> specs(fFillSpecs);
    while (RCNamedValue* spec = specs.Next()) {
        long value = 0;
        if (!CreateResource_Long(scanner, bindings, &value)) return false;
        int width = static_cast<int>(spec->fValue.AsInteger());
        unit = shiftedLeft(unit, width) | static_cast<unsigned long>(VerifyValue(scanner, value, width));
        if (!scanner->Scan(kPPScan_Comma) && scanner->TokenType() != kPPScan_RCurly) {
            scanner->Error(kMsg_ExpectedCommaOrRCurly, 0);
            return false;
        }
    }
    return true;
}

void RCStatement_Fill::TraceCount(RCBindings* bindings, long count) const {
    RCTraceScope trace(bindings, kDesc_Fill);
    DataArea* area = trace.Area();
    if (!area) return;
    writeNumber(area, static_cast<long>(fWidth));
    writeChar(area, ' ');
    writeHead(area, kDesc_Count);
    writeNumber(area, count);
    writeChar(area, ')');
}

void RCStatement_Fill::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_Fill);
    writeNumber(area, static_cast<long>(fWidth));
    if (fLengthExpr) {
        newLineIndent(area, indent + 2);
        writeExpressionGroup(area, kDesc_Count, fLengthExpr, indent + 4);
    }
    if (ConsumesInput()) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_Fillspec);
        RCListIterator<RCNamedList<RCNamedValue>> specs(fFillSpecs);
        while (RCNamedValue* spec = specs.Next()) {
            writeChar(area, ' ');
            writeNumber(area, spec->fValue);
        }
        writeChar(area, ')');
    }
    writeChar(area, ')');
}

bool RCStatement_Fill::ConsumesInput() const { return fFillSpecs.First() != nullptr; }
