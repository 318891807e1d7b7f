// Preprocessing: the time per token should stay flat as a file grows, both for plain text and
// for text in which every line calls macros.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "PPCPP.h"

namespace {

class BenchPreprocessor : public PP_CPP {
public:
    using PP_CPP::PP_CPP;
    ~BenchPreprocessor() override {
        while (!AtEOF())
            PopInput();
    }
    void PushFile(std::string const& text) {
        static char fileRecord;
        PP_CInput* input = fMemory->AllocInput(text.data(), text.size());
        input->fFileInfo = reinterpret_cast<RCScanner_FileInfo*>(&fileRecord);
        PushInput(input);
    }
    void DoIncludeLine(char*) override {}
    void Error(int, int, ...) override { std::abort(); }
    void Warning(int, int, ...) override {}
};

std::string MakeText(long lines, bool withMacros) {
    std::string text = "#define PAIR(a, b) { a, b }\n#define WIDTH 32\n#define CAT(a, b) a##b\n";
    for (long i = 0; i < lines; ++i) {
        text += withMacros ? "  PAIR(WIDTH, CAT(id, " + std::to_string(i) + ")), /* entry */\n"
                           : "  { 32, id" + std::to_string(i) + " }, /* entry */\n";
    }
    return text;
}

double NanosecondsPerToken(long lines, bool withMacros) {
    using Clock = std::chrono::steady_clock;
    std::string text = MakeText(lines, withMacros);
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table(&memory);
    long count = 0;
    auto start = Clock::now();
    {
        BenchPreprocessor pp(&memory, &table);
        pp.PushFile(text);
        int error;
        while (pp.GetNextToken(&error) != kPPScan_EOF)
            ++count;
    }
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

}  // namespace

int main() {
    for (long lines : {1000L, 10000L, 100000L, 1000000L}) {
        std::printf("%8ld lines: %6.1f ns per plain token, %6.1f ns per token through macros\n", lines,
                    NanosecondsPerToken(lines, false), NanosecondsPerToken(lines, true));
    }
    return 0;
}
