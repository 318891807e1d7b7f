// Constant expressions of #if and #elif, evaluated in signed 32-bit arithmetic.

#ifndef PPEXPR_H
#define PPEXPR_H

#include "PPScan.h"

// Evaluates the condition of #if and #elif: a NUL-terminated text whose macros are expanded
// and whose `defined` operators are replaced by 0 or 1. An operator-precedence machine with two
// fixed stacks in the frame of Eval; arithmetic is signed 32-bit.
class PP_CExpr {
public:
    explicit PP_CExpr(char const* text);

    // With `*error` left 0 the truth of the expression; otherwise the answer is not to be used.
    bool Eval(int* error);

private:
    int EvalLex();
    long* EvalEval(long* valueTop, int op, int skip);
    void GetNextToken();
    int CookType(int token);
    void EvalNum();
    void EvalChar();

    PP_CTextReader fText;
    PP_CScanner* fScanner = nullptr;
    int* fError = nullptr;
    int fTokenType = kPPScan_None;
    PP_CTextReader fTokenText;
    long fValue = 0;
};

#endif
