// Preprocessing: the time per token should stay flat as a file grows, both for plain text and
// for text in which every line calls macros; the time per byte of one long #define line should
// stay flat as the line grows; and a call nested in its own argument ever deeper, which the
// preprocessor refuses past a fixed depth, should cost time per byte and memory that stay flat.
#include <sys/resource.h>

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
    // Only the nested calls are meant to be refused; any other error spoils the measurement.
    void Error(int, int, ...) override {
        if (!fErrorsExpected) std::abort();
    }
    bool fErrorsExpected = false;
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

using Clock = std::chrono::steady_clock;

// Preprocesses text to its end; answers the nanoseconds taken and the tokens seen.
double PreprocessNanoseconds(std::string const& text, long* tokens, bool errorsExpected = false) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table(&memory);
    *tokens = 0;
    auto start = Clock::now();
    {
        BenchPreprocessor pp(&memory, &table);
        pp.fErrorsExpected = errorsExpected;
        pp.PushFile(text);
        int error;
        while (pp.GetNextToken(&error) != kPPScan_EOF)
            ++*tokens;
    }
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count();
}

double NanosecondsPerToken(long lines, bool withMacros) {
    long tokens;
    double elapsed = PreprocessNanoseconds(MakeText(lines, withMacros), &tokens);
    return elapsed / static_cast<double>(tokens);
}

double NanosecondsPerDefinitionByte(long terms) {
    std::string text = "#define LONG 1";
    for (long i = 0; i < terms; ++i) text += "+1";
    long tokens;
    return PreprocessNanoseconds(text + "\n", &tokens) / static_cast<double>(text.size());
}

long PeakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

double NanosecondsPerNestedCallByte(long depth) {
    std::string text = "#define f(x) (x)\n";
    for (long i = 0; i < depth; ++i) text += "f(";
    text += "1";
    text += std::string(static_cast<size_t>(depth), ')');
    long tokens;
    return PreprocessNanoseconds(text + "\n", &tokens, true) / static_cast<double>(text.size());
}

}  // namespace

int main() {
    // Peak memory only grows, so these come first and the depths rise: each line shows the peak
    // of the process up to that size.
    for (long depth : {10000L, 100000L, 250000L, 500000L}) {
        double const perByte = NanosecondsPerNestedCallByte(depth);
        std::printf("%8ld nested calls: %6.1f ns per byte, peak %6ld KB for %6ld KB of text\n", depth, perByte,
                    PeakKilobytes(), depth * 3 / 1024);
    }
    for (long lines : {1000L, 10000L, 100000L, 1000000L}) {
        std::printf("%8ld lines: %6.1f ns per plain token, %6.1f ns per token through macros\n", lines,
                    NanosecondsPerToken(lines, false), NanosecondsPerToken(lines, true));
    }
    for (long terms : {10000L, 100000L, 1000000L, 4000000L})
        std::printf("%8ld terms on one #define line: %6.1f ns per byte\n", terms, NanosecondsPerDefinitionByte(terms));
    return 0;
}
