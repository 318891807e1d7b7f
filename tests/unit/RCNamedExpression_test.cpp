#include <gtest/gtest.h>

#include <string>

#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCExpression.h"
#include "RCNamedExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "RCStatement.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

namespace {

class NamedValue : public testing::Test {
protected:
    NamedValue() : fMacros(&fMemory), fScanner(&fMemory, &fMacros, &fSymbols) {}

    // Parses one "name = value" from the text, with an optional default, and keeps the messages.
    RCNamedExpression* Parse(char const* text, RCExpression* defaultValue) {
        fScanner.PushInput(fScanner.ReadFile(text, "named.vd"));
        fScanner.NextToken();
        testing::internal::CaptureStderr();
        RCNamedExpression* entry = RCNamedExpression::ParseNamedValue(&fScanner, defaultValue);
        fMessages = testing::internal::GetCapturedStderr();
        return entry;
    }

    PP_CMemoryManager_Basic fMemory;
    PP_CMacroTable_Basic fMacros;
    RCSymbolTable fSymbols;
    RCScanner fScanner;
    std::string fMessages;
};

TEST_F(NamedValue, ExplicitValueReplacesTheDefault) {
    RCPtr<RCNamedExpression> entry(Parse("red = 7", RCExpression::Number(1L)));
    EXPECT_EQ(uniqueOf("red"), entry->fName);
    EXPECT_TRUE(entry->IsNumber(&fScanner));
    EXPECT_EQ(7, RCStatement::EvalNumber(entry->fValue, &fScanner));
}

TEST_F(NamedValue, DefaultStandsInForAMissingValue) {
    RCPtr<RCNamedExpression> entry(Parse("green, blue", RCExpression::Number(4L)));
    EXPECT_EQ(uniqueOf("green"), entry->fName);
    EXPECT_EQ(4, RCStatement::EvalNumber(entry->fValue, &fScanner));
    EXPECT_EQ(kPPScan_Comma, fScanner.TokenType());
    EXPECT_EQ("", fMessages);
}

TEST_F(NamedValue, WithoutDefaultTheValueIsRequired) {
    RCPtr<RCNamedExpression> entry(Parse("cyan 5", nullptr));
    EXPECT_EQ(nullptr, entry->fName);
    EXPECT_EQ(nullptr, entry->fValue);
    EXPECT_NE(std::string::npos, fMessages.find("Expected '='."));
}

TEST_F(NamedValue, NameIsRequired) {
    RCPtr<RCNamedExpression> entry(Parse("= 5", RCExpression::Number(0L)));
    EXPECT_EQ(nullptr, entry->fName);
    EXPECT_EQ(nullptr, entry->fValue);
    EXPECT_NE(std::string::npos, fMessages.find("Expected identifier."));
}

TEST_F(NamedValue, StringValueIsDroppedWhenANumberIsAsked) {
    RCPtr<RCNamedExpression> entry(Parse("s = \"text\"", nullptr));
    ASSERT_NE(nullptr, entry->fValue);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(entry->IsNumber(&fScanner));
    EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("Expression must be numeric."));
    EXPECT_EQ(nullptr, entry->fValue);
    EXPECT_FALSE(entry->IsNumber(&fScanner));
}

}  // namespace
