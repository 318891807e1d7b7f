// The operators of the expression language on numbers, with their priorities and texts.
// Operators are the scanner's token numbers, which the parser, the trees and the descriptions share.
#pragma once

#include "RCNumber.h"

class RCScanner;

// Priority of a binary or ternary operator token, higher binding tighter; -1000 for any other token.
int getOperatorPriority(int token);

// Integers wrap; a float operand turns the operation into a float one, except for || and &&,
// which always give the integer 0 or 1. Division by zero gives zero without a message.
RCNumber evaluateUnary(RCScanner* scanner, int op, RCNumber const& operand);
RCNumber evaluateBinary(RCScanner* scanner, int op, RCNumber const& left, RCNumber const& right);
// Whether evaluating gives its value without a message: all but the operators that have no
// float form, when they meet a float.
bool evaluatesSilently(int op, RCNumber const& operand);
bool evaluatesSilently(int op, RCNumber const& left, RCNumber const& right);

// The source text of an operator token.
char const* operatorText(int op);
// The text of an operator that has no float form: |, ^, &, <<, >> and %.
char const* BadOperatorString(int op);
