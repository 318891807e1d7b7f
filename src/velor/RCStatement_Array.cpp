// An array reads elements until its closing brace. The value list alone decides the count of a
// free array; a fixed count is checked against it at the brace. An element with no separator
// behind it must have read at least one token, so that an element list that reads nothing cannot
// loop for ever on a value it cannot take.
#include "RCStatement_Array.h"

#include <limits>

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindDefinition.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "UniqueNames.h"

RCStatement_Array::RCStatement_Array(UniqueStruct* arrayName, RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(arrayName) {}

RCStatement_Array::RCStatement_Array(RCExpression* length, RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(nullptr), fLengthExpr(length) {}

RCStatement_Array::RCStatement_Array(RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(nullptr) {}

// array = "array" [ "[" expression "]" | name ] "{" statement-list "}"
RCStatement* RCStatement_Array::ParseArray(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Array);
    aScanner->NextToken();
    RCPtr<RCExpression> length;
    UniqueStruct* arrayName = nullptr;
    if (aScanner->Scan(kPPScan_LBrace)) {
        length = ScanLength(aScanner);
        if (!length) return nullptr;
    } else if (aScanner->TokenType() == kPPScan_Ident) {
        arrayName = aScanner->ScanName(kMsg_ExpectedIdentifier);
    }
    if (!aScanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return nullptr;
    RCStatementList statements;
    if (!RCStatement_Compound::ParseCompound(aScanner, statements)) {
        aScanner->ScanUntil(kPPScan_RCurly);
        return nullptr;
    }
    if (!aScanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly)) return nullptr;
    if (arrayName) return new RCStatement_Array(arrayName, statements);
    if (length) return new RCStatement_Array(length.Release(), statements);
    return new RCStatement_Array(statements);
}

// array-value = "{" { element [ ";" | "," ] } "}" [ ";" | "," ]
bool RCStatement_Array::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNestingGuard nesting(gTypeNesting);
    if (!nesting.Deeper(scanner) || !scanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return false;
    // Evaluated once, before the first element: it may use earlier fields, but no later ones.
    long limit = fLengthExpr ? fLengthExpr->Evaluate(scanner, bindings).AsInteger()
                             : std::numeric_limits<long>::max();
    RCTraceScope trace(bindings, kDesc_Array);
    return CreateElements(bindings, scanner, limit, trace);
}

bool RCStatement_Array::CreateElements(RCBindings* bindings, RCScanner* scanner, long limit,
                                       RCTraceScope const& trace) {
    RCBindArray array(bindings, fArrayName);
    unsigned long lastTokenCount = scanner->GetTokenCount();
    for (long element = 1;; ++element) {
        if (scanner->Scan(kPPScan_RCurly)) {
            ScanValueSeparator(scanner);
            if (fLengthExpr && element - 1 != limit) {
                scanner->Error(kMsg_TooFewElements, 1, limit);
                return false;
            }
            return true;
        }
        if (element > limit) scanner->Error(kMsg_TooManyElements, 1, limit);
        if (element > limit || !CreateElement(bindings, scanner, lastTokenCount, trace)) {
            // What is left of the value list is skipped as far as the array's own brace.
            scanner->ScanUntil(kPPScan_RCurly);
            return false;
        }
    }
}

bool RCStatement_Array::CreateElement(RCBindings* bindings, RCScanner* scanner, unsigned long& lastTokenCount,
                                      RCTraceScope const& trace) {
    RCNewArrayElement element(bindings);
    trace.NewLine();
    if (!CreateProg(bindings, scanner)) return false;
    bool separated = scanner->Scan(kPPScan_Semicolon) || scanner->Scan(kPPScan_Comma);
    if (!separated && scanner->GetTokenCount() == lastTokenCount) {
        scanner->Error(kMsg_ArrayMissingTypename, 0);
        return false;
    }
    lastTokenCount = scanner->GetTokenCount();
    return true;
}

void RCStatement_Array::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_Array);
    if (fArrayName) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_Name);
        writeText(area, nameOf(fArrayName));
        writeChar(area, ')');
    }
    if (fLengthExpr) {
        newLineIndent(area, indent + 2);
        writeExpressionGroup(area, kDesc_Length, fLengthExpr, indent + 4);
    }
    newLineIndent(area, indent + 2);
    WriteProg(area, indent + 2);
    writeChar(area, ')');
}
