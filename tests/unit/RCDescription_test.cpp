#include <gtest/gtest.h>

#include <string>

#include "DataArea.h"
#include "RCDescription.h"

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

TEST(RCDescription, LinesIndentWithBlanksOnly) {
    DataArea area;
    writeText(&area, "(prog");
    newLineIndent(&area, 2);
    writeBlanks(&area, -3);
    writeText(&area, "(null))");
    newLine(&area);
    EXPECT_EQ("(prog\n  (null))\n", Text(area));
}

}  // namespace
