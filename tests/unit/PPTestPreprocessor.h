#ifndef PPTESTPREPROCESSOR_H
#define PPTESTPREPROCESSOR_H

// A small concrete preprocessor over texts in memory, for the tests of the preprocessor.

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "PPCPP.h"

struct PPMessage {
    int code;
    std::string argument;
    bool operator==(PPMessage const&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, PPMessage const& m) {
    return out << "{" << m.code << ", \"" << m.argument << "\"}";
}

struct PPToken {
    int type;
    std::string text;
    unsigned long line;
};

class PPTestPreprocessor : public PP_CPP {
public:
    PPTestPreprocessor(PP_CMemoryManager* memory, PP_CMacroTable* table) : PP_CPP(memory, table) {
        table->DefineSpecialMacro("__LINE__", reinterpret_cast<void*>(&PP_CPP::DoLINE), false);
        table->DefineSpecialMacro("__DATE__", reinterpret_cast<void*>(&PP_CPP::DoDATE), false);
        table->DefineSpecialMacro("__TIME__", reinterpret_cast<void*>(&PP_CPP::DoTIME), false);
        table->DefineSpecialMacro("__VELOR__", reinterpret_cast<void*>(&returnTrue), false);
    }
    ~PPTestPreprocessor() override {
        while (!AtEOF())
            PopInput();
    }

    void PushFile(std::string const& text) {
        static char fileRecord;
        fFiles.push_back(text);
        PP_CInput* input = fMemory->AllocInput(fFiles.back().data(), fFiles.back().size());
        input->fFileInfo = reinterpret_cast<RCScanner_FileInfo*>(&fileRecord);
        PushInput(input);
    }

    void DoIncludeLine(char* line) override {
        fIncludeLines.push_back(line);
        auto file = fIncludable.find(line);
        if (file != fIncludable.end())
            PushFile(file->second);
    }
    void DoErrorLine(char* line) override { fErrorLines.push_back(line); }
    void DoSourceFileChange(unsigned long line, char const* name) override {
        fFileNames.push_back(name);
        PP_CPP::DoSourceFileChange(line, name);
    }
    PP_CTextReader DoSpecialMacro(void* body) override {
        return reinterpret_cast<PP_SpecialMacroFunction>(body)(this);
    }
    void Error(int code, int argCount, ...) override {
        va_list arguments;
        va_start(arguments, argCount);
        fMessages.push_back({code, argCount > 0 ? va_arg(arguments, char const*) : ""});
        va_end(arguments);
    }
    void Warning(int code, int argCount, ...) override {
        va_list arguments;
        va_start(arguments, argCount);
        fMessages.push_back({-code, argCount > 0 ? va_arg(arguments, char const*) : ""});
        va_end(arguments);
    }

    using PP_CPP::fHelper;

    std::deque<std::string> fFiles;
    std::map<std::string, std::string> fIncludable;
    std::vector<std::string> fIncludeLines;
    std::vector<std::string> fErrorLines;
    std::vector<std::string> fFileNames;
    std::vector<PPMessage> fMessages;
};

// Runs texts through a fresh preprocessor and checks afterwards that every allocation of the
// arena was given back.
class PPPreprocessorTest : public ::testing::Test {
protected:
    void SetUp() override { pp.emplace(&memory, &table); }
    void TearDown() override {
        pp.reset();
        EXPECT_EQ(memory.GetAllocPermCount(), 0u);
        EXPECT_EQ(memory.GetAllocInputCount(), 0u);
        EXPECT_EQ(memory.GetTempMemUsageCount(), 0u);
    }

    // Every token up to the end of input, white space, comments and line ends left out.
    std::vector<PPToken> tokens(std::string const& text) {
        pp->PushFile(text);
        std::vector<PPToken> result;
        for (;;) {
            int error;
            int type = pp->GetNextToken(&error);
            if (error != 0)
                pp->Error(error, 0);
            if (type == kPPScan_EOF)
                return result;
            if (type == kPPScan_EOL || type == kPPScan_White || type == kPPScan_Comment)
                continue;
            PP_CTextReader t = pp->GetTokenText();
            result.push_back({type, std::string(t.GetReadPtr(), t.Readable()), pp->GetStartingLineno()});
        }
    }

    // The token texts joined by single blanks.
    std::string expand(std::string const& text) {
        std::string joined;
        for (PPToken const& t : tokens(text))
            joined += (joined.empty() ? "" : " ") + t.text;
        return joined;
    }

    std::vector<PPMessage> const& messages() const { return pp->fMessages; }

    std::string macroText(char const* name) {
        PP_MacroBody* body = table.LookupMacro(name, std::strlen(name));
        return body != nullptr && body->fMacroText != nullptr ? body->fMacroText : "<undefined>";
    }

    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table{&memory};
    std::optional<PPTestPreprocessor> pp;
};

#endif
