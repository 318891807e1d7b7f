// Labels, named-type fields and variables: forward labels, label widths under class parameters,
// chosen subtypes and statics entered at parse time.
#include "RCTestCompilation.h"

namespace {

TEST_F(Compilation, APlainNameBeforeItsLabelIsAnErrorButItsFieldIsPatched) {
    std::string messages = Compile("type T('TEST') { integer = end; byte; end: }; resource T (1) { 1 };");
    EXPECT_EQ(1u, fErrors);
    EXPECT_NE(std::string::npos, messages.find("Undefined name 'end'."));
    EXPECT_EQ("18 00 01", Bytes(1));
}

TEST_F(Compilation, ALabelStandsAloneOnlyBeforeTheClosingBrace) {
    Compile("type T('TEST') { byte; end: };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_NE(std::string::npos, Compile("type U(1) { end: ; byte; };").find("Error in type specification."));
    EXPECT_EQ(nullptr, fSymbols.LookupDefinition(uniqueOf("U")));
}

TEST_F(Compilation, ClassParametersPatchWithTheWidthOfTheLabelledField) {
    Compile("type H { a: bitstring[3] = 0; b: c: bitstring[5] = 0; list: array { byte; }; };"
            "type T('TEST') { H(a = 7, c = 0x21, list = 0xFF); }; resource T (1) { { { 4 } } };");
    EXPECT_EQ(0u, fErrors);
    // A label on a label takes the width of the field under both; one on an array has none.
    EXPECT_EQ("E1 04", Bytes(1));
}

TEST_F(Compilation, AChosenSubtypeTakesTheFieldsClassParameters) {
    Compile("type Base { v: byte = 0; byte; }; type Sub : Base { byte; };"
            "type T('TEST') { Base(v = 5); Base(v = 6); }; resource T (1) { Sub ( 1; 2 ), { 3 } };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("05 01 02 06 03", Bytes(1));
}

TEST_F(Compilation, ANamedFieldReadsWhatItsTypeReads) {
    Compile("type K { byte = 1; }; type V { byte; }; type T('TEST') { K; V; };");
    RCDefinition* type = fSymbols.LookupDefinition(uniqueOf("T"));
    EXPECT_TRUE(type->ConsumesInput());
    EXPECT_FALSE(fSymbols.LookupDefinition(uniqueOf("K"))->ConsumesInput());
    Compile("resource T (1) { 2 };");
    EXPECT_EQ("01 02", Bytes(1));
}

TEST_F(Compilation, AStaticIsEnteredWhenItsTypeIsParsed) {
    Compile("type T('TEST') { static s = 2 * 3; byte = s; auto a = s + 1; byte = a; };");
    EXPECT_EQ(6, fSymbols.LookupStatic(uniqueOf("s"))->Value().AsInteger());
    Compile("resource T (1) { };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("06 07", Bytes(1));
}

}  // namespace
