#include "RCTestCompilation.h"

#include "RCTestScanner.h"

namespace {

TEST_F(Compilation, NumberFieldsPackBitsAndKeepAlignedBytesLowFirst) {
    Compile("type T('TEST') { boolean; boolean; byte; bitstring[6]; integer = 258; bitstring[24]; };"
            "resource T (1) { 1; 0; 0xFF, 0x15; 0x030201 };"
            "type U('TEST' + 1) { boolean; integer = 258; bitstring[0]; };"
            "resource U (1) { 1, 99 };");
    EXPECT_EQ(0u, fErrors);
    // The byte straddles two output bytes; fields of whole bytes on a byte boundary go low byte
    // first, the integer behind a single bit goes most significant bit first.
    EXPECT_EQ("BF D5 02 01 01 02 03", Bytes(1));
    EXPECT_EQ("80 81 00", Bytes(1, kType + 1));
}

TEST_F(Compilation, SymbolicValueMustBeKnownWhenTheTypeIsParsed) {
    std::string messages = Compile("type T('TEST') { byte a = later; }; resource T (1) { a };");
    EXPECT_NE(std::string::npos, messages.find("Failed to evaluate forward expression."));
    EXPECT_EQ(nullptr, fSymbols.LookupDefinition(uniqueOf("T")));
}

TEST_F(Compilation, ModifiersAndKeyAreDroppedInTheirOrderOnly) {
    Compile("type T('TEST') { unsigned hex wide byte; key byte; decimal byte }; resource T (1) { 1; 2; 3 };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("01 02 03", Bytes(1));

    std::string messages = Compile("type U(1) { hex unsigned byte; };");
    EXPECT_NE(std::string::npos, messages.find("Error in type specification."));
    EXPECT_EQ(nullptr, fSymbols.LookupDefinition(uniqueOf("U")));
}

TEST_F(Compilation, AnEmptyStatementOpensNoStatement) {
    EXPECT_NE(std::string::npos, Compile("type B(1) { byte; ; };").find("Error in type specification."));
    EXPECT_EQ(nullptr, fSymbols.LookupDefinition(uniqueOf("B")));
}

TEST_F(Compilation, SecondSeparatorIsLeftForTheNextField) {
    std::string messages = Compile("type T('TEST') { byte; byte; }; resource T (1) { 1;; 2 };");
    EXPECT_NE(std::string::npos, messages.find("Syntax error in expression."));
    EXPECT_EQ("missing", Bytes(1));
}

TEST_F(Compilation, EmptyAndConstantBodiesReadNoValues) {
    Compile("type E('TEST') { }; resource E (1) { };"
            "type K('TEST' + 1) { byte = 9; boolean = 1; }; resource K (1) { };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("", Bytes(1));
    EXPECT_EQ("09 80", Bytes(1, kType + 1));
    EXPECT_FALSE(fSymbols.LookupDefinition(uniqueOf("K"))->ConsumesInput());
}

TEST_F(Compilation, WidthIsCheckedWhereTheFieldIsUsed) {
    EXPECT_EQ(0u, (Compile("type T('TEST') { bitstring[33]; };"), fErrors));
    std::string messages = Compile("resource T (1) { 1 };");
    EXPECT_NE(std::string::npos, messages.find("Width of 33 is not in the range of [1, 32]."));
}

TEST_F(Compilation, ResourceHeadGivesIdCutTo16BitsOptionsAndName) {
    Compile("type T('TEST') { byte; };"
            "resource T (70000) { 1 }; resource T (-1, PROTECTED | LOCKED | \"x\") { 2 };"
            "resource T (5, \"named\") { 3 };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("01", Bytes(4464));
    EXPECT_EQ("02", Bytes(-1));
    EXPECT_EQ("03", Bytes(5));
}

// A fatal message unwinds through the strings of the resource being compiled, its name and a
// string value; each is given back on the way, which the leak check of the sanitizer run sees.
TEST_F(Compilation, AFatalMessageUnwindsThroughTheStringsOfTheResource) {
    std::string messages;
    {
        RCLoweredBound bound(8);
        messages = Compile("type T('TEST') { cstring; };"
                           "resource T (1, \"name of the resource\") { \"past the end of the bound\" };");
    }
    EXPECT_TRUE(fEnded);
    EXPECT_NE(std::string::npos, messages.find("Out of memory."));
}

TEST_F(Compilation, ResourceHeadErrors) {
    Compile("type T('TEST') { byte; };");
    EXPECT_NE(std::string::npos, Compile("resource T (1, \"x\", SYSHEAP) { 1 };").find("Expected ')'."));
    EXPECT_NE(std::string::npos, Compile("resource 3 (2) { };").find("Bad resource kind 'ICON'."));
    for (short id = 1; id <= 2; ++id) EXPECT_EQ("missing", Bytes(id));
}

TEST_F(Compilation, ValueListWithoutBraceStillMakesAnEmptyResource) {
    std::string messages = Compile("type T('TEST') { byte; }; resource T (1) 5;");
    EXPECT_NE(std::string::npos, messages.find("Expected '{'."));
    EXPECT_EQ("", Bytes(1));
}

TEST_F(Compilation, TypeNamesAreDefinedOnce) {
    std::string messages = Compile("type T('TEST') { byte = 1; }; type T('TEST') { byte = 2; };");
    EXPECT_NE(std::string::npos, messages.find("Type T already defined."));
    Compile("resource T (1) { };");
    EXPECT_EQ("01", Bytes(1));
}

TEST_F(Compilation, BaseTypeFieldsComeFirstAndAResourceTypeOfZeroCounts) {
    Compile("type Base { byte = 1; }; type Derived(0) : Base() { byte; };"
            "type Other('TEST') : Base(p = 3, q = 4) { byte = 2; };"
            "resource Derived (1) { 7 }; resource Other (1) { };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("01 07", Bytes(1, 0));
    EXPECT_EQ("01 02", Bytes(1));
    RCDefinition* base = fSymbols.LookupDefinition(uniqueOf("Base"));
    EXPECT_TRUE(base->IsBaseType());
    EXPECT_TRUE(fSymbols.LookupDefinition(uniqueOf("Other"))->IsSubClassOf(base));
    EXPECT_FALSE(base->IsSubClassOf(fSymbols.LookupDefinition(uniqueOf("Other"))));
}

TEST_F(Compilation, UnknownBaseTypeIsRefused) {
    std::string messages = Compile("type D(1) : Nowhere { byte; };");
    EXPECT_NE(std::string::npos, messages.find("Custom type name expected, but 'Nowhere' found."));
}

TEST_F(Compilation, InstanceDescriptionTracesEachTypeInstance) {
    fOptions.SetWriteDescriptions(true);
    Compile("type Base { byte = 1; }; type D('TEST') : Base { byte; double; }; resource D (1, \"one\") { 2; 0.5 };"
            "resource D (1) { 3; 1.0 };");
    EXPECT_EQ(0u, fErrors);
    EXPECT_EQ("(type D\n  (super Base\n    (type Base\n      (prog\n        (bitstring 8))))\n"
              "  (prog\n    (bitstring 8)\n    (float 64)))",
              Description("D(0001)"));
    // Only the resource that was kept has its description.
    EXPECT_EQ("01 02 00 00 00 00 00 00 E0 3F", Bytes(1));
}

}  // namespace
