// Laying out arrays: the time per element should stay flat as an array grows, with a label in
// every element, a count and a subscripted label read back from fixups, and a switch per element.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Msgs.h"
#include "Options.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "RCTopLevel.h"

namespace {

using Clock = std::chrono::steady_clock;

// Runs the top-level statements of a text and returns the nanoseconds it took.
double CompileNanoseconds(std::string const& text) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic macros(&memory);
    RCSymbolTable symbols;
    RCScanner scanner(&memory, &macros, &symbols);
    RCResourceFile resources("out/bench.rsrc");
    auto start = Clock::now();
    scanner.PushInput(scanner.ReadFile(text.c_str(), "bench.vd"));
    scanner.NextToken();
    CompileTopLevel(&scanner, &macros, &resources, [] {});
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    if (Msgs::GetErrorCount() != 0) std::abort();
    return elapsed.count();
}

double NanosecondsPerElement(long count) {
    std::string text =
        "type Table('TABL') {\n"
        "    longint = $$CountOf(Rows);\n"
        "    longint = start[" + std::to_string(count) + "];\n"
        "    array Rows {\n"
        "        start: integer;\n"
        "        switch { case small: byte; case big: longint; };;\n"
        "        fill nibble; align byte;\n"
        "    };\n"
        "};\n"
        "resource Table (1) { {";
    for (long i = 0; i < count; ++i) text += i % 2 ? " 7, big { 70000 };;" : " 5, small { 9 };;";
    return CompileNanoseconds(text + " } };\n") / static_cast<double>(count);
}

}  // namespace

int main() {
    Options options;
    gOptions = &options;
    for (long count : {1000L, 10000L, 100000L})
        std::printf("%6ld elements: %8.1f ns per array element\n", count, NanosecondsPerElement(count));
    return 0;
}
