#include "PPTestPreprocessor.h"

namespace {

using PPCPPHlp = PPPreprocessorTest;

TEST_F(PPCPPHlp, ObjectAndFunctionMacros) {
    EXPECT_EQ(expand("#define X (1)\n#define f(a, b) b a\nX f(x, y) f((p, q), r)"), "( 1 ) y x r ( p , q )");
    EXPECT_EQ(macroText("X"), "(1)");
    EXPECT_EQ(expand("#define E\n#define g() G\n#define h(a) [a]\nE g() h() h( ) E"), "G [ ] [ ]");
    EXPECT_TRUE(messages().empty());
}

TEST_F(PPCPPHlp, DefinitionsAreNormalised) {
    expand("#define X  a /* c */  +\tb   // d\n#define P a ## b\n#define F(x, y) ( x )##y # x\n");
    EXPECT_EQ(macroText("X"), "a + b");
    EXPECT_EQ(macroText("P"), "ab");
    EXPECT_EQ(macroText("F"), std::string("( \x01\x05 )\x03\x01\x06 \x02\x01\x05"));
    // The same text after changes of space only is no redefinition; a different one is.
    expand("#define X a\t+  b\n#define X a /**/ + b\n#define X a - b\n#define F( x , y ) ( x ) ## y # x\n"
           "#define F(p, y) ( p )##y # p");
    EXPECT_EQ(macroText("X"), "a + b");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_Redefinition, "X"}, {kPPErr_Redefinition, "F"}}));
}

TEST_F(PPCPPHlp, BadDefinitionsAreReported) {
    struct Case {
        char const* text;
        PPMessage message;
    } const cases[] = {
        {"#define X ## a\n", {kPPErr_StringizeWithoutParameter, "X"}},
        {"#define X a ##\n", {kPPErr_PasteAtEdge, "X"}},
        {"#define f(x) ## x\n", {kPPErr_PasteAtEdge, "f"}},
        {"#define f(x) # ## x\n", {kPPErr_StringizeWithoutParameter, "f"}},
        {"#define f(x) #\n", {kPPErr_StringizeWithoutParameter, "f"}},
        {"#define f(x) # 1\n", {kPPErr_StringizeWithoutParameter, "f"}},
        {"#define f(\n", {kPPErr_BadParameterName, "f"}},
        {"#define f(...) x\n", {kPPErr_BadParameterName, "f"}},
        {"#define f(a b) x\n", {kPPErr_BadParameterSeparator, "f"}},
        {"#define\n", {kPPErr_DefineWithoutName, ""}},
        {"#define 1\n", {kPPErr_DefineWithoutName, ""}},
        {"#undef\n", {kPPErr_UndefWithoutName, ""}},
        {"#define O 1\n#define O(a) a\n", {kPPErr_Redefinition, "O"}},
    };
    for (Case const& c : cases) {
        pp->fMessages.clear();
        expand(c.text);
        EXPECT_EQ(messages(), std::vector<PPMessage>{c.message}) << c.text;
    }
    pp->fMessages.clear();
    expand("#define f(x) x ##\n#define t(a,) a\n");
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(macroText("t"), "\x01\x05");
}

TEST_F(PPCPPHlp, AMacroIsNotExpandedInsideItself) {
    EXPECT_EQ(expand("#define foo foo\nfoo"), "foo");
    EXPECT_EQ(expand("#define a b\n#define b a\na b"), "a b");
    // The marked name reaches the outer text and stays unexpanded even before a parenthesis.
    EXPECT_EQ(expand("#define g(x) x g\ng(1)(2)"), "1 g ( 2 )");
    EXPECT_EQ(expand("#define h(x) x\nh(h(1))"), "1");
}

TEST_F(PPCPPHlp, ExpansionIsRescannedWithTheFollowingText) {
    EXPECT_EQ(expand("#define f(x) <x>\n#define g f\ng(1)"), "< 1 >");
    EXPECT_EQ(expand("f\n(2)"), "< 2 >");
    std::vector<PPToken> result = tokens("#define k(x) x\nk /* c */ + k");
    ASSERT_EQ(result.size(), 3u);
    EXPECT_EQ(result[0].text, "k");
    EXPECT_EQ(result[2].text, "k");
}

TEST_F(PPCPPHlp, AFunctionNameWithoutCallKeepsOneBlank) {
    pp->PushFile("#define f(x) x\nf /* a */ \n\n;");
    std::string text;
    int error;
    for (int type = pp->GetNextToken(&error); type != kPPScan_EOF; type = pp->GetNextToken(&error)) {
        PP_CTextReader t = pp->GetTokenText();
        text += std::string(t.GetReadPtr(), t.Readable()) + "|";
    }
    EXPECT_EQ(text, "f| |;|");
}

TEST_F(PPCPPHlp, StringizeAndPaste) {
    EXPECT_EQ(expand("#define S(x) #x\nS( a  \"b\\n\"   c ) S('\"' \\n) S()"), "\"a \\\"b\\\\n\\\" c\" \"'\\\"' \\n\" \"\"");
    EXPECT_EQ(expand("#define J(a,b) a##b\n#define xy done\n#define y z\nJ(x,y) J(x, q) J(1,2) J(,)"), "done xq 12");
    EXPECT_EQ(expand("#define K(a) a##__LINE__\nK(k) K()"), "k__LINE__ 2");
}

TEST_F(PPCPPHlp, PasteUnmarksTheJoinedName) {
    EXPECT_EQ(expand("#define self self\n#define J(a,b) a##b\n#define pself P\nJ(p,self)"), "P");
}

TEST_F(PPCPPHlp, ArgumentListsAndTheirMessages) {
    EXPECT_EQ(expand("#define f(a,b) [a|b]\nf(1,2,3) f(\"(\", ')') f(1)"), "[ 1 | 2 ] [ \"(\" | ')' ] [ 1 | ]");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_TooManyArguments, "f"}, {kPPErr_TooFewArguments, "f"}}));
    pp->fMessages.clear();
    EXPECT_EQ(expand("f(1,"), "[ 1 | ]");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_CallWithoutClose, "f"}, {kPPErr_TooFewArguments, "f"}}));
    pp->fMessages.clear();
    EXPECT_EQ(expand("#define n() N\nn(1) n()"), "N N");
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_TooManyArguments, "n"}}));
}

TEST_F(PPCPPHlp, ArgumentsSpanLinesAndInputs) {
    pp->fIncludable["\"a.h\""] = "f(1,\n";
    std::vector<PPToken> result = tokens("#define f(a,b) a b __LINE__\nf(1,\n2\n) after\n#include \"a.h\"\n2)");
    ASSERT_EQ(result.size(), 7u);
    EXPECT_EQ(result[2].text, "4");
    EXPECT_EQ(result[3].line, 4u);
    EXPECT_EQ(result[5].text, "2");
    EXPECT_EQ(result[6].text, "6");
    EXPECT_EQ(expand("#define g(x) #x\ng( # define X\n)"), "\"# define X\"");
    EXPECT_TRUE(messages().empty());
}

TEST_F(PPCPPHlp, UndefKeepsTheRecord) {
    EXPECT_EQ(expand("#define X 1\n#undef X junk\nX\n#define X 2\nX"), "X 2");
    EXPECT_TRUE(messages().empty());
}

// Text without names is handed on without a scan; a record defined again after #undef is judged
// again. The depth limit holds for such text as for any other: the 257th level is one too many.
TEST_F(PPCPPHlp, TextWithoutNamesExpandsToItself) {
    EXPECT_EQ(expand("#define M 1\n#define N 0x5A + \"M\" 'M'\nN\n#undef N\n#define N M\nN"), "0x5A + \"M\" 'M' 1");
    for (int levels : {256, 257}) {
        std::string chain;
        for (int i = 0; i + 1 < levels; ++i) chain += "#define A" + std::to_string(i) + " A" + std::to_string(i + 1) + "\n";
        chain += "#define A" + std::to_string(levels - 1) + " 1\nA0";
        pp->fMessages.clear();
        EXPECT_EQ(expand(chain), "1") << levels;
        EXPECT_EQ(messages().size(), levels == 256 ? 0u : 1u) << levels;
    }
}

// Nameless stretches are passed on whole, so the names between them must still land in place, and
// a continuation in nameless text must still be removed.
TEST_F(PPCPPHlp, NamelessStretchesKeepTheirPlaceAroundNames) {
    EXPECT_EQ(expand("#define M 1\n#define f(a) (a) + a * 2\nf(3) f(M) f(( 4 , M ))"),
              "( 3 ) + 3 * 2 ( 1 ) + 1 * 2 ( ( 4 , 1 ) ) + ( 4 , 1 ) * 2");
    EXPECT_EQ(expand("#define g(a) a\ng(12\\\n34 \"x\\\ny\")"), "1234 \"xy\"");
    EXPECT_TRUE(messages().empty());
}

// A text of a hundred bytes that would expand to a billion tokens, or a body that copies its
// argument thousands of times at every level, is cut off by the work budget and reported once.
// Once stopped, no macro of the file is expanded, so each text needs a preprocessor of its own.
TEST_F(PPCPPHlp, DoublingAtEveryLevelIsStopped) {
    std::string nest = "#define F(x) x x\n";
    for (int i = 0; i < 30; ++i) nest += "F(";
    EXPECT_LT(expand(nest + "1" + std::string(30, ')')).size(), 64UL << 20);
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_ExpressionTooComplex, ""}}));
}

TEST_F(PPCPPHlp, ABodyCopyingItsArgumentThousandsOfTimesIsStopped) {
    std::string copying = "#define C(x)";
    for (int i = 0; i < 5000; ++i) copying += " x";
    EXPECT_LT(expand(copying + "\nC(C(C(C(1 2 3 4 5 6 7 8))))").size(), 64UL << 20);
    EXPECT_EQ(messages(), (std::vector<PPMessage>{{kPPErr_ExpressionTooComplex, ""}}));
}

// Gives out permanent blocks, once told so only a given number more, as a nearly full heap would.
class RefusingMemory : public PP_CMemoryManager_Basic {
public:
    void AllowOnly(int count) { fLeft = count; }
    void* AllocPerm(unsigned long size) override {
        if (fLeft-- == 0)
            throw std::bad_alloc();
        return PP_CMemoryManager_Basic::AllocPerm(size);
    }

private:
    int fLeft = -1;
};

// A redefinition takes blocks only for its own parameters and text. Whichever of those fails,
// the unwinding gives back what was taken.
TEST(PPCPPHlpUnwinding, ARedefinitionCutShortGivesItsBlocksBack) {
    std::string const definition = "#define F(a, b) a + b + a\\\n + b\n";
    for (int allowed = 0; allowed < 2; ++allowed) {
        RefusingMemory memory;
        {
            PP_CMacroTable_Basic table(&memory);
            PPTestPreprocessor pp(&memory, &table);
            int error;
            pp.PushFile(definition);
            EXPECT_EQ(pp.GetNextToken(&error), kPPScan_EOF);
            unsigned long const taken = memory.GetAllocPermCount();
            memory.AllowOnly(allowed);
            pp.PushFile(definition);
            EXPECT_THROW(pp.GetNextToken(&error), std::bad_alloc) << allowed;
            EXPECT_EQ(memory.GetAllocPermCount(), taken) << allowed;
        }
        EXPECT_EQ(memory.GetAllocPermCount(), 0u);
    }
}

using PPCPPHlpDeathTest = PPPreprocessorTest;

// Bodies that the definition lets through but that cannot be substituted stop the expansion.
TEST_F(PPCPPHlpDeathTest, BodiesThatCannotBeSubstitutedStopWithTheCondition) {
    EXPECT_DEATH(expand("#define f(x) \x01\x0F\nf(1)"), "formalIndex < aMacroBody->fParamCount");
    EXPECT_DEATH(expand("#define s(x) #y\ns(1)"), "\\*textPtr == kPP_MacroParam");
}

} // namespace
