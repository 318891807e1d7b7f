// The character classes of the scanner as one table of bits, so that a class test is one load and
// a run of a class can be taken by a tight loop over raw bytes.

#ifndef PPCHARCLASS_H
#define PPCHARCLASS_H

enum PP_CharClass : unsigned char {
    kPPChar_Blank = 1,       // the blanks of the C locale without the line ends, and MacRoman's no-break space
    kPPChar_IdentStart = 2,  // letters, '_' and '$'
    kPPChar_Decimal = 4,
    kPPChar_Hex = 8,
    kPPChar_Octal = 16,
    kPPChar_Binary = 32,
    kPPChar_EOL = 64,
    // Bytes that a string or character literal takes without a look: no quote, backslash or line end.
    kPPChar_LiteralPlain = 128,
    kPPChar_Ident = kPPChar_IdentStart | kPPChar_Decimal
};

namespace PP_CharClassDetail {

// A plain array, so that a lookup is one load in every build, unoptimised ones included.
struct Table {
    unsigned char fBits[256];
};

constexpr Table MakeTable() {
    Table table{};
    for (int c = 0; c < 256; ++c) {
        unsigned char bits = 0;
        if (c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == 202)
            bits |= kPPChar_Blank;
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$')
            bits |= kPPChar_IdentStart;
        if (c >= '0' && c <= '9')
            bits |= kPPChar_Decimal | kPPChar_Hex;
        if ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))
            bits |= kPPChar_Hex;
        if (c >= '0' && c <= '7')
            bits |= kPPChar_Octal;
        if (c == '0' || c == '1')
            bits |= kPPChar_Binary;
        if (c == '\n' || c == '\r')
            bits |= kPPChar_EOL;
        if (c != '"' && c != '\'' && c != '\\' && c != '\n' && c != '\r')
            bits |= kPPChar_LiteralPlain;
        table.fBits[c] = bits;
    }
    return table;
}

inline constexpr Table kTable = MakeTable();

} // namespace PP_CharClassDetail

// The classes of a character as the scanner passes it: a byte value, or -1 (end of input), which
// is in no class. Any other value is in no class either.
constexpr unsigned char charClassOf(int c) {
    return static_cast<unsigned>(c) < 256 ? PP_CharClassDetail::kTable.fBits[c] : 0;
}

constexpr bool inCharClass(int c, unsigned char classes) { return (charClassOf(c) & classes) != 0; }

// A letter of the C locale, told without the table or a call: setting bit 5 folds upper case onto
// lower case and moves no other byte, nor -1, into a..z.
constexpr bool isAsciiLetter(int c) { return static_cast<unsigned>((c | 0x20) - 'a') < 26U; }

#endif
