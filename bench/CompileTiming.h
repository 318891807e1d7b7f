// The timed core of the compile benchmarks: one text through the top-level statement loop, with
// the per-file objects of a real run and the predefined types entered, as a compilation has them.
#pragma once

#include <chrono>
#include <cstdlib>
#include <string>

#include "Msgs.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCPredefinedTypes.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "RCTopLevel.h"

// Runs the top-level statements of a text and returns the nanoseconds it took. A text that
// reports an error measures nothing useful, so it ends the benchmark.
inline double CompileNanoseconds(std::string const& text) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic macros(&memory);
    RCSymbolTable symbols;
    RCScanner scanner(&memory, &macros, &symbols);
    RCResourceFile resources("out/bench.rsrc");
    EnterPredefinedTypes(&symbols);
    auto start = std::chrono::steady_clock::now();
    scanner.PushInput(scanner.ReadFile(text.c_str(), "bench.vd"));
    scanner.NextToken();
    CompileTopLevel(&scanner, &macros, &resources, [] {});
    std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    if (Msgs::GetErrorCount() != 0) std::abort();
    return elapsed.count();
}
