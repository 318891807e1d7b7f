// The base of a command-line tool: it reads the command line through an option table and
// leaves the run itself to its subclass.
#pragma once

#include <cstdint>
#include <cstdio>

class DataArea;

// One row of an option table: the name without its dash, what to do, and how many of the words
// that follow belong to the option. A row with a null name ends a table and catches the rest.
struct CmdOption {
    char const* name;
    int action;
    int argumentCount;
};

// The base of a command-line tool: it sets up the process, walks the arguments and hands options,
// file names and "@" response files to virtual operations. Options are compared without regard to
// case. Every problem with the command line is an error that counts; the walk goes on, so that
// one run reports all of them.
class CmdTool {
public:
    CmdTool();
    virtual ~CmdTool();
    CmdTool(CmdTool const&) = delete;
    CmdTool& operator=(CmdTool const&) = delete;

    virtual void ProcessCommandLine(int argc, char** argv, char** envp);
    virtual void ShowVersion();
    virtual void Run() = 0;
    virtual void ShowUsage() = 0;
    // index stands at the option's word and is left at its last argument.
    virtual void DoOption(int argc, char** argv, int& index);
    virtual void DoResponseFile(char* name);
    virtual void DoFilename(char* word);
    virtual void DoIncludePathList(char const* list);
    virtual void BadOption(char const* name);
    virtual void BadOption(char const* name, char const* argument);
    // Whether word lastIndex exists; if not, reports how many arguments the option lacks.
    virtual bool IsArg(int argc, int lastIndex, char const* name);
    // The number in the text, or -1 after a report.
    virtual long GetNumber(char const* text, char const* option);
    // Up to four characters packed into bytes in address order, the rest zero.
    virtual uint64_t GetResType(char const* text, char const* option);

    bool OnOff(char const* text, char const* option);

    void ICmdTool(char const* progName);

    // Procedures to run when the process ends without passing through main's handler; the
    // newest runs first. The cookie removes a procedure again.
    static void* InstallAtExitProc(void (*proc)(void*), void* parameter);
    static void RemoveAtExitProc(void const* cookie);

    // Splits a response file into NUL-terminated words appended to buffer: white space separates
    // words, and double quotes group text (blanks included) into the current word. An empty word
    // ends the list, and the buffer always ends with a NUL.
    static void ReadResponseWords(FILE* file, DataArea* buffer);

protected:
    static CmdOption const* FindOption(CmdOption const* table, char const* name);

    char const* GetProgName() const { return fName; }

private:
    static void DoCleanUp();
    static void DoInterrupt(int signalNumber);
    static void EndPerf() {}

    char const* fName = nullptr;

    static CmdTool* fgCmdTool;
    static void* fgFreeMemAtExit;
};
