#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RCDescWalker.h"

namespace {

using Bytes = std::vector<unsigned char>;

// The walker's whole output for one resource; the type text serves for the instance as well
// when no instance text is given.
std::string Listing(std::string const& type, std::string const& instance, Bytes const& data) {
    testing::internal::CaptureStdout();
    try {
        RCDescWalker(data.data(), data.size(), instance.c_str(), type.c_str()).Walk();
    } catch (...) {
        testing::internal::GetCapturedStdout();
        throw;
    }
    return testing::internal::GetCapturedStdout();
}

std::string Listing(std::string const& both, Bytes const& data) { return Listing(both, both, data); }

constexpr char kEnd[] = "\n\n\n";

TEST(RCDescWalker, EmptyInstancePrintsOnlyTheFinalNewlines) {
    EXPECT_EQ(kEnd, Listing("(type T (prog (bitstring 8)))", "", {}));
    EXPECT_EQ(kEnd, Listing("", "", {}));
}

TEST(RCDescWalker, BitFieldsShowPositionWidthAndValueIndentedByNesting) {
    EXPECT_EQ("// [ type  T\n"
              "0x00000000:03   0x5\n"
              "0x00000003:05   0x16\n"
              "// ] type T\n" + std::string(kEnd),
              Listing("(type T\n  (prog\n    (bitstring 3)\n    (bitstring 5)))", {0xB6}));
}

TEST(RCDescWalker, AlignedWholeBytesReadSignedAndOthersZeroExtended) {
    std::string out = Listing("(type T (prog (bitstring 4) (bitstring 8) (bitstring 4) (bitstring 8)))",
                              {0xFF, 0xFF, 0xFF});
    EXPECT_NE(std::string::npos, out.find("0x00000004:08   0xff\n"));
    EXPECT_NE(std::string::npos, out.find("0x00000010:08   0xffffffff\n"));
}

TEST(RCDescWalker, ArrayElementsAreTitledInOrder) {
    std::string out = Listing("(type A (prog (array (name n) (length 2) (prog (bitstring 8)))))",
                              "(type A (prog (array (prog (bitstring 8)) (prog (bitstring 8)))))", {1, 2});
    EXPECT_EQ("// [ type  A\n// [ array\n// [ array element 1\n0x00000000:08   0x1\n// ] array element 1\n"
              "// [ array element 2\n0x00000008:08   0x2\n// ] array element 2\n// ] array\n// ] type A\n" +
                  std::string(kEnd),
              out);
    EXPECT_THROW(Listing("(type A (prog (array (name n))))", "(type A (prog (array (prog (bitstring 8)))))", {1}),
                 RC_xBadDescription);
}

TEST(RCDescWalker, StatementsWithoutTraceLeaveItForTheNextStatement) {
    std::string out = Listing("(type T (prog (label x) (bitstring 8) (auto v 3) (null) (static s 1) (bitstring 8)))",
                              "(type T (prog (bitstring 8) (bitstring 8)))", {7, 9});
    EXPECT_NE(std::string::npos, out.find("0x00000000:08   0x7\n0x00000008:08   0x9\n"));
    EXPECT_THROW(Listing("(type T (prog (bitstring 8)))", "(type T (prog (bitstring 8) (bitstring 8)))", {7, 9}),
                 RC_xBadDescription);
}

TEST(RCDescWalker, SwitchWalksTheChosenCaseAndRejectsOneTheTypeLacks) {
    std::string type = "(type S (prog (switch (case a (bitstring 8)) (case b (bitstring 16)))))";
    EXPECT_EQ("// [ type  S\n// [ switch b\n0x00000000:10     0x201\n// ] switch b\n// ] type S\n" +
                  std::string(kEnd),
              Listing(type, "(type S (prog (switch (case b (bitstring 16)))))", {1, 2}));
    EXPECT_THROW(Listing(type, "(type S (prog (switch (case c (bitstring 8)))))", {1}), RC_xBadDescription);
}

TEST(RCDescWalker, StringsShowTheirPrefixAndCharactersWithDotsForTheRest) {
    std::string out = Listing("(type P (prog (string S110)))", "(type P (prog (string S110 (length 4))))",
                              {3, 'a', 'b', 'c'});
    EXPECT_NE(std::string::npos, out.find("// string S110\n0x00000000      0x3\n0x00000008      abc\n"));
    out = Listing("(type W (prog (string S021 (length 5)) (bitstring 8)))", {'a', 0, 0, 1, 0, 0x2A});
    EXPECT_NE(std::string::npos, out.find("0x00000000      a.\n0x00000028:08   0x2a\n"));
    for (char const* code : {"S310", "S030", "S013", "X010", "S01"})
        EXPECT_THROW(Listing("(type T (prog (string " + std::string(code) + " (length 1))))", {'a'}),
                     RC_xBadDescription)
            << code;
}

TEST(RCDescWalker, NamedTypeFieldRunsTheInstanceTextAsItsOwnType) {
    std::string out = Listing("(type Outer (prog (type Inner)))",
                              "(type Outer (prog (type Inner (prog (bitstring 8)))))", {5});
    EXPECT_EQ("// [ type  Outer\n// [ type  Inner\n0x00000000:08     0x5\n// ] type Inner\n// ] type Outer\n" +
                  std::string(kEnd),
              out);
}

TEST(RCDescWalker, AlignFillAndFloatMoveThePositionAsLaidOut) {
    std::string out = Listing("(type L (prog (bitstring 1) (align 8) (fill 8 (count 2)) (float 32)))",
                              {0x80, 1, 2, 0, 0, 0xC0, 0x3F});
    EXPECT_NE(std::string::npos, out.find("// align 8\n// fill\n0x00000008      0x1 0x2 \n"));
    EXPECT_NE(std::string::npos, out.find("0x00000018:20   1.5\n"));
    EXPECT_THROW(Listing("(type L (prog (align 0)))", {0}), RC_xBadDescription);
}

TEST(RCDescWalker, MultiStringReadsItsTableFromTheBytes) {
    Bytes table{2, 0, 1, 0, 10, 0, 2, 0, 12, 0, 'a', 0, 'b', 'c', 0, 0x7F};
    std::string out = Listing("(type M (prog (multistring) (bitstring 8)))", table);
    EXPECT_NE(std::string::npos, out.find("// [ multistring\n0x00000000    \n0x00000030      0x1, \"a\"\n"
                                          "0x00000050      0x2, \"bc\"\n// ] multistring\n"
                                          "0x00000078:08   0x7f\n"));
    Bytes offsetOutside{1, 0, 1, 0, 40, 0};
    EXPECT_THROW(Listing("(type M (prog (multistring)))", offsetOutside), RC_xBadDescription);
    Bytes unterminated{1, 0, 1, 0, 6, 0, 'a'};
    EXPECT_THROW(Listing("(type M (prog (multistring)))", unterminated), RC_xBadDescription);
}

TEST(RCDescWalker, NoReadPassesTheEndOfTheResourceOrOfATruncatedText) {
    EXPECT_THROW(Listing("(type T (prog (bitstring 16)))", {1}), RC_xBadDescription);
    EXPECT_THROW(Listing("(type T (prog (string S010 (length 9))))", {'a', 'b'}), RC_xBadDescription);
    EXPECT_THROW(Listing("(type T (prog (fill 8 (count 18446744073709551615))))", {0}), RC_xBadDescription);
    EXPECT_THROW(Listing("(type T (prog (bitstring 8)))", "(type T (prog (bitst", {1}), RC_xBadDescription);
    EXPECT_THROW(Listing("(type T (prog (bitstring 8)))", "(type T (prog (bitstring", {1}), RC_xBadDescription);
    EXPECT_THROW(Listing("(type T (prog (frobnicate 8)))", {1}), RC_xBadDescription);
    std::string nested;
    for (int i = 0; i < 2000; ++i) nested += "(prog ";
    nested += std::string(2000, ')');
    EXPECT_THROW(Listing("(type T " + nested + ")", {}), RC_xBadDescription);
}

TEST(RCDescWalkerHelper, ScanningStopsAtTheClosingParenthesisAndKnowsOnlyKeywords) {
    PP_CTextReader text("  word (a (b) c) )tail", 22);
    EXPECT_EQ(4u, RCDescWalkerHelper::ScanSExpr(text).Readable());
    EXPECT_EQ(9u, RCDescWalkerHelper::ScanSExpr(text).Readable());
    EXPECT_TRUE(RCDescWalkerHelper::ScanSExpr(text).IsEOF());
    EXPECT_TRUE(text.IsEOF());
    EXPECT_EQ(RCDescWalkerHelper::kFillSpec, RCDescWalkerHelper::PeekSExpr(PP_CTextReader(" (fillspec 8)", 13)));
    EXPECT_EQ(RCDescWalkerHelper::kUnknown, RCDescWalkerHelper::PeekSExpr(PP_CTextReader("(fil 8)", 7)));
    PP_CTextReader quoted("\"a b\"", 5);
    EXPECT_EQ(1u, RCDescWalkerHelper::ScanSExpr(quoted).Readable());
    PP_CTextReader hex("0x1F)", 5);
    EXPECT_EQ(31u, RCDescWalkerHelper::ReadNumber(hex));
}

}  // namespace
