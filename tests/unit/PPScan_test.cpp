#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PPScan.h"

namespace {

struct Token {
    int type;
    std::string text;
    int error;
    unsigned long line;  // the scanner's line after the token
    bool operator==(Token const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Token const& t) {
    return out << "{" << t.type << ", \"" << t.text << "\", " << t.error << ", " << t.line << "}";
}

std::vector<Token> scanAll(std::string const& text) {
    PP_CTextReader input(text.data(), text.size());
    PP_CScanner scanner(&input);
    std::vector<Token> tokens;
    for (;;) {
        int error;
        int type = scanner.GetNextToken(&error);
        if (type == kPPScan_EOF && error == 0 && input.IsEOF())
            return tokens;
        PP_CTextReader t = scanner.GetTokenText();
        tokens.push_back({type, std::string(t.GetReadPtr(), t.Readable()), error, scanner.GetLineno()});
    }
}

unsigned long finalLine(std::string const& text) {
    PP_CTextReader input(text.data(), text.size());
    PP_CScanner scanner(&input);
    int error;
    while (scanner.GetNextToken(&error) != kPPScan_EOF || error != 0 || !input.IsEOF()) {
    }
    return scanner.GetLineno();
}

std::vector<int> typesOf(std::string const& text) {
    std::vector<int> types;
    for (Token const& t : scanAll(text))
        types.push_back(t.type);
    return types;
}

TEST(PPScan, Numbers) {
    struct Case {
        char const* text;
        int type, error;
    } const cases[] = {
        {"1LL", 0, 6},   {"1UL", 10, 0},    {"1LU", 10, 0},  {"1UU", 0, 6},      {"1x", 0, 6},    {"089", 0, 6},
        {"0", 7, 0},     {"00", 11, 0},     {"017", 11, 0},  {"0b", 0, 4},       {"0b2", 0, 4},   {"0xg", 0, 4},
        {"0b101", 12, 0}, {"0xFFUL", 8, 0}, {"7lu", 10, 0},  {"1.", 14, 0},      {"1.e", 0, 6},   {".5f", 13, 0},
        {"1e+", 0, 6},   {"1e+5", 14, 0},   {"2.5L", 15, 0}, {"017.5", 14, 0},   {"0e1", 14, 0},  {"1.5ff", 0, 6},
        {"$FF", 9, 0},   {"123", 10, 0},
    };
    for (Case const& c : cases) {
        std::vector<Token> tokens = scanAll(c.text);
        ASSERT_FALSE(tokens.empty()) << c.text;
        EXPECT_EQ(tokens[0].type, c.type) << c.text;
        EXPECT_EQ(tokens[0].error, c.error) << c.text;
        if (c.error == 0) {
            EXPECT_EQ(tokens.size(), 1u) << c.text;
        }
    }
    EXPECT_EQ(typesOf("$12xy"), (std::vector<int>{kPPScan_DollarHex, kPPScan_Ident}));
    // What stands right behind a number decides where it ends.
    EXPECT_EQ(typesOf("0x1F.5"), (std::vector<int>{kPPScan_Hex, kPPScan_Double}));
    EXPECT_EQ(typesOf("0;12,0x7)"), (std::vector<int>{kPPScan_Zero, kPPScan_Semicolon, kPPScan_Decimal, kPPScan_Comma,
                                                       kPPScan_Hex, kPPScan_RParen}));
    EXPECT_EQ(typesOf("0.5 9e2 0X"), (std::vector<int>{kPPScan_Double, kPPScan_White, kPPScan_Double, kPPScan_White,
                                                        kPPScan_None}));
}

TEST(PPScan, PrefixesOfIdentifiersAndLiterals) {
    struct Case {
        char const* text;
        int type;
    } const cases[] = {
        {"$", 5},         {"$\"41\"", 19},   {"L$\"0041\"", 20}, {"$L\"0041\"", 20}, {"$J\"00\"", 21}, {"J$\"00\"", 21},
        {"Lx", 5},        {"$Lx", 5},        {"L$x", 5},         {"L\"a\"", 17},     {"J\"a\"", 18},   {"L'a'", 23},
        {"J'a'", 24},     {"'abcd'", 22},    {"\"it's\"", 16},   {"$$Byte", 5},      {"a1_$", 5},
    };
    for (Case const& c : cases)
        EXPECT_EQ(typesOf(c.text), std::vector<int>{c.type}) << c.text;
}

TEST(PPScan, Punctuation) {
    EXPECT_EQ(typesOf("a.*b"), (std::vector<int>{5, 61, 46, 5}));
    EXPECT_EQ(typesOf("->*->-=--<<=>>=<<>><=>=::*::...##"),
              (std::vector<int>{62, 66, 54, 64, 56, 55, 42, 43, 40, 41, 61, 75, 78, 27}));
    EXPECT_EQ(typesOf("!=!%=%*=*^=^&&&=&++|||=~==="), (std::vector<int>{37, 31, 52, 48, 50, 46, 58, 33, 30, 57, 34, 63,
                                                                          29, 59, 35, 36, 49}));
    EXPECT_EQ(typesOf("()[]{},;?:#\\@\xC0"), (std::vector<int>{68, 69, 70, 71, 72, 73, 77, 76, 28, 74, 26, 79, 80, 80}));
    std::vector<Token> dots = scanAll("..x");
    EXPECT_EQ(dots[0], (Token{0, "..", 7, 1}));
    EXPECT_EQ(typesOf("-1!x#y%2&a*b+c=d^e|f-"), (std::vector<int>{45, 10, 31, 5, 26, 5, 48, 10, 34, 5, 46, 5, 44,
                                                                    5, 49, 5, 33, 5, 32, 5, 45}));
    // The look behind a token folds a continuation standing there, so its line counts already.
    EXPECT_EQ(scanAll(";\\\nx")[0], (Token{76, ";", 0, 2}));
    EXPECT_EQ(scanAll("{;\n")[1], (Token{76, ";", 0, 1}));
}

TEST(PPScan, ContinuationLinesJoinTokens) {
    std::vector<Token> tokens = scanAll("a\\\nb c");
    ASSERT_EQ(tokens.size(), 3u);
    EXPECT_EQ(tokens[0], (Token{5, "ab", 0, 2}));
    EXPECT_EQ(tokens[2].text, "c");
    tokens = scanAll("x\\\r\n\\\ny");
    EXPECT_EQ(tokens[0], (Token{5, "xy", 0, 3}));
    EXPECT_EQ(typesOf("a\\ b"), (std::vector<int>{5, 79, 3, 5}));
}

// Runs of a class are taken a block of bytes at a time and must hand over to the cooked reading
// at a continuation. So one spliced in anywhere outside a comment, and not behind a backslash,
// changes no token and adds its own line end to the count. The texts end tokens of every kind
// of run at the end of the input too.
TEST(PPScan, ContinuationsAnywhereChangeNoToken) {
    char const* const texts[] = {
        "'c' abc_$9 123 0x1fUL 0b101 0777 1.5e+10f .5 $FF $\"4142\" L\"ab\" 7u end9",
        "\"str\\\"ing\" \t\v\f\xCA" "x\r\ny\rz\n \"\"",
        "a.b->c <<= 1e 0x 089 \"open",
        "0x", "12", "0b1", "  ", "(x)[y]{z},;?~", "0x4F.y 7;0,x1(9)0", "-1!x#%&*+=^|- ->-=!=##", "\"a b\"x\"it's\"\"\"",
    };
    for (char const* text : texts) {
        std::string const plain(text);
        std::vector<Token> const expected = scanAll(plain);
        unsigned long const lines = finalLine(plain);
        for (std::string const continuation : {"\\\n", "\\\r\n", "\\\r"}) {
            for (size_t at = 0; at <= plain.size(); ++at) {
                // Behind a backslash the spliced one is an escape; a CR spliced before an LF takes it.
                if ((at > 0 && plain[at - 1] == '\\') || (continuation == "\\\r" && plain[at] == '\n'))
                    continue;
                std::string const spliced = plain.substr(0, at) + continuation + plain.substr(at);
                std::vector<Token> const tokens = scanAll(spliced);
                ASSERT_EQ(tokens.size(), expected.size()) << spliced;
                for (size_t i = 0; i < tokens.size(); ++i) {
                    EXPECT_EQ(tokens[i].type, expected[i].type) << spliced;
                    EXPECT_EQ(tokens[i].text, expected[i].text) << spliced;
                    EXPECT_EQ(tokens[i].error, expected[i].error) << spliced;
                }
                bool const splitsCRLF = at > 0 && plain[at - 1] == '\r' && plain[at] == '\n';
                EXPECT_EQ(finalLine(spliced), lines + (splitsCRLF ? 2 : 1)) << spliced;
            }
        }
    }
}

TEST(PPScan, LineEndsAndWhiteSpace) {
    EXPECT_EQ(scanAll("\r\n")[0].line, 2u);
    EXPECT_EQ(scanAll("\n\r")[0].line, 3u);
    EXPECT_EQ(scanAll("\r\r\n\n")[0], (Token{2, "\r\r\n\n", 0, 4}));
    EXPECT_EQ(typesOf("\n \n"), (std::vector<int>{2, 3, 2}));
    EXPECT_EQ(typesOf(" \t\v\f\xCA" "a"), (std::vector<int>{3, 5}));
    std::string withNul("a\0b", 3);
    EXPECT_EQ(typesOf(withNul), (std::vector<int>{5, 1, 5}));
}

TEST(PPScan, Literals) {
    std::vector<Token> tokens = scanAll("\"a\nb");
    EXPECT_EQ(tokens[0], (Token{16, "\"a", 1, 1}));
    EXPECT_EQ(tokens[1].type, 2);
    EXPECT_EQ(scanAll("'ab")[0], (Token{22, "'ab", 2, 1}));
    EXPECT_EQ(scanAll("\"a\\\"b\" x")[0].text, "\"a\\\"b\"");
    EXPECT_EQ(scanAll("\"a'b\"")[0].text, "\"a'b\"");
    tokens = scanAll("\"a\\\nb\"");
    EXPECT_EQ(tokens[0], (Token{16, "\"ab\"", 0, 2}));
}

TEST(PPScan, DoubleByteLeadBytesHideTheirTrailByte) {
    EXPECT_EQ(scanAll("J\"\x81\"\"")[0].text, "J\"\x81\"\"");
    EXPECT_EQ(scanAll("\"\x81\"\"")[0].text, "\"\x81\"");
    gCurrentLanguage = 2;
    EXPECT_EQ(scanAll("\"\xA1\\\"")[0], (Token{18, "\"\xA1\\\"", 0, 1}));
    EXPECT_EQ(scanAll("\"\x81\"")[0].type, 18);
    EXPECT_EQ(scanAll("L\"\xA1\"")[0].text, "L\"\xA1\"");
    gCurrentLanguage = 3;
    EXPECT_EQ(scanAll("$\"\xFE\"\"")[0], (Token{21, "$\"\xFE\"\"", 0, 1}));
    gCurrentLanguage = 0;
}

TEST(PPScan, Comments) {
    std::vector<Token> tokens = scanAll("// comment \\\nx");
    EXPECT_EQ(tokens[0], (Token{4, "// comment \\", 0, 1}));
    EXPECT_EQ(typesOf("// c\nx"), (std::vector<int>{4, 2, 5}));
    EXPECT_EQ(scanAll("/* no end"), (std::vector<Token>{{4, "/* no end", 0, 1}}));
    EXPECT_EQ(scanAll("/* a\n**/x")[0], (Token{4, "/* a\n**/", 0, 2}));
    EXPECT_EQ(typesOf("/*/ */x"), (std::vector<int>{4, 5}));
    EXPECT_EQ(typesOf("a/=b/c"), (std::vector<int>{5, 51, 5, 47, 5}));
}

TEST(PPScan, CookedGetCharCountsOnlyCarriageReturns) {
    std::string text = "\n\r\nx";
    PP_CTextReader input(text.data(), text.size());
    PP_CScanner scanner(&input);
    EXPECT_EQ(scanner.CookedGetChar(), '\n');
    EXPECT_EQ(scanner.GetLineno(), 1u);
    EXPECT_EQ(scanner.CookedGetChar(), '\r');
    EXPECT_EQ(scanner.GetLineno(), 2u);
    EXPECT_EQ(scanner.CookedGetChar(), 'x');
}

TEST(PPScan, SkipHelpers) {
    std::string text = "  /* c */x/y";
    PP_CTextReader input(text.data(), text.size());
    PP_CScanner scanner(&input);
    EXPECT_TRUE(scanner.SkipBlanksToEOL());
    EXPECT_FALSE(scanner.SkipBlanksToEOL());
    EXPECT_TRUE(scanner.SkipComment());
    EXPECT_FALSE(scanner.SkipComment());
    scanner.SkipChar();
    EXPECT_FALSE(scanner.SkipComment());
    EXPECT_EQ(scanner.CookedPeekChar(), '/');
}

TEST(PPScan, Utf8Signature) {
    struct Case {
        std::string text;
        bool accepted;
        int error;
        unsigned long left;
    } const cases[] = {
        {"\xEF\xBB\xBF", true, 0, 0}, {"\xEF\xBB", false, 0, 2}, {"\xEF\xBBx", false, 39, 1}, {"abc", false, 0, 3},
    };
    for (Case const& c : cases) {
        PP_CTextReader input(c.text.data(), c.text.size());
        PP_CScanner scanner(&input);
        int error = -1;
        EXPECT_EQ(scanner.ReadUTF8Signature(&error), c.accepted);
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(input.Readable(), c.left);
    }
}

bool SkipCommentOf(std::string const& text) {
    PP_CTextReader input(text.data(), text.size());
    PP_CScanner scanner(&input);
    return scanner.SkipComment();
}

// The step back over a '/' that opens no comment is one raw byte; behind a folded continuation
// that byte is the line end, and the scanner stops on its invariant.
TEST(PPScanDeathTest, SlashBeforeAContinuationStopsOnTheStepBack) {
    EXPECT_DEATH(SkipCommentOf("/\\\n2"), "Assertion failed: !isEOL\\(RawPeekChar\\(\\)\\)");
    EXPECT_DEATH(SkipCommentOf("/\\\r2"), "Assertion failed: !isEOL\\(RawPeekChar\\(\\)\\)");
}

} // namespace
