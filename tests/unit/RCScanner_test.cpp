#include "RCScanner.h"

#include "MsgIds.h"
#include "Options.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCByteString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr char kTooManyCharacters[] =
    "File t.vd; Line 1 # Error: Character literal has more than four characters.\n";

class RCScannerTest : public ::testing::Test {
protected:
    ~RCScannerTest() override {
        fString.Destroy();
        gCurrentLanguage = 0;
    }

    // Pushes `text` as the file "t.vd" (or `name`) and reads its first token.
    void Open(char const* text, char const* name = "t.vd") {
        fScanner.PushInput(fScanner.ReadFile(text, name));
        fScanner.NextToken();
    }

    std::string Text() const {
        PP_CTextReader text = fScanner.TokenText();
        return std::string(text.GetReadPtr(), text.Readable());
    }

    std::vector<int> AllTokens() {
        std::vector<int> tokens;
        for (; fScanner.TokenType() != kPPScan_EOF; fScanner.NextToken()) tokens.push_back(fScanner.TokenType());
        return tokens;
    }

    // Merges the adjacent string literals at the start of `text` the way the parsers do, and
    // returns what was reported on the standard error.
    std::string Merge(char const* text, bool* merged = nullptr) {
        Open(text);
        ::testing::internal::CaptureStderr();
        bool ok = true;
        while (ok && fScanner.TokenType() >= kPPScan_String && fScanner.TokenType() <= kPPScan_DBHexString) {
            ok = fScanner.MergeString(fString);
            fScanner.NextToken();
        }
        if (merged != nullptr) *merged = ok;
        return ::testing::internal::GetCapturedStderr();
    }

    std::string Bytes() const { return std::string(fString.Bytes(), static_cast<size_t>(fString.fLength)); }

    std::string Capture(long (RCScanner::*eval)(bool), bool wide, long* value) {
        ::testing::internal::CaptureStderr();
        *value = (fScanner.*eval)(wide);
        return ::testing::internal::GetCapturedStderr();
    }

    PP_CMemoryManager_Basic fMemory;
    PP_CMacroTable_Basic fMacros{&fMemory};
    RCScanner fScanner{&fMemory, &fMacros, nullptr};
    RCByteString fString;
};

TEST_F(RCScannerTest, KeywordsMatchWholeWordsWithCaseAndCarryTheirArgumentCounts) {
    Open("type Type types float single $$CountOf $$BitField wstring");
    EXPECT_EQ(kRCScan_Type, fScanner.TokenType());
    std::vector<int> const expected = {kRCScan_Type, kPPScan_Ident,  kPPScan_Ident,      kRCScan_Single,
                                       kRCScan_Single, kRCScan_FnCountOf, kRCScan_FnBitField, kRCScan_Wstring};
    std::vector<int> args;
    std::vector<int> tokens;
    for (; fScanner.TokenType() != kPPScan_EOF; fScanner.NextToken()) {
        tokens.push_back(fScanner.TokenType());
        args.push_back(fScanner.NArgs());
    }
    EXPECT_EQ(expected, tokens);
    EXPECT_EQ((std::vector<int>{0, 0, 0, 0, 0, 1, 3, 0}), args);
}

// Every row of the table is found, and the names next to it (a byte longer, a byte shorter, the
// last or the middle byte changed) are plain identifiers.
TEST_F(RCScannerTest, EveryKeywordIsFoundAndItsNeighboursAreNot) {
    std::string text;
    std::vector<int> expected;
    for (RCKeyword const* row = gKeywordTable; row->fName != nullptr; ++row) {
        std::string const name = row->fName;
        std::string const shorter = name.substr(0, name.size() - 1);
        std::string middleChanged = name;
        middleChanged[name.size() / 2] ^= 0x20;
        text += name + " " + name + "x " + shorter + " " + shorter + "_ " + middleChanged + " ";
        expected.insert(expected.end(), {row->fToken, kPPScan_Ident, kPPScan_Ident, kPPScan_Ident, kPPScan_Ident});
    }
    Open(text.c_str());
    EXPECT_EQ(expected, AllTokens());
}

TEST_F(RCScannerTest, WhiteSpaceCommentsAndLineEndsNeverReachTheParser) {
    Open("a /* c */ b // d\n\n  c");
    EXPECT_EQ((std::vector<int>{kPPScan_Ident, kPPScan_Ident, kPPScan_Ident}), AllTokens());
    EXPECT_EQ(kPPScan_EOF, fScanner.NextToken());
}

TEST_F(RCScannerTest, NumbersConvertInTheirBaseAndStopAtTheSuffix) {
    Open("0xFFL $1F 017 0b101 123u 0 18446744073709551617");
    std::vector<long> values;
    for (; fScanner.TokenType() != kPPScan_EOF; fScanner.NextToken()) values.push_back(fScanner.EvalNumber());
    EXPECT_EQ((std::vector<long>{255, 31, 15, 5, 123, 0, 1}), values);
}

TEST_F(RCScannerTest, RealNumbersIgnoreTheirSuffix) {
    Open("1.5 2.5e1f .25L");
    EXPECT_DOUBLE_EQ(1.5, fScanner.EvalRealNumber());
    fScanner.NextToken();
    EXPECT_DOUBLE_EQ(25.0, fScanner.EvalRealNumber());
    fScanner.NextToken();
    EXPECT_DOUBLE_EQ(0.25, fScanner.EvalRealNumber());
}

TEST_F(RCScannerTest, CharacterLiteralsPackTheirCharactersFirstHighest) {
    Open(R"('abcd' '\n' '\xFFF' '' '\101\'')");
    std::vector<long> values;
    for (; fScanner.TokenType() != kPPScan_EOF; fScanner.NextToken()) values.push_back(fScanner.EvalChar(false));
    EXPECT_EQ((std::vector<long>{0x61626364, 10, 0xFF46, 0, 0x4127}), values);
}

TEST_F(RCScannerTest, AFifthCharacterIsReportedAndTheValueStillReturned) {
    Open("'abcde'");
    long value = 0;
    EXPECT_EQ(kTooManyCharacters, Capture(&RCScanner::EvalChar, false, &value));
    EXPECT_EQ(0x6162636465, value);
}

TEST_F(RCScannerTest, AdjacentStringsMergeIntoOneNarrowString) {
    // White space in a hex string is skipped, even inside a pair.
    EXPECT_EQ("", Merge(R"("abc" "def" $"41 4 2")"));
    EXPECT_EQ("abcdefAB", Bytes());
    EXPECT_EQ(kPPScan_String, fString.fStringType);
    EXPECT_EQ(0, fString.Bytes()[fString.fLength]);
}

TEST_F(RCScannerTest, EscapesInNarrowStringsKeepTheLowByte) {
    EXPECT_EQ("", Merge(R"("\101\400\x41\q\"")"));
    EXPECT_EQ(std::string("A\0Aq\"", 5), Bytes());
    // The plain text between escapes goes as it stands.
    fString.Destroy();
    EXPECT_EQ("", Merge(R"("ab\tc'd\\e" "f\"g" "")"));
    EXPECT_EQ("ab\tc'd\\ef\"g", Bytes());
}

TEST_F(RCScannerTest, BadHexStringsAreReportedAndLeaveTheStringAsItWas) {
    struct Case {
        char const* text;
        char const* message;
    } const cases[] = {
        {R"($"4")", "Number of hex digits must be even."},
        {R"($"4G")", "Non-hex digit found in hex ($) string."},
        {R"(L$"41")", "Number of hex digits must be a multiple of 4."},
        {R"("a" L"b")", "Cannot concatenate normal/wide strings."},
    };
    for (Case const& c : cases) {
        fString.Destroy();
        fString.fStringType = RCByteString::kEmptyType;
        bool merged = true;
        std::string const reported = Merge(c.text, &merged);
        EXPECT_FALSE(merged) << c.text;
        EXPECT_EQ(std::string("File t.vd; Line 1 # Error: ") + c.message + "\n", reported) << c.text;
        EXPECT_EQ(std::string(c.text).starts_with("\"a\"") ? "a" : "", Bytes()) << c.text;
    }
}

TEST_F(RCScannerTest, WideHexStringsGiveSixteenBitUnits) {
    EXPECT_EQ("", Merge(R"(L$"0041 263A" $L"0042")"));
    EXPECT_EQ(kPPScan_WideString, fString.fStringType);
    ASSERT_EQ(6, fString.fLength);
    std::uint16_t units[4];
    std::memcpy(units, fString.fData, sizeof units);
    EXPECT_EQ(0x0041, units[0]);
    EXPECT_EQ(0x263A, units[1]);
    EXPECT_EQ(0x0042, units[2]);
    EXPECT_EQ(0, units[3]);
}

TEST_F(RCScannerTest, UTF8TextIsCheckedButStoredAsItStands) {
    gCurrentLanguage = 6;
    EXPECT_EQ("", Merge("\"\xC3\xA9\\xC3\""));
    EXPECT_EQ("\xC3\xA9\xC3", Bytes());

    fString.Destroy();
    fString.fStringType = RCByteString::kEmptyType;
    std::string const complaint = "File t.vd; Line 1 # Error: String contains invalid UTF8\n\n";
    EXPECT_EQ(complaint + complaint, Merge("\"a\xE9zz\""));
    EXPECT_EQ("a\xE9zz", Bytes());
}

TEST_F(RCScannerTest, AByteNoUTF8TextHoldsEndsTheString) {
    gCurrentLanguage = 5;
    EXPECT_EQ("File t.vd; Line 1 # Error: String contains invalid UTF8\n\n", Merge("\"ab\xF8" "cd\""));
    EXPECT_EQ("ab", Bytes());
}

TEST_F(RCScannerTest, ScanUntilStopsBehindTheDelimiterAndReportsWhetherItSkipped) {
    Open("; x");
    EXPECT_TRUE(fScanner.ScanUntil(kPPScan_Semicolon));
    EXPECT_EQ("x", Text());

    // An unmatched closing bracket is an ordinary token.
    Open("a ) ( ; ) [ ; ] { ( ; ) } ; x");
    EXPECT_FALSE(fScanner.ScanUntil(kPPScan_Semicolon));
    EXPECT_EQ("x", Text());
}

TEST_F(RCScannerTest, ScanUntilStopsAtTheEndOfInputInsideAnOpenGroup) {
    Open("{ ( ; ");
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(fScanner.ScanUntil(kPPScan_Semicolon, kMsg_ExpectedSemicolon));
    EXPECT_EQ("File t.vd; Line 1 # Error: Expected ';'.\n", ::testing::internal::GetCapturedStderr());
    EXPECT_EQ(kPPScan_EOF, fScanner.TokenType());
    EXPECT_FALSE(fScanner.ScanUntil(kPPScan_Semicolon));
}

TEST_F(RCScannerTest, ScanUntilSurvivesDeepNesting) {
    std::string const text = std::string(200000, '(') + "; x";
    Open(text.c_str());
    EXPECT_FALSE(fScanner.ScanUntil(kPPScan_Semicolon));
    EXPECT_EQ(kPPScan_EOF, fScanner.TokenType());
}

TEST_F(RCScannerTest, FileNameMacroQuotesTheNameAndTurnsBackslashesIntoColons) {
    Open("__FILE__", "dir\\t.vd");
    EXPECT_EQ(kPPScan_String, fScanner.TokenType());
    EXPECT_EQ("\"dir:t.vd\"", Text());
}

// A call still open at the end of the input is expanded after its file is gone: __FILE__ in its
// body has no file to name, and stops on the assertion.
TEST_F(RCScannerTest, FileNameMacroWithoutAFileBelowStops) {
    EXPECT_DEATH(Open("#define F(x) __FILE__ x\nF(1"),
                 "Assertion failed: pp->GetFileInfo\\(\\) != 0, function DoFILE");
}

TEST_F(RCScannerTest, LineDirectiveRenamesTheFileForTheMacroButNotForMessages) {
    Open("#line 7 \"x.vd\"\n__FILE__ __LINE__");
    EXPECT_EQ("\"x.vd\"", Text());
    EXPECT_STREQ("t.vd", fScanner.GetFilename());
    fScanner.NextToken();
    EXPECT_EQ("7", Text());
}

TEST_F(RCScannerTest, OnlyTheDescriptionPragmaActsAndItsWordsIgnoreCase) {
    Options options;
    Options* const saved = gOptions;
    gOptions = &options;
    struct Case {
        char const* text;
        bool descriptions;
    } const cases[] = {
        {"#pragma VELOR WriteDescriptions ON\n", true},
        {"#pragma velor writedescriptions\n", true},
        {"#pragma velor other off\n", true},
        {"#pragma velor writedescriptions off junk\n", false},
        {"#pragma once\n", false},
    };
    for (Case const& c : cases) {
        Open(c.text);
        EXPECT_EQ(c.descriptions, options.GetWriteDescriptions()) << c.text;
    }
    gOptions = saved;
}

TEST_F(RCScannerTest, AnErrorInMacroTextNamesTheLineOfTheNearestFile) {
    Open("#define C 'abcde'\n\nC");
    long value = 0;
    EXPECT_EQ("File t.vd; Line 3 # Error: Character literal has more than four characters.\n",
              Capture(&RCScanner::EvalChar, false, &value));
}

TEST_F(RCScannerTest, AnErrorAfterTheLastFileNamesTheLineWhereItEnded) {
    Open("a\nb\n");
    AllTokens();
    ::testing::internal::CaptureStderr();
    fScanner.Error(kMsg_TooManyCharacters, 0);
    EXPECT_EQ("File t.vd; Line 3 # Error: Character literal has more than four characters.\n",
              ::testing::internal::GetCapturedStderr());
}

TEST_F(RCScannerTest, ABadTokenIsReportedOnceAndArrivesAsTypeZero) {
    ::testing::internal::CaptureStderr();
    Open("1LL x");
    EXPECT_EQ("File t.vd; Line 1 # Error: looked like a number but it wasnt\n\n",
              ::testing::internal::GetCapturedStderr());
    EXPECT_EQ(kPPScan_None, fScanner.TokenType());
}

TEST_F(RCScannerTest, TheUTF8SignatureIsConsumedAndRemembered) {
    Open("\xEF\xBB\xBFtype");
    EXPECT_TRUE(fScanner.IsUTF8());
    EXPECT_EQ(kRCScan_Type, fScanner.TokenType());
}

TEST_F(RCScannerTest, UnreadableFilesGiveNoInput) {
    EXPECT_EQ(nullptr, fScanner.ReadFile(static_cast<IncFile*>(nullptr), "/nonexistent/file.vd"));
    EXPECT_EQ(nullptr, fScanner.ReadFile(static_cast<IncFile*>(nullptr), "/"));
}

}  // namespace
