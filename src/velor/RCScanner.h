// The scanner of the resource language: the preprocessor's tokens with keywords, literal values,
// files and the position of every message. The one token source the parsers use.
#pragma once

#include "PPCPP.h"

#include <cstdarg>

class IncFile;
class RCStringAppender;
class RCSymbolTable;
struct RCByteString;
struct UniqueStruct;

// Keyword tokens of the resource language. They continue the numbers of the character scanner's
// tokens, so the parsers test one number space.
enum RCScanToken {
    kRCScan_FnArrayIndex = 81,
    kRCScan_FnBitField,
    kRCScan_FnByte,
    kRCScan_FnCountOf,
    kRCScan_FnLong,
    kRCScan_FnWord,
    kRCScan_Align,
    kRCScan_Array,
    kRCScan_Auto,
    kRCScan_Bit,
    kRCScan_Bitstring,
    kRCScan_Binary,
    kRCScan_Boolean,
    kRCScan_Byte,
    kRCScan_Case,
    kRCScan_Char,
    kRCScan_Cstring,
    kRCScan_Decimal,
    kRCScan_Double,
    kRCScan_Fill,
    kRCScan_Hex,
    kRCScan_Icstring,
    kRCScan_Integer,
    kRCScan_Ipstring,
    kRCScan_Istring,
    kRCScan_Iwstring,
    kRCScan_Key,
    kRCScan_Literal,
    kRCScan_Long,
    kRCScan_Longint,
    kRCScan_Nibble,
    kRCScan_Octal,
    kRCScan_Pstring,
    kRCScan_Resource,
    kRCScan_Set,
    kRCScan_Single,
    kRCScan_Static,
    kRCScan_String,
    kRCScan_Switch,
    kRCScan_Type,
    kRCScan_Unsigned,
    kRCScan_Wide,
    kRCScan_Word,
    kRCScan_Wstring,
    kRCScan_End
};

struct RCKeyword {
    int fToken;
    char const* fName;
    int fArgCount;
};

// Rows in lookup order, ended by a row with a null name.
extern RCKeyword const gKeywordTable[];

// What the scanner knows about an input that came from a file (or from a text standing in for
// one). Lives in the arena's permanent memory until its input is popped.
struct RCScanner_FileInfo {
    IncFile* fIncFile;        // null for text that did not come from a file
    char* fCurrentFilename;   // the name __FILE__ shows; #line changes it
    char* fBuffer;            // the whole text, owned
    bool fIsUTF8;             // the text began with the UTF-8 signature

    static RCScanner_FileInfo* Alloc(PP_CMemoryManager* memory, IncFile* incFile, char* buffer);
    void Free(PP_CMemoryManager* memory);
};

// The preprocessor of the resource language and the only token source its parsers talk to: a
// current token with its text, keywords, the conversion of literals into values, the reading of
// files, and the position that every message of the language carries.
class RCScanner : public PP_CPP {
public:
    RCScanner(PP_CMemoryManager* memory, PP_CMacroTable* macroTable, RCSymbolTable* symbolTable);
    ~RCScanner() override;

    // Token access. The text is a view into the input, valid until the next NextToken.
    int NextToken();
    int TokenType() const { return fTokenType; }
    PP_CTextReader TokenText() const { return fTokenText; }
    int NArgs() const { return fNArgs; }
    bool Scan(int token);
    bool Scan(int token, int errorId);
    UniqueStruct* PeekName() const;
    // A word against a name: equal length, and equal bytes without regard to case.
    static bool Compare(PP_CTextReader word, char const* name);
    UniqueStruct* ScanName(int errorId);
    bool ScanUntil(int token);
    bool ScanUntil(int token, int errorId);

    // Conversion of the current literal token; defined in RCLiteral.cpp.
    long EvalNumber() const;
    double EvalRealNumber() const;
    long EvalChar(bool wide);
    bool MergeString(RCByteString& string);
    bool AppendString_1(RCByteString& string);
    bool AppendString_2(RCByteString& string);
    char const* FindDelimit(char const* text, int ch) const;
    // Where a literal conversion, or a look ahead of the current token, must stop reading. A
    // conversion follows the text as it stands and may run on behind its token (the wide walk of
    // FindDelimit does), but never past the input the token was read from, or past the token
    // itself when it came from elsewhere.
    char const* LiteralLimit() const;

    // Files. Each form gives an input ready for PushInput, or null.
    PP_CInput* ReadFile(char const* name, bool angled);
    PP_CInput* ReadFile(IncFile* incFile, char const* path);
    PP_CInput* ReadFile(char const* text, char const* name);
    RCScanner_FileInfo* GetFileInfo() const;
    static RCScanner_FileInfo* GetFileInfo(PP_CInput const* input);
    bool IsUTF8() const;

    RCSymbolTable* GetSymbolTable() const { return fSymbolTable; }
    char const* GetFilename() const { return fFilename; }
    long LastLineno() const { return fLastLineno; }

    // Messages carry "File NAME; Line N " in front of their text; neither stops anything.
    void Error(int code, int argCount, ...) override;
    void Warning(int code, int argCount, ...) override;
    void DisplayMessage(unsigned char mask, int code, int argCount, va_list arguments);

    void PushInput(PP_CInput* input) override;
    void PopInput() override;

protected:
    void DoIncludeLine(char* line) override;
    void DoPragmaLine() override;
    void DoErrorLine(char* line) override;
    void DoSourceFileChange(unsigned long line, char const* name) override;
    PP_CTextReader DoSpecialMacro(void* body) override;

private:
    static PP_CTextReader DoFILE(PP_CPP* pp);

    void FollowTopFilename();
    void LookUpKeyword();
    PP_CInput* NewFileInput(IncFile* incFile, char* buffer, unsigned long size, char const* name);
    char* ReadWholeFile(char const* path, unsigned long& size);

    bool AppendString(RCByteString& string, int width);
    bool ReadHexGroups(char const* p, char const* limit, int groupDigits, int partialError, RCStringAppender& out);
    void ReadTextBytes(char const* p, char const* limit, RCStringAppender& out);
    bool CopyCheckedUTF8(char const*& p, char const* limit, RCStringAppender& out);

    PP_CTextReader fTokenText;
    int fTokenType = kPPScan_EOF;
    int fNArgs = 0;
    RCSymbolTable* fSymbolTable;
    char* fFilename = nullptr;
    long fLastLineno = 0;
    int fOpenFiles = 0;             // inputs on the stack that came from files
    bool fIncludesStopped = false;  // the files nested too deep: no file is included any more
};

// Shows the position of a message: "File NAME; Line N " on the standard error, with no line end,
// so that the labelled message follows on the same line.
void displayFileLine(RCScanner* scanner);
