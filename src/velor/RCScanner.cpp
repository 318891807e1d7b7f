#include "RCScanner.h"

#include "Assertion.h"
#include "IncDir.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "Options.h"
#include "RCByteString.h"
#include "SearchPath.h"
#include "UniqueNames.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

RCKeyword const gKeywordTable[] = {
    {kRCScan_FnArrayIndex, "$$ArrayIndex", 1},
    {kRCScan_FnBitField, "$$BitField", 3},
    {kRCScan_FnByte, "$$Byte", 1},
    {kRCScan_FnCountOf, "$$CountOf", 1},
    {kRCScan_FnLong, "$$Long", 1},
    {kRCScan_FnWord, "$$Word", 1},
    {kRCScan_Align, "align", 0},
    {kRCScan_Array, "array", 0},
    {kRCScan_Auto, "auto", 0},
    {kRCScan_Bit, "bit", 0},
    {kRCScan_Bitstring, "bitstring", 0},
    {kRCScan_Binary, "binary", 0},
    {kRCScan_Boolean, "boolean", 0},
    {kRCScan_Byte, "byte", 0},
    {kRCScan_Case, "case", 0},
    {kRCScan_Char, "char", 0},
    {kRCScan_Cstring, "cstring", 0},
    {kRCScan_Decimal, "decimal", 0},
    {kRCScan_Double, "double", 0},
    {kRCScan_Fill, "fill", 0},
    {kRCScan_Single, "float", 0},
    {kRCScan_Hex, "hex", 0},
    {kRCScan_Icstring, "icstring", 0},
    {kRCScan_Integer, "integer", 0},
    {kRCScan_Ipstring, "ipstring", 0},
    {kRCScan_Istring, "istring", 0},
    {kRCScan_Iwstring, "iwstring", 0},
    {kRCScan_Key, "key", 0},
    {kRCScan_Literal, "literal", 0},
    {kRCScan_Long, "long", 0},
    {kRCScan_Longint, "longint", 0},
    {kRCScan_Nibble, "nibble", 0},
    {kRCScan_Octal, "octal", 0},
    {kRCScan_Pstring, "pstring", 0},
    {kRCScan_Resource, "resource", 0},
    {kRCScan_Set, "set", 0},
    {kRCScan_Single, "single", 0},
    {kRCScan_Static, "static", 0},
    {kRCScan_String, "string", 0},
    {kRCScan_Switch, "switch", 0},
    {kRCScan_Type, "type", 0},
    {kRCScan_Unsigned, "unsigned", 0},
    {kRCScan_Wide, "wide", 0},
    {kRCScan_Word, "word", 0},
    {kRCScan_Wstring, "wstring", 0},
    {kRCScan_End, nullptr, 0},
};

// Writes behind the text of a string, growing its storage when a literal gives more than was
// planned for. The written bytes become part of the string only at Finish.
class RCStringAppender {
public:
    RCStringAppender(RCByteString& string, long room) : fString(string), fReady(string.Expand(room)), fRoom(room) {}

    // False when not even the planned storage could be had; that was reported.
    bool Ready() const { return fReady; }

    void PutByte(char byte) {
        if (MakeRoom(1)) fString.Bytes()[fString.fLength + fWritten++] = byte;
    }

    void PutUnit(std::uint16_t unit) {
        if (!MakeRoom(sizeof unit)) return;
        std::memcpy(fString.Bytes() + fString.fLength + fWritten, &unit, sizeof unit);
        fWritten += sizeof unit;
    }

    // Ends the text with a terminator of `terminatorBytes` zero bytes, which the length leaves out.
    void Finish(long terminatorBytes) {
        for (long i = 0; i < terminatorBytes; ++i) PutByte(0);
        fString.fLength += fWritten - terminatorBytes;
    }

private:
    bool MakeRoom(long bytes) {
        if (fWritten + bytes <= fRoom) return true;
        long const room = std::max(fWritten + bytes, 2 * fRoom);
        if (!fString.Expand(room)) return false;
        fRoom = room;
        return true;
    }

    RCByteString& fString;
    bool fReady;
    long fRoom;
    long fWritten = 0;
};

namespace {

constexpr int kPathBufferSize = 1024;
constexpr long kMaxCharacters = 4;
// The deepest nesting of included files; the input file itself is the first of them.
constexpr int kMaxOpenFiles = 64;

// Numbers of the tool's message table.

bool IsWideWalkToken(int token) {
    return token == kPPScan_WideString || token == kPPScan_WideHexString || token == kPPScan_WideChar;
}

bool IsDoubleByteToken(int token) {
    return token == kPPScan_DBString || token == kPPScan_DBHexString || token == kPPScan_DBChar;
}

bool ChecksUTF8() { return gCurrentLanguage == 5 || gCurrentLanguage == 6; }

int hexValue(int c) { return c < 58 ? c - '0' : std::tolower(c) - 87; }

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

template <typename Function>
void* AsMacroBody(Function function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

RCScanner_FileInfo* RCScanner_FileInfo::Alloc(PP_CMemoryManager* memory, IncFile* incFile, char* buffer) {
    void* place = memory->AllocPerm(sizeof(RCScanner_FileInfo));
    return new (place) RCScanner_FileInfo{incFile, nullptr, buffer, false};
}

void RCScanner_FileInfo::Free(PP_CMemoryManager* memory) {
    memory->FreeStringPerm(fCurrentFilename);
    memory->FreePerm(fBuffer);
    memory->FreePerm(this);
}

RCScanner::RCScanner(PP_CMemoryManager* memory, PP_CMacroTable* macroTable, RCSymbolTable* symbolTable)
    : PP_CPP(memory, macroTable), fSymbolTable(symbolTable) {
    macroTable->DefineSpecialMacro("__LINE__", AsMacroBody(&PP_CPP::DoLINE), false);
    macroTable->DefineSpecialMacro("__FILE__", AsMacroBody(&RCScanner::DoFILE), false);
    macroTable->DefineSpecialMacro("__DATE__", AsMacroBody(&PP_CPP::DoDATE), false);
    macroTable->DefineSpecialMacro("__TIME__", AsMacroBody(&PP_CPP::DoTIME), false);
    macroTable->DefineSpecialMacro("__VELOR__", AsMacroBody(&returnTrue), false);
    macroTable->DefineSpecialMacro("__MACINTOSH__", AsMacroBody(&returnTrue), false);
}

RCScanner::~RCScanner() {
    while (!AtEOF()) PopInput();
    fMemory->FreeStringPerm(fFilename);
}

// ---- Tokens ----

int RCScanner::NextToken() {
    for (;;) {
        int error = 0;
        fTokenType = GetNextToken(&error);
        if (error != 0) {
            Error(error, 0);
            fTokenType = kPPScan_None;
        }
        if (fTokenType != kPPScan_EOL && fTokenType != kPPScan_White && fTokenType != kPPScan_Comment) break;
    }
    // The last input is already released when its end is reported, so the end token has no text.
    fTokenText = fTokenType == kPPScan_EOF ? PP_CTextReader() : GetTokenText();
    fNArgs = 0;
    if (fTokenType == kPPScan_Ident) LookUpKeyword();
    return fTokenType;
}

void RCScanner::LookUpKeyword() {
    char const* text = fTokenText.GetReadPtr();
    size_t const length = fTokenText.Readable();
    for (RCKeyword const* row = gKeywordTable; row->fName != nullptr; ++row) {
        if (row->fName[0] == text[0] && std::strncmp(row->fName, text, length) == 0 && row->fName[length] == 0) {
            fTokenType = row->fToken;
            fNArgs = row->fArgCount;
            return;
        }
    }
}

bool RCScanner::Compare(PP_CTextReader word, char const* name) {
    size_t const length = word.Readable();
    if (length != std::strlen(name)) return false;
    char const* text = word.GetReadPtr();
    for (size_t i = 0; i < length; ++i)
        if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(name[i])))
            return false;
    return true;
}

bool RCScanner::Scan(int token) {
    if (fTokenType != token) return false;
    NextToken();
    return true;
}

bool RCScanner::Scan(int token, int errorId) {
    if (Scan(token)) return true;
    Error(errorId, 0);
    return false;
}

UniqueStruct* RCScanner::PeekName() const {
    if (fTokenType != kPPScan_Ident) return nullptr;
    return uniqueOf(fTokenText.GetReadPtr(), static_cast<long>(fTokenText.Readable()));
}

UniqueStruct* RCScanner::ScanName(int errorId) {
    UniqueStruct* name = PeekName();
    if (name == nullptr)
        Error(errorId, 0);
    else
        NextToken();
    return name;
}

namespace {

int ClosingBracket(int token) {
    switch (token) {
        case kPPScan_LParen: return kPPScan_RParen;
        case kPPScan_LBrace: return kPPScan_RBrace;
        case kPPScan_LCurly: return kPPScan_RCurly;
        default: return 0;
    }
}

}  // namespace

// Skips past `token`, stepping over bracketed groups as wholes, so that a `token` nested in
// brackets does not end the scan. The pending closers are kept on a stack of their own rather
// than in nested calls, so that deeply nested input cannot exhaust the process stack. True only if
// `token` was the current token on entry.
bool RCScanner::ScanUntil(int token) {
    std::vector<int> closers;
    bool first = true;
    for (;;) {
        int const t = fTokenType;
        if (t != kPPScan_EOF) NextToken();
        if (int const closer = ClosingBracket(t)) {
            closers.push_back(closer);
        } else if (closers.empty() && t == token) {
            return first;
        } else if (!closers.empty() && t == closers.back()) {
            closers.pop_back();
        } else if (t == kPPScan_EOF) {
            return false;
        }
        first = false;
    }
}

bool RCScanner::ScanUntil(int token, int errorId) {
    bool const found = ScanUntil(token);
    if (!found) Error(errorId, 0);
    return found;
}

// ---- Literals ----

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
        if (digit < 0 || digit >= base) break;
        value = value * static_cast<unsigned long>(base) + static_cast<unsigned long>(digit);
    }
    return static_cast<long>(value);
}

double RCScanner::EvalRealNumber() const {
    VELOR_ASSERT_TEXT("RCScanner::EvalRealNumber", fTokenType == kPPScan_Float || fTokenType == kPPScan_Double ||
                                                       fTokenType == kPPScan_LongDouble);
    std::string const text(fTokenText.GetReadPtr(), fTokenText.Readable());
    return std::atof(text.c_str());
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

void RCScanner::ReadTextBytes(char const* p, char const* limit, RCStringAppender& out) {
    bool const doubleByte = IsDoubleByteToken(fTokenType);
    while (p < limit && *p != '"') {
        unsigned char const c = *p;
        if (c == '\\') {
            ++p;
            out.PutByte(static_cast<char>(getCEscape(p, limit, false)));
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

// ---- Files ----

RCScanner_FileInfo* RCScanner::GetFileInfo(PP_CInput const* input) {
    return input->fFileInfo;
}

RCScanner_FileInfo* RCScanner::GetFileInfo() const {
    for (PP_CInput const* input = fInputSrc; !AtEOF(input); input = input->GetNext())
        if (RCScanner_FileInfo* info = GetFileInfo(input)) return info;
    return nullptr;
}

bool RCScanner::IsUTF8() const {
    RCScanner_FileInfo const* info = AtEOF() ? nullptr : GetFileInfo(fInputSrc);
    return info != nullptr && info->fIsUTF8;
}

PP_CInput* RCScanner::ReadFile(char const* name, bool angled) {
    IncFile* incFile = nullptr;
    if (!angled) {
        RCScanner_FileInfo const* info = GetFileInfo();
        if (info != nullptr && info->fIncFile != nullptr) incFile = info->fIncFile->Directory()->FindIncFile(name, false);
    }
    if (incFile == nullptr) incFile = gSearchPath->FindIncFile(name);
    if (incFile == nullptr) return nullptr;
    char path[kPathBufferSize] = {};
    incFile->ValidName(path, kPathBufferSize);
    return ReadFile(incFile, path);
}

PP_CInput* RCScanner::ReadFile(IncFile* incFile, char const* path) {
    unsigned long size = 0;
    char* buffer = ReadWholeFile(path, size);
    if (buffer == nullptr) return nullptr;
    return NewFileInput(incFile, buffer, size, path);
}

PP_CInput* RCScanner::ReadFile(char const* text, char const* name) {
    unsigned long const size = std::strlen(text);
    char* buffer = static_cast<char*>(fMemory->AllocPerm(size));
    std::memcpy(buffer, text, size);
    return NewFileInput(nullptr, buffer, size, name);
}

PP_CInput* RCScanner::NewFileInput(IncFile* incFile, char* buffer, unsigned long size, char const* name) {
    PP_CInput* input = fMemory->AllocInput(buffer, size);
    RCScanner_FileInfo* info = RCScanner_FileInfo::Alloc(fMemory, incFile, buffer);
    info->fCurrentFilename = fMemory->SaveStringPerm(name);
    input->fFileInfo = info;
    return input;
}

// The whole text of a file in one permanent buffer, or null if the file cannot be read entirely.
char* RCScanner::ReadWholeFile(char const* path, unsigned long& size) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return nullptr;
    char* buffer = nullptr;
    long const length = std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
    // A directory opens like a file but cannot be read; it is found out before its reported
    // length is taken for a size to allocate.
    bool const readable = length >= 0 && std::fseek(file, 0, SEEK_SET) == 0 &&
                          (std::fgetc(file) != EOF || !std::ferror(file)) && std::fseek(file, 0, SEEK_SET) == 0;
    if (readable) {
        size = static_cast<unsigned long>(length);
        buffer = static_cast<char*>(fMemory->AllocPerm(size));
        if (std::fread(buffer, 1, size, file) != size) {
            fMemory->FreePerm(buffer);
            buffer = nullptr;
        }
    }
    std::fclose(file);
    return buffer;
}

void RCScanner::FollowTopFilename() {
    fMemory->FreeStringPerm(fFilename);
    fFilename = fMemory->SaveStringPerm(GetFileInfo(fInputSrc)->fCurrentFilename);
}

void RCScanner::PushInput(PP_CInput* input) {
    PP_CPP::PushInput(input);
    RCScanner_FileInfo* info = GetFileInfo(input);
    if (info == nullptr) return;
    ++fOpenFiles;
    FollowTopFilename();
    int error = 0;
    info->fIsUTF8 = fScanner.ReadUTF8Signature(&error);
    if (error != 0) Error(error, 0);
}

void RCScanner::PopInput() {
    if (RCScanner_FileInfo* info = AtEOF() ? nullptr : GetFileInfo(fInputSrc)) {
        fLastLineno = static_cast<long>(GetLineno());
        info->Free(fMemory);
        --fOpenFiles;
    }
    PP_CPP::PopInput();
    if (!AtEOF() && GetFileInfo(fInputSrc) != nullptr) FollowTopFilename();
}

// ---- Directives ----

void RCScanner::DoIncludeLine(char* line) {
    if (line[0] == 0) {
        Error(kPPErr_IncludeWithoutName, 0);
        return;
    }
    char closer;
    if (line[0] == '"')
        closer = '"';
    else if (line[0] == '<')
        closer = '>';
    else {
        Error(kPPErr_IncludeBadName, 1, line);
        return;
    }
    char* to = line;
    for (char const* from = line + 1; *from != 0 && *from != closer; ++from) *to++ = *from;
    *to = 0;
    if (fOpenFiles >= kMaxOpenFiles || fIncludesStopped) {
        // A file that includes itself would stack copies of itself without end, and one that does
        // so twice would take exponential time. Past the limit no file is included any more, so
        // that the open files come to their ends, and the error ends the run after the statement.
        if (!fIncludesStopped) Error(kPPErr_IncludeNotFound, 1, line);
        fIncludesStopped = true;
        return;
    }
    if (PP_CInput* input = ReadFile(line, closer != '"'))
        PushInput(input);
    else
        Error(kPPErr_IncludeNotFound, 1, line);
}

// "#pragma velor writedescriptions on|off", its words in any case. Any other pragma is ignored
// without a word, and so is whatever follows the last word that was understood.
void RCScanner::DoPragmaLine() {
    char const* line = ReadLine();
    PP_CTextReader text(line, std::strlen(line));
    PP_CScanner words(&text);
    static char const* const kExpected[] = {"velor", "writedescriptions"};
    for (int state = 0;;) {
        int error = 0;
        int const token = words.GetNextToken(&error);
        if (token == kPPScan_White || token == kPPScan_Comment) continue;
        if (token == kPPScan_EOF) return;
        PP_CTextReader const word = words.GetTokenText();
        if (state < 2) {
            if (!Compare(word, kExpected[state])) return;
            ++state;
            continue;
        }
        if (Compare(word, "on"))
            gOptions->SetWriteDescriptions(true);
        else if (Compare(word, "off"))
            gOptions->SetWriteDescriptions(false);
        return;
    }
}

void RCScanner::DoErrorLine(char* line) {
    displayFileLine(this);
    Msgs::Display(Msgs::kError, "%s\n", line);
}

// #line renames the file for __FILE__ at once; messages keep the name of the file as it was
// opened until the next file is pushed or popped.
void RCScanner::DoSourceFileChange(unsigned long line, char const* name) {
    VELOR_ASSERT_TEXT("!AtEOF() && fInputSrc->fFileInfo != 0", !AtEOF() && fInputSrc->fFileInfo != nullptr);
    if (name[0] != 0) {
        RCScanner_FileInfo* info = GetFileInfo(fInputSrc);
        VELOR_ASSERT_TEXT("fileInfo->fCurrentFilename != 0", info->fCurrentFilename != nullptr);
        fMemory->FreeStringPerm(info->fCurrentFilename);
        info->fCurrentFilename = fMemory->SaveStringPerm(name);
    }
    PP_CPP::DoSourceFileChange(line, name);
}

PP_CTextReader RCScanner::DoSpecialMacro(void* body) {
    VELOR_ASSERT_TEXT("body != 0", body != nullptr);
    return reinterpret_cast<PP_CTextReader (*)(PP_CPP*)>(body)(this);
}

// __FILE__: the name of the nearest file in double quotes, backslashes turned into ':'.
PP_CTextReader RCScanner::DoFILE(PP_CPP* pp) {
    RCScanner* scanner = static_cast<RCScanner*>(pp);
    RCScanner_FileInfo const* info = scanner->GetFileInfo();
    VELOR_ASSERT_TEXT("pp->GetFileInfo() != 0", info != nullptr);
    size_t const length = std::strlen(info->fCurrentFilename) + 2;
    char* text = static_cast<char*>(scanner->fMemory->AllocTemp(length));
    text[0] = '"';
    std::memcpy(text + 1, info->fCurrentFilename, length - 2);
    text[length - 1] = '"';
    for (size_t i = 0; i < length; ++i)
        if (text[i] == '\\') text[i] = ':';
    return PP_CTextReader(text, length);
}

// ---- Messages ----

void RCScanner::Error(int code, int argCount, ...) {
    va_list arguments;
    va_start(arguments, argCount);
    displayFileLine(this);
    DisplayMessage(Msgs::kError, code, argCount, arguments);
    va_end(arguments);
}

void RCScanner::Warning(int code, int argCount, ...) {
    va_list arguments;
    va_start(arguments, argCount);
    displayFileLine(this);
    DisplayMessage(Msgs::kWarning, code, argCount, arguments);
    va_end(arguments);
}


// Codes below 43 index the preprocessor's own table, whose texts end in a line feed; the others
// are numbers of the tool's message table.
void RCScanner::DisplayMessage(unsigned char mask, int code, int argCount, va_list arguments) {
    if (code < 0 || code >= kPP_ErrMsgCount)
        Msgs::VDisplay(mask, arguments, code);
    else if (argCount == 0)
        Msgs::Display(mask, "%s\n", _sErrMsg[code]);
    else
        Msgs::VDisplay(mask, arguments, _sErrMsg[code]);
}

void displayFileLine(RCScanner* scanner) {
    long line = static_cast<long>(scanner->GetLineno());
    if (line == 0) line = scanner->LastLineno();
    std::fflush(stdout);
    std::fprintf(stderr, "File %s; Line %ld ", scanner->GetFilename(), line);
}
