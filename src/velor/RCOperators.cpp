// Operator priorities, texts and evaluation; integer arithmetic wraps and division by zero gives zero.

#include "RCOperators.h"


#include "Assertion.h"
#include "MsgIds.h"
#include "RCScanner.h"

namespace {


constexpr int kNoPriority = -1000;
constexpr long kShiftMask = 63;

RCNumber truth(bool value) {
    return RCNumber(value ? 1L : 0L);
}

RCNumber floatTruth(bool value) {
    return RCNumber(value ? 1.0 : 0.0);
}

RCNumber refuseFloat(RCScanner* scanner, char const* text) {
    scanner->Error(kMsg_NoFloatOperator, 1, text);
    return RCNumber(0.0);
}

// Truncating division and remainder; a zero divisor gives 0. The one quotient that does not fit,
// the most negative number by -1, wraps like the rest of the arithmetic.
long divide(long left, long right) {
    if (right == 0) return 0;
    if (right == -1) return WrappingSubtract(0, left);
    return left / right;
}

long remainder(long left, long right) {
    if (right == 0 || right == -1) return 0;
    return left % right;
}

RCNumber integerBinary(int op, long left, long right) {
    switch (op) {
    case kPPScan_Or:
        return RCNumber(left | right);
    case kPPScan_Xor:
        return RCNumber(left ^ right);
    case kPPScan_And:
        return RCNumber(left & right);
    case kPPScan_EqEq:
        return truth(left == right);
    case kPPScan_NotEq:
        return truth(left != right);
    case kPPScan_Less:
        return truth(left < right);
    case kPPScan_Greater:
        return truth(left > right);
    case kPPScan_LessEq:
        return truth(left <= right);
    case kPPScan_GreaterEq:
        return truth(left >= right);
    case kPPScan_ShiftLeft:
        return RCNumber(static_cast<long>(static_cast<unsigned long>(left) << (right & kShiftMask)));
    case kPPScan_ShiftRight:
        return RCNumber(left >> (right & kShiftMask));
    case kPPScan_Plus:
        return RCNumber(WrappingAdd(left, right));
    case kPPScan_Minus:
        return RCNumber(WrappingSubtract(left, right));
    case kPPScan_Star:
        return RCNumber(WrappingMultiply(left, right));
    case kPPScan_Slash:
        return RCNumber(divide(left, right));
    case kPPScan_Percent:
        return RCNumber(remainder(left, right));
    default:
        VELOR_ASSERT(false);
        return RCNumber();
    }
}

// |, ^, &, <<, >> and % work on integers only.
bool hasFloatForm(int op) {
    switch (op) {
    case kPPScan_Or:
    case kPPScan_Xor:
    case kPPScan_And:
    case kPPScan_ShiftLeft:
    case kPPScan_ShiftRight:
    case kPPScan_Percent:
        return false;
    default:
        return true;
    }
}

RCNumber floatBinary(RCScanner* scanner, int op, double left, double right) {
    if (!hasFloatForm(op)) return refuseFloat(scanner, BadOperatorString(op));
    switch (op) {
    case kPPScan_EqEq:
        return floatTruth(left == right);
    case kPPScan_NotEq:
        return floatTruth(left != right);
    case kPPScan_Less:
        return floatTruth(left < right);
    case kPPScan_Greater:
        return floatTruth(left > right);
    case kPPScan_LessEq:
        return floatTruth(left <= right);
    case kPPScan_GreaterEq:
        return floatTruth(left >= right);
    case kPPScan_Plus:
        return RCNumber(left + right);
    case kPPScan_Minus:
        return RCNumber(left - right);
    case kPPScan_Star:
        return RCNumber(left * right);
    case kPPScan_Slash:
        return RCNumber(right == 0.0 ? 0.0 : left / right);
    default:
        VELOR_ASSERT(false);
        return RCNumber();
    }
}

} // namespace

int getOperatorPriority(int token) {
    switch (token) {
    case kPPScan_Question:
        return 0;
    case kPPScan_OrOr:
        return 1;
    case kPPScan_AndAnd:
        return 2;
    case kPPScan_Or:
        return 3;
    case kPPScan_Xor:
        return 4;
    case kPPScan_And:
        return 5;
    case kPPScan_EqEq:
    case kPPScan_NotEq:
        return 6;
    case kPPScan_Less:
    case kPPScan_Greater:
    case kPPScan_LessEq:
    case kPPScan_GreaterEq:
        return 7;
    case kPPScan_ShiftLeft:
    case kPPScan_ShiftRight:
        return 8;
    case kPPScan_Plus:
    case kPPScan_Minus:
        return 9;
    case kPPScan_Star:
    case kPPScan_Slash:
    case kPPScan_Percent:
        return 10;
    default:
        return kNoPriority;
    }
}

RCNumber evaluateUnary(RCScanner* scanner, int op, RCNumber const& operand) {
    bool isInteger = operand.IsInteger();
    switch (op) {
    case kPPScan_Not:
        return isInteger ? truth(operand.AsInteger() == 0) : floatTruth(operand.AsDouble() == 0.0);
    case kPPScan_Tilde:
        return isInteger ? RCNumber(~operand.AsInteger()) : refuseFloat(scanner, operatorText(op));
    case kPPScan_Minus:
        return isInteger ? RCNumber(WrappingSubtract(0, operand.AsInteger())) : RCNumber(-operand.AsDouble());
    default:
        VELOR_ASSERT(false);
        return RCNumber();
    }
}

RCNumber evaluateBinary(RCScanner* scanner, int op, RCNumber const& left, RCNumber const& right) {
    // The right operand of || has been evaluated, but the result looks at the left one alone.
    if (op == kPPScan_OrOr) return truth(left.AsInteger() != 0);
    if (op == kPPScan_AndAnd) return truth(left.AsInteger() != 0 && right.AsInteger() != 0);
    if (left.IsInteger() && right.IsInteger()) return integerBinary(op, left.AsInteger(), right.AsInteger());
    return floatBinary(scanner, op, left.AsDouble(), right.AsDouble());
}

bool evaluatesSilently(int op, RCNumber const& operand) {
    return operand.IsInteger() || op != kPPScan_Tilde;
}

bool evaluatesSilently(int op, RCNumber const& left, RCNumber const& right) {
    if (op == kPPScan_OrOr || op == kPPScan_AndAnd || (left.IsInteger() && right.IsInteger())) return true;
    return hasFloatForm(op);
}

char const* operatorText(int op) {
    switch (op) {
    case kPPScan_OrOr:
        return "||";
    case kPPScan_AndAnd:
        return "&&";
    case kPPScan_Not:
        return "!";
    case kPPScan_Tilde:
        return "~";
    case kPPScan_EqEq:
        return "==";
    case kPPScan_NotEq:
        return "!=";
    case kPPScan_Less:
        return "<";
    case kPPScan_Greater:
        return ">";
    case kPPScan_LessEq:
        return "<=";
    case kPPScan_GreaterEq:
        return ">=";
    case kPPScan_Plus:
        return "+";
    case kPPScan_Minus:
        return "-";
    case kPPScan_Star:
        return "*";
    case kPPScan_Slash:
        return "/";
    default:
        return BadOperatorString(op);
    }
}

char const* BadOperatorString(int op) {
    switch (op) {
    case kPPScan_Or:
        return "|";
    case kPPScan_Xor:
        return "^";
    case kPPScan_And:
        return "&";
    case kPPScan_ShiftLeft:
        return "<<";
    case kPPScan_ShiftRight:
        return ">>";
    case kPPScan_Percent:
        return "%";
    default:
        VELOR_ASSERT(false);
        return "";
    }
}
