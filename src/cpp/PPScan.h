// The character scanner of the preprocessor and the token numbers that every parser shares.

#ifndef PPSCAN_H
#define PPSCAN_H

#include "PPCharClass.h"
#include "PPText.h"

// Token numbers of the character scanner. The resource language's keywords continue them from
// 81 on, and parsers test the values, so the numbers are fixed.
enum PP_TokenType {
    kPPScan_None = 0,
    kPPScan_EOF = 1,
    kPPScan_EOL = 2,
    kPPScan_White = 3,
    kPPScan_Comment = 4,
    kPPScan_Ident = 5,
    kPPScan_Zero = 7,
    kPPScan_Hex = 8,
    kPPScan_DollarHex = 9,
    kPPScan_Decimal = 10,
    kPPScan_Octal = 11,
    kPPScan_Binary = 12,
    kPPScan_Float = 13,
    kPPScan_Double = 14,
    kPPScan_LongDouble = 15,
    kPPScan_String = 16,
    kPPScan_WideString = 17,
    kPPScan_DBString = 18,
    kPPScan_HexString = 19,
    kPPScan_WideHexString = 20,
    kPPScan_DBHexString = 21,
    kPPScan_Char = 22,
    kPPScan_WideChar = 23,
    kPPScan_DBChar = 24,
    kPPScan_Pound = 26,
    kPPScan_PoundPound = 27,
    kPPScan_Question = 28,
    kPPScan_OrOr = 29,
    kPPScan_AndAnd = 30,
    kPPScan_Not = 31,
    kPPScan_Or = 32,
    kPPScan_Xor = 33,
    kPPScan_And = 34,
    kPPScan_Tilde = 35,
    kPPScan_EqEq = 36,
    kPPScan_NotEq = 37,
    kPPScan_Less = 38,
    kPPScan_Greater = 39,
    kPPScan_LessEq = 40,
    kPPScan_GreaterEq = 41,
    kPPScan_ShiftLeft = 42,
    kPPScan_ShiftRight = 43,
    kPPScan_Plus = 44,
    kPPScan_Minus = 45,
    kPPScan_Star = 46,
    kPPScan_Slash = 47,
    kPPScan_Percent = 48,
    kPPScan_Assign = 49,
    kPPScan_StarAssign = 50,
    kPPScan_SlashAssign = 51,
    kPPScan_PercentAssign = 52,
    kPPScan_PlusAssign = 53,
    kPPScan_MinusAssign = 54,
    kPPScan_ShiftRightAssign = 55,
    kPPScan_ShiftLeftAssign = 56,
    kPPScan_AndAssign = 57,
    kPPScan_XorAssign = 58,
    kPPScan_OrAssign = 59,
    kPPScan_DotStar = 61,
    kPPScan_ArrowStar = 62,
    kPPScan_PlusPlus = 63,
    kPPScan_MinusMinus = 64,
    kPPScan_Dot = 65,
    kPPScan_Arrow = 66,
    kPPScan_LParen = 68,
    kPPScan_RParen = 69,
    kPPScan_LBrace = 70,
    kPPScan_RBrace = 71,
    kPPScan_LCurly = 72,
    kPPScan_RCurly = 73,
    kPPScan_Colon = 74,
    kPPScan_ColonColon = 75,
    kPPScan_Semicolon = 76,
    kPPScan_Comma = 77,
    kPPScan_Ellipsis = 78,
    kPPScan_Backslash = 79,
    kPPScan_Other = 80
};

// The language of the resource being compiled: 1 to 4 read strings as double-byte text.
extern int gCurrentLanguage;

inline bool isDoubleByteLanguage() { return gCurrentLanguage >= 1 && gCurrentLanguage <= 4; }

// Character classes; each takes -1 (end of input) and answers false for it.
inline bool isEOL(int c) { return inCharClass(c, kPPChar_EOL); }
inline bool iswhite(int c) { return inCharClass(c, kPPChar_Blank); }
inline bool isident(int c) { return inCharClass(c, kPPChar_IdentStart); }
inline bool isodigit(int c) { return inCharClass(c, kPPChar_Octal); }
// A character that may stand inside an identifier: an identifier start or a digit.
inline bool isidentchar(int c) { return inCharClass(c, kPPChar_Ident); }

// The tokens that the scanner takes inline, besides the end of the input, by the byte they begin
// with: a byte that is a token by itself whatever follows it (the brackets and separators), an
// operator byte that is a token by itself unless '=', '>' or the same byte follows, a name that
// cannot be the prefix of a literal, a number, a string and white space; kPPScan_None for every
// other byte. These are most tokens of a description.
namespace PP_ScanDetail {

// Marks the entry of an operator byte that the byte behind it may lengthen.
constexpr unsigned char kMayLengthen = 0x80;

struct InlineTokens {
    unsigned char fToken[256];
};

constexpr InlineTokens MakeInlineTokens() {
    InlineTokens table{};
    for (int c = 0; c < 256; ++c) {
        if (inCharClass(c, kPPChar_IdentStart) && c != '$' && c != 'L' && c != 'l' && c != 'J' && c != 'j')
            table.fToken[c] = kPPScan_Ident;
        if (inCharClass(c, kPPChar_Decimal))
            table.fToken[c] = kPPScan_Decimal;
        if (inCharClass(c, kPPChar_Blank))
            table.fToken[c] = kPPScan_White;
    }
    table.fToken[static_cast<unsigned char>('"')] = kPPScan_String;
    table.fToken[static_cast<unsigned char>('(')] = kPPScan_LParen;
    table.fToken[static_cast<unsigned char>(')')] = kPPScan_RParen;
    table.fToken[static_cast<unsigned char>(',')] = kPPScan_Comma;
    table.fToken[static_cast<unsigned char>(';')] = kPPScan_Semicolon;
    table.fToken[static_cast<unsigned char>('?')] = kPPScan_Question;
    table.fToken[static_cast<unsigned char>('[')] = kPPScan_LBrace;
    table.fToken[static_cast<unsigned char>(']')] = kPPScan_RBrace;
    table.fToken[static_cast<unsigned char>('{')] = kPPScan_LCurly;
    table.fToken[static_cast<unsigned char>('}')] = kPPScan_RCurly;
    table.fToken[static_cast<unsigned char>('~')] = kPPScan_Tilde;
    table.fToken[static_cast<unsigned char>('!')] = kPPScan_Not | kMayLengthen;
    table.fToken[static_cast<unsigned char>('#')] = kPPScan_Pound | kMayLengthen;
    table.fToken[static_cast<unsigned char>('%')] = kPPScan_Percent | kMayLengthen;
    table.fToken[static_cast<unsigned char>('&')] = kPPScan_And | kMayLengthen;
    table.fToken[static_cast<unsigned char>('*')] = kPPScan_Star | kMayLengthen;
    table.fToken[static_cast<unsigned char>('+')] = kPPScan_Plus | kMayLengthen;
    table.fToken[static_cast<unsigned char>('-')] = kPPScan_Minus | kMayLengthen;
    table.fToken[static_cast<unsigned char>('=')] = kPPScan_Assign | kMayLengthen;
    table.fToken[static_cast<unsigned char>('^')] = kPPScan_Xor | kMayLengthen;
    table.fToken[static_cast<unsigned char>('|')] = kPPScan_Or | kMayLengthen;
    return table;
}

inline constexpr InlineTokens kInlineTokens = MakeInlineTokens();

} // namespace PP_ScanDetail

// White space, comments and line ends: the tokens that only separate others.
inline bool isSpaceToken(int token) {
    return token == kPPScan_EOL || token == kPPScan_White || token == kPPScan_Comment;
}

// The value of a one-letter escape (\a \b \f \n \r \t \v), or -1 for any other character.
int letterEscapeValue(int letter);

// Whether a literal of the given token type is read as double-byte text.
bool IsDoubleByteToken(int token);
// Whether `byte` starts a double-byte character in a literal of the given token type.
bool IsLeadingByte(int byte, int token);

constexpr int kPPChar_LF = 10;
constexpr int kPPChar_CR = 13;
constexpr int kPPChar_Backslash = '\\';

// The one lexer of the system. A token is the stretch of input between where GetNextToken
// began and where it stopped; white space, comments and line ends are tokens too.
class PP_CScanner {
public:
    explicit PP_CScanner(PP_CTextReader* input);
    PP_CScanner(PP_CScanner const&) = delete;
    PP_CScanner& operator=(PP_CScanner const&) = delete;
    ~PP_CScanner();

    // Swaps the input only; the caller restores line and position itself.
    void SetCurrentInput(PP_CTextReader* input) { fInput = input; }

    // `*error` is 0, or an index of the preprocessor's message table for bad text. The common
    // tokens are taken here; the rest, and those with a continuation in the way, out of line.
    int GetNextToken(int* error) {
        fTokenStart = fInput->GetReadPtr();
        fHasContinuation = false;
        *error = 0;
        if (int const token = TakeInlineToken())
            return token;
        return PrivGetNextToken(error);
    }
    // The current token's text with continuation lines removed.
    PP_CTextReader GetTokenText() {
        unsigned long size = static_cast<unsigned long>(fInput->GetReadPtr() - fTokenStart);
        return fHasContinuation ? CookTokenText(size) : PP_CTextReader(fTokenStart, size);
    }
    // Whether that text is a copy with continuation lines removed rather than the input itself.
    bool TokenTextIsCooked() const { return fHasContinuation; }

    int RawPeekChar() const { return fInput->IsEOF() ? -1 : fInput->PeekChar(); }
    int RawGetChar() {
        if (fInput->IsEOF())
            return -1;
        ++fCharPos;
        return fInput->GetChar();
    }
    void RawUnGetChar();
    int CookedPeekChar() {
        int c = RawPeekChar();
        return c == kPPChar_Backslash ? PrivPeekChar() : c;
    }
    int CookedGetChar();
    void SkipChar() { CookedGetChar(); }
    bool SkipBlanksToEOL();
    // The white space or line end token that GetNextToken would read at the cursor, taken when it
    // begins right there with no continuation first: that token, or kPPScan_None. One class test
    // tells most tokens from both.
    int SkipPlainSeparator() {
        int const c = RawPeekChar();
        if (!inCharClass(c, kPPChar_Blank | kPPChar_EOL))
            return kPPScan_None;
        if (iswhite(c)) {
            SkipBlanks();
            return kPPScan_White;
        }
        SkipLineEnds();
        return kPPScan_EOL;
    }
    bool SkipComment();
    void IncrLineno() {
        fCharPos = 0;
        ++fLineno;
    }
    bool ReadUTF8Signature(int* error);

    unsigned long GetLineno() const { return fLineno; }
    unsigned long GetCharPos() const { return fCharPos; }
    void SetLineno(unsigned long lineno) { fLineno = lineno; }
    void SetCharPos(unsigned long charPos) { fCharPos = charPos; }

private:
    // Consumes one byte. CR, LF and CR LF each count as one line end.
    void PrivSkipChar() {
        int c = RawGetChar();
        if (c == kPPChar_CR && RawPeekChar() == kPPChar_LF)
            RawGetChar();
        if (isEOL(c))
            IncrLineno();
    }
    int PrivPeekChar();
    // The cursor is on a blank: takes it and every blank behind it. Most white space between
    // tokens is one blank that a byte of no run and no continuation follows, taken without the
    // run's loop.
    void SkipBlanks() {
        char const* const next = fInput->GetReadPtr() + 1;
        if (next == fInput->GetEndPtr() || iswhite(static_cast<unsigned char>(*next)) || *next == kPPChar_Backslash) {
            SkipRun(kPPChar_Blank);
            return;
        }
        fInput->SkipTo(next);
        ++fCharPos;
    }
    // The cursor is on a line end: takes it and every line end behind it.
    void SkipLineEnds() {
        do
            PrivSkipChar();
        while (isEOL(CookedPeekChar()));
    }
    // Steps over the character just peeked, which every caller has tested to be a certain one
    // and so no line end and not the end of input, and peeks at the next.
    int PrivSkipAndPeek() {
        fInput->SkipTo(fInput->GetReadPtr() + 1);
        ++fCharPos;
        return CookedPeekChar();
    }
    // Takes characters while they are in one of `classes`, which hold no line end. Such a
    // character is one raw byte that PrivSkipChar would just step over, so a run of them is taken
    // by a tight loop over the raw bytes, inline because most runs are a few bytes long.
    void SkipRun(unsigned char classes) {
        if (SkipRawRun(classes))
            SkipRunAcrossBackslashes(classes);
    }
    // The raw bytes of the run; true when it stopped at a backslash, behind which a continuation
    // may hide more of it.
    bool SkipRawRun(unsigned char classes) {
        char const* const start = fInput->GetReadPtr();
        char const* const end = fInput->GetEndPtr();
        char const* p = start;
        while (p != end && (charClassOf(static_cast<unsigned char>(*p)) & classes) != 0)
            ++p;
        fInput->SkipTo(p);
        fCharPos += static_cast<unsigned long>(p - start);
        return p != end && *p == kPPChar_Backslash;
    }
    void SkipRunAcrossBackslashes(unsigned char classes);
    // The end of the input or a token of PP_ScanDetail::kInlineTokens, taken, or kPPScan_None with
    // nothing taken. The general path looks at the byte behind a token to end it, and that look
    // folds a continuation standing there and counts its line; so a backslash behind the token
    // leaves it to that path.
    int TakeInlineToken() {
        char const* const p = fInput->GetReadPtr();
        char const* const end = fInput->GetEndPtr();
        if (p == end)
            return kPPScan_EOF;
        int token = PP_ScanDetail::kInlineTokens.fToken[static_cast<unsigned char>(*p)];
        if (token == kPPScan_Ident) {
            SkipRun(kPPChar_Ident);
            return token;
        }
        if (token == kPPScan_Decimal)
            return TakePlainNumber(p, end);
        if (token == kPPScan_White) {
            SkipBlanks();
            return token;
        }
        if (token == kPPScan_String)
            return TakePlainString(p, end);
        if (token == kPPScan_None)
            return kPPScan_None;
        if (p + 1 != end) {
            char const next = p[1];
            bool const mayLengthen = (token & PP_ScanDetail::kMayLengthen) != 0;
            if (next == kPPChar_Backslash || (mayLengthen && (next == '=' || next == '>' || next == *p)))
                return kPPScan_None;
        }
        token &= ~PP_ScanDetail::kMayLengthen;
        fInput->SkipTo(p + 1);
        ++fCharPos;
        return token;
    }
    // The cursor `p` is on a digit. Takes a number without suffix, fraction or exponent: decimal,
    // a lone 0 or hexadecimal. Anything else, and a number that something of a name or number, a
    // point or a backslash follows, is left to the general path.
    int TakePlainNumber(char const* p, char const* end) {
        char const* q = p + 1;
        int token = kPPScan_Decimal;
        if (*p != '0') {
            while (q != end && inCharClass(static_cast<unsigned char>(*q), kPPChar_Decimal))
                ++q;
        } else if (q != end && (*q == 'x' || *q == 'X')) {
            char const* const digits = ++q;
            while (q != end && inCharClass(static_cast<unsigned char>(*q), kPPChar_Hex))
                ++q;
            if (q == digits)
                return kPPScan_None;
            token = kPPScan_Hex;
        } else {
            token = kPPScan_Zero;
        }
        if (q != end && (isidentchar(static_cast<unsigned char>(*q)) || *q == kPPChar_Backslash ||
                         (*q == '.' && token != kPPScan_Hex)))
            return kPPScan_None;
        fInput->SkipTo(q);
        fCharPos += static_cast<unsigned long>(q - p);
        return token;
    }
    // The cursor `p` is on a double quote. Takes a string of plain bytes (no escape, line end or
    // single quote) up to its closing quote, which ends it without a look behind, unless strings
    // are read as double-byte text; anything else is left to the general path.
    int TakePlainString(char const* p, char const* end) {
        if (isDoubleByteLanguage())
            return kPPScan_None;
        char const* q = p + 1;
        while (q != end && inCharClass(static_cast<unsigned char>(*q), kPPChar_LiteralPlain))
            ++q;
        if (q == end || *q != '"')
            return kPPScan_None;
        ++q;
        fInput->SkipTo(q);
        fCharPos += static_cast<unsigned long>(q - p);
        return kPPScan_String;
    }
    // Out of line, so that the inline path stays small wherever it is inlined.
    [[gnu::noinline]] int PrivGetNextToken(int* error);
    int PrivNextToken(int c, int* error);
    int PrivPrefixedToken(int c, int* error);
    int PrivIdentifier();
    int PrivLiteral(int quote, int token, int* error);
    int PrivNumber(int c, int* error);
    int PrivRadixNumber(unsigned char digitClass, int token, int* error);
    int PrivPunctuation(int c, int* error);
    // `c` is the character behind the digits, peeked already. Most numbers have no suffix, and
    // that one character tells so without a call.
    int PrivFixedSuffix(int token, int c, int* error) {
        return isidentchar(c) ? PrivSuffixLetters(token, c, error) : token;
    }
    int PrivSuffixLetters(int token, int c, int* error);
    int PrivFraction(int* error);
    int PrivExponent(int* error);
    int PrivFloatSuffix(int* error);
    bool OpensComment(int second) const;
    void PrivSkipComment(int opener);
    PP_CTextReader CookTokenText(unsigned long size);

    unsigned long fCharPos = 0;
    unsigned long fLineno = 1;
    PP_CTextReader* fInput;
    char const* fTokenStart;
    char* fCookBuffer = nullptr;
    unsigned long fCookBufferSize = 0;
    // When set, '//' opens no comment. Nothing sets it at present.
    bool fNoLineComments = false;
    bool fHasContinuation = false;
};

#endif
