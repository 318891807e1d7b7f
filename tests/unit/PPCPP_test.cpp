#include "PPTestPreprocessor.h"

#include <tuple>

namespace {

using PPCPP = PPPreprocessorTest;

std::string nestedIfs(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i)
        text += "#if 1\n";
    return text;
}

TEST_F(PPCPP, ConditionsSelectTheirBranch) {
    EXPECT_EQ(expand("#if 4294967296\nyes\n#endif\n"), "yes");
    EXPECT_EQ(expand("#if 4294967296 + 0\nyes\n#endif\nafter"), "after");
    EXPECT_EQ(expand("#if 0\na\n#elif 1\nb\n#elif 1\nc\n#else\nd\n#endif\n"), "b");
    EXPECT_EQ(expand("#if 0\na\n#elif 0\nb\n#else\nc\n#endif\n"), "c");
    EXPECT_EQ(expand("#define X\n#ifdef X\nx\n#endif\n#ifndef X\nnx\n#endif\n#ifndef Y\nny\n#endif"), "x ny");
    EXPECT_EQ(expand("#if 0\n#if 1\na\n#else\nb\n#endif\nc\n#else\nd\n#endif\n"), "d");
    EXPECT_EQ(expand("#if 0\n0x bad \"\n#foo\n#error no\n#define Z 1\n#endif\nZ"), "Z");
    EXPECT_TRUE(messages().empty());
    EXPECT_TRUE(pp->fErrorLines.empty());
}

TEST_F(PPCPP, DefinedAndMacrosInConditions) {
    EXPECT_EQ(expand("#define X 0\n#if defined X && defined(X) && !X\nyes\n#endif\n"), "yes");
    EXPECT_EQ(expand("#define T 1\n#if T == 1 && defined ( T )\nyes\n#endif\n"), "yes");
    // Space between two leading identifiers is lost: this reads as the name AB.
    EXPECT_EQ(expand("#if A B\nyes\n#endif\n"), "");
    EXPECT_TRUE(messages().empty());
}

TEST_F(PPCPP, BadConditionsAreReported) {
    EXPECT_EQ(expand("#if defined(X\na\n#endif\n#if 1 : 2\nb\n#else\nc\n#endif\n#ifdef 3\nd\n#endif"), "");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_BadExpression, ""},
                                                  {kPPErr_ColonWithoutQuestion, ""},
                                                  {kPPErr_DefinedWithoutName, ""}}));
}

TEST_F(PPCPP, DefinedWithoutNameReadsTheNextLineToo) {
    EXPECT_EQ(expand("#if defined\n1\na\n#endif\nb"), "b");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_DefinedWithoutName, ""}}));
}

TEST_F(PPCPP, ConditionalsNest31Deep) {
    // The refused 32nd `#if 0` pushes nothing, so `in` is copied and the 32nd #endif finds no group.
    std::string text = nestedIfs(31) + "#if 0\nin\n";
    for (int i = 0; i < 32; ++i)
        text += "#endif\n";
    EXPECT_EQ(expand(text + "out\n"), "in out");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_IfNestedTooDeep, ""}, {kPPErr_EndifWithoutIf, ""}}));
}

TEST_F(PPCPP, MisplacedGroupDirectives) {
    EXPECT_EQ(expand("#if 1\na\n#else junk\nb\n#else\nc\n#elif 1\n#endif junk\n#endif\n#else\n#elif 1\nd"), "a d");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_ElseWithoutIf, ""},
                                                  {kPPErr_ElifWithoutIf, ""},
                                                  {kPPErr_EndifWithoutIf, ""},
                                                  {kPPErr_ElseWithoutIf, ""},
                                                  {kPPErr_ElifWithoutIf, ""}}));
}

TEST_F(PPCPP, RestOfAnIfdefLineIsSourceText) {
    EXPECT_EQ(expand("#define X\n#ifdef X junk\n#endif"), "junk");
}

TEST_F(PPCPP, UnclosedIfIsReportedWhenReadingPastTheEnd) {
    EXPECT_EQ(expand("#if 1\na"), "a");
    EXPECT_TRUE(messages().empty());
    int error;
    EXPECT_EQ(pp->GetNextToken(&error), kPPScan_EOF);
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_EOFInsideIf, ""}}));
}

TEST_F(PPCPP, DirectiveRecognition) {
    std::vector<PPToken> result = tokens("/* c */ # /* d */ define X 1\nX a # b\n#\n# 12\n#unknown\nc");
    ASSERT_EQ(result.size(), 5u);
    EXPECT_EQ(result[0].text, "1");
    EXPECT_EQ(result[2].type, kPPScan_Pound);
    EXPECT_EQ(result[4].text, "c");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_UnknownDirective, ""}, {kPPErr_UnknownDirective, ""}}));
}

TEST_F(PPCPP, AllTwelveDirectiveWordsAreFound) {
    char const* const words[] = {"define", "elif", "else", "endif", "error", "if",
                                 "ifdef", "ifndef", "include", "line", "pragma", "undef"};
    int const numbers[] = {kPPDir_Define, kPPDir_Elif,    kPPDir_Else,    kPPDir_Endif,
                           kPPDir_Error,  kPPDir_If,      kPPDir_Ifdef,   kPPDir_Ifndef,
                           kPPDir_Include, kPPDir_Line,   kPPDir_Pragma,  kPPDir_Undef};
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(lookupPoundName(PP_CTextReader(words[i], std::strlen(words[i]))), numbers[i]) << words[i];
    for (char const* word : {"i", "in", "def", "includes", "z", "a", "elsif"})
        EXPECT_EQ(lookupPoundName(PP_CTextReader(word, std::strlen(word))), kPPScan_Ident) << word;
}

TEST_F(PPCPP, LineDirectiveActsEvenInSkippedText) {
    std::vector<PPToken> result = tokens("#if 0\n#line 100 \"a\\b\"\n#endif\nx\n#line 7\ny");
    ASSERT_EQ(result.size(), 2u);
    EXPECT_EQ(result[0].line, 100u);
    EXPECT_EQ(result[1].line, 7u);
    EXPECT_EQ(pp->fFileNames, (std::vector<std::string>{"ab", ""}));
}

TEST_F(PPCPP, ErrorPragmaAndIncludeLines) {
    pp->fIncludable["\"inc.h\""] = "inner __LINE__\n";
    std::vector<PPToken> result =
        tokens("#define H \"inc.h\"\n#error  a  /* c */ b\n#pragma x\n#include H\n__LINE__ after");
    EXPECT_EQ(pp->fErrorLines, (std::vector<std::string>{" a b"}));
    EXPECT_EQ(pp->fIncludeLines, (std::vector<std::string>{"\"inc.h\""}));
    ASSERT_EQ(result.size(), 4u);
    EXPECT_EQ(result[0].text, "inner");
    EXPECT_EQ(result[1].text, "1");
    // #error and #pragma took their LF line ends without counting them.
    EXPECT_EQ(result[2].text, "3");
    EXPECT_EQ(result[3].line, 3u);
}

TEST_F(PPCPP, LineNumbersFollowTheFile) {
    std::vector<PPToken> result = tokens("a\r\n\r\nb\n\n\nc /* x\ny */ d\\\ne\n#define M(x) x\nM(\nf\n) g");
    std::vector<unsigned long> lines;
    for (PPToken const& t : result)
        lines.push_back(t.line);
    // A token's line is where its request began: the directive's line for the expansion of M.
    EXPECT_EQ(lines, (std::vector<unsigned long>{1, 3, 6, 7, 9, 12}));
    EXPECT_EQ(result[3].text, "de");
}

TEST_F(PPCPP, TokenCountCountsEveryRequest) {
    tokens("a b\n");
    EXPECT_EQ(pp->GetTokenCount(), 5u);
}

// Each token that reaches a caller with its text, error, starting line, request count and line.
using Seen = std::vector<std::tuple<int, std::string, int, unsigned long, unsigned long, unsigned long>>;

// Reads `text` dropping separators: below the preprocessor's own loop, or in the caller.
Seen readDroppingSeparators(std::string const& text, bool below) {
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table{&memory};
    PPTestPreprocessor pp(&memory, &table);
    pp.PushFile(text);
    Seen seen;
    for (;;) {
        int error;
        int type = pp.GetNextToken(&error, !below);
        if (!below && isSpaceToken(type))
            continue;
        PP_CTextReader t = type == kPPScan_EOF ? PP_CTextReader() : pp.GetTokenText();
        seen.emplace_back(type, std::string(t.GetReadPtr(), t.Readable()), error, pp.GetStartingLineno(),
                          pp.GetTokenCount(), pp.GetLineno());
        if (type == kPPScan_EOF)
            return seen;
    }
}

// Blanks, continuations among them, comments, line ends, directives and skipped text: dropping the
// separators in the preprocessor changes nothing that its caller can see.
TEST_F(PPCPP, SeparatorsDroppedBelowLookTheSameToTheCaller) {
    std::string const text = "a  \\\n  b\n \t\\\r\n\\\n c /* x\n */ d\f# x\n  #define M  m  \n M  M\n"
                             "#if 0\n  e  \n#endif\r\r\n\r  f \\\n\n\t1.5 \"s\"\r\n#x\n  \\\n";
    EXPECT_EQ(readDroppingSeparators(text, true), readDroppingSeparators(text, false));
}

TEST_F(PPCPP, SpecialMacros) {
    std::vector<PPToken> result = tokens("__DATE__ __TIME__ __VELOR__\n#define L __LINE__\n\nL");
    ASSERT_EQ(result.size(), 4u);
    EXPECT_EQ(result[0].type, kPPScan_String);
    EXPECT_EQ(result[1].type, kPPScan_String);
    EXPECT_EQ(result[2].text, "1");
    EXPECT_EQ(result[3].text, "4");
    EXPECT_EQ(expand("#define __LINE__ 1\n#undef __LINE__\n#undef nothing\n#define defined 1"), "");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_DefineNotAllowed, ""},
                                                  {kPPErr_UndefNotAllowed, "__LINE__"},
                                                  {kPPErr_DefineNotAllowed, ""}}));
}

// Asks for the line after every token, as a message at that token would.
void ReadAskingForLines(PPTestPreprocessor& pp, std::string const& text) {
    pp.PushFile(text);
    int error;
    while (pp.GetNextToken(&error) != kPPScan_EOF)
        pp.GetLineno();
}

// A call still open at the end of the input is expanded from text that has no file under it any
// more; its position cannot be asked for, and asking is a stop on the assertion.
TEST_F(PPCPP, MacroTextWithoutAFileBelowHasNoLine) {
    EXPECT_DEATH(ReadAskingForLines(*pp, "#define id(x)x\nid(\"\n,"),
                 "Assertion failed: false, function NearestFileBelowTop");
}

// An empty macro at the start of a body ends an input, so the next '#' stands at a line start,
// still inside macro text; '#line' there has no file to renumber and stops on the assertion.
TEST_F(PPCPP, LineDirectiveInMacroTextStops) {
    EXPECT_DEATH(ReadAskingForLines(*pp, "#define E\n#define F E # line 3\nF\n"),
                 "Assertion failed: InSourceText\\(\\), function DoLineLine");
}

} // namespace
