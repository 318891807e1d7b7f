// Numbers, characters and strings from the current token: escapes, the merging of adjacent string
// literals of compatible kinds, hexadecimal groups, and the checks of UTF-8 text. Every walk stops
// at the literal's limit, so a malformed literal at the end of an input cannot read past it.

#include "RCLiteral.h"

#include <array>
#include <cctype>

#include "Assertion.h"
#include "DecimalReal.h"
#include "MsgIds.h"
#include "RCScanner.h"

namespace {

constexpr long kMaxCharacters = 4;

bool IsWideWalkToken(int token) {
    return token == kPPScan_WideString || token == kPPScan_WideHexString || token == kPPScan_WideChar;
}

bool ChecksUTF8() { return gCurrentLanguage == 5 || gCurrentLanguage == 6; }

constexpr unsigned char kNoDigit = 255;

// The value of each byte as a digit: '0' to '9', then the letters of either case from 10 on. The
// value is the byte, its letters lowered, less 87, so the bytes between 'Z' and 'a' ([\]^_`) read
// as 4 to 9 and those behind 'z' as 36 and more; a number stops at a byte whose value its base
// does not reach. Bytes below '0', and from ':' to '@', are no digit at all.
constexpr std::array<unsigned char, 256> MakeDigitValues() {
    std::array<unsigned char, 256> values{};
    for (int c = 0; c < 256; ++c) {
        int const lowered = c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
        int const value = c <= '9' ? c - '0' : lowered - 87;
        values[static_cast<size_t>(c)] = value < 0 ? kNoDigit : static_cast<unsigned char>(value);
    }
    return values;
}

constexpr std::array<unsigned char, 256> kDigitValues = MakeDigitValues();

int hexValue(unsigned char c) { return kDigitValues[c]; }

int HexDigit(unsigned char c) { return std::isxdigit(c) ? hexValue(c) : -1; }

// Reads an escape sequence; `p` stands behind the backslash and moves past the sequence. Digits
// are read only up to `limit`, so an escape at the end of a text cannot read beyond it.
long getCEscape(char const*& p, char const* limit, bool wide) {
    if (p >= limit) return '\\';
    signed char const c = *p++;
    if (c < '"' || c > 'x') return c;
    if (int const value = letterEscapeValue(c); value >= 0) return value;
    if (c == 'x') {
        int const maxDigits = wide ? 4 : 2;
        long value = 0;
        for (int digits = 0; digits < maxDigits && p < limit && std::isxdigit(static_cast<unsigned char>(*p));
             ++digits)
            value = value * 16 + hexValue(static_cast<unsigned char>(*p++));
        return wide ? value : value & 0xFF;
    }
    if (!isodigit(c)) return c;
    long value = c - '0';
    int digits = 1;
    for (; digits < 3 && p < limit && isodigit(*p); ++digits) value = value * 8 + (*p++ - '0');
    return digits == 3 && !wide ? value & 0xFF : value;
}

// Wide text: each byte one unit, sign-extended as the byte stands, escapes taken whole.
void ReadTextUnits(char const* p, char const* limit, RCStringAppender& out) {
    while (p < limit && *p != '"') {
        long unit = static_cast<signed char>(*p++);
        if (unit == '\\') unit = getCEscape(p, limit, true);
        out.PutUnit(static_cast<std::uint16_t>(unit));
    }
}

}  // namespace

long RCScanner::EvalNumber() const {
    int skip = 0;
    int base = 10;
    switch (fTokenType) {
        case kPPScan_Zero: return 0;
        case kPPScan_Hex: skip = 2, base = 16; break;
        case kPPScan_DollarHex: skip = 1, base = 16; break;
        case kPPScan_Decimal: break;
        case kPPScan_Octal: base = 8; break;
        case kPPScan_Binary: skip = 2, base = 2; break;
        default: AssertionFailed("RCScanner::EvalNumber", __func__, __FILE__, __LINE__);
    }
    // Unsigned arithmetic: an overlong number wraps instead of overflowing.
    unsigned long value = 0;
    char const* const end = fTokenText.GetReadPtr() + fTokenText.Readable();
    for (char const* p = fTokenText.GetReadPtr() + skip; p < end; ++p) {
        int const digit = hexValue(static_cast<unsigned char>(*p));
        if (digit >= base) break;
        value = value * static_cast<unsigned long>(base) + static_cast<unsigned long>(digit);
    }
    return static_cast<long>(value);
}

double RCScanner::EvalRealNumber() const {
    VELOR_ASSERT_TEXT("RCScanner::EvalRealNumber", fTokenType == kPPScan_Float || fTokenType == kPPScan_Double ||
                                                       fTokenType == kPPScan_LongDouble);
    return DecimalReal(fTokenText.GetReadPtr(), fTokenText.Readable());
}

char const* RCScanner::LiteralLimit() const {
    char const* const tokenEnd = fTokenText.GetReadPtr() + fTokenText.Readable();
    if (!AtEOF() && fInputSrc->GetReadPtr() == tokenEnd) return tokenEnd + fInputSrc->Readable();
    return tokenEnd;
}

// Finds the opening quote of the current literal. The walk for the L-prefixed tokens steps two
// bytes at a time from the token's start: it meets the quote of L$"..." and $L"..." but steps
// over the one of L"..." and L'...', and then stops on the next quote at an even offset, which
// may lie behind the token. The walk never leaves the text that is there to read; a stop on the
// byte 0xFF, or no quote at all, gives null.
char const* RCScanner::FindDelimit(char const* text, int ch) const {
    long const length = LiteralLimit() - text;
    if (IsWideWalkToken(fTokenType)) {
        for (long i = 0; i < length; i += 2) {
            unsigned char const c = text[i];
            if (c == ch) return text + i;
            if (c == 0xFF) return nullptr;
        }
        return nullptr;
    }
    if (IsDoubleByteToken(fTokenType)) {
        for (long i = 0; i < length; ++i) {
            unsigned char const c = text[i];
            if (c == ch) return text + i;
            if (c == 0xFF) return nullptr;
            if (IsLeadingByte(c, fTokenType)) ++i;
        }
        return nullptr;
    }
    return static_cast<char const*>(std::memchr(text, ch, static_cast<size_t>(length)));
}

long RCScanner::EvalChar(bool wide) {
    char const* const limit = LiteralLimit();
    char const* p = FindDelimit(fTokenText.GetReadPtr(), '\'');
    if (p == nullptr) return 0;
    ++p;
    unsigned long value = 0;
    long characters = 0;
    while (p < limit && *p != '\'') {
        long character = static_cast<unsigned char>(*p++);
        if (character == '\\') character = getCEscape(p, limit, wide);
        value = wide ? (value << 16) + (static_cast<unsigned long>(character) & 0xFFFF)
                     : (value << 8) + (static_cast<unsigned long>(character) & 0xFF);
        ++characters;
    }
    if (characters > kMaxCharacters) Error(kMsg_TooManyCharacters, 0);
    return static_cast<long>(value);
}

namespace {

// The character width of the first literal of a string.
int WidthOfFirstLiteral(int token) {
    switch (token) {
        case kPPScan_String:
        case kPPScan_DBString:
        case kPPScan_HexString:
        case kPPScan_DBHexString: return 1;
        case kPPScan_WideString:
        case kPPScan_WideHexString: return 2;
        default: AssertionFailed("RCScanner::MergeString 2", __func__, __FILE__, __LINE__);
    }
}

// The character width a literal adds to a string of `stringType`, or 0 if it cannot join it.
int WidthForMerge(int stringType, int token) {
    if (token == stringType && (token == kPPScan_String || token == kPPScan_WideString))
        return token == kPPScan_String ? 1 : 2;
    if (stringType == RCByteString::kEmptyType) return WidthOfFirstLiteral(token);
    if (stringType == kPPScan_String)
        return token == kPPScan_DBString || token == kPPScan_HexString || token == kPPScan_DBHexString ? 1 : 0;
    VELOR_ASSERT_TEXT("RCScanner::MergeString 1", stringType == kPPScan_WideString);
    return token == kPPScan_WideHexString ? 2 : 0;
}

}  // namespace

bool RCScanner::MergeString(RCByteString& string) {
    int const width = WidthForMerge(string.fStringType, fTokenType);
    if (width == 0) {
        Error(kMsg_MixedStrings, 0);
        return false;
    }
    if (string.fStringType == RCByteString::kEmptyType)
        string.fStringType = width == 1 ? kPPScan_String : kPPScan_WideString;
    return width == 1 ? AppendString_1(string) : AppendString_2(string);
}

bool RCScanner::AppendString_1(RCByteString& string) { return AppendString(string, 1); }

bool RCScanner::AppendString_2(RCByteString& string) { return AppendString(string, 2); }

// Appends the current literal in characters of `width` bytes: hexadecimal digits for a hex
// string, else its text with escapes. Wide characters are 16-bit units in host order.
bool RCScanner::AppendString(RCByteString& string, int width) {
    RCStringAppender out(string, width * static_cast<long>(fTokenText.Readable()) + 2);
    if (!out.Ready()) return false;
    if (char const* quote = FindDelimit(fTokenText.GetReadPtr(), '"')) {
        char const* const limit = LiteralLimit();
        if (fTokenType == (width == 1 ? kPPScan_HexString : kPPScan_WideHexString)) {
            if (!ReadHexGroups(quote + 1, limit, 2 * width, width == 1 ? kMsg_OddHexDigits : kMsg_PartialHexGroup, out))
                return false;
        } else if (width == 1) {
            ReadTextBytes(quote + 1, limit, out);
        } else {
            ReadTextUnits(quote + 1, limit, out);
        }
    }
    out.Finish(width);
    return true;
}

// Reads hexadecimal digits in groups of two (a byte) or four (a unit), white space between any
// two digits skipped. Reports a stray character or an unfinished group and returns false.
bool RCScanner::ReadHexGroups(char const* p, char const* limit, int groupDigits, int partialError,
                              RCStringAppender& out) {
    unsigned long group = 0;
    int digits = 0;
    for (; p < limit; ++p) {
        unsigned char const c = *p;
        if (iswhite(c)) continue;
        int const digit = HexDigit(c);
        if (digit < 0) break;
        group = group * 16 + static_cast<unsigned long>(digit);
        if (++digits < groupDigits) continue;
        if (groupDigits == 2)
            out.PutByte(static_cast<char>(group));
        else
            out.PutUnit(static_cast<std::uint16_t>(group));
        group = 0;
        digits = 0;
    }
    if (p >= limit || *p != '"') {
        Error(kMsg_NonHexDigit, 0);
        return false;
    }
    if (digits != 0) {
        Error(partialError, 0);
        return false;
    }
    return true;
}

// Text that is neither double-byte nor checked as UTF-8 goes as it stands between the escapes, a
// run of bytes at a time.
void RCScanner::ReadTextBytes(char const* p, char const* limit, RCStringAppender& out) {
    bool const doubleByte = IsDoubleByteToken(fTokenType);
    bool const plain = !doubleByte && !ChecksUTF8();
    while (p < limit && *p != '"') {
        unsigned char const c = *p;
        if (c == '\\') {
            ++p;
            out.PutByte(static_cast<char>(getCEscape(p, limit, false)));
        } else if (plain) {
            char const* const run = p;
            while (p < limit && *p != '"' && *p != '\\') ++p;
            out.PutBytes(run, p - run);
        } else if (ChecksUTF8()) {
            if (!CopyCheckedUTF8(p, limit, out)) break;
        } else {
            out.PutByte(*p++);
            if (doubleByte && IsLeadingByte(c, fTokenType) && p < limit) out.PutByte(*p++);
        }
    }
}

// Copies one character of UTF-8 text as it stands, complaining about each byte that does not fit
// the encoding. Returns false where the string must end: a byte that no UTF-8 text holds.
bool RCScanner::CopyCheckedUTF8(char const*& p, char const* limit, RCStringAppender& out) {
    unsigned char const lead = *p;
    if (lead >= 0xF8) {
        Error(kPPErr_InvalidUTF8, 0);
        return false;
    }
    out.PutByte(*p++);
    if (lead < 0x80) return true;
    if (lead < 0xE0) {
        if (lead < 0xC0) Error(kPPErr_InvalidUTF8, 0);
        if (p < limit) {
            if (static_cast<unsigned char>(*p) < 0x80) Error(kPPErr_InvalidUTF8, 0);
            out.PutByte(*p++);
        }
        return true;
    }
    int const following = lead < 0xF0 ? 2 : 3;
    for (int i = 0; i < following && p < limit; ++i) {
        unsigned char const c = *p;
        if (c < 0x80 || c > 0xBF) Error(kPPErr_InvalidUTF8, 0);
        out.PutByte(*p++);
    }
    return true;
}
