#include "RCSymTbl.h"

#include <gtest/gtest.h>

#include "RCDefinition.h"
#include "UniqueNames.h"

namespace {

UniqueStruct* Name(char const* text) { return uniqueOf(text); }

TEST(RCSymbolTable, DefinitionsKeepTheirOrderAndTheFirstOfANameWins) {
    // The table owns the definitions and deletes them with itself.
    char const* names[] = {"A", "B", "A"};
    RCDefinition* made[3];
    RCSymbolTable table;
    for (int i = 0; i < 3; ++i) {
        made[i] = new RCDefinition(Name(names[i]), nullptr, new RCStatement_Null, 0);
        table.AddDefinition(Name(names[i]), made[i]);
    }

    EXPECT_EQ(table.LookupDefinition(Name("A")), made[0]);
    EXPECT_EQ(table.LookupDefinition(Name("C")), nullptr);
    RCListIterator<RCDefinitionList> definitions(table.GetDefinitions());
    for (int i = 0; i < 3; ++i) EXPECT_EQ(definitions.Next()->fValue, made[i]);
}

TEST(RCSymbolTable, AStaticStartsEveryResourceWithItsInitialValue) {
    RCSymbolTable table;
    table.AddStatic(Name("x"), RCNumber(1L));
    table.AddStatic(Name("y"), RCNumber(2.5));
    RCValueCell* x = table.LookupStatic(Name("x"));
    ASSERT_NE(x, nullptr);
    EXPECT_TRUE(x->IsDefined());

    x->SetValue(RCNumber(2L));
    table.LookupStatic(Name("y"))->SetValue(RCNumber(7L));
    table.ResetStatic();
    EXPECT_EQ(table.LookupStatic(Name("x"))->Value().AsInteger(), 1);
    EXPECT_EQ(table.LookupStatic(Name("y"))->Value().AsDouble(), 2.5);
    EXPECT_DEATH(table.AddStatic(Name("x"), RCNumber(1L)), "Lookup");
}

}  // namespace
