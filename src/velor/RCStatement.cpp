// The base of statement trees, statement lists and the shared parse helpers of type bodies.

#include "RCStatement.h"

#include <new>

#include "Assertion.h"
#include "MsgIds.h"
#include "RCAlloc.h"
#include "RCBindings.h"
#include "RCByteString.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "RCStatementFactory.h"
#include "RCStatement_Label.h"
#include "RCStatement_Name.h"

RCNesting gTypeNesting{1000, kMsg_OutOfMemory};

namespace {

// A statement needs ';' behind it, unless it closes its list.
RCStatement* ExpectTerminator(RCScanner* scanner, RCStatement* statement) {
    RCPtr<RCStatement> owned(statement);
    if (!scanner->Scan(kPPScan_Semicolon) && scanner->TokenType() != kPPScan_RCurly) {
        scanner->Error(kMsg_ExpectedSemicolonOrRCurly, 0);
        return nullptr;
    }
    return owned.Release();
}

// named-statement = name ":" labelled | named-field ( ";" | before "}" )
// A name opens a label or a field of a named type; a label brings its statement's terminator.
RCStatement* ParseNamedStatement(RCScanner* scanner) {
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    if (scanner->Scan(kPPScan_Colon)) return RCStatement_Label::ParseLabel(scanner, name);
    RCStatement* field = RCStatement_Name::ParseName(scanner, name);
    return field ? ExpectTerminator(scanner, field) : nullptr;
}

// Whether `accept` holds for a parsed expression; reports errorId when it does not.
bool Accepts(RCScanner* scanner, RCExpression const& expression, bool (RCExpression::*accept)() const, int errorId) {
    if ((expression.*accept)()) return true;
    scanner->Error(errorId, 0);
    return false;
}

// Parses an expression and keeps it only if `accept` holds for it; otherwise reports errorId.
RCExpression* ScanExpression(RCScanner* scanner, bool (RCExpression::*accept)() const, int errorId) {
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    if (expression && !Accepts(scanner, *expression, accept, errorId)) return nullptr;
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

bool RCStatement::CreateResource_Long(RCScanner* scanner, RCBindings* bindings, long* value) {
    RCNumber literal;
    RCPtr<RCExpression> expression;
    if (!ScanNumber(scanner, literal, expression)) return false;
    *value = (expression ? expression->Evaluate(scanner, bindings) : literal).AsInteger();
    return true;
}

bool RCStatement::CreateResource_String(RCScanner* scanner, RCBindings*, RCByteString* value) {
    RCByteString literal;
    RCPtr<RCExpression> expression;
    if (!RCExpression::ParseStringValue(scanner, literal, expression)) return false;
    if (!expression) {
        *value = literal;
        return true;
    }
    if (!Accepts(scanner, *expression, &RCExpression::IsString, kMsg_ExpectedString)) return false;
    *value = expression->AsString();
    return true;
}

// statement = [ "unsigned" ] [ radix ] [ "wide" ] ( named-statement | field ( ";" | before "}" ) )
RCStatement* RCStatement::ParseStatement(RCScanner* scanner) {
    RCNestingGuard nesting(gTypeNesting);
    if (!nesting.Deeper(scanner)) return nullptr;
    // Modifiers are accepted in this order only, and have no effect on what follows.
    ScanKeyword(scanner, kRCScan_Unsigned);
    ScanRadix(scanner);
    ScanKeyword(scanner, kRCScan_Wide);

    if (scanner->TokenType() == kPPScan_Ident) return ParseNamedStatement(scanner);

    RCStatementParser parser = ParserForKeyword(scanner->TokenType());
    if (!parser) {
        scanner->Error(kMsg_TypeSpecificationError, 0);
        return nullptr;
    }
    RCStatement* statement = parser(scanner);
    return statement ? ExpectTerminator(scanner, statement) : nullptr;
}

// compound = "{" statement-list "}"
RCStatement* RCStatement::ParseCompound(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kPPScan_LCurly);
    aScanner->NextToken();
    RCStatementList statements;
    if (!RCStatement_Compound::ParseCompound(aScanner, statements)) {
        aScanner->ScanUntil(kPPScan_RCurly);
        return nullptr;
    }
    if (!aScanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly)) return nullptr;
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
    return ScanExpression(scanner, &RCExpression::IsNumber, kMsg_NotNumeric);
}

bool RCStatement::ScanNumber(RCScanner* scanner, RCNumber& literal, RCPtr<RCExpression>& tree) {
    if (!RCExpression::ParseValue(scanner, literal, tree)) return false;
    if (!tree) return true;
    if (!Accepts(scanner, *tree, &RCExpression::IsNumber, kMsg_NotNumeric)) {
        tree = nullptr;
        return false;
    }
    if (RCNumber const* folded = tree->LiteralValue()) {
        literal = *folded;
        tree = nullptr;
    }
    return true;
}

RCExpression* RCStatement::ScanString(RCScanner* scanner) {
    return ScanExpression(scanner, &RCExpression::IsString, kMsg_ExpectedString);
}

// length = expression "]"
RCExpression* RCStatement::ScanLength(RCScanner* scanner) {
    RCExpression* length = ScanNumber(scanner);
    scanner->ScanUntil(kPPScan_RBrace, kMsg_ExpectedRBracket);
    return length;
}

void RCStatement::ScanValueSeparator(RCScanner* scanner) {
    if (!scanner->Scan(kPPScan_Semicolon)) scanner->Scan(kPPScan_Comma);
}

long RCStatement::EvalNumber(RCExpression* expression, RCScanner* scanner) {
    if (!expression) return 0;
    if (!expression->IsNumber()) {
        scanner->Error(kMsg_NotNumeric, 0);
        return 0;
    }
    RCBindings scratch(scanner->GetSymbolTable());
    return expression->Evaluate(scanner, &scratch).AsInteger();
}

int RCStatement::ScanAlignSize(RCScanner* scanner, int errorId) {
    int size = 0;
    switch (scanner->TokenType()) {
    case kRCScan_Bit:
    case kRCScan_Boolean: size = 1; break;
    case kRCScan_Nibble: size = 4; break;
    case kRCScan_Byte: size = 8; break;
    case kRCScan_Word:
    case kRCScan_Integer: size = 16; break;
    case kRCScan_Long:
    case kRCScan_Single: size = 32; break;
    case kRCScan_Double: size = 64; break;
    default:
        scanner->Error(errorId, 0);
        return 0;
    }
    scanner->NextToken();
    return size;
}

long RCStatement::VerifyValue(RCScanner*, long value, int width) {
    // A part as wide as the whole value has no bits above it.
    unsigned long mask = width >= 64 ? 0 : ~0UL << width;
    unsigned long bits = static_cast<unsigned long>(value);
    if (value >= 0 && (bits & mask) == bits) return value;
    return static_cast<long>(bits & ~mask);
}

RCStatementList::RCStatementList(RCStatementList& source) : RCList(source) {}

RCStatementList::~RCStatementList() { release(*this); }

void RCStatementList::Append(RCStatement* statement) {
    RCList::Append(new RCListItem<RCStatement*>(statement));
}

bool RCStatement_Null::CreateResource(RCBindings*, RCScanner*) { return true; }

void RCStatement_Null::WriteDescription(DataArea* area, int) {
    writeHead(area, kDesc_Null);
    writeChar(area, ')');
}

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

bool RCStatement_Multiple::CreateProg(RCBindings* bindings, RCScanner* scanner) {
    RCTraceScope trace(bindings, kDesc_Prog);
    RCListIterator<RCStatementList> children(fStatements);
    while (auto* child = children.Next()) {
        trace.NewLine();
        if (!child->fValue->CreateResource(bindings, scanner)) return false;
    }
    return true;
}

void RCStatement_Multiple::WriteProg(DataArea* area, int indent) {
    writeHead(area, kDesc_Prog);
    RCListIterator<RCStatementList> children(fStatements);
    while (auto* child = children.Next()) {
        newLineIndent(area, indent + 2);
        child->fValue->WriteDescription(area, indent + 2);
    }
    writeChar(area, ')');
}

bool RCStatement_Compound::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    return CreateProg(bindings, scanner);
}

void RCStatement_Compound::WriteDescription(DataArea* area, int indent) { WriteProg(area, indent); }

// statement-list = nothing | [ "key" ] statement { [ "key" ] statement }, up to "}" or "case"
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
