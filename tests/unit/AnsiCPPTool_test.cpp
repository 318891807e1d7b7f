#include "AnsiCPPTool.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Msgs.h"
#include "Options.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "UniqueNames.h"

namespace {

using Texts = std::vector<std::string>;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class AnsiCPPToolTest : public testing::Test {
protected:
    // Processes the words as a command line and returns what it reported.
    std::string Process(std::vector<char const*> words) {
        words.insert(words.begin(), "velor");
        CaptureStderr();
        fTool.ProcessCommandLine(static_cast<int>(words.size()), const_cast<char**>(words.data()), nullptr);
        return GetCapturedStderr();
    }

    Texts Directories() const {
        Texts directories;
        for (long i = 0; i < gOptions->DirectoryCount(); ++i) directories.push_back(gOptions->GetDirectory(i));
        return directories;
    }

    Texts IncludePaths(char const* list) {
        fTool.DoIncludePathList(list);
        return Directories();
    }

    AnsiCPPTool fTool;
};

// A blank ends an entry only before "/", "." or the end; otherwise, or escaped, it is part of the name.
TEST_F(AnsiCPPToolTest, IncludePathListsSplitAtBlanksThatStartAPath) {
    EXPECT_EQ((Texts{"/a b/", "./c/", "/d/", "/e f/", "/g/"}), IncludePaths("/a b ./c /d /e\\ f /g "));
}

TEST_F(AnsiCPPToolTest, QuotedEntriesLoseTheirFirstAndLastCharacter) {
    EXPECT_EQ((Texts{"/x y/", "/z/", "/half/"}), IncludePaths("\"/x y\" \"/z\" \"/half/"));
}

TEST_F(AnsiCPPToolTest, EntriesEndingInASeparatorOutliveTheScratchBuffer) {
    Texts directories = IncludePaths("/one/ /two/");
    EXPECT_EQ((Texts{"/one/", "/two/"}), directories);
    EXPECT_NE(gOptions->GetDirectory(0), gOptions->GetDirectory(1));
}

TEST_F(AnsiCPPToolTest, EnvironmentListsComeBeforeIncludeOptions) {
    setenv("HEADER_SEARCH_PATHS", "/h1 /h2", 1);
    setenv("VELOR_SEARCH_PATHS", "/v", 1);
    Process({"-i", "/opt", "-I", "/opt2/"});
    unsetenv("HEADER_SEARCH_PATHS");
    unsetenv("VELOR_SEARCH_PATHS");
    EXPECT_EQ((Texts{"/h1/", "/h2/", "/v/", "/opt/", "/opt2/"}), Directories());
}

TEST_F(AnsiCPPToolTest, DefineSplitsAtTheFirstEquals) {
    EXPECT_EQ("", Process({"-D", "FOO=1=2", "-d", "EMPTY=", "-d", "BARE"}));
    ASSERT_EQ(3, gOptions->MacroCount());
    EXPECT_STREQ("FOO", gOptions->GetMacroName(0));
    EXPECT_STREQ("1=2", gOptions->GetMacroBody(0));
    EXPECT_STREQ("EMPTY", gOptions->GetMacroName(1));
    EXPECT_STREQ("", gOptions->GetMacroBody(1));
    EXPECT_STREQ("BARE", gOptions->GetMacroName(2));
    EXPECT_STREQ("1", gOptions->GetMacroBody(2));
}

TEST_F(AnsiCPPToolTest, FilesKeepTheirOrderAndTheLastOutputWins) {
    EXPECT_EQ("", Process({"a.vd", "-o", "first", "", "b.vd", "-O", "second", "-cpp", "-singlefile"}));
    ASSERT_EQ(2, gOptions->FileCount());
    EXPECT_STREQ("a.vd", gOptions->GetFile(0));
    EXPECT_STREQ("b.vd", gOptions->GetFile(1));
    EXPECT_STREQ("second", gOptions->GetOutput());
}

TEST_F(AnsiCPPToolTest, TypeAndCreatorPackCharactersInAddressOrder) {
    EXPECT_EQ("# Warning: Argument to --t has more than 4 characters: ABCDE\n", Process({"-t", "ABCDE", "-c", "ab"}));
    EXPECT_EQ(0x44434241u, gOptions->GetType());
    EXPECT_EQ(0x6261u, gOptions->GetCreator());
}

TEST_F(AnsiCPPToolTest, OptionProblemsAreErrorsAndTheWalkGoesOn) {
    EXPECT_EQ("# Error: Unrecognized option '-nope'\n# Error: --!fx bad\n# Error: Missing 1 argument to option '-d'\n",
              Process({"-nope", "-!fx", "bad", "-!fx", "perf", "-d"}));
    EXPECT_EQ("# Error: Missing 2 arguments to option '-x'\n", [&] {
        CaptureStderr();
        EXPECT_FALSE(fTool.IsArg(3, 4, "x"));
        return GetCapturedStderr();
    }());
}

TEST_F(AnsiCPPToolTest, MessageOptionsChangeTheMask) {
    unsigned char saved = Msgs::GetMask();
    Process({"-p", "-W", "-debug"});
    EXPECT_EQ(60 - 4 + 2 + 1, Msgs::GetMask());
    Msgs::SetMask(saved);
}

TEST_F(AnsiCPPToolTest, NumbersAndSwitches) {
    CaptureStderr();
    EXPECT_EQ(31, fTool.GetNumber("0x1F", "n"));
    EXPECT_EQ(31, fTool.GetNumber("$1F", "n"));
    EXPECT_EQ(-1, fTool.GetNumber("many", "n"));
    EXPECT_TRUE(fTool.OnOff("ON", "s"));
    EXPECT_FALSE(fTool.OnOff("off", "s"));
    EXPECT_FALSE(fTool.OnOff("maybe", "s"));
    EXPECT_EQ("# Error: Non-numeric argument to option -n: many\n# Error: Unrecognized argument 'maybe' to option '-s'\n",
              GetCapturedStderr());
}

// Named numbers reach the preprocessor as object-like macros holding their decimal text.
TEST(AnsiCPPToolNamedNumbersTest, ValuesBecomeDecimalMacrosThatALaterLineReplaces) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table(&memory);
    auto text = [&](char const* name) { return std::string(table.LookupMacro(name, std::strlen(name))->fMacroText); };

    AnsiCPPTool::DefineMacro(&table, uniqueOf("kValue"), 0x10);
    EXPECT_EQ("16", text("kValue"));
    AnsiCPPTool::DefineMacro(&table, uniqueOf("kValue"), -9223372036854775807L - 1);
    EXPECT_EQ("-9223372036854775808", text("kValue"));
    AnsiCPPTool::DefineMacro(&table, nullptr, 1);
    table.ReleaseMacros();
}

}  // namespace
