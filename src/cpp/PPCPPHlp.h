// The macro machinery of the preprocessor, kept apart from the directive loop of PP_CPP.

#ifndef PPCPPHLP_H
#define PPCPPHLP_H

#include <vector>

#include "PPExpansion.h"
#include "PPMacTbl.h"
#include "PPScan.h"
#include "PPText.h"

class PP_CPP;

// The macro machinery of the preprocessor: #define and #undef, the preparation of replacement
// text, and expansion. Expansion is text to text: a call is expanded completely, everything
// inside it expanded recursively, and the result copied to temp memory and pushed as a new
// input. The texts between the levels are PP_CExpansionText, which go as soon as they are used.
class PP_CPPHelper {
public:
    PP_CPPHelper(PP_CPP* pp, PP_CMemoryManager* memory, PP_CMacroTable* macroTable, PP_CScanner* scanner);
    PP_CPPHelper(PP_CPPHelper const&) = delete;
    PP_CPPHelper& operator=(PP_CPPHelper const&) = delete;
    ~PP_CPPHelper();

    // The expansion work a file may spend: the allowance, and as much again per call read from
    // the input. Settable so that a harness running many files under instrumentation can ask less.
    static unsigned long fgExpansionAllowance;
    static unsigned long fgExpansionWorkPerCall;

    int GetRawToken(int* error) { return fCurScanner->GetNextToken(error); }
    PP_CTextReader GetTokenText() { return fCurScanner->GetTokenText(); }
    int CookedPeekChar() { return fCurScanner->CookedPeekChar(); }
    int CookedGetChar() { return fCurScanner->CookedGetChar(); }
    void SkipChar() { fCurScanner->SkipChar(); }
    // The next token with macro calls resolved. Only an identifier goes further than the scanner.
    int GetCookedToken(int* error) {
        int token = GetRawToken(error);
        return MayCallMacro(token, *error) ? ExpandIdentifier(error) : token;
    }

    static bool HasBeenExpanded(PP_MacroBody* body, PP_MacroLink* link);
    // `source` is the text that `scanner` reads, or null when it reads the input stack.
    PP_CExpansionText ExpandMacroBody(PP_CScanner* scanner, PP_CExpansionText const* source, PP_MacroBody* body,
                                      PP_MacroLink* link, bool* expanded, bool allowPop);
    PP_CExpansionText ExpandSpecialMacro(PP_MacroBody* body, PP_MacroLink* link);
    PP_CExpansionText ExpandObjectMacro(PP_MacroBody* body, PP_MacroLink* link);
    PP_CExpansionText ExpandFunctionMacro(PP_CScanner* scanner, PP_CExpansionText const* source, PP_MacroBody* body,
                                          PP_MacroLink* link, bool allowPop);
    PP_CExpansionText ExpandMacroText(PP_CExpansionText const& text, PP_MacroLink* link);
    std::vector<PP_CExpansionText> GetMacroActuals(PP_CScanner* scanner, PP_CExpansionText const* source,
                                                   PP_MacroBody* body, bool allowPop);
    std::vector<PP_CExpansionText> ExpandActuals(std::vector<PP_CExpansionText> const& actuals, PP_MacroLink* link);
    void Stringize(PP_CExpansionBuilder& out, PP_CTextReader text);

    // Both are called with the scanner just behind the directive's word.
    void DoDefine();
    void DoUndef();
    void DefineFunctionMacro(PP_MacroBody* body);
    // These answer a message code, 0 for success.
    int DefineObjectMacro(PP_MacroBody* body);
    int ReadMacroFormals(char** formals, short* count);
    int ReadMacroText(char const* formals, char** text);

    // Skips blanks and comments but not the line end; true if anything was skipped.
    bool SkipCommentsToEOL();
    // Reads raw tokens up to and including the line end or the end of input.
    void SkipTokensAndEOL();

private:
    // Most names are told from every macro by the table's first test, here, without a call. That
    // test comes before the look for a no-expand mark behind the name, which has no effect: the
    // scanner never leaves the cursor on a continuation behind a name.
    bool MayCallMacro(int token, int error) {
        if (token != kPPScan_Ident || error != 0 || fExpansionStopped)
            return false;
        PP_CTextReader const name = GetTokenText();
        return fMacroTable->MayHold(name.GetReadPtr(), name.Readable());
    }
    // The macro that an identifier calls if it is defined, else null.
    PP_MacroBody* DefinedMacro(PP_CTextReader name);
    // The scanner has just read an identifier: expands it and what its expansion begins with.
    int ExpandIdentifier(int* error);
    bool AtLineEnd();
    bool NextBodyToken(int* token, int* code);
    bool SkipToCallParenthesis(PP_CScanner* scanner, bool allowPop);
    PP_CExpansionText NameStandingForItself(PP_MacroBody* body, bool sawSpace);
    void PasteActual(PP_CExpansionBuilder& out, PP_CExpansionText const& actual);
    char* CopyToScratch(PP_CTextReader text);
    // The checks at the start of an expansion of `bytes` of text: the depth and the budget.
    void EnterExpansion(unsigned long bytes);
    // Reports "expression too complex" once and expands no macro of the file from then on.
    void StopExpansion();
    // Counts bytes scanned or copied by expansion, and stops it once the budget is spent.
    void ChargeExpansion(unsigned long bytes);

    PP_CPP* fPP;
    PP_CMemoryManager* fMemory;
    PP_CMacroTable* fMacroTable;
    PP_CScanner* fCurScanner;
    PP_CTextWriter fScratch{nullptr, 0};
    PP_CWriterPerm fScratchWriter{fMemory, &fScratch};
    int fExpansionDepth = 0;       // calls of ExpandMacroText under way
    bool fExpansionStopped = false;  // a nest went too deep: no macro is expanded any more
    unsigned long fExpansionWork = 0;    // bytes that expansion has scanned or copied in this file
    unsigned long fExpansionBudget;      // what it may spend, which grows with the calls read
};

#endif
