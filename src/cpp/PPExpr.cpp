// The #if evaluator: an operator-precedence machine over two fixed stacks, so that nesting is
// bounded by their size rather than by the process stack.

#include "PPExpr.h"

#include <cctype>
#include <cstdint>
#include <cstring>

#include "Assertion.h"
#include "PPCharClass.h"
#include "cpp5.h"

namespace {

// Operator numbers: indices into opdope.
enum {
    kOpEnd = 0,
    kOpValue = 1,
    kOpPlus = 3,
    kOpMinus = 4,
    kOpTimes = 5,
    kOpDivide = 6,
    kOpRemainder = 7,
    kOpShiftLeft = 8,
    kOpShiftRight = 9,
    kOpAnd = 10,
    kOpOr = 11,
    kOpXor = 12,
    kOpEqual = 13,
    kOpNotEqual = 14,
    kOpLess = 15,
    kOpLessEqual = 16,
    kOpGreaterEqual = 17,
    kOpGreater = 18,
    kOpAndAnd = 19,
    kOpOrOr = 20,
    kOpQuestion = 21,
    kOpColon = 22,
    kOpComma = 23,
    kOpUnaryPlus = 24,
    kOpUnaryMinus = 25,
    kOpComplement = 26,
    kOpNot = 27,
    kOpLParen = 28,
    kOpRParen = 29,
    kOpBottom = 30,
    kOpFail = 31
};

// Precedence in the upper bits. Bit 0: a value must come just before the operator. Bit 1: a
// value is expected after it. Inclusive or and exclusive or share a level.
constexpr unsigned char opdope[32] = {
    0x01, 0x02, 0x00, 0x61, 0x61, 0x69, 0x69, 0x69, 0x59, 0x59, 0x41, 0x39, 0x39, 0x49, 0x49, 0x51,
    0x51, 0x51, 0x51, 0x31, 0x29, 0x21, 0x21, 0x19, 0x70, 0x70, 0x70, 0x70, 0x78, 0x0B, 0x13, 0x00,
};

// On the stack '(' and '?' stand lower than their table entries, so that the operators inside
// them never unwind them.
unsigned char stackedPrecedence(int op) {
    constexpr unsigned char kStackedLParenPrecedence = 11;
    constexpr unsigned char kStackedQuestionPrecedence = 28;
    return op == kOpLParen ? kStackedLParenPrecedence : op == kOpQuestion ? kStackedQuestionPrecedence : opdope[op];
}

// The skip flags of an operator pushed above one with the flags `below`, `test` telling whether
// the value on top is non-zero. Evaluation ignores them; they are kept as the machine defines them.
unsigned char skipFlags(int op, unsigned char below, bool test) {
    switch (op) {
    case kOpAndAnd: return test ? below : 2;
    case kOpOrOr: return test ? 2 : below;
    case kOpQuestion: return (below & 2) + (test ? 0 : 1);
    case kOpColon: return (below & 2) + ((below & 1) != 0 ? 0 : 1);
    default: return below;
    }
}

constexpr int kStackSize = 128;

struct OperatorEntry {
    unsigned char fOp;
    unsigned char fPrecedence;
    unsigned char fSkip;
};

bool isbinary(int op) { return op >= kOpPlus && op <= kOpComma; }

// Signed 32-bit arithmetic that wraps instead of overflowing.
std::int32_t wrap(std::uint32_t value) { return static_cast<std::int32_t>(value); }

std::int32_t apply(int op, std::int32_t left, std::int32_t right) {
    std::uint32_t const l = static_cast<std::uint32_t>(left);
    std::uint32_t const r = static_cast<std::uint32_t>(right);
    switch (op) {
    case kOpEnd:
    case kOpUnaryPlus: return left;
    case kOpPlus: return wrap(l + r);
    case kOpMinus: return wrap(l - r);
    case kOpTimes: return wrap(l * r);
    case kOpDivide:
        if (right == 0)
            return 0;
        return right == -1 ? wrap(0u - l) : left / right;
    case kOpRemainder: return right == 0 || right == -1 ? 0 : left % right;
    case kOpShiftLeft: return wrap(l << (r & 31));
    case kOpShiftRight: return left >> (r & 31);
    case kOpAnd: return left & right;
    case kOpOr: return left | right;
    case kOpXor: return left ^ right;
    case kOpEqual: return left == right;
    case kOpNotEqual: return left != right;
    case kOpLess: return left < right;
    case kOpLessEqual: return left <= right;
    case kOpGreaterEqual: return left >= right;
    case kOpGreater: return left > right;
    case kOpAndAnd: return left != 0 && right != 0;
    case kOpOrOr: return left != 0 || right != 0;
    case kOpUnaryMinus: return wrap(0u - l);
    case kOpComplement: return ~left;
    case kOpNot: return left == 0;
    default: return 0;
    }
}

int hexDigitValue(int c) { return std::isdigit(c) ? c - '0' : std::tolower(c) - 'a' + 10; }

// The character behind a backslash of a character constant; the reader stands behind it.
int escapedChar(PP_CTextReader& text) {
    int c = text.GetChar();
    if (int value = letterEscapeValue(c); value >= 0)
        return value;
    if (c == 'x') {
        int value = 0;
        for (int digits = 0; digits < 2 && !text.IsEOF() && std::isxdigit(text.PeekChar()); ++digits)
            value = value * 16 + hexDigitValue(text.GetChar());
        return value;
    }
    if (!isodigit(c))
        return c;
    int value = c - '0';
    for (int digits = 1; digits < 3 && !text.IsEOF() && isodigit(text.PeekChar()); ++digits)
        value = value * 8 + text.GetChar() - '0';
    return value;
}

} // namespace

PP_CExpr::PP_CExpr(char const* text) : fText(text, std::strlen(text)) {}

bool PP_CExpr::Eval(int* error) {
    fError = error;
    *error = kPPErr_None;
    PP_CScanner scanner(&fText);
    fScanner = &scanner;
    OperatorEntry operators[kStackSize];
    OperatorEntry* opTop = operators;
    *opTop = {kOpBottom, opdope[kOpBottom], 0};
    // values[0] stays 0 below the values proper, so 127 of the entries can be filled. The machine
    // reads no entry above it that it has not written, so the others are left as they are.
    long values[kStackSize];
    values[0] = 0;
    long* valueTop = values;
    bool binop = false;
    // Every stop with an error answers true; the caller looks at the code first.
    auto fail = [error](int code) {
        *error = code;
        return true;
    };
    for (;;) {
        int op = EvalLex();
        if (!binop && op == kOpMinus)
            op = kOpUnaryMinus;
        else if (!binop && op == kOpPlus)
            op = kOpUnaryPlus;
        if (op == kOpFail)
            return true;
        if (op == kOpValue) {
            if (binop)
                return fail(kPPErr_BadExpression);
            if (valueTop == values + kStackSize - 1)
                return fail(kPPErr_ExpressionTooComplex);
            *++valueTop = fValue;
            binop = true;
            continue;
        }
        unsigned char const precedence = opdope[op];
        if (binop != ((precedence & 1) != 0))
            return fail(kPPErr_OperatorOutOfPlace);
        binop = (precedence & 2) != 0;
        for (;;) {
            if (precedence > opTop->fPrecedence) {
                if (opTop == operators + kStackSize - 1)
                    return fail(kPPErr_ExpressionTooComplex);
                unsigned char const skip = skipFlags(op, opTop->fSkip, *valueTop != 0);
                *++opTop = {static_cast<unsigned char>(op), stackedPrecedence(op), skip};
                break;
            }
            int const top = opTop->fOp;
            if (top == kOpBottom) {
                // An unmatched ')' is passed over in silence.
                if (op == kOpEnd)
                    return *valueTop != 0;
                break;
            }
            if (top == kOpLParen) {
                if (op != kOpRParen)
                    return fail(kPPErr_UnbalancedParenthesis);
                --opTop;
                break;
            }
            // A '?' waits on the stack until its ':' has come.
            if (top == kOpQuestion)
                break;
            int const skip = (opTop--)->fSkip;
            if (top == kOpColon) {
                if (opTop->fOp != kOpQuestion)
                    return fail(kPPErr_ColonWithoutQuestion);
                --opTop;
            }
            valueTop = EvalEval(valueTop, top, skip);
        }
    }
}

// Both sides of &&, || and ?: are always evaluated; they have no side effects, and division by
// zero gives 0. The skip value is therefore handed on without effect.
long* PP_CExpr::EvalEval(long* valueTop, int op, int) {
    std::int32_t right = 0;
    if (isbinary(op))
        right = static_cast<std::int32_t>(*valueTop--);
    std::int32_t left = static_cast<std::int32_t>(*valueTop--);
    long result;
    if (op == kOpColon) {
        long condition = *valueTop--;
        result = condition != 0 ? left : right;
    } else {
        result = apply(op, left, right);
    }
    *++valueTop = result;
    return valueTop;
}

int PP_CExpr::EvalLex() {
    GetNextToken();
    switch (fTokenType) {
    case kPPScan_Ident:
        // An identifier left in the condition counts 0.
        fValue = 0;
        return kOpValue;
    case kPPScan_Zero:
    case kPPScan_Hex:
    case kPPScan_Decimal:
    case kPPScan_Octal: EvalNum(); return kOpValue;
    case kPPScan_Float:
    case kPPScan_Double:
    case kPPScan_LongDouble: *fError = kPPErr_FloatInExpression; return kOpFail;
    case kPPScan_Char:
    case kPPScan_WideChar: EvalChar(); return kOpValue;
    default: break;
    }
    if (fTokenType >= kPPScan_String && fTokenType <= kPPScan_DBHexString) {
        *fError = kPPErr_StringInExpression;
        fValue = 0;
        return kOpFail;
    }
    if (fTokenType >= kPPScan_Assign && fTokenType <= kPPScan_OrAssign) {
        *fError = kPPErr_AssignmentInExpression;
        return kOpFail;
    }
    return CookType(fTokenType);
}

void PP_CExpr::GetNextToken() {
    do
        fTokenType = fScanner->GetNextToken(fError);
    while (fTokenType == kPPScan_White || fTokenType == kPPScan_Comment);
    fTokenText = fScanner->GetTokenText();
}

// Tokens with no meaning here give kOpFail without a code of their own, and Eval then answers
// true: `#if $10` holds.
int PP_CExpr::CookType(int token) {
    switch (token) {
    case kPPScan_EOF:
    case kPPScan_EOL: return kOpEnd;
    case kPPScan_Question: return kOpQuestion;
    case kPPScan_OrOr: return kOpOrOr;
    case kPPScan_AndAnd: return kOpAndAnd;
    case kPPScan_Not: return kOpNot;
    case kPPScan_Or: return kOpOr;
    case kPPScan_Xor: return kOpXor;
    case kPPScan_And: return kOpAnd;
    case kPPScan_Tilde: return kOpComplement;
    case kPPScan_EqEq: return kOpEqual;
    case kPPScan_NotEq: return kOpNotEqual;
    case kPPScan_Less: return kOpLess;
    case kPPScan_Greater: return kOpGreater;
    case kPPScan_LessEq: return kOpLessEqual;
    case kPPScan_GreaterEq: return kOpGreaterEqual;
    case kPPScan_ShiftLeft: return kOpShiftLeft;
    case kPPScan_ShiftRight: return kOpShiftRight;
    case kPPScan_Plus: return kOpPlus;
    case kPPScan_Minus: return kOpMinus;
    case kPPScan_Star: return kOpTimes;
    case kPPScan_Slash: return kOpDivide;
    case kPPScan_Percent: return kOpRemainder;
    case kPPScan_LParen: return kOpLParen;
    case kPPScan_RParen: return kOpRParen;
    case kPPScan_Colon: return kOpColon;
    case kPPScan_Comma: return kOpComma;
    default: return kOpFail;
    }
}

// Suffix letters end the number; overflow wraps.
void PP_CExpr::EvalNum() {
    fValue = 0;
    unsigned long prefix = 0;
    unsigned base = 10;
    switch (fTokenType) {
    case kPPScan_Zero: return;
    case kPPScan_Hex:
        prefix = 2;
        base = 16;
        break;
    case kPPScan_Decimal: break;
    case kPPScan_Octal:
        prefix = 1;
        base = 8;
        break;
    default: VELOR_ASSERT(false);
    }
    std::uint64_t value = 0;
    PP_CTextReader text(fTokenText.GetReadPtr() + prefix, fTokenText.Readable() - prefix);
    while (!text.IsEOF()) {
        int c = text.GetChar();
        if (c == 'L' || c == 'U' || c == 'l' || c == 'u')
            break;
        value = value * base + static_cast<std::uint64_t>(isAsciiLetter(c) ? hexDigitValue(c) : c - '0');
    }
    fValue = static_cast<long>(value);
}

// Each character shifts the value left by 8; older characters leave at the top.
void PP_CExpr::EvalChar() {
    PP_CTextReader text = fTokenText;
    if (fTokenType == kPPScan_WideChar)
        text.GetChar();
    text.GetChar();
    std::uint64_t value = 0;
    while (!text.IsEOF() && text.PeekChar() != '\'') {
        int c = text.GetChar();
        if (c == '\\' && !text.IsEOF())
            c = escapedChar(text);
        value = (value << 8) | static_cast<std::uint64_t>(c & 0xFF);
    }
    fValue = static_cast<long>(value);
}
