// The preprocessor engine's token loop: directives at the start of a line, the conditional
// stack, and macro calls expanded into temp text that is pushed as a further input.

#include "PPCPP.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "Assertion.h"
#include "PPExpr.h"

namespace {

bool beginsWithNoExpandMark(PP_CTextReader text) {
    return !text.IsEOF() && text.PeekChar() == kPP_MacroNoExpand;
}

PP_CTextReader readerOver(char const* text) { return PP_CTextReader(text, std::strlen(text)); }

// Formats the local date or time; each caller formats once, on first use, and keeps the text.
unsigned long formatNow(char* buffer, unsigned long size, char const* format) {
    std::time_t now = std::time(nullptr);
    return std::strftime(buffer, size, format, std::localtime(&now));
}

} // namespace

PP_CPP::PP_CPP(PP_CMemoryManager* memory, PP_CMacroTable* macroTable)
    : fScanner(nullptr),
      fHelper(this, memory, macroTable, &fScanner),
      fInputSrc(&fBaseInput),
      fMemory(memory),
      fMacroTable(macroTable),
      fBaseInput(nullptr, 0) {
    fIfStates[0] = kIfState_Base;
}

PP_CPP::~PP_CPP() {
    fMacroTable->ReleaseMacros();
    fMemory->ReleaseInput();
    fMemory->ReleaseTemp();
}

int PP_CPP::GetNextToken(int* error, bool keepSpace) {
    for (;;) {
        ++fTokenCount;
        bool const copying = CanCopyTokens();
        // Blanks and line ends in copied text would come back unchanged through every layer, so
        // a caller that drops them has them taken right here, each run as a request of its own.
        // Taking them changes no conditional state.
        if (!keepSpace && copying) {
            while (SkipPlainSeparator())
                ++fTokenCount;
        }
        if (InSourceText())
            fStartingLineno = fScanner.GetLineno();
        int token = NextSurvivingToken(copying, error);
        if (keepSpace || *error != 0 || !isSpaceToken(token))
            return token;
    }
}

// The white space or line end token that would be read at the cursor, taken without the layers
// below when it begins right there.
bool PP_CPP::SkipPlainSeparator() {
    switch (fScanner.SkipPlainSeparator()) {
    case kPPScan_None: return false;
    case kPPScan_EOL: fAtLineStart = true; break;
    }
    return true;
}

// Directives and the ends of inputs never reach the caller, except the end of the last input.
// The no-expand mark is a byte of no class, so only a token of kPPScan_Other can begin with it;
// such a token is dropped. `copying` says whether text is copied: only a directive changes it.
inline int PP_CPP::NextSurvivingToken(bool copying, int* error) {
    for (;; copying = CanCopyTokens()) {
        int token;
        if (copying) {
            token = fHelper.GetCookedToken(error);
            if (*error != 0)
                return token;
        } else {
            // An error in skipped text is dropped; the next read clears it.
            token = fHelper.GetRawToken(error);
        }
        switch (token) {
        case kPPScan_EOF:
            fAtLineStart = true;
            PopInput();
            if (AtEOF())
                return token;
            continue;
        case kPPScan_EOL:
            fAtLineStart = true;
            break;
        case kPPScan_White:
        case kPPScan_Comment: break;
        case kPPScan_Pound:
            if (fAtLineStart) {
                DoPreprocessorLine();
                continue;
            }
            fAtLineStart = false;
            break;
        case kPPScan_Other:
            fAtLineStart = false;
            if (beginsWithNoExpandMark(GetTokenText()))
                continue;
            break;
        default: fAtLineStart = false;
        }
        if (copying)
            return token;
    }
}

// directive-line = "#" [ directive-word rest-of-line ] end-of-line
void PP_CPP::DoPreprocessorLine() {
    fHelper.SkipCommentsToEOL();
    int error;
    int token = fHelper.GetRawToken(&error);
    if (token == kPPScan_Ident)
        token = lookupPoundName(GetTokenText());
    switch (token) {
    case kPPScan_EOL: return;
    case kPPDir_If:
    case kPPDir_Ifndef:
    case kPPDir_Ifdef: DoIf(token); return;
    case kPPDir_Elif: DoElif(); return;
    case kPPDir_Else: DoElse(); return;
    case kPPDir_Endif: DoEndif(); return;
    // #line acts in skipped text too, and its operands are not expanded.
    case kPPDir_Line: DoLineLine(ReadLine()); return;
    }
    if (!CanCopyTokens()) {
        fHelper.SkipTokensAndEOL();
        return;
    }
    switch (token) {
    case kPPDir_Define: fHelper.DoDefine(); break;
    case kPPDir_Undef: fHelper.DoUndef(); break;
    case kPPDir_Include: DoIncludeLine(ReadExpandedLine()); break;
    case kPPDir_Error: DoErrorLine(ReadLine()); break;
    case kPPDir_Pragma: DoPragmaLine(); break;
    default:
        Error(kPPErr_UnknownDirective, 0);
        fHelper.SkipTokensAndEOL();
    }
}

// if-line = ( "#if" constant-expression | "#ifdef" name | "#ifndef" name ) end-of-line
// A group opened past the depth limit is not pushed, so its #endif closes the enclosing one.
// `#ifdef NAME` reads just the name: what follows it on the line stays source text.
void PP_CPP::DoIf(int kind) {
    if (fIfDepth == kMaxIfDepth) {
        Error(kPPErr_IfNestedTooDeep, 0);
        fHelper.SkipTokensAndEOL();
        return;
    }
    if (!CanCopyTokens()) {
        PushIfState(kIfState_Done);
        fHelper.SkipTokensAndEOL();
        return;
    }
    int error = kPPErr_None;
    bool condition = false;
    switch (kind) {
    case kPPDir_If: condition = IfCondition_Expr(&error); break;
    case kPPDir_Ifndef: condition = !IfCondition_Defined(&error); break;
    case kPPDir_Ifdef: condition = IfCondition_Defined(&error); break;
    default: VELOR_ASSERT(false);
    }
    if (error != kPPErr_None) {
        Error(error, 0);
        PushIfState(kIfState_Done);
        return;
    }
    PushIfState(condition ? kIfState_Taken : kIfState_Searching);
}

// elif-line = "#elif" constant-expression end-of-line
void PP_CPP::DoElif() {
    switch (GetIfState()) {
    case kIfState_Searching: {
        int error = kPPErr_None;
        bool condition = IfCondition_Expr(&error);
        if (error != kPPErr_None) {
            Error(error, 0);
            SetIfState(kIfState_Done);
        } else if (condition) {
            SetIfState(kIfState_Taken);
        }
        return;
    }
    case kIfState_Taken:
    case kIfState_Done: SetIfState(kIfState_Done); break;
    default: Error(kPPErr_ElifWithoutIf, 0);
    }
    fHelper.SkipTokensAndEOL();
}

void PP_CPP::DoElse() {
    fHelper.SkipTokensAndEOL();
    switch (GetIfState()) {
    case kIfState_Searching: SetIfState(kIfState_ElseTaken); break;
    case kIfState_Taken:
    case kIfState_Done: SetIfState(kIfState_ElseSkipped); break;
    default: Error(kPPErr_ElseWithoutIf, 0);
    }
}

void PP_CPP::DoEndif() {
    fHelper.SkipTokensAndEOL();
    if (GetIfState() == kIfState_Base)
        Error(kPPErr_EndifWithoutIf, 0);
    else if (fIfDepth > 0)
        PopIfState();
}

bool PP_CPP::IfCondition_Defined(int* error) {
    *error = kPPErr_None;
    fHelper.SkipCommentsToEOL();
    if (!isident(fHelper.CookedPeekChar())) {
        *error = kPPErr_DefinedWithoutName;
        return false;
    }
    fHelper.GetRawToken(error);
    if (*error != kPPErr_None)
        return false;
    PP_CTextReader name = GetTokenText();
    return fMacroTable->IsMacroDefined(name.GetReadPtr(), name.Readable());
}

// Builds the condition as text, macros expanded and `defined` replaced by 0 or 1, and has it
// evaluated.
bool PP_CPP::IfCondition_Expr(int* error) {
    *error = kPPErr_None;
    PP_CTextWriter writer(nullptr, 0);
    PP_CWriterTemp out(fMemory, &writer);
    ReadExpandedTokens(out, error);
    if (*error != kPPErr_None)
        return false;
    PP_CExpr expression(writer.GetStart());
    return expression.Eval(error);
}

// Writes the rest of the line with macros expanded and NUL-terminated, one blank standing for
// the space between two tokens. A plain line ends at its file's end; a condition (given an
// error code to set) reads on, and in it an identifier leaves `first` as it is, so that the
// space between two leading identifiers is lost: `#if A B` reads as `AB`.
void PP_CPP::ReadExpandedTokens(PP_CWriterHelper& out, int* conditionError) {
    bool const forCondition = conditionError != nullptr;
    bool first = true;
    bool space = false;
    for (;;) {
        int scanError;
        int token = fHelper.GetCookedToken(&scanError);
        if (token == kPPScan_EOF) {
            if (!forCondition && !InMacroText())
                break;
            PopInput();
            if (AtEOF())
                break;
            continue;
        }
        if (token == kPPScan_EOL)
            break;
        if (token == kPPScan_White || token == kPPScan_Comment) {
            space = space || !first;
            continue;
        }
        PP_CTextReader text = GetTokenText();
        if (forCondition && token == kPPScan_Ident) {
            if (space)
                out.AddChar(' ');
            if (text.Readable() == 7 && std::memcmp(text.GetReadPtr(), "defined", 7) == 0)
                ReadDefinedOperand(out, conditionError);
            else
                out.AddText(text);
            continue;
        }
        if (!beginsWithNoExpandMark(text)) {
            if (space)
                out.AddChar(' ');
            out.AddText(text);
        }
        first = false;
        space = false;
    }
    out.AddChar(0);
}

// defined-operand = name | "(" name ")"
// The operand of `defined`, with or without parentheses; it is not macro-expanded. A missing
// name leaves the token that was read in its place consumed, even a line end.
void PP_CPP::ReadDefinedOperand(PP_CWriterHelper& out, int* error) {
    int scanError;
    fHelper.SkipCommentsToEOL();
    int token = fHelper.GetRawToken(&scanError);
    bool const parenthesised = token == kPPScan_LParen;
    if (parenthesised) {
        fHelper.SkipCommentsToEOL();
        token = fHelper.GetRawToken(&scanError);
    }
    if (token != kPPScan_Ident) {
        *error = kPPErr_DefinedWithoutName;
        return;
    }
    PP_CTextReader name = GetTokenText();
    out.AddChar(fMacroTable->IsMacroDefined(name.GetReadPtr(), name.Readable()) ? '1' : '0');
    if (parenthesised) {
        fHelper.SkipCommentsToEOL();
        if (fHelper.CookedPeekChar() == ')')
            fHelper.CookedGetChar();
        else
            *error = kPPErr_BadExpression;
    }
}

void PP_CPP::DoPragmaLine() { ReadLine(); }

void PP_CPP::DoErrorLine(char*) {}

// line-line = "#line" number [ string ] end-of-line
void PP_CPP::DoLineLine(char* line) {
    VELOR_ASSERT(InSourceText());
    char* name = static_cast<char*>(fMemory->AllocTemp(std::strlen(line) + 1));
    name[0] = 0;
    unsigned long lineNumber = 0;
    std::sscanf(line, " %lu \"%[^\"]", &lineNumber, name);
    // Every backslash goes, whatever follows it.
    char* kept = name;
    for (char const* c = name; *c != 0; ++c) {
        if (*c != '\\')
            *kept++ = *c;
    }
    *kept = 0;
    DoSourceFileChange(lineNumber, name);
}

void PP_CPP::DoSourceFileChange(unsigned long line, char const*) { SetLineno(line, 0); }

// The line end is taken with CookedGetChar, which does not count a lone LF: after a directive
// read this way in a file with LF line ends the line count stays one behind. It is kept so.
char* PP_CPP::ReadLine() {
    PP_CTextWriter writer(nullptr, 0);
    PP_CWriterTemp out(fMemory, &writer);
    for (;;) {
        if (fHelper.SkipCommentsToEOL())
            out.AddChar(' ');
        int c = fHelper.CookedPeekChar();
        if (c == -1)
            break;
        if (isEOL(c)) {
            fHelper.CookedGetChar();
            break;
        }
        int error;
        fHelper.GetRawToken(&error);
        out.AddText(GetTokenText());
    }
    out.AddChar(0);
    return writer.GetStart();
}

char* PP_CPP::ReadExpandedLine() {
    PP_CTextWriter writer(nullptr, 0);
    PP_CWriterTemp out(fMemory, &writer);
    ReadExpandedTokens(out, nullptr);
    return writer.GetStart();
}

PP_CTextReader PP_CPP::DoSpecialMacro(void*) { return PP_CTextReader(); }

void PP_CPP::PushInput(PP_CInput* src) {
    if (InSourceText()) {
        fInputSrc->fSavedLineno = fScanner.GetLineno();
        fInputSrc->fSavedCharPos = fScanner.GetCharPos();
    }
    VELOR_ASSERT_TEXT("src != 0", src != nullptr);
    src->SetNext(fInputSrc);
    fInputSrc = src;
    fScanner.SetCurrentInput(src);
    fScanner.SetLineno(1);
    fScanner.SetCharPos(0);
}

// Back on a file with no temp text in use, all temp memory is reclaimed: this is the one place
// where that happens.
void PP_CPP::PopInput() {
    if (AtEOF()) {
        if (fIfDepth != 0 || GetIfState() != kIfState_Base)
            Error(kPPErr_EOFInsideIf, 0);
        return;
    }
    bool const poppedFile = InSourceText();
    PP_CInput* popped = fInputSrc;
    fInputSrc = popped->GetNext();
    fScanner.SetCurrentInput(fInputSrc);
    fMemory->FreeInput(popped);
    if (!InSourceText())
        return;
    fScanner.SetLineno(fInputSrc->fSavedLineno);
    fScanner.SetCharPos(fInputSrc->fSavedCharPos);
    if (poppedFile)
        fStartingLineno = fInputSrc->fSavedLineno;
    if (!fMemory->IsTempMemInUse())
        fMemory->FreeTemp();
}

void PP_CPP::SetLineno(unsigned long line, unsigned long charPos) {
    fStartingLineno = line;
    fScanner.SetLineno(line);
    fScanner.SetCharPos(charPos);
}

// While macro text lies on top, the file below it holds the position in its saved fields. Macro
// text that outlives its file (a call still open at the end of the input, asked for a position by
// its message) has none: that is a defined stop on the assertion, not a position of 0.
PP_CInput const* PP_CPP::NearestFileBelowTop() const {
    PP_CInput const* input = fInputSrc->GetNext();
    while (input != nullptr && input->fFileInfo == nullptr)
        input = input->GetNext();
    VELOR_ASSERT_TEXT("false", input != nullptr);
    return input;
}

unsigned long PP_CPP::GetLineno() {
    if (AtEOF())
        return 0;
    return InSourceText() ? fScanner.GetLineno() : NearestFileBelowTop()->fSavedLineno;
}

unsigned long PP_CPP::GetCharPos() {
    if (AtEOF())
        return 0;
    return InSourceText() ? fScanner.GetCharPos() : NearestFileBelowTop()->fSavedCharPos;
}

unsigned long PP_CPP::GetStartingLineno() { return fStartingLineno; }

unsigned long PP_CPP::GetTokenCount() { return fTokenCount; }

PP_CTextReader PP_CPP::DoLINE(PP_CPP* pp) {
    static char line[12];
    std::snprintf(line, sizeof line, "%lu", pp->GetLineno());
    return readerOver(line);
}

PP_CTextReader PP_CPP::DoDATE(PP_CPP*) {
    static char date[16];
    static unsigned long const length = formatNow(date, sizeof date, "\"%x\"");
    return PP_CTextReader(date, length);
}

PP_CTextReader PP_CPP::DoTIME(PP_CPP*) {
    static char time[32];
    static unsigned long const length = formatNow(time, sizeof time, "\"%X\"");
    return PP_CTextReader(time, length);
}

PP_CTextReader returnTrue(PP_CPP*) { return readerOver("1"); }
