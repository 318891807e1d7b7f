// Arrays and switches through whole compilations: where the scanner stands after a failure, counts
// evaluated against earlier fields, nesting per element and up to the limit, and their traces.
#include "RCTestCompilation.h"
#include "RCTestScanner.h"

namespace {

std::string repeated(char const* text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

// A type whose field lies inside `depth` arrays, and a resource of it.
std::string nestedArrays(int depth) {
    return "type T('TEST') { " + repeated("array { ", depth) + "byte;" + repeated(" }", depth) + " };" +
           "resource T (1) { " + repeated("{ ", depth) + "7" + repeated(" }", depth) + " };";
}

TEST_F(Compilation, AFailedElementSkipsToTheArraysOwnBrace) {
    std::string messages = Compile("type T('TEST') { array[2] { byte; }; byte; };"
                                   "resource T (1) { { 1; 2; { 3 }; 4 }; 5 };"
                                   "resource T (2) { { 1 }; 5 };"
                                   "resource T (3) { { 1; 2 }; 5 };");
    // Each failure is reported once, and the next resource starts where it should.
    EXPECT_EQ(1, countOf(messages, "More than 2 elements"));
    EXPECT_EQ(1, countOf(messages, "Fewer than 2 elements"));
    EXPECT_EQ(2, countOf(messages, "Error"));
    EXPECT_EQ("01 02 05", Bytes(3));
}

TEST_F(Compilation, ACountIsEvaluatedOnceFromEarlierFields) {
    Compile("type T('TEST') { byte; array[$$Byte(0) - 1] { byte; }; }; resource T (1) { 3; { 7; 8 } };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("03 07 08", Bytes(1));
}

TEST_F(Compilation, ANegativeCountIsMetByNoList) {
    Compile("type T('TEST') { array[-1] { }; };");
    EXPECT_NE(std::string::npos, Compile("resource T (1) { { } };").find("Fewer than -1 elements"));
    EXPECT_NE(std::string::npos, Compile("resource T (2) { { ; } };").find("More than -1 elements"));
}

TEST_F(Compilation, ArraysNestedInElementsCountPerElement) {
    Compile("type T('TEST') { array Rows { byte = $$CountOf(Cells); array Cells { byte = $$ArrayIndex(Rows); }; }; };"
            "resource T (1) { { { ; ; }; { }; { ; } } };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("02 01 01 00 01 03", Bytes(1));
}

TEST_F(Compilation, ASwitchReadsItsNameEvenWhenNoCaseReadsValues) {
    Compile("type T('TEST') { switch { case a: byte = 1; case b: byte = 2; };; };"
            "resource T (1) { b { } };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("02", Bytes(1));
    EXPECT_TRUE(fSymbols.LookupDefinition(uniqueOf("T"))->ConsumesInput());
}

TEST_F(Compilation, AnUnknownCaseSkipsItsValuesAndAFailedCaseStillClosesItsBraces) {
    std::string messages = Compile("type T('TEST') { switch { case a: byte; byte; };; byte; };"
                                   "resource T (1) { b { 1; { 2 } }; 9 };"
                                   "resource T (2) { a { 1; \"x\" }; 9 };"
                                   "resource T (3) { a { 1; 2 }, 9 };");
    EXPECT_EQ(1, countOf(messages, "Could not find matching case in switch."));
    EXPECT_EQ(2, countOf(messages, "Error"));
    EXPECT_EQ("01 02 09", Bytes(3));
}

TEST_F(Compilation, ArrayAndSwitchInstancesTraceOneEntryPerElementAndTheChosenCase) {
    fOptions.SetWriteDescriptions(true);
    Compile("type T('TEST') { array { switch { case a: byte; case b: }; }; }; resource T (1) { { a { 1 }; b { } } };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("(type T\n  (prog\n    (array\n"
              "      (prog\n        (switch (case a\n          (prog\n            (bitstring 8)))))\n"
              "      (prog\n        (switch (case b\n          (prog\n            )))))))",
              Description("T(0001)"));
}

TEST_F(Compilation, StatementsAndInstancesNestUpToTheLimit) {
    // The field inside 999 arrays is the thousandth statement parsed; while it is laid, the type
    // instance around the arrays makes the thousandth level too.
    Compile(nestedArrays(999).c_str());
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("07", Bytes(1));
}

TEST_F(Compilation, OneLevelMoreIsRefusedOnce) {
    std::string messages = Compile(nestedArrays(1000).c_str());
    EXPECT_EQ(1, countOf(messages, "Out of memory."));
    EXPECT_EQ(nullptr, fSymbols.LookupDefinition(uniqueOf("T")));
}

}  // namespace
