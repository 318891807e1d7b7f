// The preprocessor as a token source: PP_CPP reads tokens from a stack of inputs, acts on
// directives and expands macros, and a concrete preprocessor supplies what only it knows.

#ifndef PPCPP_H
#define PPCPP_H

#include "PPCPPHlp.h"
#include "PPInput.h"
#include "PPMacTbl.h"
#include "PPScan.h"
#include "cpp5.h"

class PP_CPP;

// The function behind a special macro such as __LINE__; its answer is the macro's text.
using PP_SpecialMacroFunction = PP_CTextReader (*)(PP_CPP*);

// The preprocessor engine: a token source with no text output of its own. It owns the stack
// of inputs (files and macro expansions), acts on directives at the start of a line, keeps the
// conditional stack and hands every surviving token to its caller. A concrete preprocessor
// derives from it and supplies #include, the messages and the special macro call.
class PP_CPP {
public:
    enum IfState {
        kIfState_Base = 1,         // outside all conditionals
        kIfState_Searching = 16,   // no branch taken yet; this one is skipped
        kIfState_Taken = 17,       // this branch is copied
        kIfState_Done = 18,        // a branch was taken before, or the group lies in skipped text
        kIfState_ElseTaken = 33,   // in #else, copied
        kIfState_ElseSkipped = 34  // in #else, skipped
    };

    PP_CPP(PP_CMemoryManager* memory, PP_CMacroTable* macroTable);
    PP_CPP(PP_CPP const&) = delete;
    PP_CPP& operator=(PP_CPP const&) = delete;
    // A subclass pops all inputs before this runs.
    virtual ~PP_CPP();

    // The next token that survives directives and skipped text. Without `keepSpace`, white space,
    // comments and line ends are read past here, each one still counted as a request of its own,
    // as though the caller had asked for it and dropped it.
    int GetNextToken(int* error, bool keepSpace = true);
    virtual void DoIncludeLine(char* line) = 0;
    virtual void DoPragmaLine();
    virtual void DoErrorLine(char* line);
    virtual void DoLineLine(char* line);
    virtual void DoSourceFileChange(unsigned long line, char const* name);
    // The rest of the line as NUL-terminated text in temp memory, without macro expansion.
    virtual char* ReadLine();
    // The same with macros expanded.
    virtual char* ReadExpandedLine();
    virtual PP_CTextReader DoSpecialMacro(void* body);
    virtual void PushInput(PP_CInput* input);
    virtual void PopInput();
    // `code` indexes _sErrMsg below 43 and the tool's own table above; `argCount` texts follow.
    virtual void Error(int code, int argCount, ...) = 0;
    virtual void Warning(int code, int argCount, ...) = 0;
    virtual void SetLineno(unsigned long line, unsigned long charPos);
    virtual unsigned long GetLineno();
    virtual unsigned long GetCharPos();
    virtual unsigned long GetStartingLineno();
    virtual unsigned long GetTokenCount();

    PP_CTextReader GetTokenText() { return fHelper.GetTokenText(); }
    PP_CInput* GetInputSrc() const { return fInputSrc; }
    bool AtEOF() const { return AtEOF(fInputSrc); }
    bool AtEOF(PP_CInput const* input) const { return input == &fBaseInput; }
    // The base input is no file.
    bool InSourceText() const { return fInputSrc->fFileInfo != nullptr; }
    bool InMacroText() const { return !AtEOF() && fInputSrc->fFileInfo == nullptr; }
    bool CanCopyTokens() const { return (fIfStates[fIfDepth] & 1) != 0; }

    static PP_CTextReader DoLINE(PP_CPP* pp);
    static PP_CTextReader DoDATE(PP_CPP* pp);
    static PP_CTextReader DoTIME(PP_CPP* pp);

    static char const* const _sErrMsg[kPP_ErrMsgCount];

protected:
    void PushIfState(IfState state) { fIfStates[++fIfDepth] = state; }
    IfState GetIfState() const { return fIfStates[fIfDepth]; }
    void SetIfState(IfState state) { fIfStates[fIfDepth] = state; }
    void PopIfState() { --fIfDepth; }

    // Kept out of the token loop, whose frame stays small that way.
    [[gnu::noinline]] void DoPreprocessorLine();
    void DoIf(int kind);
    void DoElif();
    void DoElse();
    void DoEndif();
    bool IfCondition_Defined(int* error);
    bool IfCondition_Expr(int* error);

    PP_CScanner fScanner;
    PP_CPPHelper fHelper;
    PP_CInput* fInputSrc;
    PP_CMemoryManager* fMemory;
    PP_CMacroTable* fMacroTable;
    unsigned long fStartingLineno = 1;
    unsigned long fTokenCount = 0;
    bool fAtLineStart = true;
    PP_CInput fBaseInput;
    int fIfDepth = 0;
    IfState fIfStates[32];

private:
    static constexpr int kMaxIfDepth = 31;

    bool SkipPlainSeparator();
    int NextSurvivingToken(bool copying, int* error);
    void ReadExpandedTokens(PP_CWriterHelper& out, int* conditionError);
    void ReadDefinedOperand(PP_CWriterHelper& out, int* error);
    PP_CInput const* NearestFileBelowTop() const;
};

// The text of __VELOR__ and __MACINTOSH__.
PP_CTextReader returnTrue(PP_CPP* pp);

#endif
