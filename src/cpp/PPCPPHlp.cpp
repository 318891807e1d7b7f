// #define, #undef and macro expansion. A body is prepared once into text with control bytes for
// its parameters, and a call is expanded text to text; only the finished text goes to temp memory.

#include "PPCPPHlp.h"

#include <cstring>
#include <new>

#include "Assertion.h"
#include "PPCPP.h"
#include "PPInput.h"
#include "cpp5.h"

namespace {

// Expansion recurses on the machine stack once for every macro nested in another's text or
// arguments. A nest deeper than this is an error, and from then on no macro of the file is
// expanded: the stack is spared, the texts already begun are finished unexpanded, and the run
// ends at the next statement.
constexpr int kMaxExpansionDepth = 256;

// Within that depth a short text can still cost without bound: a nest of calls rescans its
// arguments at every level, and a body that uses its parameter twice doubles the text at each.
// So the bytes that expansion scans and copies are counted against a budget for the file (see
// fgExpansionAllowance).

bool isWord(PP_CTextReader text, char const* word) {
    unsigned long length = std::strlen(word);
    return text.Readable() == length && std::memcmp(text.GetReadPtr(), word, length) == 0;
}

bool endsInIdentChar(PP_CTextReader text) {
    return text.Readable() != 0 && isidentchar(static_cast<unsigned char>(text.GetReadPtr()[text.Readable() - 1]));
}

// Adds the current token of `scanner`, which reads `source` (null: the input stack, whose texts
// outlive the expansion). A token with continuation lines removed lies in the scanner's own
// buffer, which the next such token reuses, and is copied.
void addToken(PP_CExpansionBuilder& out, PP_CScanner& scanner, PP_CExpansionText const* source) {
    if (scanner.TokenTextIsCooked())
        out.AddText(scanner.GetTokenText());
    else
        out.AddStretch(source, scanner.GetTokenText());
}

// Whether expansion could make `text` other than it is: only a name can be expanded, only a
// backslash can begin a continuation to remove, and a NUL reads as the end of the text. Text
// without any of them comes out of the scan token by token as it went in.
bool mayChangeInExpansion(PP_CTextReader text) {
    char const* const end = text.GetReadPtr() + text.Readable();
    for (char const* p = text.GetReadPtr(); p != end; ++p) {
        int const c = static_cast<unsigned char>(*p);
        if (isident(c) || c == kPPChar_Backslash || c == 0)
            return true;
    }
    return false;
}

// The tokens that expansion passes on as they stand, gathered into one stretch while each lies
// right behind the last in the text read: text dense with short tokens is then added a run at a
// time instead of a token at a time. The run is flushed before anything else is added.
class PlainRun {
public:
    PlainRun(PP_CExpansionBuilder& out, PP_CExpansionText const* source) : fOut(out), fSource(source) {}

    // Adds the current token of `scanner`, which reads the source.
    void AddToken(PP_CScanner& scanner) {
        PP_CTextReader const token = scanner.GetTokenText();
        if (scanner.TokenTextIsCooked()) {
            Flush();
            fOut.AddText(token);
            return;
        }
        if (token.GetReadPtr() != fEnd) {
            Flush();
            fStart = token.GetReadPtr();
        }
        fEnd = token.GetReadPtr() + token.Readable();
    }

    void Flush() {
        if (fStart != fEnd)
            fOut.AddStretch(fSource, PP_CTextReader(fStart, static_cast<unsigned long>(fEnd - fStart)));
        fStart = fEnd = nullptr;
    }

private:
    PP_CExpansionBuilder& fOut;
    PP_CExpansionText const* fSource;
    char const* fStart = nullptr;
    char const* fEnd = nullptr;
};

// Whether prepared object-like text expands to itself: expansion copies it token by token, and
// with no identifier among them and no continuation to remove, the copy is the text.
bool expandsToItself(char const* text) {
    PP_CTextReader reader(text, std::strlen(text));
    PP_CScanner scanner(&reader);
    for (;;) {
        int error;
        int token = scanner.GetNextToken(&error);
        if (token == kPPScan_EOF)
            return true;
        if (token == kPPScan_Ident || scanner.TokenTextIsCooked())
            return false;
    }
}

// Reads the index byte behind a kPP_MacroParam. A NUL there ends the text and is not passed.
unsigned paramIndex(char const*& textPtr, PP_MacroBody const* aMacroBody) {
    unsigned char indexByte = static_cast<unsigned char>(*textPtr);
    if (indexByte != 0)
        ++textPtr;
    unsigned formalIndex = static_cast<unsigned char>(indexByte - kPP_MacroIndexBias);
    VELOR_ASSERT_TEXT("formalIndex < aMacroBody->fParamCount",
                      formalIndex < static_cast<unsigned>(aMacroBody->fParamCount));
    return formalIndex;
}

// The position of `name` in a comma-separated list of formals, or -1.
int formalIndex(char const* formals, PP_CTextReader name) {
    unsigned long length = name.Readable();
    int index = 0;
    for (char const* formal = formals;; ++index) {
        if (std::strncmp(formal, name.GetReadPtr(), length) == 0 && (formal[length] == 0 || formal[length] == ','))
            return index;
        formal = std::strchr(formal, ',');
        if (formal == nullptr)
            return -1;
        ++formal;
    }
}

} // namespace

// A fixed allowance far above what real descriptions spend (a file that expands a 2 KB macro ten
// thousand times spends 20 MB), and a further one for every call read from the input, so that the
// budget grows with the input. Past it the file ends as a too deep nest does. At these figures the
// costliest input ends within seconds.
unsigned long PP_CPPHelper::fgExpansionAllowance = 256UL << 20;
unsigned long PP_CPPHelper::fgExpansionWorkPerCall = 4UL << 10;

PP_CPPHelper::PP_CPPHelper(PP_CPP* pp, PP_CMemoryManager* memory, PP_CMacroTable* macroTable, PP_CScanner* scanner)
    : fPP(pp), fMemory(memory), fMacroTable(macroTable), fCurScanner(scanner),
      fExpansionBudget(fgExpansionAllowance) {}

PP_CPPHelper::~PP_CPPHelper() { fMemory->FreePerm(fScratch.GetStart()); }

int PP_CPPHelper::ExpandIdentifier(int* error) {
    int token = kPPScan_Ident;
    do {
        if (CookedPeekChar() == kPP_MacroNoExpand)
            return token;
        PP_MacroBody* body = DefinedMacro(GetTokenText());
        if (body == nullptr)
            return token;
        PP_MacroLink* link = fPP->GetInputSrc()->fMacroLink;
        if (HasBeenExpanded(body, link))
            return token;
        bool expanded;
        fExpansionBudget += fgExpansionWorkPerCall;
        PP_CExpansionText const expansion = ExpandMacroBody(fCurScanner, nullptr, body, link, &expanded, true);
        PP_CTextReader const text = expansion.Reader();
        // The new input lives in temp memory until it is popped; the expansion's texts go now.
        char* copy = static_cast<char*>(fMemory->AllocTemp(text.Readable() + 1));
        if (text.Readable() != 0)
            std::memcpy(copy, text.GetReadPtr(), text.Readable());
        // The new input carries the chain of the text around the call, not this macro.
        PP_CInput* input = fMemory->AllocInput(copy, text.Readable());
        input->fMacroLink = link;
        fPP->PushInput(input);
        token = GetRawToken(error);
        if (!expanded)
            return token;
    } while (MayCallMacro(token, *error));
    return token;
}

PP_MacroBody* PP_CPPHelper::DefinedMacro(PP_CTextReader name) {
    if (!fMacroTable->MayHold(name.GetReadPtr(), name.Readable()))
        return nullptr;
    PP_MacroBody* body = fMacroTable->LookupMacro(name.GetReadPtr(), name.Readable());
    return body != nullptr && body->fMacroText != nullptr ? body : nullptr;
}

bool PP_CPPHelper::HasBeenExpanded(PP_MacroBody* body, PP_MacroLink* link) {
    for (; link != nullptr; link = link->fNext) {
        if (link->fBody == body)
            return true;
    }
    return false;
}

PP_CExpansionText PP_CPPHelper::ExpandMacroBody(PP_CScanner* scanner, PP_CExpansionText const* source,
                                                PP_MacroBody* body, PP_MacroLink* link, bool* expanded,
                                                bool allowPop) {
    *expanded = true;
    switch (body->fMacroType) {
    case kPP_MacroSpecial: return ExpandSpecialMacro(body, link);
    case kPP_MacroObject: return ExpandObjectMacro(body, link);
    case kPP_MacroFunction: break;
    default: VELOR_ASSERT(false);
    }
    bool sawSpace = SkipToCallParenthesis(scanner, allowPop);
    if (scanner->CookedPeekChar() == '(')
        return ExpandFunctionMacro(scanner, source, body, link, allowPop);
    *expanded = false;
    return NameStandingForItself(body, sawSpace);
}

// Crosses white space, comments and line ends between a function-like name and its '('. With
// `allowPop` the search also leaves the end of macro text and of an included file.
bool PP_CPPHelper::SkipToCallParenthesis(PP_CScanner* scanner, bool allowPop) {
    bool sawSpace = false;
    for (;;) {
        bool skippedBlanks = scanner->SkipBlanksToEOL();
        bool skippedComment = scanner->SkipComment();
        if (skippedBlanks || skippedComment) {
            sawSpace = true;
            continue;
        }
        int c = scanner->CookedPeekChar();
        if (isEOL(c)) {
            sawSpace = true;
            scanner->SkipChar();
            continue;
        }
        if (c != -1 || !allowPop || fPP->AtEOF())
            return sawSpace;
        fPP->PopInput();
        if (!fPP->AtEOF()) {
            PP_CInput* top = fPP->GetInputSrc();
            scanner->SetLineno(top->fSavedLineno);
            scanner->SetCharPos(top->fSavedCharPos);
        }
    }
}

// A function-like name without a call. One blank stands for whatever space was skipped.
PP_CExpansionText PP_CPPHelper::NameStandingForItself(PP_MacroBody* body, bool sawSpace) {
    PP_CExpansionBuilder out;
    out.AddText(PP_CTextReader(body->fName, std::strlen(body->fName)));
    if (sawSpace)
        out.AddChar(' ');
    return out.Take();
}

// A special macro's text is its function's answer and is not rescanned. The answer may lie in a
// buffer that the next call of the function overwrites, so it is copied.
PP_CExpansionText PP_CPPHelper::ExpandSpecialMacro(PP_MacroBody* body, PP_MacroLink*) {
    return PP_CExpansionText::Copy(fPP->DoSpecialMacro(body->fMacroText));
}

PP_CExpansionText PP_CPPHelper::ExpandObjectMacro(PP_MacroBody* body, PP_MacroLink* link) {
    using SelfExpansion = PP_MacroBody::SelfExpansion;
    PP_CExpansionText const text = PP_CExpansionText::Stable(PP_CTextReader(body->fMacroText, std::strlen(body->fMacroText)));
    if (body->fSelfExpansion == SelfExpansion::kUnknown)
        body->fSelfExpansion = expandsToItself(body->fMacroText) ? SelfExpansion::kYes : SelfExpansion::kNo;
    if (body->fSelfExpansion == SelfExpansion::kNo)
        return ExpandMacroText(text, PP_MacroLink::Alloc(fMemory, body, link));
    // What the scan would have cost is charged all the same.
    EnterExpansion(text.Reader().Readable());
    return text;
}

// Expands every macro in `text`. An identifier of a macro that is in the chain gets the
// no-expand mark behind it, so that it is never expanded again in whatever text it reaches.
PP_CExpansionText PP_CPPHelper::ExpandMacroText(PP_CExpansionText const& text, PP_MacroLink* link) {
    EnterExpansion(text.Reader().Readable());
    if (!mayChangeInExpansion(text.Reader()))
        return text;
    ++fExpansionDepth;
    PP_CUseTempMem inUse(fMemory);
    PP_CTextReader reader = text.Reader();
    PP_CScanner local(&reader);
    PP_CExpansionBuilder out;
    PlainRun run(out, &text);
    for (;;) {
        int error;
        int token = local.GetNextToken(&error);
        if (token == kPPScan_EOF)
            break;
        PP_MacroBody* body = nullptr;
        if (token == kPPScan_Ident && !fExpansionStopped && local.CookedPeekChar() != kPP_MacroNoExpand)
            body = DefinedMacro(local.GetTokenText());
        if (body != nullptr)
            // The chain that HasBeenExpanded walks is at most as long as the nest is deep.
            ChargeExpansion(static_cast<unsigned long>(fExpansionDepth));
        if (body == nullptr) {
            run.AddToken(local);
        } else if (HasBeenExpanded(body, link)) {
            run.AddToken(local);
            run.Flush();
            out.AddChar(kPP_MacroNoExpand);
        } else {
            run.Flush();
            bool expanded;
            out.Add(ExpandMacroBody(&local, &text, body, link, &expanded, false));
        }
    }
    run.Flush();
    --fExpansionDepth;
    return out.Take();
}

void PP_CPPHelper::EnterExpansion(unsigned long bytes) {
    if (fExpansionDepth == kMaxExpansionDepth)
        StopExpansion();
    ChargeExpansion(bytes);
}

void PP_CPPHelper::StopExpansion() {
    if (fExpansionStopped)
        return;
    fPP->Error(kPPErr_ExpressionTooComplex, 0);
    fExpansionStopped = true;
}

void PP_CPPHelper::ChargeExpansion(unsigned long bytes) {
    fExpansionWork += bytes;
    if (fExpansionWork > fExpansionBudget)
        StopExpansion();
}

PP_CExpansionText PP_CPPHelper::ExpandFunctionMacro(PP_CScanner* scanner, PP_CExpansionText const* source,
                                                    PP_MacroBody* body, PP_MacroLink* link, bool allowPop) {
    PP_CUseTempMem inUse(fMemory);
    std::vector<PP_CExpansionText> const actuals = GetMacroActuals(scanner, source, body, allowPop);
    std::vector<PP_CExpansionText> const expanded = ExpandActuals(actuals, link);
    PP_CExpansionBuilder out;
    // A body that names its parameters many times copies them as often, before any rescan: the
    // copies are charged as they are made, and none is made once the budget is spent.
    for (char const* textPtr = body->fMacroText; *textPtr != 0 && fExpansionWork <= fExpansionBudget;) {
        char c = *textPtr++;
        switch (c) {
        case kPP_MacroParam: {
            unsigned index = paramIndex(textPtr, body);
            // An operand of ## is substituted as written.
            PP_CExpansionText const& actual = *textPtr == kPP_MacroPaste ? actuals[index] : expanded[index];
            ChargeExpansion(actual.Reader().Readable());
            out.Add(actual);
            break;
        }
        case kPP_MacroStringize: {
            VELOR_ASSERT_TEXT("*textPtr == kPP_MacroParam", *textPtr == kPP_MacroParam);
            ++textPtr;
            PP_CTextReader const actual = actuals[paramIndex(textPtr, body)].Reader();
            ChargeExpansion(actual.Readable());
            Stringize(out, actual);
            break;
        }
        case kPP_MacroPaste:
            // Without a parameter behind it the code just vanishes, which joins its neighbours.
            if (*textPtr == kPP_MacroParam) {
                ++textPtr;
                PP_CExpansionText const& actual = actuals[paramIndex(textPtr, body)];
                ChargeExpansion(actual.Reader().Readable());
                PasteActual(out, actual);
            }
            break;
        case kPP_MacroEscape:
            if (*textPtr != 0)
                out.AddChar(*textPtr++ - kPP_MacroIndexBias);
            break;
        default: out.AddChar(c);
        }
    }
    return ExpandMacroText(out.Take(), PP_MacroLink::Alloc(fMemory, body, link));
}

// The right operand of ##. When it continues an identifier, a no-expand mark behind its first
// identifier is dropped, so that the joined name can be expanded.
void PP_CPPHelper::PasteActual(PP_CExpansionBuilder& out, PP_CExpansionText const& actual) {
    PP_CTextReader rest = actual.Reader();
    if (endsInIdentChar(out.Reader())) {
        while (!rest.IsEOF()) {
            int c = rest.GetChar();
            if (c == kPP_MacroNoExpand)
                break;
            out.AddChar(c);
            if (!isidentchar(c))
                break;
        }
    }
    out.Add(actual.Piece(rest));
}

// macro-arguments = "(" [ argument { "," argument } ] ")", an argument being balanced text
// Reads the arguments of a call, the scanner standing on its '('. Each argument loses its
// leading and trailing space, and each inner run of space becomes one blank. Directives are
// not recognised here: a '#' is plain text. An argument written with single blanks between its
// tokens is a view of the text read, not a copy.
std::vector<PP_CExpansionText> PP_CPPHelper::GetMacroActuals(PP_CScanner* scanner, PP_CExpansionText const* source,
                                                             PP_MacroBody* body, bool allowPop) {
    unsigned long const count = static_cast<unsigned long>(body->fParamCount);
    std::vector<PP_CExpansionText> actuals(count);
    PP_CExpansionBuilder out;
    PP_CTextReader const oneBlank(" ", 1);
    PP_CTextReader blank = oneBlank;  // the run of space itself when it is just one blank
    scanner->SkipChar();
    int depth = 1;
    bool atStart = true;
    bool pendingSpace = false;
    bool tooMany = false;
    bool sawText = false;
    unsigned long filled = 0;
    do {
        int error;
        int token = scanner->GetNextToken(&error);
        bool const space = isSpaceToken(token);
        if (space) {
            bool const aloneAndPlain = !pendingSpace && !scanner->TokenTextIsCooked();
            blank = aloneAndPlain && isWord(scanner->GetTokenText(), " ") ? scanner->GetTokenText() : oneBlank;
            pendingSpace = pendingSpace || !atStart;
        } else if (token == kPPScan_LParen || token == kPPScan_RParen) {
            depth += token == kPPScan_LParen ? 1 : -1;
            atStart = false;
        } else if (token == kPPScan_Comma) {
            atStart = atStart || depth == 1;
        } else {
            atStart = false;
        }
        if (token == kPPScan_EOF) {
            if (fPP->AtEOF() || !allowPop)
                break;
            // The text of a file goes with it: what was read from it is kept as copies.
            for (auto& actual : actuals)
                actual.Detach();
            out.Detach();
            blank = oneBlank;
            fPP->PopInput();
            continue;
        }
        if (depth != 0 && !(token == kPPScan_Comma && depth == 1)) {
            if (!space) {
                if (pendingSpace)
                    out.AddStretch(source, blank);
                addToken(out, *scanner, source);
                atStart = false;
                pendingSpace = false;
            }
            continue;
        }
        PP_CExpansionText argument = out.Take();
        sawText = sawText || !argument.IsEmpty();
        if (filled < count) {
            actuals[filled++] = argument;
        } else if (sawText && !tooMany) {
            tooMany = true;
            fPP->Error(kPPErr_TooManyArguments, 1, body->fName);
        }
    } while (depth != 0);
    if (depth != 0)
        fPP->Error(kPPErr_CallWithoutClose, 1, body->fName);
    if (filled < count)
        fPP->Error(kPPErr_TooFewArguments, 1, body->fName);
    return actuals;
}

// Arguments are expanded with the chain of the call: the macro itself may be used in them.
std::vector<PP_CExpansionText> PP_CPPHelper::ExpandActuals(std::vector<PP_CExpansionText> const& actuals,
                                                           PP_MacroLink* link) {
    std::vector<PP_CExpansionText> expanded(actuals.size());
    for (size_t i = 0; i < actuals.size(); ++i) {
        if (!actuals[i].IsEmpty())
            expanded[i] = ExpandMacroText(actuals[i], link);
    }
    return expanded;
}

// Quotes are escaped everywhere, backslashes only inside a string or character literal.
void PP_CPPHelper::Stringize(PP_CExpansionBuilder& out, PP_CTextReader text) {
    out.AddChar('"');
    int quote = 0;
    while (!text.IsEOF()) {
        int c = text.GetChar();
        if (c == '"' || (c == '\\' && quote != 0))
            out.AddChar('\\');
        if (c == '"' || c == '\'') {
            if (quote == 0)
                quote = c;
            else if (quote == c)
                quote = 0;
        }
        out.AddChar(c);
    }
    out.AddChar('"');
}

bool PP_CPPHelper::AtLineEnd() {
    int c = CookedPeekChar();
    return c == -1 || isEOL(c);
}

// The next raw token of a macro body. False at the end of the line, and for a bad token,
// whose message code is then left in `code`.
bool PP_CPPHelper::NextBodyToken(int* token, int* code) {
    *code = kPPErr_None;
    if (AtLineEnd())
        return false;
    *token = GetRawToken(code);
    return *code == kPPErr_None;
}

char* PP_CPPHelper::CopyToScratch(PP_CTextReader text) {
    fScratch.ReWrite();
    fScratchWriter.AddText(text);
    fScratchWriter.AddChar(0);
    return fScratch.GetStart();
}

// define-line = "#define" name [ macro-formals ] replacement-text end-of-line, the formals only
// where a "(" follows the name with no blank between
void PP_CPPHelper::DoDefine() {
    SkipCommentsToEOL();
    if (!isident(CookedPeekChar())) {
        fPP->Error(kPPErr_DefineWithoutName, 0);
        SkipTokensAndEOL();
        return;
    }
    int error;
    GetRawToken(&error);
    PP_CTextReader name = GetTokenText();
    PP_MacroBody* body = fMacroTable->LookupMacro(name.GetReadPtr(), name.Readable());
    if (isWord(name, "defined") || (body != nullptr && !body->fCanRedefine)) {
        fPP->Error(kPPErr_DefineNotAllowed, 0);
        SkipTokensAndEOL();
        return;
    }
    PP_MacroType type = CookedPeekChar() == '(' ? kPP_MacroFunction : kPP_MacroObject;
    if (body == nullptr) {
        body = fMacroTable->EnterMacro(CopyToScratch(name), type, true);
    } else if (body->fMacroText == nullptr) {
        body->fMacroType = type;
    } else if (body->fMacroType != type) {
        fPP->Error(kPPErr_Redefinition, 1, body->fName);
        SkipTokensAndEOL();
        return;
    }
    if (type == kPP_MacroFunction) {
        DefineFunctionMacro(body);
        return;
    }
    // After this report the rest of the line is read as source text.
    int code = DefineObjectMacro(body);
    if (code != kPPErr_None)
        fPP->Error(code, 1, body->fName);
}

// An object-like body is normalised to single blanks between tokens, and its ## joins the
// neighbours here and now.
int PP_CPPHelper::DefineObjectMacro(PP_MacroBody* body) {
    bool first = true;
    bool afterPaste = false;
    bool space = false;
    fScratch.ReWrite();
    int token;
    int code;
    while (NextBodyToken(&token, &code)) {
        if (token == kPPScan_White || token == kPPScan_Comment) {
            space = space || !first;
            continue;
        }
        if (token == kPPScan_PoundPound) {
            // A leading ## is reported with the message of '#'.
            if (first || afterPaste)
                return kPPErr_StringizeWithoutParameter;
            SkipCommentsToEOL();
            first = false;
            space = false;
            afterPaste = true;
            continue;
        }
        if (space)
            fScratchWriter.AddChar(' ');
        fScratchWriter.AddText(GetTokenText());
        first = false;
        afterPaste = false;
        space = SkipCommentsToEOL();
    }
    if (code != kPPErr_None)
        return code;
    SkipTokensAndEOL();
    if (afterPaste)
        return kPPErr_PasteAtEdge;
    fScratchWriter.AddChar(0);
    if (body->fMacroText != nullptr)
        return std::strcmp(body->fMacroText, fScratch.GetStart()) == 0 ? kPPErr_None : kPPErr_Redefinition;
    body->fFormals = nullptr;
    body->fMacroText = fMemory->SaveStringPerm(fScratch.GetStart());
    body->fParamCount = -1;
    return kPPErr_None;
}

void PP_CPPHelper::DefineFunctionMacro(PP_MacroBody* body) {
    bool const hadOld = body->fMacroText != nullptr;
    PP_CPermText newFormals(fMemory);
    PP_CPermText newMacroText(fMemory);
    short count = 0;
    int code = ReadMacroFormals(newFormals.Receive(), &count);
    if (code == kPPErr_None) {
        SkipCommentsToEOL();
        if (AtLineEnd())
            *newMacroText.Receive() = fMemory->SaveStringPerm("");
        else
            code = ReadMacroText(newFormals.Get(), newMacroText.Receive());
    }
    if (code == kPPErr_None) {
        VELOR_ASSERT_TEXT("newMacroText != 0", newMacroText.Get() != nullptr);
        VELOR_ASSERT_TEXT("newFormals != 0", newFormals.Get() != nullptr);
        if (hadOld) {
            VELOR_ASSERT_TEXT("oldMacroText != 0 && oldFormals != 0",
                              body->fMacroText != nullptr && body->fFormals != nullptr);
            // Renaming a parameter makes a different definition.
            if (std::strcmp(body->fFormals, newFormals.Get()) != 0 ||
                std::strcmp(body->fMacroText, newMacroText.Get()) != 0)
                code = kPPErr_Redefinition;
        }
    }
    if (!hadOld && code == kPPErr_None) {
        body->fFormals = newFormals.Release();
        body->fMacroText = newMacroText.Release();
        body->fParamCount = count;
    } else if (code != kPPErr_None) {
        fPP->Error(code, 1, body->fName);
    }
    SkipTokensAndEOL();
}

// macro-formals = "(" [ name { "," name } [ "," ] ] ")"
// The scanner stands on the '('. A trailing comma is accepted and stays in the list.
int PP_CPPHelper::ReadMacroFormals(char** formals, short* count) {
    SkipChar();
    fScratch.ReWrite();
    int code = kPPErr_None;
    short found = 0;
    for (;;) {
        SkipCommentsToEOL();
        int c = CookedPeekChar();
        if (c == ')')
            break;
        if (!isident(c)) {
            code = kPPErr_BadParameterName;
            break;
        }
        ++found;
        int error;
        GetRawToken(&error);
        fScratchWriter.AddText(GetTokenText());
        SkipCommentsToEOL();
        if (CookedPeekChar() != ',')
            break;
        SkipChar();
        SkipCommentsToEOL();
        fScratchWriter.AddChar(',');
    }
    fScratchWriter.AddChar(0);
    *formals = fMemory->SaveStringPerm(fScratch.GetStart());
    *count = found;
    if (code == kPPErr_None) {
        if (CookedPeekChar() == ')')
            SkipChar();
        else
            code = kPPErr_BadParameterSeparator;
    }
    return code;
}

// Prepares a function-like body: parameters become kPP_MacroParam and their index, '#' and
// '##' become their control codes, and space is normalised to single blanks.
int PP_CPPHelper::ReadMacroText(char const* formals, char** text) {
    bool first = true;
    bool afterHash = false;
    bool afterPaste = false;
    bool space = false;
    fScratch.ReWrite();
    int token;
    int code;
    while (NextBodyToken(&token, &code)) {
        switch (token) {
        case kPPScan_White:
        case kPPScan_Comment: space = !(afterHash || afterPaste || first); break;
        case kPPScan_Ident: {
            if (space && !afterHash)
                fScratchWriter.AddChar(' ');
            int index = formalIndex(formals, GetTokenText());
            if (index >= 0) {
                fScratchWriter.AddChar(kPP_MacroParam);
                fScratchWriter.AddChar(index + kPP_MacroIndexBias);
            } else {
                fScratchWriter.AddText(GetTokenText());
            }
            first = afterHash = afterPaste = false;
            space = SkipCommentsToEOL();
            break;
        }
        case kPPScan_Pound:
            if (afterHash || afterPaste)
                return kPPErr_StringizeWithoutParameter;
            if (space)
                fScratchWriter.AddChar(' ');
            fScratchWriter.AddChar(kPP_MacroStringize);
            SkipCommentsToEOL();
            first = false;
            afterHash = true;
            break;
        case kPPScan_PoundPound:
            if (afterHash)
                return kPPErr_StringizeWithoutParameter;
            if (first)
                return kPPErr_PasteAtEdge;
            fScratchWriter.AddChar(kPP_MacroPaste);
            SkipCommentsToEOL();
            first = false;
            space = false;
            afterPaste = true;
            break;
        default:
            if (space)
                fScratchWriter.AddChar(' ');
            if (afterHash)
                return kPPErr_StringizeWithoutParameter;
            fScratchWriter.AddText(GetTokenText());
            first = afterHash = afterPaste = false;
            space = SkipCommentsToEOL();
        }
    }
    if (code != kPPErr_None)
        return code;
    fScratchWriter.AddChar(0);
    *text = fMemory->SaveStringPerm(fScratch.GetStart());
    return afterHash ? kPPErr_StringizeWithoutParameter : kPPErr_None;
}

// undef-line = "#undef" name end-of-line
void PP_CPPHelper::DoUndef() {
    SkipCommentsToEOL();
    if (isident(CookedPeekChar())) {
        int error;
        GetRawToken(&error);
        char* name = CopyToScratch(GetTokenText());
        if (!fMacroTable->UndefineMacro(name))
            fPP->Error(kPPErr_UndefNotAllowed, 1, name);
    } else {
        fPP->Error(kPPErr_UndefWithoutName, 0);
    }
    SkipTokensAndEOL();
}

bool PP_CPPHelper::SkipCommentsToEOL() {
    bool skipped = false;
    for (;;) {
        bool skippedBlanks = fCurScanner->SkipBlanksToEOL();
        bool skippedComment = fCurScanner->SkipComment();
        if (!skippedBlanks && !skippedComment)
            return skipped;
        skipped = true;
    }
}

void PP_CPPHelper::SkipTokensAndEOL() {
    int error;
    int token;
    do
        token = GetRawToken(&error);
    while (token != kPPScan_EOL && token != kPPScan_EOF);
}
