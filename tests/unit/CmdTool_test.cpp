#include "CmdTool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "DataArea.h"

namespace {

std::vector<std::string> ResponseWords(std::string text) {
    FILE* file = fmemopen(text.data(), text.size(), "rb");
    DataArea buffer(1024, 512, false);
    CmdTool::ReadResponseWords(file, &buffer);
    std::fclose(file);
    std::vector<std::string> words;
    for (uint64_t at = 0; at < buffer.GetCursor();) {
        std::string word = buffer.GetData(at);
        if (word.empty()) break;
        words.push_back(word);
        at += word.size() + 1;
    }
    return words;
}

using Words = std::vector<std::string>;

TEST(ResponseFile, SplitsAtAnyWhiteSpace) {
    EXPECT_EQ((Words{"-o", "out", "in.vd"}), ResponseWords("  -o\tout\n\r\nin.vd\n"));
    EXPECT_EQ((Words{"last"}), ResponseWords("last"));
    EXPECT_EQ(Words{}, ResponseWords(""));
}

TEST(ResponseFile, QuotesGroupBlanksAndJoinText) {
    EXPECT_EQ((Words{"a b", "ab cd"}), ResponseWords("\"a b\" a\"b c\"d"));
    EXPECT_EQ((Words{"unclosed quote"}), ResponseWords("\"unclosed quote"));
}

TEST(ResponseFile, AnEmptyWordEndsTheList) {
    EXPECT_EQ((Words{"kept"}), ResponseWords("kept \"\" dropped"));
}

TEST(CmdToolDeathTest, AtExitProceduresRunNewestFirstAndCanBeRemoved) {
    auto run = [] {
        static std::string order;
        auto append = [](void* text) { order += static_cast<char const*>(text); };
        CmdTool::InstallAtExitProc(append, const_cast<char*>("1"));
        void* removed = CmdTool::InstallAtExitProc(append, const_cast<char*>("x"));
        CmdTool::InstallAtExitProc(append, const_cast<char*>("2"));
        CmdTool::RemoveAtExitProc(removed);
        CmdTool::RemoveAtExitProc(nullptr);
        std::atexit([] { std::fputs(order.c_str(), stderr); });
        struct Tool : CmdTool {
            void Run() override {}
            void ShowUsage() override {}
        };
        (new Tool)->ICmdTool("tool");
        std::exit(0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "^21$");
}

TEST(CmdToolDeathTest, RemovingAnUnknownCookieStops) {
    int notACookie = 0;
    EXPECT_DEATH(CmdTool::RemoveAtExitProc(&notACookie), "atExitCookie == gCurrentExitProc");
}

}  // namespace
