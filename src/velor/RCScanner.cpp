// The token loop of the resource language: the preprocessor's tokens with white space, comments
// and line ends dropped and identifiers turned into keywords, plus the reading of files, the
// directives that only this language knows, and the position in front of every message. The
// conversion of literal tokens into values lives in RCLiteral.cpp.

#include "RCScanner.h"

#include "Assertion.h"
#include "DependencyRecord.h"
#include "IncDir.h"
#include "Msgs.h"
#include "Options.h"
#include "SearchPath.h"
#include "UniqueNames.h"

#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstring>
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

namespace {

constexpr int kPathBufferSize = 1024;
// The deepest nesting of included files; the input file itself is the first of them.
constexpr int kMaxOpenFiles = 64;

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
    int error = 0;
    fTokenType = GetNextToken(&error, false);
    if (error != 0) {
        Error(error, 0);
        fTokenType = kPPScan_None;
    }
    // The last input is already released when its end is reported, so the end token has no text.
    fTokenText = fTokenType == kPPScan_EOF ? PP_CTextReader() : GetTokenText();
    fNArgs = 0;
    if (fTokenType == kPPScan_Ident) LookUpKeyword();
    return fTokenType;
}

namespace {

// The rows of the keyword table chained by the length and the first byte of their names, in table
// order, so that most identifiers are told apart from every keyword by two loads, and the rest are
// compared with the one or two keywords they could be.
class KeywordIndex {
public:
    KeywordIndex() {
        for (auto& heads : fHeads) heads.fill(kNone);
        fNext.fill(kNone);
        // The last row only ends the table.
        for (int row = static_cast<int>(std::size(gKeywordTable)) - 2; row >= 0; --row) {
            char const* name = gKeywordTable[row].fName;
            VELOR_ASSERT(std::strlen(name) <= kMaxLength);
            short& head = fHeads[std::strlen(name)][static_cast<unsigned char>(name[0])];
            fNext[static_cast<size_t>(row)] = head;
            head = static_cast<short>(row);
        }
    }

    RCKeyword const* Find(char const* text, size_t length) const {
        if (length == 0 || length > kMaxLength) return nullptr;
        for (short row = fHeads[length][static_cast<unsigned char>(text[0])]; row != kNone;
             row = fNext[static_cast<size_t>(row)])
            if (SameBytes(gKeywordTable[row].fName, text, length)) return &gKeywordTable[row];
        return nullptr;
    }

private:
    // Equal bytes, compared by two loads of a word each that overlap where the length is not
    // twice a word's, and never reach past `length`: a keyword is at most 15 bytes long.
    template <typename Word>
    static bool SameWords(char const* a, char const* b, size_t length) {
        Word a1, a2, b1, b2;
        std::memcpy(&a1, a, sizeof(Word));
        std::memcpy(&b1, b, sizeof(Word));
        std::memcpy(&a2, a + length - sizeof(Word), sizeof(Word));
        std::memcpy(&b2, b + length - sizeof(Word), sizeof(Word));
        return a1 == b1 && a2 == b2;
    }

    static bool SameBytes(char const* a, char const* b, size_t length) {
        if (length >= sizeof(std::uint64_t)) return SameWords<std::uint64_t>(a, b, length);
        if (length >= sizeof(std::uint32_t)) return SameWords<std::uint32_t>(a, b, length);
        for (size_t i = 0; i < length; ++i)
            if (a[i] != b[i]) return false;
        return true;
    }

    static constexpr size_t kMaxLength = 15;
    static constexpr short kNone = -1;
    std::array<std::array<short, 256>, kMaxLength + 1> fHeads;
    std::array<short, std::size(gKeywordTable)> fNext;
};

KeywordIndex const gKeywordIndex;

}  // namespace

void RCScanner::LookUpKeyword() {
    if (RCKeyword const* row = gKeywordIndex.Find(fTokenText.GetReadPtr(), fTokenText.Readable())) {
        fTokenType = row->fToken;
        fNArgs = row->fArgCount;
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
    // Inputs, included files and the files resources take their bytes from all come through here.
    if (gDependencies != nullptr) gDependencies->Note(path);
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

// Runs whenever an input is popped back to a file, mostly with the name unchanged.
void RCScanner::FollowTopFilename() {
    char const* name = GetFileInfo(fInputSrc)->fCurrentFilename;
    if (fFilename != nullptr && std::strcmp(fFilename, name) == 0) return;
    fMemory->FreeStringPerm(fFilename);
    fFilename = fMemory->SaveStringPerm(name);
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
