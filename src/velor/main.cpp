// The process entry: builds the tool, runs it and turns Msgs::Exit into the exit code.

#include "AnsiCPPTool.h"
#include "Msgs.h"
#include "Platform.h"

// Every way out of the run, a successful one included, throws Msgs::Exception, so that the
// objects of the run unwind before the process ends with the exception's code.
int main(int argc, char** argv, char** envp) {
    DebugTrace("Beginning VELOR");
    auto* tool = new AnsiCPPTool;
    Msgs::ThrowOnExit(true);
    int code = 0;
    try {
        tool->Main(argc, argv, envp);
    } catch (Msgs::Exception const& exception) {
        code = exception.GetExitCode();
    }
    delete tool;
    Msgs::ThrowOnExit(false);
    Msgs::Exit(code);
}
