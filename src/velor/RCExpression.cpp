// Expression trees: the precedence-climbing parser, reduction against one resource's bindings,
// evaluation, and the description of each node.

#include "RCExpression.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "Assertion.h"
#include "MsgIds.h"
#include "RCAlloc.h"
#include "RCArray.h"
#include "RCBindings.h"
#include "RCBindings_Def.h"
#include "RCDescription.h"
#include "RCNestingGuard.h"
#include "RCOperators.h"
#include "RCScanner.h"
#include "RCValueCell.h"
#include "UniqueNames.h"

namespace {

static_assert(kRCScan_FnWord - kRCScan_FnArrayIndex == kFunction_Word, "function numbers follow the keywords");

constexpr int kNoMinPriority = -1;

// The walks over a tree (reduce, evaluate, describe, delete) recurse on its nesting, so the parser
// refuses nesting deeper than this: parentheses, unary operators and the operands of operands.
// A chain of binary operators at one level is no nesting: its tree leans left, and every walk
// follows that left spine in a loop (RCExpression_2::LeftSpine below), so a chain of any length parses.
RCNesting gExpressionNesting{1000, kPPErr_ExpressionTooComplex};

bool isStringToken(int token) {
    return token >= kPPScan_String && token <= kPPScan_DBHexString;
}

bool isIntegerToken(int token) {
    return token >= kPPScan_Hex && token <= kPPScan_Binary;
}

// The evaluated value of a constant tree, which is dropped afterwards.
RCNumber evaluateReduced(RCScanner* scanner, RCBindings* bindings, RCExpression* reduced) {
    RCPtr<RCExpression> owned(reduced);
    return owned->Evaluate(scanner, bindings);
}

// An operand on its way through Reduce. A literal is held as its value, so that folding constants
// builds and drops no nodes: reducing or evaluating a literal says nothing, so skipping either
// changes no message. Any other operand is the tree that its Reduce made, evaluated when its
// value is asked for, at the point where the tree would have been.
class ReducedOperand {
public:
    ReducedOperand(RCExpression const* operand, RCScanner* scanner, RCBindings* bindings) {
        if (RCNumber const* literal = operand->LiteralValue()) {
            fValue = *literal;
            fIsConstant = true;
        } else {
            fTree = operand->Reduce(scanner, bindings, fIsConstant);
        }
    }
    ReducedOperand(ReducedOperand const&) = delete;
    ReducedOperand& operator=(ReducedOperand const&) = delete;
    ~ReducedOperand() { delete fTree; }

    bool IsConstant() const { return fIsConstant; }

    // Holds a value known now in place of what was taken.
    void Hold(RCNumber const& value) {
        fValue = value;
        fIsConstant = true;
    }

    // Holds a tree whose value is not known yet in place of what was taken.
    void Adopt(RCExpression* tree) {
        fTree = tree;
        fIsConstant = false;
    }

    RCExpression* TakeTree() {
        RCExpression* tree = fTree != nullptr ? fTree : RCExpression::Number(fValue);
        fTree = nullptr;
        return tree;
    }

    RCNumber TakeValue(RCScanner* scanner, RCBindings* bindings) {
        if (fTree == nullptr) return fValue;
        RCExpression* tree = fTree;
        fTree = nullptr;
        return evaluateReduced(scanner, bindings, tree);
    }

private:
    RCExpression* fTree = nullptr;
    RCNumber fValue;
    bool fIsConstant = false;
};

// While a value of a value list is parsed, an operator over literals is folded into the literal of
// its result. Such a tree would be reduced and dropped at once, and neither reducing nor evaluating
// a literal says anything, so folding it earlier changes no message; an operator that would report
// (one without a float form, meeting a float) keeps its node. The trees of a type body are never
// folded: their descriptions show them as written.
bool gFoldingValue = false;

class FoldingValue {
public:
    FoldingValue() : fOuter(gFoldingValue) { gFoldingValue = true; }
    FoldingValue(FoldingValue const&) = delete;
    FoldingValue& operator=(FoldingValue const&) = delete;
    ~FoldingValue() { gFoldingValue = fOuter; }

private:
    bool fOuter;
};

// The unary operator over a parsed operand, which it takes. A folded result stays in the
// operand's node.
RCExpression* combineUnary(RCScanner* scanner, int op, RCExpression* operand) {
    RCExpression_Number* literal = gFoldingValue ? operand->AsLiteral() : nullptr;
    if (literal == nullptr || !evaluatesSilently(op, *literal->LiteralValue()))
        return new RCExpression_1(op, operand);
    literal->Hold(evaluateUnary(scanner, op, *literal->LiteralValue()));
    return literal;
}

// The binary operator over its parsed sides, which it takes. A folded result stays in the node
// of the left side.
RCExpression* combineBinary(RCScanner* scanner, int op, RCExpression* left, RCExpression* right) {
    RCExpression_Number* leftLiteral = gFoldingValue ? left->AsLiteral() : nullptr;
    RCExpression_Number* rightLiteral = leftLiteral != nullptr ? right->AsLiteral() : nullptr;
    if (rightLiteral == nullptr ||
        !evaluatesSilently(op, *leftLiteral->LiteralValue(), *rightLiteral->LiteralValue()))
        return new RCExpression_2(op, left, right);
    RCPtr<RCExpression> ownedRight(right);
    leftLiteral->Hold(evaluateBinary(scanner, op, *leftLiteral->LiteralValue(), *rightLiteral->LiteralValue()));
    return left;
}

void deleteArguments(int count, RCExpression** argv) {
    for (int i = 0; i < count; ++i) delete argv[i];
}

void writeName(DataArea* area, UniqueStruct* name) {
    writeText(area, nameOf(name));
}

char const* functionText(int function) {
    switch (function) {
    case kFunction_BitField:
        return "$$BitField";
    case kFunction_Byte:
        return "$$Byte";
    case kFunction_Long:
        return "$$Long";
    case kFunction_Word:
        return "$$Word";
    default:
        return "???";
    }
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Base

RCExpression::~RCExpression() = default;

bool RCExpression::IsNumber() const {
    return false;
}

bool RCExpression::IsString() const {
    return false;
}

bool RCExpression::IsName() const {
    return false;
}

RCByteString RCExpression::AsString() {
    VELOR_ASSERT_TEXT("RCExpression::AsString", false);
    return RCByteString();
}

RCByteString const* RCExpression::StringValue() const {
    return nullptr;
}

RCNumber const* RCExpression::LiteralValue() const {
    return nullptr;
}

RCExpression_2* RCExpression::AsBinary() {
    return nullptr;
}

RCExpression_Number* RCExpression::AsLiteral() {
    return nullptr;
}

RCDependence RCExpression::Dependence() const {
    return RCDependence::kBindings;
}

UniqueStruct* RCExpression::AsName() {
    VELOR_ASSERT_TEXT("RCExpression::AsName", false);
    return nullptr;
}

RCNumber RCExpression::Evaluate(RCScanner* scanner, RCBindings*) {
    scanner->Error(kMsg_NotNumeric, 0);
    return RCNumber();
}

RCExpression* RCExpression::Number(RCNumber const& number) {
    return new RCExpression_Number(number);
}

RCExpression* RCExpression::Number(long value) {
    return Number(RCNumber(value));
}

RCExpression* RCExpression::Number(double value) {
    return Number(RCNumber(value));
}

RCExpression* RCExpression::Increment(RCExpression* base, long delta) {
    return new RCExpression_2(kPPScan_Plus, base, Number(delta));
}

// ---------------------------------------------------------------------------------------------
// Parser

// expression = term { binary-operator expression } [ "?" expression ":" expression ]
// Binary operators bind by their priority; only those above minPriority are taken at this level.
RCExpression* RCExpression::ParseExpression(RCScanner* scanner, int minPriority) {
    RCNestingGuard depth(gExpressionNesting);
    if (!depth.Deeper(scanner)) return nullptr;
    RCPtr<RCExpression> tree(ParseTerm(scanner));
    if (!tree) return nullptr;
    return ParseOperators(scanner, tree, minPriority);
}

// The binary operators behind the term in tree, and their right sides, as far as they bind
// above minPriority.
RCExpression* RCExpression::ParseOperators(RCScanner* scanner, RCPtr<RCExpression>& tree, int minPriority) {
    int priority = getOperatorPriority(scanner->TokenType());
    while (priority > minPriority) {
        int op = scanner->TokenType();
        scanner->NextToken();
        // A ternary ends its level: nothing after it is read as an operator here.
        if (op == kPPScan_Question) return ParseConditional(scanner, tree);
        // Parsing the right side above this priority makes every binary operator left-associative.
        RCExpression* right = ParseExpression(scanner, priority);
        if (right == nullptr) return nullptr;
        tree = combineBinary(scanner, op, tree.Release(), right);
        priority = getOperatorPriority(scanner->TokenType());
    }
    return tree.Release();
}

// value = integer-literal | expression
// A lone integer literal, the value of most fields, is given in literal without building a node;
// a literal followed by an operator starts a tree as any term does. Constants fold throughout.
bool RCExpression::ParseValue(RCScanner* scanner, RCNumber& literal, RCPtr<RCExpression>& tree) {
    FoldingValue folding;
    int const token = scanner->TokenType();
    if (token != kPPScan_Zero && !isIntegerToken(token)) {
        tree = ParseExpression(scanner, kNoMinPriority);
        return tree != nullptr;
    }
    RCNestingGuard depth(gExpressionNesting);
    if (!depth.Deeper(scanner)) return false;
    literal = token == kPPScan_Zero ? RCNumber(0L) : RCNumber(scanner->EvalNumber());
    scanner->NextToken();
    if (getOperatorPriority(scanner->TokenType()) <= kNoMinPriority) return true;
    tree = Number(literal);
    tree = ParseOperators(scanner, tree, kNoMinPriority);
    return tree != nullptr;
}

// string-value = string-term | expression
// A lone string term, the value of most string fields, is given as its bytes without a node; one
// followed by an operator starts a tree as ParseExpression would.
bool RCExpression::ParseStringValue(RCScanner* scanner, RCByteString& string, RCPtr<RCExpression>& tree) {
    if (!isStringToken(scanner->TokenType())) {
        tree = ParseExpression(scanner, kNoMinPriority);
        return tree != nullptr;
    }
    RCNestingGuard depth(gExpressionNesting);
    if (!depth.Deeper(scanner)) return false;
    RCByteStringOwner merged(MergeStrings(scanner));
    if (merged.Get().fData == nullptr) return false;
    if (getOperatorPriority(scanner->TokenType()) <= kNoMinPriority) {
        string = merged.Release();
        return true;
    }
    tree = RCExpression_String::Adopting(merged.Release());
    tree = ParseOperators(scanner, tree, kNoMinPriority);
    return tree != nullptr;
}

// conditional = expression "?" expression ":" expression; entered behind the "?".
RCExpression* RCExpression::ParseConditional(RCScanner* scanner, RCPtr<RCExpression>& condition) {
    RCPtr<RCExpression> thenPart(ParseExpression(scanner, kNoMinPriority));
    if (!thenPart) return nullptr;
    if (scanner->TokenType() != kPPScan_Colon) {
        scanner->Error(kMsg_SyntaxError, 0);
        return nullptr;
    }
    scanner->NextToken();
    RCExpression* elsePart = ParseExpression(scanner, kNoMinPriority);
    if (elsePart == nullptr) return nullptr;
    return new RCExpression_3(condition.Release(), thenPart.Release(), elsePart);
}

// term = string { string } | numeric-term
RCExpression* RCExpression::ParseTerm(RCScanner* scanner) {
    int token = scanner->TokenType();
    // A string is the one term that may be other than a number; its callers decide about it.
    if (isStringToken(token)) return ParseString(scanner);
    RCPtr<RCExpression> term(ParseNumericTerm(scanner, token));
    if (term && !term->IsNumber()) {
        scanner->Error(kMsg_NotNumeric, 0);
        return nullptr;
    }
    return term.Release();
}

// numeric-term = name [ "[" expression-list "]" ] | number | character | ( "!" | "~" | "-" ) term
//              | "(" expression ")" | function
RCExpression* RCExpression::ParseNumericTerm(RCScanner* scanner, int token) {
    RCExpression* term = nullptr;
    switch (token) {
    case kPPScan_Ident: {
        UniqueStruct* name = scanner->ScanName(kMsg_SyntaxError);
        if (scanner->TokenType() == kPPScan_LBrace) return ParseArrayRef(scanner, name);
        return new RCExpression_Name(name);
    }
    case kPPScan_Zero:
        term = Number(0L);
        break;
    case kPPScan_Double:
        term = Number(scanner->EvalRealNumber());
        break;
    case kPPScan_Char:
    case kPPScan_WideChar:
    case kPPScan_DBChar:
        term = Number(scanner->EvalChar(token == kPPScan_WideChar));
        break;
    case kPPScan_Not:
    case kPPScan_Tilde:
    case kPPScan_Minus: {
        // Unary operators take a term, so they bind tighter than every binary one and stack.
        RCNestingGuard depth(gExpressionNesting);
        if (!depth.Deeper(scanner)) return nullptr;
        scanner->NextToken();
        RCExpression* operand = ParseTerm(scanner);
        return operand == nullptr ? nullptr : combineUnary(scanner, token, operand);
    }
    case kPPScan_LParen: {
        scanner->NextToken();
        RCPtr<RCExpression> inner(ParseExpression(scanner, kNoMinPriority));
        if (!inner || !scanner->ScanUntil(kPPScan_RParen, kMsg_ExpectedRParen)) return nullptr;
        return inner.Release();
    }
    default:
        if (isIntegerToken(token)) {
            term = Number(scanner->EvalNumber());
            break;
        }
        if (token >= kRCScan_FnArrayIndex && token <= kRCScan_FnWord)
            return ParseFunction(scanner, token - kRCScan_FnArrayIndex);
        scanner->Error(kMsg_SyntaxError, 0);
        break;
    }
    scanner->NextToken();
    return term;
}

// string-term = string-literal { string-literal }
RCExpression* RCExpression::ParseString(RCScanner* scanner) {
    RCByteString string = MergeStrings(scanner);
    if (string.fData == nullptr) return nullptr;
    return RCExpression_String::Adopting(string);
}

RCByteString RCExpression::MergeStrings(RCScanner* scanner) {
    // Adjacent literals make one string.
    RCByteStringOwner work;
    do {
        if (!scanner->MergeString(work.Get())) break;
        scanner->NextToken();
    } while (isStringToken(scanner->TokenType()));
    return work.Release();
}

// function = $$-keyword "(" [ expression-list ] ")"
RCExpression* RCExpression::ParseFunction(RCScanner* scanner, int function) {
    int nargs = scanner->NArgs();
    scanner->NextToken();
    if (!scanner->Scan(kPPScan_LParen, kMsg_ExpectedLParen)) return nullptr;
    VELOR_ASSERT(nargs <= kArgMax);
    RCExpression* argv[kArgMax];
    int count = ParseExprList(scanner, nargs, argv);
    bool closed = scanner->ScanUntil(kPPScan_RParen, kMsg_ExpectedRParen);
    if (count < 0) return nullptr;
    if (closed) {
        bool takesName = function == kFunction_ArrayIndex || function == kFunction_CountOf;
        if (count != nargs) {
            scanner->Error(kMsg_TooFewArguments, 1, nargs);
        } else if (!takesName) {
            return new RCExpression_Function(function, count, argv);
        } else if (argv[0]->IsName()) {
            RCPtr<RCExpression> argument(argv[0]);
            if (function == kFunction_ArrayIndex) return new RCExpression_ArrayIndex(argument->AsName());
            return new RCExpression_CountOf(argument->AsName());
        } else {
            scanner->Error(function == kFunction_ArrayIndex ? kMsg_ArrayIndexNeedsName : kMsg_CountOfNeedsName, 0);
        }
    }
    deleteArguments(count, argv);
    return nullptr;
}

// expression-list = expression { "," expression }, empty before a ")"
int RCExpression::ParseExprList(RCScanner* scanner, int max, RCExpression** argv) {
    if (scanner->TokenType() == kPPScan_RParen) return 0;
    int count = 0;
    while (RCExpression* argument = ParseExpression(scanner, kNoMinPriority)) {
        if (count == max) {
            scanner->Error(kMsg_TooManyValues, 1, max);
            delete argument;
            break;
        }
        argv[count++] = argument;
        if (scanner->TokenType() != kPPScan_Comma) return count;
        scanner->NextToken();
    }
    deleteArguments(count, argv);
    return -1;
}

// array-reference = name "[" expression-list "]"; entered at the "[".
RCExpression* RCExpression::ParseArrayRef(RCScanner* scanner, UniqueStruct* name) {
    VELOR_ASSERT(scanner->TokenType() == kPPScan_LBrace);
    scanner->NextToken();
    if (scanner->TokenType() == kPPScan_RBrace) {
        // The message expects a count that no subscript list has; 0 stands for it rather than
        // whatever the argument list would happen to hold.
        scanner->Error(kMsg_TooFewArguments, 1, 0);
        scanner->NextToken();
        return nullptr;
    }
    RCExpression* argv[kArgMax];
    int count = ParseExprList(scanner, kArgMax, argv);
    if (count == 0) return nullptr;
    bool closed = scanner->ScanUntil(kPPScan_RBrace, kMsg_ExpectedRBracket);
    if (count < 0) return nullptr;
    if (closed) return new RCExpression_ArrayLabel(name, count, argv);
    deleteArguments(count, argv);
    return nullptr;
}

// ---------------------------------------------------------------------------------------------
// Numbers and strings

bool RCExpression_Number::IsNumber() const {
    return true;
}

RCNumber const* RCExpression_Number::LiteralValue() const {
    return &fNumber;
}

RCExpression_Number* RCExpression_Number::AsLiteral() {
    return this;
}

RCDependence RCExpression_Number::Dependence() const {
    return fNumber.IsInteger() ? RCDependence::kNothing : RCDependence::kBindings;
}

RCExpression* RCExpression_Number::Reduce(RCScanner*, RCBindings*, bool& isConstant) const {
    isConstant = true;
    return Number(fNumber);
}

RCNumber RCExpression_Number::Evaluate(RCScanner*, RCBindings*) {
    return fNumber;
}

void RCExpression_Number::WriteDescription(DataArea* area, int) {
    writeNumber(area, fNumber);
}

RCExpression_String::RCExpression_String(RCByteString const& string) : fString(string.Clone()) {}

RCExpression_String::~RCExpression_String() {
    fString.Destroy();
}

bool RCExpression_String::IsString() const {
    return true;
}

RCExpression_String* RCExpression_String::Adopting(RCByteString const& string) {
    return new RCExpression_String(string, AdoptTag{});
}

RCByteString RCExpression_String::AsString() {
    return fString.Clone();
}

RCByteString const* RCExpression_String::StringValue() const {
    return &fString;
}

RCExpression* RCExpression_String::Reduce(RCScanner*, RCBindings*, bool& isConstant) const {
    isConstant = true;
    return new RCExpression_String(fString);
}

void RCExpression_String::WriteDescription(DataArea* area, int) {
    writeString(area, fString.Bytes(), static_cast<unsigned long>(fString.fLength));
}

// ---------------------------------------------------------------------------------------------
// Names and values

RCNumber RCExpression_Eval::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    bool isConstant = false;
    RCPtr<RCExpression> reduced(Reduce(scanner, bindings, isConstant));
    if (isConstant && reduced->IsNumber()) return reduced->Evaluate(scanner, bindings);
    scanner->Error(kMsg_NotNumeric, 0);
    return RCNumber();
}

bool RCExpression_Value::IsNumber() const {
    return true;
}

RCExpression* RCExpression_Value::Reduce(RCScanner* scanner, RCBindings*, bool& isConstant) const {
    isConstant = fValueCell->IsDefined();
    if (isConstant) return Number(fValueCell->Value());
    // A forward reference: reported once, then read from the cell when the fixup runs.
    fValueCell->SetDefined();
    scanner->Error(kMsg_UndefinedName, 1, nameOf(fValueCell->Name()));
    return new RCExpression_Value(fValueCell);
}

void RCExpression_Value::WriteDescription(DataArea* area, int) {
    writeName(area, fValueCell->Name());
}

bool RCExpression_Name::IsNumber() const {
    return true;
}

bool RCExpression_Name::IsName() const {
    return true;
}

UniqueStruct* RCExpression_Name::AsName() {
    return fName;
}

RCExpression* RCExpression_Name::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    if (RCValueCell* cell = bindings->LookupValue(fName))
        return RCExpression_Value(cell).Reduce(scanner, bindings, isConstant);
    // Only bindings without a frame know no name at all.
    scanner->Error(kMsg_UndefinedName, 1, nameOf(fName));
    return new RCExpression_Name(fName);
}

void RCExpression_Name::WriteDescription(DataArea* area, int) {
    writeName(area, fName);
}

// ---------------------------------------------------------------------------------------------
// Operators

bool RCExpression_1::IsNumber() const {
    return fOperand->IsNumber();
}

RCDependence RCExpression_1::Dependence() const {
    return fOperand->Dependence();
}

RCExpression* RCExpression_1::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    ReducedOperand operand(fOperand, scanner, bindings);
    isConstant = operand.IsConstant();
    if (!isConstant) return new RCExpression_1(fOperator, operand.TakeTree());
    return Number(evaluateUnary(scanner, fOperator, operand.TakeValue(scanner, bindings)));
}

RCNumber RCExpression_1::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    return evaluateUnary(scanner, fOperator, fOperand->Evaluate(scanner, bindings));
}

void RCExpression_1::WriteDescription(DataArea* area, int indent) {
    char const* text = operatorText(fOperator);
    writeChar(area, '(');
    writeText(area, text);
    writeChar(area, ' ');
    fOperand->WriteDescription(area, indent + headWidth(text));
    writeChar(area, ')');
}

namespace {

// The node as a binary node, or null. This runs for every link of every chain, so it is one
// virtual call rather than a cast that searches the hierarchy or a comparison of type names.
RCExpression_2* binaryOf(RCExpression* node) {
    return node != nullptr ? node->AsBinary() : nullptr;
}

}  // namespace

// The binary nodes down the left side of a chain, from the top one to the deepest, and the operand
// at the bottom. Walking this list in a loop keeps the machine stack flat however long a chain is.
// Nearly every chain is a few links long and fits in the object; a longer one goes to the heap.
class RCExpression_2::LeftSpine {
public:
    explicit LeftSpine(RCExpression_2 const* top) : fNodes(fInline), fSize(1), fBottom(top->fLeft.GetRep()) {
        for (RCExpression* left = fBottom; auto const* link = binaryOf(left); left = link->fLeft.GetRep()) ++fSize;
        if (fSize > kInlineNodes) {
            fHeap = std::make_unique<RCExpression_2 const*[]>(fSize);
            fNodes = fHeap.get();
        }
        fNodes[0] = top;
        for (std::size_t i = 1; i < fSize; ++i) fNodes[i] = binaryOf(fNodes[i - 1]->fLeft.GetRep());
        fBottom = fNodes[fSize - 1]->fLeft.GetRep();
    }
    LeftSpine(LeftSpine const&) = delete;
    LeftSpine& operator=(LeftSpine const&) = delete;

    std::size_t Size() const { return fSize; }
    RCExpression_2 const* operator[](std::size_t i) const { return fNodes[i]; }
    RCExpression* Bottom() const { return fBottom; }

private:
    static constexpr std::size_t kInlineNodes = 16;

    RCExpression_2 const* fInline[kInlineNodes];
    std::unique_ptr<RCExpression_2 const*[]> fHeap;
    RCExpression_2 const** fNodes;
    std::size_t fSize;
    RCExpression* fBottom;
};

RCExpression_2* RCExpression_2::AsBinary() {
    return this;
}

RCExpression_2::~RCExpression_2() {
    // Each link is unhooked from the chain before it goes, so no destructor recurses down it.
    RCExpression* next = fLeft.Release();
    while (auto* link = binaryOf(next)) {
        next = link->fLeft.Release();
        delete link;
    }
    delete next;
}

bool RCExpression_2::IsNumber() const {
    LeftSpine const spine(this);
    for (std::size_t i = 0; i < spine.Size(); ++i)
        if (!spine[i]->fRight->IsNumber()) return false;
    return spine.Bottom()->IsNumber();
}

RCDependence RCExpression_2::Dependence() const {
    LeftSpine const spine(this);
    RCDependence most = spine.Bottom()->Dependence();
    for (std::size_t i = 0; i < spine.Size(); ++i) most = std::max(most, spine[i]->fRight->Dependence());
    return most;
}

// Each level reduces its left side, then its right, and folds when both are constant: the order
// of the walk, and so of its messages, is that of a recursive descent.
RCExpression* RCExpression_2::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    LeftSpine const spine(this);
    ReducedOperand left(spine.Bottom(), scanner, bindings);
    for (std::size_t level = spine.Size(); level-- > 0;) {
        RCExpression_2 const* node = spine[level];
        ReducedOperand right(node->fRight, scanner, bindings);
        if (!left.IsConstant() || !right.IsConstant()) {
            left.Adopt(new RCExpression_2(node->fOperator, left.TakeTree(), right.TakeTree()));
            continue;
        }
        RCNumber leftValue = left.TakeValue(scanner, bindings);
        RCNumber rightValue = right.TakeValue(scanner, bindings);
        left.Hold(evaluateBinary(scanner, node->fOperator, leftValue, rightValue));
    }
    isConstant = left.IsConstant();
    return left.TakeTree();
}

RCNumber RCExpression_2::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    // Both sides are always evaluated, left first: there is no short circuit.
    LeftSpine const spine(this);
    RCNumber value = spine.Bottom()->Evaluate(scanner, bindings);
    for (std::size_t level = spine.Size(); level-- > 0;) {
        RCNumber right = spine[level]->fRight->Evaluate(scanner, bindings);
        value = evaluateBinary(scanner, spine[level]->fOperator, value, right);
    }
    return value;
}

// "(op left" + line end + "right)" at every level, each level indented past its operator.
void RCExpression_2::WriteDescription(DataArea* area, int indent) {
    LeftSpine const spine(this);
    std::vector<int> inner;
    for (std::size_t level = 0; level < spine.Size(); ++level) {
        char const* text = operatorText(spine[level]->fOperator);
        inner.push_back(indent += headWidth(text));
        writeChar(area, '(');
        writeText(area, text);
        writeChar(area, ' ');
    }
    spine.Bottom()->WriteDescription(area, inner.back());
    for (std::size_t level = spine.Size(); level-- > 0;) {
        newLineIndent(area, inner[level]);
        spine[level]->fRight->WriteDescription(area, inner[level]);
        writeChar(area, ')');
    }
}

bool RCExpression_3::IsNumber() const {
    return fThen->IsNumber() && fElse->IsNumber();
}

RCExpression* RCExpression_3::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    RCPtr<RCExpression> condition(fCondition->Reduce(scanner, bindings, isConstant));
    if (!isConstant) {
        bool branchConstant = false;
        RCExpression* thenPart = fThen->Reduce(scanner, bindings, branchConstant);
        RCExpression* elsePart = fElse->Reduce(scanner, bindings, branchConstant);
        return new RCExpression_3(condition.Release(), thenPart, elsePart);
    }
    bool chooseThen = condition->Evaluate(scanner, bindings).AsInteger() != 0;
    RCExpression* branch = (chooseThen ? fThen : fElse)->Reduce(scanner, bindings, isConstant);
    if (!isConstant) return branch;
    return Number(evaluateReduced(scanner, bindings, branch));
}

RCNumber RCExpression_3::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    bool chooseThen = fCondition->Evaluate(scanner, bindings).AsInteger() != 0;
    return (chooseThen ? fThen : fElse)->Evaluate(scanner, bindings);
}

void RCExpression_3::WriteDescription(DataArea* area, int indent) {
    int inner = indent + headWidth(kDesc_If);
    writeHead(area, kDesc_If);
    fCondition->WriteDescription(area, inner);
    newLineIndent(area, inner);
    fThen->WriteDescription(area, inner);
    newLineIndent(area, inner);
    fElse->WriteDescription(area, inner);
    writeChar(area, ')');
}

// ---------------------------------------------------------------------------------------------
// Functions and label references

RCExpression_MultipleArgs::RCExpression_MultipleArgs(int function, int argc, RCExpression** argv)
    : fFunction(function), fArgc(argc), fArgv(NewArgv(argc)), fAllNumbers(true) {
    for (int i = 0; i < argc; ++i) {
        fArgv[i] = argv[i];
        fAllNumbers = fAllNumbers && argv[i]->IsNumber();
    }
}

RCExpression_MultipleArgs::~RCExpression_MultipleArgs() {
    deleteArguments(fArgc, fArgv);
    RCFreeSmall(fArgv, ArgvBytes(fArgc));
}

// The argument lists of the nodes made per resource come from the small-block free lists.
RCExpression** RCExpression_MultipleArgs::NewArgv(int argc) {
    return static_cast<RCExpression**>(RCAllocSmallOrThrow(ArgvBytes(argc)));
}

std::size_t RCExpression_MultipleArgs::ArgvBytes(int argc) {
    return static_cast<std::size_t>(argc) * sizeof(RCExpression*);
}

bool RCExpression_MultipleArgs::IsNumber() const {
    return fAllNumbers;
}

bool RCExpression_MultipleArgs::ReduceArgv(RCScanner* scanner, RCBindings* bindings, int argc,
                                           RCExpression** argv) const {
    VELOR_ASSERT(fArgc <= argc);
    bool allConstant = true;
    for (int i = 0; i < fArgc; ++i) {
        bool isConstant = false;
        argv[i] = fArgv[i]->Reduce(scanner, bindings, isConstant);
        allConstant = allConstant && isConstant;
    }
    return allConstant;
}

void RCExpression_MultipleArgs::WriteArguments(DataArea* area, int indent) const {
    for (int i = 0; i < fArgc; ++i) {
        if (i != 0) newLineIndent(area, indent);
        fArgv[i]->WriteDescription(area, indent);
    }
}

RCDependence RCExpression_Function::Dependence() const {
    RCDependence most = RCDependence::kOutput;
    for (int i = 0; i < fArgc; ++i) most = std::max(most, fArgv[i]->Dependence());
    return most;
}

RCExpression* RCExpression_Function::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    // The output that these functions read is complete only when the type instance ends.
    isConstant = false;
    RCExpression* argv[kArgMax];
    ReduceArgv(scanner, bindings, kArgMax, argv);
    return new RCExpression_Function(fFunction, fArgc, argv);
}

RCNumber RCExpression_Function::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    return RCNumber(bindings->Apply(scanner, fFunction, fArgc, fArgv));
}

void RCExpression_Function::WriteDescription(DataArea* area, int indent) {
    char const* text = functionText(fFunction);
    writeChar(area, '(');
    writeText(area, text);
    writeChar(area, ' ');
    WriteArguments(area, indent + headWidth(text));
    writeChar(area, ')');
}

RCExpression* RCExpression_ArrayLabel::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    isConstant = false;
    RCExpression* argv[kArgMax];
    ReduceArgv(scanner, bindings, kArgMax, argv);
    return new RCExpression_ArrayLabel_Env(bindings, fName, fArgc, argv);
}

void RCExpression_ArrayLabel::WriteDescription(DataArea* area, int indent) {
    char const* name = nameOf(fName);
    writeHead(area, kDesc_Arrayref);
    writeText(area, name);
    writeChar(area, ' ');
    WriteArguments(area, indent + headWidth(kDesc_Arrayref) + static_cast<int>(std::strlen(name)));
    writeChar(area, ')');
}

RCExpression_ArrayLabel_Env::RCExpression_ArrayLabel_Env(RCBindings* bindings, UniqueStruct* name, int argc,
                                                         RCExpression** argv)
    : RCExpression_MultipleArgs(0, argc, argv), fName(name), fArrayLabel(bindings->ArrayLabel(name)) {}

RCExpression* RCExpression_ArrayLabel_Env::Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const {
    isConstant = false;
    RCExpression* argv[kArgMax];
    ReduceArgv(scanner, bindings, kArgMax, argv);
    return new RCExpression_ArrayLabel_Env(fName, fArrayLabel, fArgc, argv);
}

RCNumber RCExpression_ArrayLabel_Env::Evaluate(RCScanner* scanner, RCBindings* bindings) {
    return RCNumber(bindings->ArrayRef(scanner, fName, fArrayLabel, fArgc, fArgv));
}

void RCExpression_ArrayLabel_Env::WriteDescription(DataArea*, int) {
    VELOR_ASSERT_TEXT("RCExpression_ArrayLabel_Env::WriteDescription", false);
}

// ---------------------------------------------------------------------------------------------
// Arrays

RCExpression_CountOf_Env::RCExpression_CountOf_Env(RCBindings* bindings, UniqueStruct* name)
    : fArray(bindings->Array(name)) {}

bool RCExpression_CountOf_Env::IsNumber() const {
    return true;
}

RCExpression* RCExpression_CountOf_Env::Reduce(RCScanner*, RCBindings*, bool& isConstant) const {
    isConstant = true;
    return Number(fArray->CountOf());
}

RCNumber RCExpression_CountOf_Env::Evaluate(RCScanner*, RCBindings*) {
    return RCNumber(fArray->CountOf());
}

void RCExpression_CountOf_Env::WriteDescription(DataArea*, int) {
    VELOR_ASSERT_TEXT("RCExpression_CountOf_Env::WriteDescription", false);
}

bool RCExpression_ArrayFunction::IsNumber() const {
    return true;
}

void RCExpression_ArrayFunction::WriteNamedForm(DataArea* area, RCDescriptionKeyword keyword) const {
    writeHead(area, keyword);
    writeName(area, fName);
    writeChar(area, ')');
}

RCExpression* RCExpression_CountOf::Reduce(RCScanner*, RCBindings* bindings, bool& isConstant) const {
    isConstant = false;
    return new RCExpression_CountOf_Env(bindings, fName);
}

void RCExpression_CountOf::WriteDescription(DataArea* area, int) {
    WriteNamedForm(area, kDesc_CountOf);
}

RCExpression* RCExpression_ArrayIndex::Reduce(RCScanner*, RCBindings* bindings, bool& isConstant) const {
    isConstant = true;
    return Number(bindings->ArrayIndex(nullptr, fName));
}

void RCExpression_ArrayIndex::WriteDescription(DataArea* area, int) {
    WriteNamedForm(area, kDesc_ArrayIndex);
}
