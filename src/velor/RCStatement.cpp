#include "RCStatement.h"

#include <new>

#include "Assertion.h"
#include "Options.h"
#include "RCAlloc.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "RCStatement_ByteString.h"
#include "RCStatement_Number.h"

namespace {

constexpr int kErrTypeSpecification = 32751;
constexpr int kErrExpectedSemicolonOrCurly = 32722;
constexpr int kErrExpectedCurly = 32743;
constexpr int kErrNotNumeric = 32741;
constexpr int kErrExpectedString = 32754;
constexpr int kErrExpectedBracket = 32750;

// The parser of the statement that the current token opens, or null if no statement starts here.
using StatementParser = RCStatement* (*)(RCScanner*);

RCStatement* ParseIntegerField(RCScanner* scanner) { return RCStatement_Number::ParseNumber(scanner, true); }
RCStatement* ParseRealField(RCScanner* scanner) { return RCStatement_Number::ParseNumber(scanner, false); }

StatementParser ParserForKeyword(int token) {
    switch (token) {
    case kRCScan_Bitstring:
    case kRCScan_Boolean:
    case kRCScan_Byte:
    case kRCScan_Integer:
    case kRCScan_Longint:
        return ParseIntegerField;
    case kRCScan_Double:
    case kRCScan_Single:
        return ParseRealField;
    case kRCScan_Char:
    case kRCScan_Cstring:
    case kRCScan_Icstring:
    case kRCScan_Ipstring:
    case kRCScan_Istring:
    case kRCScan_Iwstring:
    case kRCScan_Pstring:
    case kRCScan_String:
    case kRCScan_Wstring:
        return RCStatement_ByteString::ParseByteString;
    default:
        return nullptr;
    }
}

// A statement needs ';' behind it, unless it closes its list.
RCStatement* ExpectTerminator(RCScanner* scanner, RCStatement* statement) {
    RCPtr<RCStatement> owned(statement);
    if (!scanner->Scan(kPPScan_Semicolon) && scanner->TokenType() != kPPScan_RCurly) {
        scanner->Error(kErrExpectedSemicolonOrCurly, 0);
        return nullptr;
    }
    return owned.Release();
}

// Parses an expression and keeps it only if `accept` holds for it; otherwise reports errorId.
RCExpression* ScanExpression(RCScanner* scanner, bool (RCExpression::*accept)() const, int errorId) {
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    if (expression && !((*expression).*accept)()) {
        scanner->Error(errorId, 0);
        return nullptr;
    }
    return expression.Release();
}

}  // namespace

void* RCStatement::operator new(std::size_t size) {
    if (void* block = RCAlloc(size)) return block;
    throw std::bad_alloc();
}

void RCStatement::operator delete(void* block) { RCFree(block); }

bool RCStatement::CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input) {
    bindings->AddBytes(scanner, input->GetReadPtr(), input->Readable());
    return true;
}

char RCStatement::LabelWidth() { return 0; }

bool RCStatement::DescriptionsOn() { return gOptions->GetWriteDescriptions(); }

RCStatement* RCStatement::ParseStatement(RCScanner* scanner) {
    // Modifiers are accepted in this order only, and have no effect on what follows.
    ScanKeyword(scanner, kRCScan_Unsigned);
    ScanRadix(scanner);
    ScanKeyword(scanner, kRCScan_Wide);

    StatementParser parser = ParserForKeyword(scanner->TokenType());
    if (!parser) {
        scanner->Error(kErrTypeSpecification, 0);
        return nullptr;
    }
    RCStatement* statement = parser(scanner);
    return statement ? ExpectTerminator(scanner, statement) : nullptr;
}

RCStatement* RCStatement::ParseCompound(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kPPScan_LCurly);
    aScanner->NextToken();
    RCStatementList statements;
    if (!RCStatement_Compound::ParseCompound(aScanner, statements)) {
        aScanner->ScanUntil(kPPScan_RCurly);
        return nullptr;
    }
    if (!aScanner->ScanUntil(kPPScan_RCurly, kErrExpectedCurly)) return nullptr;
    return new RCStatement_Compound(statements);
}

int RCStatement::ScanKeyword(RCScanner* scanner, int token) {
    return scanner->Scan(token) ? token : kNoKeyword;
}

int RCStatement::ScanRadix(RCScanner* scanner) {
    int token = scanner->TokenType();
    switch (token) {
    case kRCScan_Binary:
    case kRCScan_Decimal:
    case kRCScan_Hex:
    case kRCScan_Literal:
    case kRCScan_Octal:
        scanner->NextToken();
        return token;
    default:
        return kNoKeyword;
    }
}

RCExpression* RCStatement::ScanNumber(RCScanner* scanner) {
    return ScanExpression(scanner, &RCExpression::IsNumber, kErrNotNumeric);
}

RCExpression* RCStatement::ScanString(RCScanner* scanner) {
    return ScanExpression(scanner, &RCExpression::IsString, kErrExpectedString);
}

RCExpression* RCStatement::ScanLength(RCScanner* scanner) {
    RCExpression* length = ScanNumber(scanner);
    scanner->ScanUntil(kPPScan_RBrace, kErrExpectedBracket);
    return length;
}

long RCStatement::EvalNumber(RCExpression* expression, RCScanner* scanner) {
    if (!expression) return 0;
    if (!expression->IsNumber()) {
        scanner->Error(kErrNotNumeric, 0);
        return 0;
    }
    RCBindings scratch(scanner->GetSymbolTable(), nullptr, 0, 0);
    return expression->Evaluate(scanner, &scratch).AsInteger();
}

void RCStatement::ScanValueSeparator(RCScanner* scanner) {
    if (!scanner->Scan(kPPScan_Semicolon)) scanner->Scan(kPPScan_Comma);
}

RCStatementList::RCStatementList(RCStatementList& source) : RCList(source) {}

RCStatementList::~RCStatementList() { release(*this); }

void RCStatementList::Append(RCStatement* statement) {
    RCList::Append(new RCListItem<RCStatement*>(statement));
}

bool RCStatement_Null::CreateResource(RCBindings*, RCScanner*) { return true; }

void RCStatement_Null::WriteDescription(DataArea* area, int) { writeText(area, "(null)"); }

bool RCStatement_Null::ConsumesInput() const { return false; }

RCStatement_Multiple::RCStatement_Multiple(RCStatementList& statements)
    : fStatements(statements), fConsumesInput(false) {
    RCListIterator<RCStatementList> children(fStatements);
    while (auto* child = children.Next()) {
        if (child->fValue->ConsumesInput()) {
            fConsumesInput = true;
            break;
        }
    }
}

bool RCStatement_Multiple::ConsumesInput() const { return fConsumesInput; }

RCStatement_Compound::RCStatement_Compound(RCStatementList& statements)
    : RCStatement_Multiple(statements) {}

bool RCStatement_Compound::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    if (!DescriptionsOn()) return CreateChildren(bindings, scanner);
    DataArea* trace = bindings->GetDescriptionArea();
    writeText(trace, "(prog");
    bindings->IncrementDescriptionIndent(2);
    bool created = CreateChildren(bindings, scanner);
    bindings->IncrementDescriptionIndent(-2);
    writeChar(trace, ')');
    return created;
}

bool RCStatement_Compound::CreateChildren(RCBindings* bindings, RCScanner* scanner) {
    bool tracing = DescriptionsOn();
    RCListIterator<RCStatementList> children(fStatements);
    while (auto* child = children.Next()) {
        if (tracing) newLineIndent(bindings->GetDescriptionArea(), bindings->GetDescriptionIndent());
        if (!child->fValue->CreateResource(bindings, scanner)) return false;
    }
    return true;
}

void RCStatement_Compound::WriteDescription(DataArea* area, int indent) {
    writeText(area, "(prog");
    RCListIterator<RCStatementList> children(fStatements);
    while (auto* child = children.Next()) {
        newLineIndent(area, indent + 2);
        child->fValue->WriteDescription(area, indent + 2);
    }
    writeChar(area, ')');
}

bool RCStatement_Compound::ParseCompound(RCScanner* scanner, RCStatementList& statements) {
    if (scanner->TokenType() == kPPScan_RCurly) {
        statements.Append(new RCStatement_Null);
        return true;
    }
    for (;;) {
        ScanKeyword(scanner, kRCScan_Key);
        RCStatement* statement = ParseStatement(scanner);
        if (!statement) return false;
        statements.Append(statement);
        int token = scanner->TokenType();
        if (token == kPPScan_RCurly || token == kRCScan_Case) return true;
    }
}
