// The tool driver: the command line into gOptions, the include directories into gSearchPath,
// and each input file compiled in a world of its own that ends with the file. Its named numbers
// too are the file's own: enum and const lines define them as macros of the file's table.

#include "AnsiCPPTool.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "DependencyRecord.h"
#include "IncDir.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "Options.h"
#include "PPCPP.h"
#include "RCDescription.h"
#include "RCExpression.h"
#include "RCNumber.h"
#include "RCPredefinedTypes.h"
#include "RCPtr.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCStatement.h"
#include "RCSymTbl.h"
#include "RCTopLevel.h"
#include "SearchPath.h"
#include "TemporaryBuffer.h"
#include "UniqueNames.h"

namespace {

enum ToolOptionAction { kCreatorOption, kCppOption, kDefineOption, kIncludeOption, kOutputOption, kTypeOption,
                        kSingleFileOption, kBaseOption };

CmdOption const kToolOptions[] = {
    {"c", kCreatorOption, 1},
    {"cpp", kCppOption, 0},
    {"d", kDefineOption, 1},
    {"i", kIncludeOption, 1},
    {"o", kOutputOption, 1},
    {"t", kTypeOption, 1},
    {"singlefile", kSingleFileOption, 0},
    {nullptr, kBaseOption, 0},
};

// A quoted entry loses its first and last character, whatever the last one is.
void StoreIncludePath(char* entry) {
    if (entry[0] == '"') {
        entry[std::strlen(entry) - 1] = '\0';
        if (entry[0] != '\0') ++entry;
    }
    gOptions->AddDirectory(copyString(entry));
}

bool EndsIncludePath(char const* at) {
    return at[0] == ' ' && (at[1] == '\0' || at[1] == '/' || at[1] == '.' || at[1] == '"');
}

}  // namespace

AnsiCPPTool::AnsiCPPTool() {
    gOptions = new Options;
    gSearchPath = new RCSearchPath;
    if (long result = gSearchPath->ISearchPath(); result != 0) Msgs::Display(Msgs::kError, static_cast<int>(result));
}

AnsiCPPTool::~AnsiCPPTool() {
    gDependencies = nullptr;
    delete gOptions;
    gOptions = nullptr;
    delete gSearchPath;
    gSearchPath = nullptr;
}

void AnsiCPPTool::Main(int argc, char** argv, char** envp) {
    IAnsiCPPTool(argv[0]);
    Msgs::ErrorCheck();
    if (argc == 1) {
        ShowUsage();
        Msgs::Exit(0);
    }
    ProcessCommandLine(argc, argv, envp);
    Msgs::ErrorCheck();
    if ((Msgs::GetMask() & Msgs::kProgress) != 0) ShowVersion();
    StartDependencyRecord();
    Run();
    FinishDependencyRecord();
    Msgs::Display(Msgs::kProgress, "\n");
    Msgs::Exit(0);
}

// Build systems ask for the list of files read through the environment, as they do of C compilers.
void AnsiCPPTool::StartDependencyRecord() {
    fDependencies = DependencyRecord::FromSetting(std::getenv("VELOR_DEPENDENCIES_OUTPUT"), gOptions->GetOutput());
    Msgs::ErrorCheck();
    if (fDependencies == nullptr) return;
    for (long i = 0; i < gOptions->FileCount(); ++i) fDependencies->MarkInput(gOptions->GetFile(i));
    gDependencies = fDependencies.get();
}

// Only a run that got this far has read everything; a failed one has left through Msgs::Exit.
void AnsiCPPTool::FinishDependencyRecord() {
    if (fDependencies == nullptr) return;
    if (!fDependencies->Write())
        Msgs::Display(Msgs::kError, "Could not write the dependency file \"%s\"\n", fDependencies->FileName().c_str());
    Msgs::ErrorCheck();
}

// There is no resource chain to hold a usage text, so the fall-back text is shown.
void AnsiCPPTool::ShowUsage() { std::fputs("???  usage: missing resource TEXT(128)\n", stderr); }

void AnsiCPPTool::DoOption(int argc, char** argv, int& index) {
    char* word = argv[index];
    char const* name = word + 1;
    CmdOption const* option = FindOption(kToolOptions, name);
    if (!IsArg(argc, index + option->argumentCount, name)) return;
    char const* value = argv[index + option->argumentCount];
    switch (option->action) {
        case kCreatorOption: gOptions->SetCreator(GetResType(value, word)); break;
        case kCppOption: break;
        case kDefineOption: DefineMacro(value); break;
        case kIncludeOption: gOptions->AddDirectory(value); break;
        case kOutputOption: gOptions->AddOutput(value); break;
        case kTypeOption: gOptions->SetType(GetResType(value, word)); break;
        case kSingleFileOption: gOptions->SetSingleFileOutput(true); break;
        default: CmdTool::DoOption(argc, argv, index); break;
    }
    index += option->argumentCount;
}

// "NAME=body" splits at the first "="; a bare name is defined as 1.
void AnsiCPPTool::DefineMacro(char const* definition) {
    if (std::strchr(definition, '=') == nullptr) {
        gOptions->AddMacro(definition, "1");
        return;
    }
    char* name = saveString(definition);
    char* equals = std::strchr(name, '=');
    *equals = '\0';
    gOptions->AddMacro(name, equals + 1);
}

void AnsiCPPTool::DoFilename(char* word) {
    if (word[0] != '\0') gOptions->AddFile(word);
}

// An entry ends at a blank only where the next character may begin a new path: "/", ".", a
// quote, or the end of the list. Any other blank belongs to the name. No entry is longer than the
// list, so a scratch buffer of the list's size cannot overflow.
void AnsiCPPTool::DoIncludePathList(char const* list) {
    TemporaryBuffer scratch(std::strlen(list) + 1);
    char* const entry = scratch.GetBuffer();
    char* out = entry;
    for (char const* at = list; *at != '\0';) {
        if (at[0] == '\\' && at[1] == ' ') {
            *out++ = ' ';
            at += 2;
        } else if (EndsIncludePath(at)) {
            *out = '\0';
            StoreIncludePath(entry);
            out = entry;
            ++at;
        } else {
            *out++ = *at++;
        }
    }
    *out = '\0';
    StoreIncludePath(entry);
}

namespace {

// Environment variables that name further include directories, searched after all others.
char const* const sEnvironment[] = {"CIncludes", nullptr};

}  // namespace

// The directories of the command line, then the directory ":" (a name, not the current folder),
// then those of CIncludes; then each input file in turn. A run stops at the first check after an
// error.
void AnsiCPPTool::Run() {
    Msgs::Spin();
    gOptions->AddDirectory(":");
    for (char const* const* name = sEnvironment; *name != nullptr; ++name)
        if (char const* value = std::getenv(*name)) gOptions->AddDirectories(value);
    Msgs::ErrorCheck();
    for (long i = 0; i < gOptions->DirectoryCount(); ++i)
        if (IncDir* directory = IncDir::FindIncDir(gOptions->GetDirectory(i), true)) gSearchPath->AddDirectory(directory);
    Msgs::ErrorCheck();
    if (gOptions->FileCount() == 0) Msgs::Display(Msgs::kFatal, "No input file on command line\n");
    for (long i = 0; i < gOptions->FileCount(); ++i) CompileFile(gOptions->GetFile(i));
}

// Everything a file defines lives in the objects made here and goes with them: nothing but the
// options, the search path and the permanent arena carries over to the next file.
void AnsiCPPTool::CompileFile(char const* name) {
    IncFile* incFile = IncFile::FindIncFile(name, true);
    if (incFile == nullptr) Msgs::Display(Msgs::kFatal, "Could not open file \"%s\"\n", name);
    {
        PP_CMemoryManager_Basic memory;
        PP_CMacroTable_Basic macroTable(&memory);
        RCSymbolTable symbolTable;
        RCScanner scanner(&memory, &macroTable, &symbolTable);
        PP_CInput* input = scanner.ReadFile(incFile, name);
        if (input == nullptr) Msgs::Display(Msgs::kFatal, "Error while reading file \"%s\"\n", name);
        Msgs::Display(Msgs::kProgress, "... %s\n", name);
        scanner.PushInput(input);
        Compile(&scanner, &macroTable);
    }
    Msgs::ErrorCheck();
}

// The top-level loop, then the output. The check at the loop's head stops the run at the first
// statement boundary after an error, so a file with an error never touches the output. A failed
// write ends neither the run nor its success.
void AnsiCPPTool::Compile(RCScanner* scanner, PP_CMacroTable* macroTable) {
    for (long i = 0; i < gOptions->MacroCount(); ++i)
        macroTable->DefineMacro(gOptions->GetMacroName(i), gOptions->GetMacroBody(i), true);
    EnterPredefinedTypes(scanner->GetSymbolTable());
    RCResourceFile resourceFile(gOptions->GetOutput());
    scanner->NextToken();
    CompileTopLevel(scanner, macroTable, &resourceFile, [] { Msgs::ErrorCheck(); });
    Msgs::ErrorCheck();
    if (gOptions->GetWriteDescriptions()) AddTypeDescriptions(scanner->GetSymbolTable(), &resourceFile);
    resourceFile.WriteFile(nullptr);
}

// file-item: `enum` ... | `const` ... | `typedef` ... `;`
// The token's type plays no part, only its text: these words are not keywords of the language.
bool AnsiCPPTool::ParseEnumOrConst(RCScanner* scanner, PP_CMacroTable* macroTable) {
    PP_CTextReader word = scanner->TokenText();
    if (RCScanner::Compare(word, "enum"))
        ParseEnum(scanner, macroTable);
    else if (RCScanner::Compare(word, "const"))
        ParseConst(scanner, macroTable);
    else if (RCScanner::Compare(word, "typedef"))
        scanner->ScanUntil(kPPScan_Semicolon);  // defines nothing; brackets are stepped over whole
    else
        return false;
    return true;
}

// enum-line: `enum` [ identifier ] `{` [ enumerator { `,` enumerator } [ `,` ] ] `}` `;`
// enumerator: identifier [ `=` number-expression ]
// An enumerator without a value takes the one after its predecessor's; the first takes 0. After a
// bad enumerator the rest of the line is skipped.
void AnsiCPPTool::ParseEnum(RCScanner* scanner, PP_CMacroTable* macroTable) {
    if (scanner->NextToken() == kPPScan_Ident) scanner->NextToken();  // the tag is never recorded
    if (!scanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return;
    long value = 0;
    for (;;) {
        int const token = scanner->TokenType();
        if (token == kPPScan_EOF) return;
        if (token == kPPScan_RCurly) break;
        if (token != kPPScan_Ident) {
            scanner->Error(kMsg_ExpectedIdentifier, 0);
            break;
        }
        UniqueStruct* name = scanner->ScanName(0);
        if (scanner->Scan(kPPScan_Assign)) {
            RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
            if (!expression) break;
            value = RCStatement::EvalNumber(expression, scanner);
        }
        DefineMacro(macroTable, name, value);
        value = WrappingAdd(value, 1);
        if (scanner->TokenType() == kPPScan_RCurly) break;
        if (!scanner->Scan(kPPScan_Comma, kMsg_ExpectedComma)) break;
    }
    scanner->ScanUntil(kPPScan_RCurly);
    scanner->ScanUntil(kPPScan_Semicolon);
}

// const-line: `const` { word } identifier `=` number-expression `;`
// Every word up to the "=" is passed over, so the last identifier in front of it is the name:
// "const unsigned long kSize = 4*4;" defines kSize. A line without "=" defines nothing.
void AnsiCPPTool::ParseConst(RCScanner* scanner, PP_CMacroTable* macroTable) {
    scanner->NextToken();
    UniqueStruct* name = nullptr;
    for (;;) {
        int const token = scanner->TokenType();
        if (token == kPPScan_EOF || token == kPPScan_Semicolon) return;
        if (token == kPPScan_Assign) break;
        if (token == kPPScan_Ident)
            name = scanner->ScanName(0);
        else
            scanner->NextToken();
    }
    scanner->NextToken();
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    if (expression) DefineMacro(macroTable, name, RCStatement::EvalNumber(expression, scanner));
    scanner->ScanUntil(kPPScan_Semicolon);
}

void AnsiCPPTool::DefineMacro(PP_CMacroTable* macroTable, UniqueStruct* name, long value) {
    if (name == nullptr) return;
    char text[32];
    std::snprintf(text, sizeof text, "%ld", value);
    macroTable->DefineMacro(nameOf(name), text, true);
}
