#include <gtest/gtest.h>

#include <string>

#include "DataArea.h"
#include "RCDescription.h"
#include "UniqueNames.h"

namespace {

std::string Text(DataArea& area) {
    WithLockedDataArea locked(&area);
    return std::string(area.GetData(0), area.GetCursor());
}

TEST(RCDescription, NumbersPrintIntegersUnsignedAndFloatsShort) {
    DataArea area;
    writeNumber(&area, -1L);
    writeChar(&area, ' ');
    writeNumber(&area, RCNumber(1.5));
    writeChar(&area, ' ');
    writeNumber(&area, 1633837924L);
    EXPECT_EQ("18446744073709551615 1.5 1633837924", Text(area));
}

TEST(RCDescription, StringsEscapeControlBytesButNotQuotesOrParentheses) {
    DataArea area;
    writeString(&area, "a\t\xE9" "b\\\n", 6);
    writeString(&area, "(\")");
    writeString(&area, "", 0);
    EXPECT_EQ("\"a\\t\\351b\\\\\\n\"\"(\")\"\"\"", Text(area));
}

TEST(RCDescription, LinesIndentWithBlanksAndNamedNumbersStandOnLinesOfTheirOwn) {
    DataArea area;
    RCNamedList<RCNamedValue> values;
    values.Append(uniqueOf("on"), RCNumber(1L));
    values.Append(uniqueOf("off"), RCNumber(0L));
    writeNamedNumbers(&area, 1, kDesc_Oneof, values);
    RCNamedList<RCNamedValue> none;
    writeNamedNumbers(&area, 1, kDesc_Args, none);
    writeBlanks(&area, -3);
    newLineIndent(&area, 1);
    EXPECT_EQ("\n (oneof\n   (on 1)\n   (off 0))\n ", Text(area));
}

}  // namespace
