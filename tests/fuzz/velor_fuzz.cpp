// libFuzzer target: one whole compilation per input, through the command-line entry.
//
// The input becomes the one source file of a run in a scratch folder made once per process, and
// the run writes its output below that folder, so the output path is exercised too. The tool's
// process-wide set-up (the permanent arena, the program name, the handlers) is done once, by the
// first run; each run then takes the steps of the tool's Main with a fresh tool object, and the
// message counts are reset in between.
//
// Some assertion stops are the defined outcome of certain texts: a '#' before a non-parameter in
// a macro body, a control byte in a macro body that reads as a parameter the macro lacks, an array
// label where no type instance exists, $$ArrayIndex outside its array, a '/' that opens no comment
// at the end of a continued line, a position or __FILE__ asked for in macro text that outlived its
// file, and a '#line' directive read from macro text.
// This target supplies the assertion handler: those unwind back here, and any other stop still
// aborts, which libFuzzer reports as a finding.
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "AnsiCPPTool.h"
#include "Assertion.h"
#include "Msgs.h"
#include "PPCPPHlp.h"
#include "RCBindings.h"

namespace {

struct DefinedStop {};

// A condition with the function that checks it: "false" alone would name many stops.
struct StopSite {
    char const* condition;
    char const* function;
};

constexpr StopSite kDefinedStops[] = {
    {"*textPtr == kPP_MacroParam", nullptr},
    {"formalIndex < aMacroBody->fParamCount", nullptr},
    {"fDef != 0", nullptr},
    {"aScanner != 0", nullptr},
    {"!isEOL(RawPeekChar())", nullptr},
    {"false", "NearestFileBelowTop"},
    {"InSourceText()", "DoLineLine"},
    {"pp->GetFileInfo() != 0", "DoFILE"},
};

bool IsDefinedStop(char const* condition, char const* function) {
    for (StopSite const& stop : kDefinedStops)
        if (std::strcmp(condition, stop.condition) == 0 &&
            (stop.function == nullptr || std::strcmp(function, stop.function) == 0))
            return true;
    return false;
}

std::string gFolder;

}  // namespace

void AssertionFailed(char const* condition, char const* function, char const* file, int line) {
    if (IsDefinedStop(condition, function)) throw DefinedStop();
    std::fprintf(stderr, "Assertion failed: %s, function %s, file %s, line %d\n", condition, function, file, line);
    std::abort();
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    char pattern[] = "/tmp/velor-fuzz-XXXXXX";
    if (::mkdtemp(pattern) == nullptr) std::abort();
    gFolder = pattern;
    if (::mkdir((gFolder + "/out").c_str(), 0777) != 0) std::abort();
    Msgs::ThrowOnExit(true);
    // Under the fuzzer's instrumentation a resource at the tool's own bound takes many seconds
    // to lay, and an input calling a short macro may make eight thousand resources: this bound
    // keeps every run within the time and memory limits, while output that passes it still
    // takes the same road.
    RCBindings::fgMaxResourceBytes = 2UL << 10;
    // Likewise the work that macro expansion may spend on one input.
    PP_CPPHelper::fgExpansionAllowance = 8UL << 20;
    PP_CPPHelper::fgExpansionWorkPerCall = 512;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const source = gFolder + "/in.vd";
    std::ofstream(source, std::ios::binary | std::ios::trunc).write(reinterpret_cast<char const*>(data),
                                                                    static_cast<std::streamsize>(size));
    std::string output = gFolder + "/out/r.rsrc";
    std::string sourceWord = source;
    // The tool keeps the program name for the rest of the process.
    static char programName[] = "velor";
    char outputOption[] = "-o";
    char* argv[] = {programName, outputOption, output.data(), sourceWord.data(), nullptr};
    char* envp[] = {nullptr};
    static bool setUp = false;
    Msgs::ResetCounts();
    auto* tool = new AnsiCPPTool;
    try {
        if (!setUp) tool->IAnsiCPPTool(programName);
        setUp = true;
        tool->ProcessCommandLine(4, argv, envp);
        Msgs::ErrorCheck();
        tool->Run();
    } catch (Msgs::Exception const&) {
    } catch (DefinedStop const&) {
    }
    delete tool;
    return 0;
}
