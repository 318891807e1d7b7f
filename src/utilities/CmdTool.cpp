// The generic command-line tool: options matched by table, response files read in place of
// their "@" words, and the exit procedures run on the way out.

#include "CmdTool.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>

#include "Assertion.h"
#include "CmdArg.h"
#include "DataArea.h"
#include "HandleManager.h"
#include "MarkRelease.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "UniqueNames.h"

CmdTool* CmdTool::fgCmdTool = nullptr;
void* CmdTool::fgFreeMemAtExit = nullptr;

namespace {

constexpr size_t kPermanentChunkSize = 20000;

enum BaseOptionAction { kDebugOption, kMfOption, kNoMfOption, kProgressOption, kNoWarningsOption,
                        kDebuggerOption, kFxOption, kUnknownOption };

CmdOption const kBaseOptions[] = {
    {"debug", kDebugOption, 0},
    {"mf", kMfOption, 0},
    {"nomf", kNoMfOption, 0},
    {"p", kProgressOption, 0},
    {"w", kNoWarningsOption, 0},
    {"!", kDebuggerOption, 0},
    {"!fx", kFxOption, 1},
    {nullptr, kUnknownOption, 0},
};

char const kUnknownVersion[] = "Version ??";

struct AtExitNode {
    AtExitNode* next;
    void (*proc)(void*);
    void* parameter;
};

AtExitNode* gAtExitProcs = nullptr;
AtExitNode* gCurrentExitProc = nullptr;

// The response files being read, innermost first. A file that names itself, directly or through
// others, would otherwise recurse until the stack runs out; with its name on this list it gets
// kMsg_RecursiveResponseFile instead.
class CmdToolRCheck {
public:
    explicit CmdToolRCheck(char const* name) : fNext(fgRoot), fName(name) { fgRoot = this; }
    ~CmdToolRCheck() { fgRoot = fNext; }
    CmdToolRCheck(CmdToolRCheck const&) = delete;
    CmdToolRCheck& operator=(CmdToolRCheck const&) = delete;

    static bool IsOpen(char const* name) {
        for (CmdToolRCheck const* node = fgRoot; node != nullptr; node = node->fNext)
            if (std::strcmp(node->fName, name) == 0) return true;
        return false;
    }

private:
    static CmdToolRCheck* fgRoot;
    CmdToolRCheck* fNext;
    char const* fName;
};

CmdToolRCheck* CmdToolRCheck::fgRoot = nullptr;

class CmdToolWithOpenFILE {
public:
    explicit CmdToolWithOpenFILE(char const* name) : fFile(std::fopen(name, "rb")) {}
    ~CmdToolWithOpenFILE() {
        if (fFile != nullptr) std::fclose(fFile);
    }
    CmdToolWithOpenFILE(CmdToolWithOpenFILE const&) = delete;
    CmdToolWithOpenFILE& operator=(CmdToolWithOpenFILE const&) = delete;

    FILE* File() const { return fFile; }

private:
    FILE* fFile;
};

bool IsWhiteSpace(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

}  // namespace

CmdTool::CmdTool() { VELOR_ASSERT(fgCmdTool == 0); }

CmdTool::~CmdTool() { fgCmdTool = nullptr; }

void CmdTool::ICmdTool(char const* progName) {
    HandleManager::SetMaySpecifyTempMemory(false);
    gPermanentMemory.SetChunkSize(kPermanentChunkSize);
    fgFreeMemAtExit = gPermanentMemory.Mark();
    fName = progName;
    Msgs::SetProgName(progName);
    std::atexit(DoCleanUp);
    std::signal(SIGINT, DoInterrupt);
    VELOR_ASSERT(fgCmdTool == 0);
    fgCmdTool = this;
}

void CmdTool::DoInterrupt(int) { Msgs::SetInterrupted(true); }

void CmdTool::DoCleanUp() {
    if (fgCmdTool == nullptr) return;
    fgCmdTool = nullptr;
    while ((gCurrentExitProc = gAtExitProcs) != nullptr) {
        gAtExitProcs = gCurrentExitProc->next;
        gCurrentExitProc->proc(gCurrentExitProc->parameter);
        delete gCurrentExitProc;
    }
    EndPerf();
    gPermanentMemory.Release(fgFreeMemAtExit);
}

void* CmdTool::InstallAtExitProc(void (*proc)(void*), void* parameter) {
    auto* anExitProcCookie = new (std::nothrow) AtExitNode{gAtExitProcs, proc, parameter};
    VELOR_ASSERT(anExitProcCookie != 0);
    gAtExitProcs = anExitProcCookie;
    return anExitProcCookie;
}

// A procedure may remove itself while it runs; it has then already left the list.
void CmdTool::RemoveAtExitProc(void const* cookie) {
    if (cookie == nullptr) return;
    for (AtExitNode** link = &gAtExitProcs; *link != nullptr; link = &(*link)->next) {
        if (*link == cookie) {
            AtExitNode* node = *link;
            *link = node->next;
            delete node;
            return;
        }
    }
    void const* atExitCookie = cookie;
    VELOR_ASSERT(atExitCookie == gCurrentExitProc);
}

void CmdTool::ProcessCommandLine(int argc, char** argv, char**) {
    if (char const* list = std::getenv("HEADER_SEARCH_PATHS")) DoIncludePathList(list);
    if (char const* list = std::getenv("VELOR_SEARCH_PATHS")) DoIncludePathList(list);
    for (int i = 1; i < argc; ++i) {
        char* word = argv[i];
        if (word[0] == '-')
            DoOption(argc, argv, i);
        else if (word[0] == '@')
            DoResponseFile(word + 1);
        else
            DoFilename(word);
    }
}

CmdOption const* CmdTool::FindOption(CmdOption const* table, char const* name) {
    while (table->name != nullptr && !ustreql(table->name, name)) ++table;
    return table;
}

void CmdTool::DoOption(int argc, char** argv, int& index) {
    char const* name = argv[index] + 1;
    CmdOption const* option = FindOption(kBaseOptions, name);
    if (!IsArg(argc, index + option->argumentCount, name)) return;
    switch (option->action) {
        case kDebugOption: Msgs::SetMask(Msgs::GetMask() | Msgs::kDebug); break;
        case kMfOption: HandleManager::SetMaySpecifyTempMemory(true); break;
        case kNoMfOption: HandleManager::SetMaySpecifyTempMemory(false); break;
        case kProgressOption: Msgs::SetMask(Msgs::GetMask() | Msgs::kProgress); break;
        case kNoWarningsOption: Msgs::SetMask(Msgs::GetMask() & ~Msgs::kWarning); break;
        case kDebuggerOption: DebugTrace("(Dropped into debugger via -!: go for it!"); break;
        case kFxOption: {
            char const* value = argv[index + 1];
            int choice = CmdArg::GetOneOf(value, "perf", "reporttempmemorylossage", nullptr);
            if (choice == 1)
                HandleManager::ReportTempMemoryLossage(true);
            else if (choice != 0)
                Msgs::Display(Msgs::kError, "-%s %s\n", argv[index], value);
            break;
        }
        default: BadOption(name); break;
    }
    index += option->argumentCount;
}

void CmdTool::DoResponseFile(char* name) {
    if (CmdToolRCheck::IsOpen(name)) {
        Msgs::Display(Msgs::kError, kMsg_RecursiveResponseFile, name);
        return;
    }
    CmdToolRCheck check(name);
    DataArea words(1024, 512, false);
    {
        CmdToolWithOpenFILE file(name);
        if (file.File() == nullptr) {
            Msgs::Display(Msgs::kError, kMsg_CannotOpenResponseFile, name);
            return;
        }
        words.Write(fName, std::strlen(fName) + 1);
        ReadResponseWords(file.File(), &words);
    }
    uint64_t const end = words.GetCursor();
    DataArea argv(64, 64, false);
    for (uint64_t at = 0; at < end;) {
        char const* word = words.GetData(at);
        size_t const length = std::strlen(word);
        if (length == 0) break;
        char* copy = copyString(word);
        argv.Write(&copy, sizeof copy);
        at += length + 1;
    }
    auto const argc = static_cast<int>(argv.GetCursor() / sizeof(char*));
    ProcessCommandLine(argc, reinterpret_cast<char**>(argv.GetData(0)), nullptr);
}

void CmdTool::ReadResponseWords(FILE* file, DataArea* buffer) {
    enum { kBetweenWords, kInWord, kInQuotes } state = kBetweenWords;
    for (int c; (c = std::getc(file)) != EOF;) {
        if (state == kInQuotes) {
            if (c == '"')
                state = kInWord;
            else
                buffer->PutChar(c);
        } else if (c == '"') {
            state = kInQuotes;
        } else if (IsWhiteSpace(c)) {
            if (state == kInWord) buffer->PutChar('\0');
            state = kBetweenWords;
        } else {
            buffer->PutChar(c);
            state = kInWord;
        }
    }
    buffer->PutChar('\0');
}

void CmdTool::DoFilename(char*) {}

void CmdTool::DoIncludePathList(char const*) {}

void CmdTool::BadOption(char const* name) { Msgs::Display(Msgs::kError, kMsg_UnrecognizedOption, name); }

void CmdTool::BadOption(char const* name, char const* argument) { Msgs::Display(Msgs::kError, kMsg_UnrecognizedArgument, argument, name); }

bool CmdTool::IsArg(int argc, int lastIndex, char const* name) {
    if (lastIndex < argc) return true;
    Msgs::Display(Msgs::kError, kMsg_MissingArguments, lastIndex - argc + 1, lastIndex != argc ? "s" : "", name);
    return false;
}

long CmdTool::GetNumber(char const* text, char const* option) {
    long value = 0;
    if (CmdArg::GetNumber(text, &value)) return value;
    if (option != nullptr)
        Msgs::Display(Msgs::kError, kMsg_NonNumericArgument, option, text);
    else
        Msgs::Display(Msgs::kFatal, kMsg_StringNotNumeric, text);
    return -1;
}

uint64_t CmdTool::GetResType(char const* text, char const* option) {
    constexpr size_t kResTypeLength = 4;
    size_t length = std::strlen(text);
    if (length > kResTypeLength) {
        // kMsg_ResTypeTooLong has a third conversion with no argument of its own; the text fills it.
        if (option != nullptr)
            Msgs::Display(Msgs::kWarning, kMsg_ArgumentTooLong, option, static_cast<int>(kResTypeLength), text);
        else
            Msgs::Display(Msgs::kFatal, kMsg_ResTypeTooLong, text, static_cast<int>(kResTypeLength), text);
        length = kResTypeLength;
    }
    uint64_t type = 0;
    std::memcpy(&type, text, length);
    return type;
}

bool CmdTool::OnOff(char const* text, char const* option) {
    switch (CmdArg::GetOneOf(text, "off", "on", nullptr)) {
        case 0: return false;
        case 1: return true;
        default: BadOption(option, text); return false;
    }
}

// There is no resource chain to hold a version resource, so the fall-back text is shown.
void CmdTool::ShowVersion() { Msgs::Display(Msgs::kProgress, "%s %s\n", fName, kUnknownVersion); }
