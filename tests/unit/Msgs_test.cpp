#include "Msgs.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

// Runs a body with a given diagnostic mask and returns what it wrote to the standard error.
template <typename Body>
std::string Shown(unsigned char mask, Body body) {
    unsigned char saved = Msgs::GetMask();
    Msgs::SetMask(mask);
    CaptureStderr();
    body();
    std::string text = GetCapturedStderr();
    Msgs::SetMask(saved);
    return text;
}

constexpr unsigned char kStartMask = 60;

TEST(Msgs, LabelsFollowTheKindOfMessage) {
    EXPECT_EQ("# Warning: w 1\n", Shown(kStartMask, [] { Msgs::Display(4, "w %d\n", 1); }));
    EXPECT_EQ("# plain\n", Shown(kStartMask, [] { Msgs::Display(32, "plain\n"); }));
    EXPECT_EQ("progress\n", Shown(2, [] { Msgs::Display(2, "progress\n"); }));
    EXPECT_EQ("# Warning: \n", Shown(kStartMask, [] { Msgs::Display(4 | 2, "\n"); }));
    // Two counted kinds at once give no word, and bit 128 drops it; the marker stays.
    EXPECT_EQ("# two\n", Shown(kStartMask, [] { Msgs::Display(4 | 8, "two\n"); }));
    EXPECT_EQ("# silent\n", Shown(kStartMask, [] { Msgs::Display(4 | 128, "silent\n"); }));
}

TEST(Msgs, NumberedMessagesComeFromTheTableWithALineEnd) {
    EXPECT_EQ("# Warning: Argument to --t has more than 4 characters: ABCDE\n",
              Shown(kStartMask, [] { Msgs::Display(4, 1005, "-t", 4, "ABCDE"); }));
    EXPECT_EQ("# Warning: Floating point values must be aligned on four byte boundaries\n",
              Shown(kStartMask, [] { Msgs::Display(4, 32650); }));
    EXPECT_EQ("# Warning: Message 77.  Error string not found in VELOR error string table\n",
              Shown(kStartMask, [] { Msgs::Display(4, 77); }));
}

// The names are read from the header itself, so that a name added without its row, or given a
// number that another name already has, is caught without a second list to keep.
TEST(Msgs, EveryNamedIdHasItsOwnRowInTheTable) {
    std::ifstream header(VELOR_MSG_IDS_HEADER);
    ASSERT_TRUE(header) << VELOR_MSG_IDS_HEADER;
    std::stringstream text;
    text << header.rdbuf();
    std::string const source = text.str();
    std::regex const entry(R"((kMsg_\w+) = (-?\d+),)");
    std::set<long> seen;
    for (auto it = std::sregex_iterator(source.begin(), source.end(), entry); it != std::sregex_iterator(); ++it) {
        long const id = std::stol((*it)[2]);
        EXPECT_TRUE(seen.insert(id).second) << (*it)[1] << " repeats " << id;
        char buffer[512];
        std::string const missing = "Message " + std::to_string(id) + ".  Error string not found";
        EXPECT_NE(0, std::strncmp(Msgs::GetErrorFileText(id, buffer, sizeof buffer), missing.c_str(), missing.size()))
            << (*it)[1] << " = " << id;
    }
    EXPECT_GT(seen.size(), 100u) << "the header was not read as a list of names";
}

TEST(Msgs, GetErrorFileTextTruncatesToTheBuffer) {
    char buffer[8];
    EXPECT_STREQ("'%s' do", Msgs::GetErrorFileText(2400, buffer, sizeof buffer));
    char large[128];
    EXPECT_STREQ("Out of memory", Msgs::GetErrorFileText(-108, large, sizeof large));
}

TEST(Msgs, HiddenFreeFormWarningsCountButHiddenNumberedOnesDoNot) {
    uint32_t before = Msgs::GetWarningCount();
    EXPECT_EQ("", Shown(kStartMask & ~4, [] { Msgs::Display(4, "free\n"); }));
    EXPECT_EQ(before + 1, Msgs::GetWarningCount());
    EXPECT_EQ("", Shown(kStartMask & ~4, [] { Msgs::Display(4, 1005, "-t", 4, "ABCDE"); }));
    EXPECT_EQ(before + 1, Msgs::GetWarningCount());
    Shown(kStartMask, [] { Msgs::Display(4, 1005, "-t", 4, "ABCDE"); });
    EXPECT_EQ(before + 2, Msgs::GetWarningCount());
    Shown(kStartMask, [] { Msgs::Display(4 | 128, "silent\n"); });
    EXPECT_EQ(before + 2, Msgs::GetWarningCount());
}

TEST(Msgs, FatalMessageThrowsTheExitCodeWhenAsked) {
    bool previous = Msgs::ThrowOnExit(true);
    Msgs::SetProgName("tool");
    CaptureStderr();
    int code = -1;
    try {
        Msgs::Display(16, "boom\n");
    } catch (Msgs::Exception const& exception) {
        code = exception.GetExitCode();
    }
    try {
        Msgs::Exit(0);
    } catch (Msgs::Exception const& exception) {
        EXPECT_EQ(0, exception.GetExitCode());
    }
    EXPECT_EQ("# Fatal error: boom\n\ntool - Execution terminated!\n", GetCapturedStderr());
    EXPECT_EQ(1, code);
    EXPECT_TRUE(Msgs::ThrowOnExit(previous));
}

// Errors only count; the run ends at the next check point.
TEST(MsgsDeathTest, ErrorCheckEndsTheRunAfterAnError) {
    auto run = [] {
        Msgs::SetProgName("velor");
        Msgs::Display(8, 1000, "zz");
        std::fputs("still running\n", stderr);
        Msgs::ErrorCheck();
        std::exit(0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1),
                "# Error: Unrecognized option '-zz'\nstill running\n# Fatal error: \nvelor - Execution terminated!\n");
}

TEST(MsgsDeathTest, AnInterruptTakesEffectAtTheNextCheck) {
    auto run = [] {
        Msgs::SetProgName("velor");
        Msgs::SetInterrupted(true);
        Msgs::CheckInterrupted();
        std::exit(0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), "# Fatal error: \nvelor - Execution terminated!\n");
}

TEST(MsgsDeathTest, OutOfMemoryIsASystemErrorAndFatal) {
    auto run = [] {
        Msgs::SetProgName("velor");
        Msgs::Display(16, -108);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(1), "# SysErr -108\n\nvelor - Execution terminated!\n");
}

}  // namespace
