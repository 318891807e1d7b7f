// The resource scanner: the time per token, keywords included, and the time per byte of a long
// run of adjacent hex strings merged into one value should both stay flat as the input grows.
#include <chrono>
#include <cstdio>
#include <string>

#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCByteString.h"
#include "RCScanner.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string MakeTypeText(long lines) {
    std::string text;
    for (long i = 0; i < lines; ++i)
        text += "    integer field" + std::to_string(i) + " = 0x1F; cstring; /* entry */ array [2] { byte; };\n";
    return text;
}

std::string MakeHexText(long lines) {
    std::string text;
    for (long i = 0; i < lines; ++i) text += "    $\"0001 0203 0405 0607 0809 0A0B 0C0D 0E0F\"\n";
    return text + ";";
}

template <typename Work>
double NanosecondsPer(std::string const& text, Work work) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic macros(&memory);
    auto const start = Clock::now();
    long units = 0;
    {
        RCScanner scanner(&memory, &macros, nullptr);
        scanner.PushInput(scanner.ReadFile(text.c_str(), "bench.vd"));
        scanner.NextToken();
        units = work(scanner);
    }
    std::chrono::duration<double, std::nano> const elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(units);
}

long CountTokens(RCScanner& scanner) {
    long tokens = 0;
    for (; scanner.TokenType() != kPPScan_EOF; scanner.NextToken()) ++tokens;
    return tokens;
}

long MergeStrings(RCScanner& scanner) {
    RCByteString string;
    while (scanner.TokenType() == kPPScan_HexString && scanner.MergeString(string)) scanner.NextToken();
    long const bytes = string.fLength;
    string.Destroy();
    return bytes;
}

}  // namespace

int main() {
    for (long lines : {1000L, 10000L, 100000L, 1000000L}) {
        std::printf("%8ld lines: %6.1f ns per token, %6.1f ns per merged hex byte\n", lines,
                    NanosecondsPer(MakeTypeText(lines), CountTokens),
                    NanosecondsPer(MakeHexText(lines), MergeStrings));
    }
    return 0;
}
