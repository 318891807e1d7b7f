#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "PPMacTbl.h"

namespace {

class PPMacTbl : public ::testing::Test {
protected:
    void TearDown() override {
        table.ReleaseMacros();
        memory.ReleaseTemp();
        EXPECT_EQ(memory.GetAllocPermCount(), 0u);
    }
    PP_MacroBody* lookup(char const* name) { return table.LookupMacro(name, std::strlen(name)); }

    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic table{&memory};
};

TEST_F(PPMacTbl, NamesWithEqualSignaturesAreToldApart) {
    EXPECT_EQ(PP_CMacroTable_Basic::Signature("ab", 2), PP_CMacroTable_Basic::Signature("ba", 2));
    EXPECT_TRUE(table.DefineMacro("ab", "1", true));
    EXPECT_TRUE(table.DefineMacro("ba", "2", true));
    EXPECT_STREQ(lookup("ab")->fMacroText, "1");
    EXPECT_STREQ(lookup("ba")->fMacroText, "2");
    EXPECT_TRUE(table.DefineMacro("abc", "3", true));
    EXPECT_STREQ(table.LookupMacro("abcd", 2)->fName, "ab");
    EXPECT_EQ(table.LookupMacro("abcd", 3), lookup("abc"));
    EXPECT_EQ(lookup("a"), nullptr);
    EXPECT_TRUE(table.DefineMacro("\xE9\xFF\x80", "x", true));
    EXPECT_NE(lookup("\xE9\xFF\x80"), nullptr);
}

// The filter in front of the lookup never turns away a name that has a record, however long, and
// turns away a name whose first byte and length no record shares. Long names share one length.
TEST_F(PPMacTbl, TheNameFilterKeepsEveryEnteredName) {
    char const* const names[] = {"A", "ab", "\xE9x", "a_name_of_twenty_two_", "a_longer_name_of_thirty_chars_"};
    for (char const* name : names) table.DefineMacro(name, "1", true);
    for (char const* name : names) EXPECT_TRUE(table.MayHold(name, std::strlen(name))) << name;
    EXPECT_TRUE(table.MayHold("a_name_not_entered_at_all", 25));
    EXPECT_FALSE(table.MayHold("B", 1));
    EXPECT_FALSE(table.MayHold("abc", 3));
    EXPECT_FALSE(table.MayHold("a_fourteen_chr", 14));
}

TEST_F(PPMacTbl, UndefineKeepsTheRecordForReuse) {
    table.DefineMacro("X", "first", true);
    table.DefineMacro("X", "second", true);
    PP_MacroBody* body = lookup("X");
    EXPECT_STREQ(body->fMacroText, "second");
    EXPECT_TRUE(table.UndefineMacro("X"));
    EXPECT_FALSE(table.IsMacroDefined("X", 1));
    EXPECT_EQ(lookup("X"), body);
    EXPECT_EQ(body->fMacroText, nullptr);
    EXPECT_TRUE(table.UndefineMacro("X"));
    EXPECT_TRUE(table.UndefineMacro("nothing"));
    table.DefineMacro("X", "third", true);
    EXPECT_EQ(lookup("X"), body);
    EXPECT_TRUE(table.IsMacroDefined("X", 1));
}

TEST_F(PPMacTbl, FixedMacrosRefuseChange) {
    static char function;
    EXPECT_TRUE(table.DefineSpecialMacro("__LINE__", &function, false));
    PP_MacroBody* body = lookup("__LINE__");
    EXPECT_EQ(body->fMacroType, kPP_MacroSpecial);
    EXPECT_FALSE(table.UndefineMacro("__LINE__"));
    EXPECT_FALSE(table.DefineMacro("__LINE__", "1", true));
    EXPECT_EQ(body->fMacroText, &function);
}

TEST_F(PPMacTbl, EnterMacroMakesAnEmptyRecord) {
    PP_MacroBody* body = table.EnterMacro("f", kPP_MacroFunction, true);
    EXPECT_EQ(body->fParamCount, -1);
    EXPECT_EQ(body->fMacroText, nullptr);
    EXPECT_EQ(lookup("f"), body);
    PP_MacroLink* outer = PP_MacroLink::Alloc(&memory, body, nullptr);
    PP_MacroLink* inner = PP_MacroLink::Alloc(&memory, nullptr, outer);
    EXPECT_EQ(inner->fNext->fBody, body);
}

} // namespace
