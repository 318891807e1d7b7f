// The compiler as a command-line tool, from the command line to the written output.
#pragma once

#include <memory>

#include "CmdTool.h"
#include "DependencyRecord.h"

class PP_CMacroTable;
class RCScanner;
struct UniqueStruct;

// The compiler as a command-line tool: its options, the include-path notation of the environment,
// and the run itself. It owns gOptions and gSearchPath for its lifetime.
class AnsiCPPTool : public CmdTool {
public:
    AnsiCPPTool();
    ~AnsiCPPTool() override;

    void IAnsiCPPTool(char const* progName) { ICmdTool(progName); }
    // Reads the command line, runs and leaves through Msgs::Exit: it never returns.
    [[noreturn]] void Main(int argc, char** argv, char** envp);

    void Run() override;
    void ShowUsage() override;
    void DoOption(int argc, char** argv, int& index) override;
    void DoFilename(char* word) override;
    // Takes a space-separated list of directories: "\ " is a blank inside a name, and an entry
    // in double quotes loses its first and last character.
    void DoIncludePathList(char const* list) override;

    // Compiles the file that Run has pushed on the scanner and writes its output.
    void Compile(RCScanner* scanner, PP_CMacroTable* macroTable);

    // Named numbers: an `enum`, `const` or `typedef` line, the word compared without regard to
    // case. True if the current word opens one, which is then consumed. The names become macros
    // of the file, so the preprocessor replaces every later use by the value's decimal text.
    static bool ParseEnumOrConst(RCScanner* scanner, PP_CMacroTable* macroTable);
    static void ParseEnum(RCScanner* scanner, PP_CMacroTable* macroTable);
    static void ParseConst(RCScanner* scanner, PP_CMacroTable* macroTable);
    // Defines (or redefines) the name as the decimal text of the value; a null name is ignored.
    static void DefineMacro(PP_CMacroTable* macroTable, UniqueStruct* name, long value);

private:
    void DefineMacro(char const* definition);
    void CompileFile(char const* name);
    void StartDependencyRecord();
    void FinishDependencyRecord();

    std::unique_ptr<DependencyRecord> fDependencies;  // the files read, when the environment asks
};
