// The character scanner: one token at a time from a text reader, with the token's kind
// decided by its first characters and its text left in place.

#include "PPScan.h"


#include "Assertion.h"
#include "cpp5.h"

int gCurrentLanguage = 0;

namespace {


bool isDecimalDigit(int c) { return inCharClass(c, kPPChar_Decimal); }
bool isHexDigit(int c) { return inCharClass(c, kPPChar_Hex); }
bool isExponentMark(int c) { return c == 'e' || c == 'E'; }

// One operator character, in its plain form or followed by '='.
int w1(int c, bool assign) {
    switch (c) {
    case 0: return kPPScan_EOF;
    case '!': return assign ? kPPScan_NotEq : kPPScan_Not;
    case '%': return assign ? kPPScan_PercentAssign : kPPScan_Percent;
    case '&': return assign ? kPPScan_AndAssign : kPPScan_And;
    case '*': return assign ? kPPScan_StarAssign : kPPScan_Star;
    case '+': return assign ? kPPScan_PlusAssign : kPPScan_Plus;
    case '-': return assign ? kPPScan_MinusAssign : kPPScan_Minus;
    case '.': return kPPScan_Dot;
    case '/': return assign ? kPPScan_SlashAssign : kPPScan_Slash;
    case ':': return kPPScan_Colon;
    case '<': return assign ? kPPScan_LessEq : kPPScan_Less;
    case '=': return assign ? kPPScan_EqEq : kPPScan_Assign;
    case '>': return assign ? kPPScan_GreaterEq : kPPScan_Greater;
    case '?': return kPPScan_Question;
    case '^': return assign ? kPPScan_XorAssign : kPPScan_Xor;
    case '|': return assign ? kPPScan_OrAssign : kPPScan_Or;
    case '~': return kPPScan_Tilde;
    default: return kPPScan_Other;
    }
}

// A doubled operator character.
int w2(int c) {
    switch (c) {
    case '&': return kPPScan_AndAnd;
    case '+': return kPPScan_PlusPlus;
    case '-': return kPPScan_MinusMinus;
    case ':': return kPPScan_ColonColon;
    case '<': return kPPScan_ShiftLeft;
    case '=': return kPPScan_EqEq;
    case '>': return kPPScan_ShiftRight;
    case '|': return kPPScan_OrOr;
    default: return kPPScan_None;
    }
}

// The token of a literal; the L prefix wins over double-byte reading. `opener` is the quote,
// or '$' for a hexadecimal string.
int literalToken(int opener, bool wide, bool doubleByte) {
    int const base = opener == '\'' ? kPPScan_Char : opener == '$' ? kPPScan_HexString : kPPScan_String;
    int const wideToken = opener == '\'' ? kPPScan_WideChar : opener == '$' ? kPPScan_WideHexString : kPPScan_WideString;
    int const doubleByteToken = opener == '\'' ? kPPScan_DBChar : opener == '$' ? kPPScan_DBHexString : kPPScan_DBString;
    return wide ? wideToken : doubleByte ? doubleByteToken : base;
}

int badNumber(int* error) {
    *error = kPPErr_BadNumber;
    return kPPScan_None;
}

} // namespace

int letterEscapeValue(int letter) {
    switch (letter) {
    case 'a': return 7;
    case 'b': return 8;
    case 'f': return 12;
    case 'n': return 10;
    case 'r': return 13;
    case 't': return 9;
    case 'v': return 11;
    default: return -1;
    }
}

bool IsDoubleByteToken(int token) {
    return token == kPPScan_DBString || token == kPPScan_DBHexString || token == kPPScan_DBChar;
}

bool IsLeadingByte(int byte, int token) {
    if (!IsDoubleByteToken(token))
        return false;
    switch (gCurrentLanguage) {
    case 2: return byte >= 0xA1 && byte <= 0xFC;
    case 3:
    case 4: return byte >= 0xA1 && byte <= 0xFE;
    default: return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    }
}

PP_CScanner::PP_CScanner(PP_CTextReader* input)
    : fInput(input), fTokenStart(input != nullptr ? input->GetReadPtr() : nullptr) {}

PP_CScanner::~PP_CScanner() { delete[] fCookBuffer; }

void PP_CScanner::RawUnGetChar() {
    fInput->UnGetChar();
    --fCharPos;
    VELOR_ASSERT(!isEOL(RawPeekChar()));
}

// The cursor is on a backslash: folds away backslash-newline pairs and answers the character
// behind them, or the backslash itself when no line end follows it.
int PP_CScanner::PrivPeekChar() {
    for (;;) {
        PrivSkipChar();
        if (!isEOL(RawPeekChar())) {
            RawUnGetChar();
            return kPPChar_Backslash;
        }
        fHasContinuation = true;
        PrivSkipChar();
        int c = RawPeekChar();
        if (c != kPPChar_Backslash)
            return c;
    }
}

// Unlike PrivSkipChar this counts a line only for CR: a lone LF taken here is not counted.
// Callers depend on that asymmetry, so it stays.
int PP_CScanner::CookedGetChar() {
    int c = RawGetChar();
    if (c == kPPChar_CR) {
        if (RawPeekChar() == kPPChar_LF)
            RawGetChar();
        IncrLineno();
    } else if (c == kPPChar_Backslash) {
        RawUnGetChar();
        c = PrivPeekChar();
        PrivSkipChar();
    }
    return c;
}

// The cursor is on a backslash that ended a run of `classes`: behind continuations the run may go
// on, and there the cooked peek decides, as it does for every character on the slow path.
void PP_CScanner::SkipRunAcrossBackslashes(unsigned char classes) {
    do {
        if (!inCharClass(PrivPeekChar(), classes))
            return;
        PrivSkipChar();
    } while (SkipRawRun(classes));
}

bool PP_CScanner::SkipBlanksToEOL() {
    if (!iswhite(CookedPeekChar()))
        return false;
    SkipBlanks();
    return true;
}

// `second` follows a '/'.
bool PP_CScanner::OpensComment(int second) const { return second == '*' || (second == '/' && !fNoLineComments); }

// A '/' that opens no comment is stepped back over by one raw byte. When the peek behind it folded
// a line continuation, that byte is the line end and the step stops on RawUnGetChar's invariant:
// the defined outcome of a '/' at the end of a continued line in a directive.
bool PP_CScanner::SkipComment() {
    if (CookedPeekChar() != '/')
        return false;
    PrivSkipChar();
    int next = CookedPeekChar();
    if (OpensComment(next)) {
        PrivSkipComment(next);
        return true;
    }
    RawUnGetChar();
    return false;
}

// Every token, and the tokens the inline path leaves in particular; the cursor is on its first byte.
int PP_CScanner::PrivGetNextToken(int* error) {
    int c = CookedPeekChar();
    if (iswhite(c)) {
        SkipBlanks();
        return kPPScan_White;
    }
    if (c == -1)
        return kPPScan_EOF;
    if (isEOL(c)) {
        SkipLineEnds();
        return kPPScan_EOL;
    }
    return PrivNextToken(c, error);
}

int PP_CScanner::PrivNextToken(int c, int* error) {
    if (isident(c))
        return PrivPrefixedToken(c, error);
    if (c == '"' || c == '\'')
        return PrivLiteral(c, literalToken(c, false, isDoubleByteLanguage()), error);
    if (isDecimalDigit(c))
        return PrivNumber(c, error);
    return PrivPunctuation(c, error);
}

// Identifiers, `$` hexadecimal numbers and the literals with an L, J or $ prefix.
int PP_CScanner::PrivPrefixedToken(int c, int* error) {
    if (c != '$' && c != 'L' && c != 'l' && c != 'J' && c != 'j')
        return PrivIdentifier();
    bool const doubleByte = isDoubleByteLanguage();
    int next = PrivSkipAndPeek();
    switch (c) {
    case '$':
        if (next == '"')
            return PrivLiteral('"', literalToken('$', false, doubleByte), error);
        if (next == 'J' || next == 'j' || next == 'L' || next == 'l') {
            bool const japanese = next == 'J' || next == 'j';
            if (PrivSkipAndPeek() == '"')
                return PrivLiteral('"', literalToken('$', !japanese, japanese || doubleByte), error);
            return PrivIdentifier();
        }
        if (isHexDigit(next)) {
            SkipRun(kPPChar_Hex);
            return kPPScan_DollarHex;
        }
        return PrivIdentifier();
    case 'L':
    case 'l':
    case 'J':
    case 'j': {
        bool const japanese = c == 'J' || c == 'j';
        if (next == '"' || next == '\'')
            return PrivLiteral(next, literalToken(next, !japanese, japanese || doubleByte), error);
        if (next == '$' && PrivSkipAndPeek() == '"')
            return PrivLiteral('"', literalToken('$', !japanese, japanese || doubleByte), error);
        return PrivIdentifier();
    }
    default: return PrivIdentifier();
    }
}

int PP_CScanner::PrivIdentifier() {
    SkipRun(kPPChar_Ident);
    return kPPScan_Ident;
}

// The cursor is on the opening quote. A lead byte of a double-byte literal takes its trail
// byte with it unseen, so that a trail byte equal to a quote or backslash ends nothing. Outside
// double-byte literals a run of bytes that can end nothing is taken at once.
int PP_CScanner::PrivLiteral(int quote, int token, int* error) {
    bool const plainRuns = !IsDoubleByteToken(token);
    PrivSkipChar();
    for (;;) {
        if (plainRuns)
            SkipRun(kPPChar_LiteralPlain);
        int c = CookedPeekChar();
        if (IsLeadingByte(c & 255, token)) {
            PrivSkipChar();
            PrivSkipChar();
            continue;
        }
        if (c == -1) {
            *error = kPPErr_EOFInString;
            return token;
        }
        if (c == kPPChar_Backslash) {
            PrivSkipChar();
            if (isEOL(RawPeekChar()))
                fHasContinuation = true;
        } else if (isEOL(c)) {
            *error = kPPErr_EOLInString;
            return token;
        } else if (c == quote) {
            PrivSkipChar();
            return token;
        }
        PrivSkipChar();
    }
}

int PP_CScanner::PrivNumber(int c, int* error) {
    if (c != '0') {
        SkipRun(kPPChar_Decimal);
        int next = CookedPeekChar();
        if (next == '.')
            return PrivFraction(error);
        if (isExponentMark(next))
            return PrivExponent(error);
        return PrivFixedSuffix(kPPScan_Decimal, next, error);
    }
    int next = PrivSkipAndPeek();
    if (next == 'x' || next == 'X')
        return PrivRadixNumber(kPPChar_Hex, kPPScan_Hex, error);
    if (next == 'b' || next == 'B')
        return PrivRadixNumber(kPPChar_Binary, kPPScan_Binary, error);
    if (isodigit(next)) {
        SkipRun(kPPChar_Octal);
        next = CookedPeekChar();
        if (next != '.' && !isExponentMark(next))
            return PrivFixedSuffix(kPPScan_Octal, next, error);
    }
    if (next == '.')
        return PrivFraction(error);
    if (isExponentMark(next))
        return PrivExponent(error);
    return PrivFixedSuffix(kPPScan_Zero, next, error);
}

// The cursor is on the x or b of the prefix.
int PP_CScanner::PrivRadixNumber(unsigned char digitClass, int token, int* error) {
    if (!inCharClass(PrivSkipAndPeek(), digitClass)) {
        *error = kPPErr_HexWithoutDigits;
        return kPPScan_None;
    }
    SkipRun(digitClass);
    return PrivFixedSuffix(token, CookedPeekChar(), error);
}

// At most one U and one L, in either order, and nothing of a name or number directly behind.
int PP_CScanner::PrivSuffixLetters(int token, int c, int* error) {
    bool sawUnsigned = false;
    bool sawLong = false;
    for (; isidentchar(c); c = PrivSkipAndPeek()) {
        bool const isUnsigned = c == 'u' || c == 'U';
        if (!isUnsigned && c != 'l' && c != 'L')
            return badNumber(error);
        bool& seen = isUnsigned ? sawUnsigned : sawLong;
        if (seen)
            return badNumber(error);
        seen = true;
    }
    return token;
}

// The cursor is on the decimal point, or on the first digit behind a point already taken.
int PP_CScanner::PrivFraction(int* error) {
    PrivSkipChar();
    SkipRun(kPPChar_Decimal);
    if (isExponentMark(CookedPeekChar()))
        return PrivExponent(error);
    return PrivFloatSuffix(error);
}

// The cursor is on the e or E.
int PP_CScanner::PrivExponent(int* error) {
    int c = PrivSkipAndPeek();
    if (c == '+' || c == '-')
        c = PrivSkipAndPeek();
    if (!isDecimalDigit(c))
        return badNumber(error);
    SkipRun(kPPChar_Decimal);
    return PrivFloatSuffix(error);
}

int PP_CScanner::PrivFloatSuffix(int* error) {
    int token = kPPScan_Double;
    int c = CookedPeekChar();
    if (c == 'f' || c == 'F')
        token = kPPScan_Float;
    else if (c == 'l' || c == 'L')
        token = kPPScan_LongDouble;
    if (token != kPPScan_Double)
        c = PrivSkipAndPeek();
    return isidentchar(c) ? badNumber(error) : token;
}

int PP_CScanner::PrivPunctuation(int c, int* error) {
    int next = PrivSkipAndPeek();
    auto take = [this](int token) {
        PrivSkipChar();
        return token;
    };
    switch (c) {
    case '!':
    case '%':
    case '*':
    case '^': return next == '=' ? take(w1(c, true)) : w1(c, false);
    case '#': return next == '#' ? take(kPPScan_PoundPound) : kPPScan_Pound;
    case '&':
    case '+':
    case '=':
    case '|':
        if (next == '=')
            return take(w1(c, true));
        return next == c ? take(w2(c)) : w1(c, false);
    case '-':
        if (next == '=')
            return take(kPPScan_MinusAssign);
        if (next == '-')
            return take(kPPScan_MinusMinus);
        if (next != '>')
            return kPPScan_Minus;
        return PrivSkipAndPeek() == '*' ? take(kPPScan_ArrowStar) : kPPScan_Arrow;
    case '.':
        // `.*` leaves the star unread, so that it comes again as a token of its own.
        if (next == '*')
            return kPPScan_DotStar;
        if (isDecimalDigit(next))
            return PrivFraction(error);
        if (next != '.')
            return kPPScan_Dot;
        if (PrivSkipAndPeek() == '.')
            return take(kPPScan_Ellipsis);
        *error = kPPErr_UnknownToken;
        return kPPScan_None;
    case '/':
        if (OpensComment(next)) {
            PrivSkipComment(next);
            return kPPScan_Comment;
        }
        return next == '=' ? take(kPPScan_SlashAssign) : kPPScan_Slash;
    case ':':
        if (next != ':')
            return kPPScan_Colon;
        return PrivSkipAndPeek() == '*' ? take(kPPScan_DotStar) : kPPScan_ColonColon;
    case '<':
    case '>':
        if (next == '=')
            return take(w1(c, true));
        if (next != c)
            return w1(c, false);
        if (PrivSkipAndPeek() == '=')
            return take(c == '<' ? kPPScan_ShiftLeftAssign : kPPScan_ShiftRightAssign);
        return w2(c);
    case '(': return kPPScan_LParen;
    case ')': return kPPScan_RParen;
    case ',': return kPPScan_Comma;
    case ';': return kPPScan_Semicolon;
    case '?': return kPPScan_Question;
    case '[': return kPPScan_LBrace;
    case '\\': return kPPScan_Backslash;
    case ']': return kPPScan_RBrace;
    case '{': return kPPScan_LCurly;
    case '}': return kPPScan_RCurly;
    default: return w1(c, false);
    }
}

// The cursor is on the second character of the opener. A block comment ends at its closer or
// at the end of input; a line comment is read raw, so a backslash at its end continues nothing
// and the line end stays in the input.
void PP_CScanner::PrivSkipComment(int opener) {
    PrivSkipChar();
    if (opener == '/') {
        for (int c = RawPeekChar(); c > 0 && !isEOL(c); c = RawPeekChar())
            RawGetChar();
        return;
    }
    for (int c = RawPeekChar(); c > 0; c = RawPeekChar()) {
        if (c != '*') {
            PrivSkipChar();
            continue;
        }
        while (RawPeekChar() == '*')
            PrivSkipChar();
        if (RawPeekChar() == '/') {
            SkipChar();
            return;
        }
    }
}

// Copies the token without its backslash-newline pairs into the cook buffer, which only grows.
PP_CTextReader PP_CScanner::CookTokenText(unsigned long size) {
    if (fCookBufferSize < size) {
        delete[] fCookBuffer;
        fCookBuffer = new char[size];
        fCookBufferSize = size;
    }
    char const* source = fTokenStart;
    char const* end = fTokenStart + size;
    char* out = fCookBuffer;
    while (source < end) {
        if (*source == kPPChar_Backslash && source + 1 < end && isEOL(source[1])) {
            source += source[1] == kPPChar_CR && source + 2 < end && source[2] == kPPChar_LF ? 3 : 2;
            continue;
        }
        *out++ = *source++;
    }
    return PP_CTextReader(fCookBuffer, static_cast<unsigned long>(out - fCookBuffer));
}

bool PP_CScanner::ReadUTF8Signature(int* error) {
    fTokenStart = fInput->GetReadPtr();
    *error = 0;
    if (fInput->Readable() < 3 || CookedPeekChar() != 0xEF)
        return false;
    if (PrivSkipAndPeek() == 0xBB && PrivSkipAndPeek() == 0xBF) {
        PrivSkipChar();
        return true;
    }
    *error = kPPErr_BadUTF8Signature;
    return false;
}
