#include "RCSymTbl.h"

#include <gtest/gtest.h>

namespace {

UniqueStruct* Name(char const* text) {
    return reinterpret_cast<UniqueStruct*>(const_cast<char*>(text));
}

// Definitions are only held and handed back here, never looked into.
RCDefinition* Definition(int& slot) {
    return reinterpret_cast<RCDefinition*>(&slot);
}

TEST(RCSymbolTable, DefinitionsKeepTheirOrderAndTheFirstOfANameWins) {
    RCSymbolTable table;
    int a = 0, b = 0, again = 0;
    table.AddDefinition(Name("A"), Definition(a));
    table.AddDefinition(Name("B"), Definition(b));
    table.AddDefinition(Name("A"), Definition(again));

    EXPECT_EQ(table.LookupDefinition(Name("A")), Definition(a));
    EXPECT_EQ(table.LookupDefinition(Name("B")), Definition(b));
    EXPECT_EQ(table.LookupDefinition(Name("C")), nullptr);

    RCListIterator<RCDefinitionList> definitions(table.GetDefinitions());
    EXPECT_EQ(definitions.Next()->fValue, Definition(a));
    EXPECT_EQ(definitions.Next()->fValue, Definition(b));
    EXPECT_EQ(definitions.Next()->fValue, Definition(again));
    EXPECT_EQ(definitions.Next(), nullptr);
}

TEST(RCSymbolTable, AStaticStartsEveryResourceWithItsInitialValue) {
    RCSymbolTable table;
    EXPECT_EQ(table.LookupStatic(Name("x")), nullptr);
    table.AddStatic(Name("x"), RCNumber(1L));
    table.AddStatic(Name("y"), RCNumber(2.5));

    RCValueCell* x = table.LookupStatic(Name("x"));
    ASSERT_NE(x, nullptr);
    EXPECT_TRUE(x->IsDefined());
    EXPECT_EQ(x->Width(), 32);

    x->SetValue(RCNumber(2L));
    table.LookupStatic(Name("y"))->SetValue(RCNumber(7L));
    EXPECT_EQ(table.LookupStatic(Name("x"))->Value().AsInteger(), 2);

    table.ResetStatic();
    EXPECT_EQ(table.LookupStatic(Name("x"))->Value().AsInteger(), 1);
    RCNumber y = table.LookupStatic(Name("y"))->Value();
    EXPECT_FALSE(y.IsInteger());
    EXPECT_EQ(y.AsDouble(), 2.5);
}

TEST(RCSymbolTable, AStaticCannotBeEnteredTwice) {
    RCSymbolTable table;
    table.AddStatic(Name("s"), RCNumber(1L));
    EXPECT_DEATH(table.AddStatic(Name("s"), RCNumber(1L)), "Lookup");
}

}  // namespace
