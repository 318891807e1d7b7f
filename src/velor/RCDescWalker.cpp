// The description walker: two S-expression texts read in step over the bytes of one resource.
// See RCDescWalker.h for the invariant; the grammar of both texts is the one the description
// writers of RCDescription.h and the statements produce.
#include "RCDescWalker.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Assertion.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCNestingGuard.h"

namespace {

constexpr unsigned long kBitsPerByte = 8;
// Deeper nesting than any type declares; a text nested further is taken for damage rather than
// risk the stack. The walk refuses by throwing, so its nesting has no message.
constexpr int kMaxDepth = 1000;
constexpr int kNoMessage = 0;
// The longest number word worth reading: more digits only saturate the value anyway.
constexpr unsigned long kMaxNumberWord = 64;

struct KnownName {
    RCDescriptionKeyword keyword;
    int code;
};

// The words the reader knows, in the order it searches them; every other word is unknown.
constexpr KnownName nameMap[] = {
    {kDesc_Align, RCDescWalkerHelper::kAlign},
    {kDesc_Args, RCDescWalkerHelper::kArgs},
    {kDesc_Array, RCDescWalkerHelper::kArray},
    {kDesc_As, RCDescWalkerHelper::kAs},
    {kDesc_Auto, RCDescWalkerHelper::kAuto},
    {kDesc_Bitstring, RCDescWalkerHelper::kBitString},
    {kDesc_Case, RCDescWalkerHelper::kCase},
    {kDesc_Count, RCDescWalkerHelper::kCount},
    {kDesc_Fill, RCDescWalkerHelper::kFill},
    {kDesc_Fillspec, RCDescWalkerHelper::kFillSpec},
    {kDesc_Float, RCDescWalkerHelper::kFloat},
    {kDesc_Label, RCDescWalkerHelper::kLabel},
    {kDesc_Length, RCDescWalkerHelper::kLength},
    {kDesc_Multistring, RCDescWalkerHelper::kMultiString},
    {kDesc_Name, RCDescWalkerHelper::kName},
    {kDesc_Null, RCDescWalkerHelper::kNull},
    {kDesc_Oneof, RCDescWalkerHelper::kOneOf},
    {kDesc_Prog, RCDescWalkerHelper::kProg},
    {kDesc_Restype, RCDescWalkerHelper::kResType},
    {kDesc_Set, RCDescWalkerHelper::kSet},
    {kDesc_Static, RCDescWalkerHelper::kStatic},
    {kDesc_String, RCDescWalkerHelper::kString},
    {kDesc_Switch, RCDescWalkerHelper::kSwitch},
    {kDesc_Super, RCDescWalkerHelper::kSuper},
    {kDesc_Type, RCDescWalkerHelper::kType},
    {kDesc_Value, RCDescWalkerHelper::kValue},
};

PP_CTextReader readerOver(char const* text) {
    return text == nullptr ? PP_CTextReader() : PP_CTextReader(text, std::strlen(text));
}

// The bytes from start up to where reader now stands.
PP_CTextReader passedSince(char const* start, PP_CTextReader const& reader) {
    return PP_CTextReader(start, static_cast<unsigned long>(reader.GetReadPtr() - start));
}

// An empty reader may have no bytes behind it at all, so it is never handed to memcmp.
bool sameWord(PP_CTextReader a, PP_CTextReader b) {
    return a.Readable() == b.Readable() &&
           (a.IsEOF() || std::memcmp(a.GetReadPtr(), b.GetReadPtr(), a.Readable()) == 0);
}

bool isBreak(int c) { return std::isspace(c) || c == '(' || c == ')'; }

bool isOneOf(char c, char const* digits) { return c != '\0' && std::strchr(digits, c) != nullptr; }

[[noreturn]] void badDescription() { throw RC_xBadDescription(); }

}  // namespace

RCDescWalker::RCDescWalker(void const* data, unsigned long dataSize, char const* resourceDesc,
                           char const* typeDesc)
    : fData(data), fDataSize(dataSize), fResourceDesc(readerOver(resourceDesc)), fTypeDesc(readerOver(typeDesc)) {}

void RCDescWalker::Walk() {
    RCDescWalkerHelper helper(fData, fDataSize, 0, 0);
    PP_CTextReader typeDesc = fTypeDesc;
    PP_CTextReader resourceDesc = fResourceDesc;
    helper.Walk(typeDesc, resourceDesc);
    std::puts("\n\n");
}

RCDescWalkerHelper::RCDescWalkerHelper(void const* data, unsigned long dataSize, unsigned long bit, int indent)
    : fData(static_cast<unsigned char const*>(data)),
      fDataBits(dataSize * kBitsPerByte),
      fBit(std::min(bit, dataSize * kBitsPerByte)),
      fIndent(indent),
      fLineOpen(false),
      fNesting{kMaxDepth, kNoMessage} {}

bool RCDescWalkerHelper::Walk(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc) {
    if (aResourceDesc.IsEOF()) return true;
    // More traces than the type has statements.
    if (aTypeDesc.IsEOF()) badDescription();
    RCNestingGuard depth(fNesting);
    if (!depth.TryDeeper()) badDescription();
    switch (PeekSExpr(aTypeDesc)) {
    case kAlign: return Walk_Align(aTypeDesc, aResourceDesc);
    case kArray: return Walk_Array(aTypeDesc, aResourceDesc);
    case kAs: return Walk_As(aTypeDesc, aResourceDesc);
    case kBitString: return Walk_BitString(aTypeDesc, aResourceDesc);
    case kFill: return Walk_Fill(aTypeDesc, aResourceDesc);
    case kFloat: return Walk_Float(aTypeDesc, aResourceDesc);
    case kMultiString: return Walk_MultiString(aTypeDesc, aResourceDesc);
    case kProg: return Walk_Prog(aTypeDesc, aResourceDesc);
    case kString: return Walk_String(aTypeDesc, aResourceDesc);
    case kSwitch: return Walk_Switch(aTypeDesc, aResourceDesc);
    case kSuper: return Walk_Super(aTypeDesc, aResourceDesc);
    case kType: return Walk_Type(aTypeDesc, aResourceDesc);
    case kAuto:
    case kLabel:
    case kNull:
    case kSet:
    case kStatic: return false;
    default: badDescription();
    }
}

// prog = "(prog" { statement } ")", against "(prog" { trace } ")"; a statement without a trace
// leaves the trace for the next statement.
bool RCDescWalkerHelper::Walk_Prog(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aTypeDesc, kProg);
    EnterSExpr(aResourceDesc, kProg);
    PP_CTextReader statement = ScanSExpr(aTypeDesc);
    for (;;) {
        PP_CTextReader before = aResourceDesc;
        PP_CTextReader trace = ScanSExpr(aResourceDesc);
        if (trace.IsEOF()) return true;
        if (!Walk(statement, trace)) aResourceDesc = before;
        statement = ScanSExpr(aTypeDesc);
    }
}

// type array = "(array" [ "(name" name ")" ] [ "(length" expr ")" ] "(prog" { statement } "))";
// instance array = "(array" { "(prog" { trace } ")" } ")".
bool RCDescWalkerHelper::Walk_Array(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aTypeDesc, kArray);
    EnterSExpr(aResourceDesc, kArray);
    bool singleText = aTypeDesc.GetReadPtr() == aResourceDesc.GetReadPtr();
    WriteTitle("[ array");
    PP_CTextReader typeProg = FindSExpr(aTypeDesc, kProg);
    if (typeProg.IsEOF()) {
        if (!ScanSExpr(aResourceDesc).IsEOF()) badDescription();
    } else {
        for (unsigned long number = 1;; ++number) {
            PP_CTextReader element = ScanSExpr(aResourceDesc);
            if (element.IsEOF()) break;
            PP_CTextReader type = singleText ? element : typeProg;
            WriteTitle("[ array element ", number);
            Walk(type, element);
            WriteTitle("] array element ", number);
        }
    }
    WriteTitle("] array");
    return true;
}

// type = "(type" name { part } ")", where the parts that count are a "(super" and a body,
// "(as" or "(prog"; in a type text a named-type field has no body, and the instance's own text
// then serves as the type.
bool RCDescWalkerHelper::Walk_Type(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aTypeDesc, kType);
    EnterSExpr(aResourceDesc, kType);
    PP_CTextReader name = ScanSExpr(aResourceDesc);
    ScanSExpr(aTypeDesc);
    PP_CTextReader instSuper, instBody, typeSuper, typeBody;
    ExtractSuperAndBody(aResourceDesc, instSuper, instBody);
    ExtractSuperAndBody(aTypeDesc, typeSuper, typeBody);
    WriteTitle("[ type  ", name);
    {
        Indent indent(fIndent);
        if (!instSuper.IsEOF()) {
            PP_CTextReader superAsType = instSuper;
            Walk(superAsType, instSuper);
        }
        if (!instBody.IsEOF()) {
            if (PeekSExpr(instBody) == kAs) {
                EnterSExpr(instBody);
                instBody = FindSExpr(instBody, kProg);
            }
            if (PeekSExpr(typeBody) == kAs || typeBody.IsEOF()) typeBody = instBody;
            Walk(typeBody, instBody);
        }
    }
    WriteTitle("] type ", name);
    return true;
}

// super = "(super" name { expr } ")": the base's own instance text is its type.
bool RCDescWalkerHelper::Walk_Super(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kSuper);
    ScanSExpr(aResourceDesc);
    return WalkNestedType(aResourceDesc);
}

// as = "(as" name instance ")".
bool RCDescWalkerHelper::Walk_As(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kAs);
    return WalkNestedType(aResourceDesc);
}

bool RCDescWalkerHelper::WalkNestedType(PP_CTextReader& aResourceDesc) {
    PP_CTextReader nested = FindSExpr(aResourceDesc, kType);
    if (nested.IsEOF()) badDescription();
    PP_CTextReader nestedAsType = nested;
    return Walk(nestedAsType, nested);
}

// type switch = "(switch" { "(case" name statement ")" } ")";
// instance switch = "(switch" "(case" name trace "))", the chosen case alone.
bool RCDescWalkerHelper::Walk_Switch(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kSwitch);
    EnterSExpr(aResourceDesc, kCase);
    PP_CTextReader name = ScanSExpr(aResourceDesc);
    PP_CTextReader body = ScanSExpr(aResourceDesc);
    EnterSExpr(aTypeDesc);
    WriteTitle("[ switch ", name);
    Indent indent(fIndent);
    for (;;) {
        PP_CTextReader caseExpr = ScanSExpr(aTypeDesc);
        if (caseExpr.IsEOF()) badDescription();
        EnterSExpr(caseExpr, kCase);
        if (sameWord(ScanSExpr(caseExpr), name)) {
            PP_CTextReader statement = ScanSExpr(caseExpr);
            Walk(statement, body);
            WriteTitle("] switch ", name);
            return true;
        }
    }
}

// "(bitstring" width ")".
bool RCDescWalkerHelper::Walk_BitString(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    unsigned long width = EnterField(aResourceDesc, kBitString);
    WriteInteger(GetInteger(width));
    NewLine();
    return true;
}

// "(float" width ")".
bool RCDescWalkerHelper::Walk_Float(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    unsigned long width = EnterField(aResourceDesc, kFloat);
    WriteFloat(GetFloat(width));
    NewLine();
    return true;
}

unsigned long RCDescWalkerHelper::EnterField(PP_CTextReader& aResourceDesc, int kind) {
    EnterSExpr(aResourceDesc, kind);
    unsigned long width = ReadNumber(aResourceDesc);
    WriteBitNo(width);
    return width;
}

// "(align" bits ")": the skipped bits are not shown.
bool RCDescWalkerHelper::Walk_Align(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kAlign);
    unsigned long n = ReadNumber(aResourceDesc);
    WriteTitle("align ", n);
    if (n == 0) badDescription();
    unsigned long r = fBit % n;
    if (n - r != n) {
        RequireBits(n - r);
        fBit += n - r;
    }
    return true;
}

// "(fill" width [ "(count" number ")" ] ")".
bool RCDescWalkerHelper::Walk_Fill(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kFill);
    WriteTitle("fill");
    WriteBitNo();
    unsigned long width = ReadNumber(aResourceDesc);
    unsigned long count = 1;
    PP_CTextReader countExpr = FindSExpr(aResourceDesc, kCount);
    if (!countExpr.IsEOF()) {
        EnterSExpr(countExpr);
        count = ReadNumber(countExpr);
    }
    // Every fill unit has a size; checking the whole run first keeps a huge count from printing
    // for ever.
    if (width == 0 || count > BitsLeft() / width) badDescription();
    for (unsigned long i = 0; i < count; ++i) {
        WriteInteger(GetInteger(width));
        WriteChar(' ');
    }
    NewLine();
    return true;
}

// "(string" code "(length" bytes "))", code being "S" and the sizes of length prefix, character
// and terminator. Terminators and padding show as dots within the string.
bool RCDescWalkerHelper::Walk_String(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kString);
    PP_CTextReader code = ScanSExpr(aResourceDesc);
    PP_CTextReader lengthExpr = FindSExpr(aResourceDesc, kLength);
    EnterSExpr(lengthExpr, kLength);
    unsigned long remaining = ReadNumber(lengthExpr);
    if (code.Readable() != 4 || code.GetReadPtr()[0] != 'S') badDescription();
    WriteTitle("string ", code);
    char const* sizes = code.GetReadPtr();
    unsigned long prefix = static_cast<unsigned long>(sizes[1] - '0');
    unsigned long charSize = static_cast<unsigned long>(sizes[2] - '0');
    if (!isOneOf(sizes[1], "0124") || !isOneOf(sizes[2], "12") || !isOneOf(sizes[3], "012"))
        badDescription();
    WriteBitNo();
    if (prefix != 0) {
        WriteInteger(GetInteger(prefix * kBitsPerByte));
        NewLine();
        WriteBitNo();
    }
    if (remaining < prefix) badDescription();
    remaining -= prefix;
    for (; remaining >= charSize; remaining -= charSize) {
        long c = GetInteger(charSize * kBitsPerByte);
        WriteChar(c >= 0 && c < 256 && std::isprint(static_cast<int>(c)) ? static_cast<int>(c) : '.');
    }
    NewLine();
    for (; remaining > 0; --remaining) GetInteger(kBitsPerByte);
    return true;
}

// "(multistring)": the table is read from the bytes: a count, then per entry an id and the offset
// of a zero-terminated text, both 16 bits; the read goes on after the farthest text.
bool RCDescWalkerHelper::Walk_MultiString(PP_CTextReader&, PP_CTextReader& aResourceDesc) {
    EnterSExpr(aResourceDesc, kMultiString);
    unsigned long start = fBit;
    WriteTitle("[ multistring");
    WriteBitNo();
    NewLine();
    unsigned char const* base = GetBytePtr();
    unsigned char const* farthest = base;
    unsigned long count = static_cast<unsigned long>(GetInteger(16)) & 0xFFFF;
    for (unsigned long i = 0; i < count; ++i) {
        long id = GetInteger(16);
        unsigned long offset = static_cast<unsigned long>(GetInteger(16)) & 0xFFFF;
        char const* text = TextAt(base, offset);
        WriteBitNo();
        WriteInteger(id);
        WriteText(", ");
        WriteString(text);
        NewLine();
        farthest = std::max(farthest, reinterpret_cast<unsigned char const*>(text) + std::strlen(text) + 1);
    }
    WriteTitle("] multistring");
    fBit = start + static_cast<unsigned long>(farthest - base) * kBitsPerByte;
    return true;
}

// --- Text scanning ---

PP_CTextReader RCDescWalkerHelper::ScanSExpr(PP_CTextReader& aTextReader) {
    SkipWhiteSpace(aTextReader);
    if (aTextReader.IsEOF()) return PP_CTextReader();
    char const* start = aTextReader.GetReadPtr();
    switch (aTextReader.PeekChar()) {
    case '"': SkipString(aTextReader); break;
    case '(': SkipBalancedParens(aTextReader); break;
    case ')':
        // The closing parenthesis ends the list: nothing more is read from it.
        aTextReader = PP_CTextReader(start, 0);
        return PP_CTextReader();
    default: SkipNonWhiteSpace(aTextReader); break;
    }
    return passedSince(start, aTextReader);
}

int RCDescWalkerHelper::PeekSExpr(PP_CTextReader aTextReader) {
    SkipWhiteSpace(aTextReader);
    if (aTextReader.IsEOF() || aTextReader.PeekChar() != '(') return kUnknown;
    aTextReader.GetChar();
    return MapName(ScanSExpr(aTextReader));
}

PP_CTextReader RCDescWalkerHelper::FindSExpr(PP_CTextReader aTextReader, int name) {
    for (;;) {
        PP_CTextReader expr = ScanSExpr(aTextReader);
        if (expr.IsEOF() || PeekSExpr(expr) == name) return expr;
    }
}

void RCDescWalkerHelper::EnterSExpr(PP_CTextReader& aTextReader) {
    SkipWhiteSpace(aTextReader);
    VELOR_ASSERT(!aTextReader.IsEOF() && aTextReader.PeekChar() == '(');
    aTextReader.GetChar();
    ScanSExpr(aTextReader);
}

void RCDescWalkerHelper::EnterSExpr(PP_CTextReader& aTextReader, int name) {
    if (PeekSExpr(aTextReader) != name) badDescription();
    EnterSExpr(aTextReader);
}

// A number word in any base strtoul reads with base 0.
unsigned long RCDescWalkerHelper::ReadNumber(PP_CTextReader& aTextReader) {
    PP_CTextReader word = ScanSExpr(aTextReader);
    if (word.IsEOF()) badDescription();
    char digits[kMaxNumberWord + 1];
    unsigned long length = std::min(word.Readable(), kMaxNumberWord);
    std::memcpy(digits, word.GetReadPtr(), length);
    digits[length] = '\0';
    return std::strtoul(digits, nullptr, 0);
}

int RCDescWalkerHelper::MapName(PP_CTextReader aTextReader) {
    for (KnownName const& row : nameMap) {
        char const* word = descriptionWord(row.keyword);
        if (sameWord(PP_CTextReader(word, std::strlen(word)), aTextReader)) return row.code;
    }
    return kUnknown;
}

void RCDescWalkerHelper::ExtractSuperAndBody(PP_CTextReader aTextReader, PP_CTextReader& super,
                                             PP_CTextReader& body) {
    for (PP_CTextReader expr = ScanSExpr(aTextReader); !expr.IsEOF(); expr = ScanSExpr(aTextReader)) {
        int code = PeekSExpr(expr);
        if (code == kSuper)
            super = expr;
        else if (code == kAs || code == kProg)
            body = expr;
    }
}

void RCDescWalkerHelper::SkipWhiteSpace(PP_CTextReader& aTextReader) {
    while (!aTextReader.IsEOF() && std::isspace(aTextReader.PeekChar())) aTextReader.GetChar();
}

void RCDescWalkerHelper::SkipNonWhiteSpace(PP_CTextReader& aTextReader) {
    while (!aTextReader.IsEOF() && !isBreak(aTextReader.PeekChar())) aTextReader.GetChar();
}

// Strings count like any other bytes: a parenthesis inside one moves the balance.
void RCDescWalkerHelper::SkipBalancedParens(PP_CTextReader& aTextReader) {
    VELOR_ASSERT(!aTextReader.IsEOF() && aTextReader.PeekChar() == '(');
    long depth = 0;
    do {
        int c = aTextReader.GetChar();
        if (c == '(') ++depth;
        if (c == ')') --depth;
    } while (depth != 0 && !aTextReader.IsEOF());
}

// Stops at the first double quote read, which is the opening one: only that quote is consumed,
// and the string's text is then scanned as bare words. The description writers never put a
// string outside parentheses, where this would matter.
void RCDescWalkerHelper::SkipString(PP_CTextReader& aTextReader) {
    VELOR_ASSERT(!aTextReader.IsEOF() && aTextReader.PeekChar() == '"');
    while (!aTextReader.IsEOF() && aTextReader.GetChar() != '"') {
    }
}

// --- Data ---

void RCDescWalkerHelper::RequireBits(unsigned long bits) const {
    if (bits > BitsLeft()) badDescription();
}

// Aligned whole bytes read low-order first and signed, anything else most significant bit first.
long RCDescWalkerHelper::GetInteger(unsigned long bits) {
    RequireBits(bits);
    if (bits > SHRT_MAX) badDescription();
    long value = RCBindings::GetValue(fData, static_cast<long>(fBit), static_cast<short>(bits));
    fBit += bits;
    return value;
}

// Whole bytes from the next byte boundary, little-endian: a single for 32 bits, else a double,
// of which no more than its own eight bytes are taken.
double RCDescWalkerHelper::GetFloat(unsigned long bits) {
    fBit = std::min((fBit + kBitsPerByte - 1) / kBitsPerByte * kBitsPerByte, fDataBits);
    unsigned long bytes = bits / kBitsPerByte;
    RequireBits(bytes * kBitsPerByte);
    std::uint64_t value = 0;
    for (unsigned long i = 0; i < bytes; ++i, fBit += kBitsPerByte)
        if (i < sizeof value) value |= static_cast<std::uint64_t>(*GetBytePtr()) << (kBitsPerByte * i);
    if (bits == 32) return std::bit_cast<float>(static_cast<std::uint32_t>(value));
    return std::bit_cast<double>(value);
}

unsigned char const* RCDescWalkerHelper::GetBytePtr() const { return fData + fBit / kBitsPerByte; }

char const* RCDescWalkerHelper::TextAt(unsigned char const* base, unsigned long offset) const {
    unsigned char const* end = fData + fDataBits / kBitsPerByte;
    if (offset >= static_cast<unsigned long>(end - base)) badDescription();
    unsigned char const* text = base + offset;
    if (std::find(text, end, '\0') == end) badDescription();
    return reinterpret_cast<char const*>(text);
}

// --- Output ---

void RCDescWalkerHelper::NewLine() {
    std::putchar('\n');
    fLineOpen = false;
}

void RCDescWalkerHelper::WriteIndent() {
    std::printf("%*s", fIndent, "");
    fLineOpen = true;
}

void RCDescWalkerHelper::OpenLine() {
    if (!fLineOpen) WriteIndent();
}

void RCDescWalkerHelper::CloseLine() {
    if (fLineOpen) NewLine();
}

void RCDescWalkerHelper::WriteInteger(long value) {
    OpenLine();
    std::printf("0x%x", static_cast<unsigned int>(value));
}

void RCDescWalkerHelper::WriteFloat(double value) {
    OpenLine();
    std::printf("%g", value);
}

void RCDescWalkerHelper::WriteChar(int c) {
    OpenLine();
    std::putchar(c);
}

void RCDescWalkerHelper::WriteText(char const* text) {
    OpenLine();
    std::fputs(text, stdout);
}

void RCDescWalkerHelper::WriteString(char const* text) {
    OpenLine();
    std::printf("\"%s\"", text);
}

void RCDescWalkerHelper::WriteBitNo() {
    CloseLine();
    std::printf("0x%08x    ", static_cast<unsigned int>(fBit));
}

void RCDescWalkerHelper::WriteBitNo(unsigned long width) {
    CloseLine();
    std::printf("0x%08x:%02x ", static_cast<unsigned int>(fBit), static_cast<unsigned int>(width));
}

// Titles stand at the start of a line of their own, never indented.
void RCDescWalkerHelper::WriteTitle(char const* title) {
    CloseLine();
    std::printf("// %s\n", title);
}

void RCDescWalkerHelper::WriteTitle(char const* title, unsigned long number) {
    CloseLine();
    std::printf("// %s%lu\n", title, number);
}

void RCDescWalkerHelper::WriteTitle(char const* title, PP_CTextReader& text) {
    CloseLine();
    int length = static_cast<int>(std::min<unsigned long>(text.Readable(), INT_MAX));
    std::printf("// %s%.*s\n", title, length, text.IsEOF() ? "" : text.GetReadPtr());
}
