// An array reads elements until its closing brace. The value list alone decides the count of a
// free array; a fixed count is checked against it at the brace. An element with no separator
// behind it must have read at least one token, so that an element list that reads nothing cannot
// loop for ever on a value it cannot take.
#include "RCStatement_Array.h"

#include <limits>

#include "Assertion.h"
#include "RCBindDefinition.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "UniqueNames.h"

namespace {

constexpr int kMsg_ExpectedIdentifier = 32752;
constexpr int kMsg_ExpectedLCurly = 32761;
constexpr int kMsg_ExpectedRCurly = 32743;
constexpr int kMsg_TooFewArrayElements = 32730;
constexpr int kMsg_TooManyArrayElements = 32731;
constexpr int kMsg_ExpectedArraySeparator = 32652;

}  // namespace

RCStatement_Array::RCStatement_Array(UniqueStruct* arrayName, RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(arrayName) {}

RCStatement_Array::RCStatement_Array(RCExpression* length, RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(nullptr), fLengthExpr(length) {}

RCStatement_Array::RCStatement_Array(RCStatementList& statements)
    : RCStatement_Multiple(statements), fArrayName(nullptr) {}

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

bool RCStatement_Array::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNestingLevel level(scanner);
    if (!level.Entered() || !scanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return false;
    // Evaluated once, before the first element: it may use earlier fields, but no later ones.
    long limit = fLengthExpr ? fLengthExpr->Evaluate(scanner, bindings).AsInteger()
                             : std::numeric_limits<long>::max();
    bool tracing = DescriptionsOn();
    if (tracing) {
        writeText(bindings->GetDescriptionArea(), "(array");
        bindings->IncrementDescriptionIndent(2);
    }
    bool created = CreateElements(bindings, scanner, limit);
    if (tracing) {
        bindings->IncrementDescriptionIndent(-2);
        writeChar(bindings->GetDescriptionArea(), ')');
    }
    return created;
}

bool RCStatement_Array::CreateElements(RCBindings* bindings, RCScanner* scanner, long limit) {
    RCBindArray array(bindings, fArrayName);
    unsigned long lastTokenCount = scanner->GetTokenCount();
    for (long element = 1;; ++element) {
        if (scanner->Scan(kPPScan_RCurly)) {
            ScanValueSeparator(scanner);
            if (fLengthExpr && element - 1 != limit) {
                scanner->Error(kMsg_TooFewArrayElements, 1, limit);
                return false;
            }
            return true;
        }
        if (element > limit) scanner->Error(kMsg_TooManyArrayElements, 1, limit);
        if (element > limit || !CreateElement(bindings, scanner, lastTokenCount)) {
            // What is left of the value list is skipped as far as the array's own brace.
            scanner->ScanUntil(kPPScan_RCurly);
            return false;
        }
    }
}

bool RCStatement_Array::CreateElement(RCBindings* bindings, RCScanner* scanner, unsigned long& lastTokenCount) {
    RCNewArrayElement element(bindings);
    if (DescriptionsOn()) newLineIndent(bindings->GetDescriptionArea(), bindings->GetDescriptionIndent());
    if (!CreateProg(bindings, scanner)) return false;
    bool separated = scanner->Scan(kPPScan_Semicolon) || scanner->Scan(kPPScan_Comma);
    if (!separated && scanner->GetTokenCount() == lastTokenCount) {
        scanner->Error(kMsg_ExpectedArraySeparator, 0);
        return false;
    }
    lastTokenCount = scanner->GetTokenCount();
    return true;
}

void RCStatement_Array::WriteDescription(DataArea* area, int indent) {
    writeText(area, "(array");
    if (fArrayName) {
        newLineIndent(area, indent + 2);
        writeText(area, "(name ");
        writeText(area, nameOf(fArrayName));
        writeChar(area, ')');
    }
    if (fLengthExpr) {
        newLineIndent(area, indent + 2);
        writeExpressionGroup(area, "(length ", fLengthExpr, indent + 4);
    }
    newLineIndent(area, indent + 2);
    WriteProg(area, indent + 2);
    writeChar(area, ')');
}
