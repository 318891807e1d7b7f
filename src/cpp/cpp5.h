// The preprocessor's message codes and directive words, one table each, shared by its parts and
// by the resource scanner, which shows the preprocessor's messages by these codes.

#ifndef CPP5_H
#define CPP5_H

#include "PPText.h"

// The preprocessor's fixed tables: its message codes (indices of PP_CPP::_sErrMsg) and the
// words that may follow a '#' at the start of a line.

enum PP_ErrorCode {
    kPPErr_None = 0,
    kPPErr_EOLInString = 1,
    kPPErr_EOFInString = 2,
    kPPErr_TooManyCharacters = 3,
    kPPErr_HexWithoutDigits = 4,
    kPPErr_NonOctalDigits = 5,
    kPPErr_BadNumber = 6,
    kPPErr_UnknownToken = 7,
    kPPErr_PoundInsideLine = 8,
    kPPErr_UnknownDirective = 9,
    kPPErr_DefineWithoutName = 10,
    kPPErr_DefineNotAllowed = 11,
    kPPErr_Redefinition = 12,
    kPPErr_BadParameterName = 13,
    kPPErr_BadParameterSeparator = 14,
    kPPErr_StringizeWithoutParameter = 15,
    kPPErr_PasteAtEdge = 16,
    kPPErr_UndefWithoutName = 17,
    kPPErr_UndefNotAllowed = 18,
    kPPErr_CallWithoutClose = 19,
    kPPErr_TooFewArguments = 20,
    kPPErr_TooManyArguments = 21,
    kPPErr_DefinedWithoutName = 22,
    kPPErr_BadExpression = 23,
    kPPErr_ExpressionTooComplex = 24,
    kPPErr_OperatorOutOfPlace = 25,
    kPPErr_UnbalancedParenthesis = 26,
    kPPErr_ColonWithoutQuestion = 27,
    kPPErr_StringInExpression = 28,
    kPPErr_FloatInExpression = 29,
    kPPErr_AssignmentInExpression = 30,
    kPPErr_IncludeWithoutName = 31,
    kPPErr_IncludeNotFound = 32,
    kPPErr_IncludeBadName = 33,
    kPPErr_EndifWithoutIf = 34,
    kPPErr_ElseWithoutIf = 35,
    kPPErr_ElifWithoutIf = 36,
    kPPErr_EOFInsideIf = 37,
    kPPErr_IfNestedTooDeep = 38,
    kPPErr_BadUTF8Signature = 39,
    kPPErr_SignatureNeedsUTF8Encoding = 40,
    kPPErr_UTF8EncodingNeedsSignature = 41,
    kPPErr_InvalidUTF8 = 42
};

constexpr int kPP_ErrMsgCount = 43;

// Directive numbers, meaningful only between the directive reader and its dispatch. An unknown
// word gives kPPScan_Ident.
enum PP_Directive {
    kPPDir_If = 82,
    kPPDir_Ifndef = 83,
    kPPDir_Ifdef = 84,
    kPPDir_Elif = 85,
    kPPDir_Else = 86,
    kPPDir_Endif = 87,
    kPPDir_Define = 88,
    kPPDir_Undef = 89,
    kPPDir_Include = 90,
    kPPDir_Line = 91,
    kPPDir_Error = 92,
    kPPDir_Pragma = 93
};

int lookupPoundName(PP_CTextReader word);

#endif
