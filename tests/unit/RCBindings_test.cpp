#include "RCBindings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <vector>

#include "RCBindings_Def.h"
#include "Msgs.h"
#include "RCByteString.h"
#include "RCExpression.h"
#include "RCTestScanner.h"
#include "RCValueCell.h"
#include "UniqueNames.h"

namespace {

class RCBindingsTest : public testing::Test {
protected:
    RCTestScanner scanner{""};
    RCTestBindings bindings{scanner};

    void Add(long value, short width) { EXPECT_TRUE(bindings->AddValue(scanner, RCNumber(value), width, true)); }

    // Parses an expression of the language and lays it as a field.
    void AddExpression(char const* text, short width, bool isInteger = true) {
        RCTestScanner source(text);
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(source, -1));
        ASSERT_TRUE(expression);
        bindings->AddValue(scanner, expression, width, isInteger);
    }

    RCValueCell* Label(char const* name, signed char width = 32) {
        RCValueCell* cell = bindings->AssignValue_Label(scanner, uniqueOf(name));
        cell->SetWidth(width);
        return cell;
    }
};

RCByteString narrowString(char const* text) {
    RCByteString string;
    long length = static_cast<long>(std::strlen(text));
    string.Expand(length + 2);
    std::memcpy(string.fData, text, static_cast<size_t>(length) + 1);
    string.fLength = length;
    string.fStringType = kPPScan_String;
    return string;
}

TEST_F(RCBindingsTest, WholeBytesOnAByteBoundaryAreLowOrderFirst) {
    Add(0xA, 4);
    Add(0x5, 4);
    Add(0x1234, 16);
    EXPECT_EQ(bindings.Bytes(), "A5 34 12");
}

TEST_F(RCBindingsTest, OtherFieldsArePackedMostSignificantBitFirst) {
    Add(5, 3);
    Add(0x1234, 13);
    EXPECT_EQ(bindings.Bytes(), "B2 34");
}

TEST_F(RCBindingsTest, AnUnalignedWholeByteFieldIsBigEndian) {
    Add(0xF, 4);
    Add(0x1234, 16);
    EXPECT_EQ(bindings.Bytes(), "F1 23 40");
    EXPECT_EQ(bindings->GetResourceBit(), 20);
}

TEST_F(RCBindingsTest, APartialByteLeavesItsLowBitsForTheNextField) {
    Add(0xABC, 12);
    EXPECT_EQ(bindings.Bytes(), "AB C0");
    EXPECT_EQ(bindings->GetResourceBit(), 12);
    Add(0x1FF, 8);  // high bits beyond the width are dropped silently
    EXPECT_EQ(bindings.Bytes(), "AB CF F0");
}

// A 32-bit field behind one to seven taken bits spans five bytes: the first is shared with the
// bits before it, which stay as they were.
TEST(RCBindingsPacking, AWideFieldAtEveryBitOffsetKeepsTheBitsBeforeIt) {
    RCTestScanner scanner{""};
    for (short taken = 1; taken < 8; ++taken) {
        RCTestBindings bindings{scanner};
        long const before = (1L << taken) - 1;
        bindings->AddValue(scanner, RCNumber(before), taken, true);
        bindings->AddValue(scanner, RCNumber(0x89ABCDEFL), 32, true);
        EXPECT_EQ(bindings->ResourceSize(), 5) << taken;
        EXPECT_EQ(bindings->GetResourceBit(), taken + 32) << taken;
        EXPECT_EQ(bindings->GetValue(0, taken), before) << taken;
        EXPECT_EQ(bindings->GetValue(taken, 32), 0x89ABCDEFL) << taken;
        EXPECT_EQ(bindings->GetValue(taken + 32, 8 - taken), 0) << taken;
    }
}

TEST_F(RCBindingsTest, IntegerWidthsOutsideZeroToThirtyTwoAreRefused) {
    RCCapturedMessages messages;
    EXPECT_FALSE(bindings->AddValue(scanner, RCNumber(1L), 33, true));
    EXPECT_FALSE(bindings->AddValue(scanner, RCNumber(1L), -1, true));
    EXPECT_FALSE(bindings->AddValue(scanner, RCNumber(1L), 64, true));
    EXPECT_TRUE(bindings->AddValue(scanner, RCNumber(1L), 0, true));
    std::string text = messages.Text();
    EXPECT_EQ(countOf(text, "Width of 33 is not in the range of [1, 32]."), 1);
    EXPECT_EQ(countOf(text, "Width of -1 is not"), 1);
    EXPECT_EQ(countOf(text, "Width of 64 is not"), 1);
    EXPECT_EQ(bindings->ResourceSize(), 0);
    EXPECT_EQ(bindings->GetResourceBit(), 0);
}

TEST_F(RCBindingsTest, FloatsAreWholeLittleEndianBytesOnAByteBoundary) {
    EXPECT_TRUE(bindings->AddValue(scanner, RCNumber(1.5), 32, false));
    EXPECT_TRUE(bindings->AddValue(scanner, RCNumber(2L), 64, false));
    EXPECT_EQ(bindings.Bytes(), "00 00 C0 3F 00 00 00 00 00 00 00 40");

    Add(1, 4);
    RCCapturedMessages messages;
    EXPECT_FALSE(bindings->AddValue(scanner, RCNumber(1.5), 32, false));
    EXPECT_NE(messages.Text().find("Floating point values must be aligned on four byte boundaries"), std::string::npos);
    EXPECT_EQ(bindings->GetResourceBit(), 100);
}

TEST_F(RCBindingsTest, AlignPadsWithZeroBitsOnlyOffTheBoundary) {
    Add(1, 1);
    EXPECT_TRUE(bindings->Align(scanner, 16));
    EXPECT_EQ(bindings->GetResourceBit(), 16);
    EXPECT_TRUE(bindings->Align(scanner, 16));
    EXPECT_EQ(bindings->GetResourceBit(), 16);
    EXPECT_EQ(bindings.Bytes(), "80 00");

    Add(1, 3);
    EXPECT_TRUE(bindings->AddBytes(scanner, "", 0));
    EXPECT_EQ(bindings->GetResourceBit(), 19);
    EXPECT_TRUE(bindings->AddBytes(scanner, "\x7F", 1));
    EXPECT_EQ(bindings.Bytes(), "80 00 20 7F");
}

TEST_F(RCBindingsTest, FillRepeatsItsValue) {
    EXPECT_TRUE(bindings->Fill(scanner, 4, 3, 0x9));
    EXPECT_TRUE(bindings->Fill(scanner, 8, 0, 0xFF));
    EXPECT_EQ(bindings.Bytes(), "99 90");
}

// The bound on a resource's size, lowered for the test, with the run's end caught as an exception.
class RCBindingsBoundTest : public RCBindingsTest {
protected:
    // Runs `write` and returns what it printed when it ended the run, or "" when it returned.
    template <typename Write>
    std::string EndOfRun(Write write) {
        RCCapturedMessages messages;
        try {
            write();
        } catch (Msgs::Exception const&) {
            return messages.Text();
        }
        return "";
    }

private:
    RCLoweredBound fBound{4};
};

TEST_F(RCBindingsBoundTest, OutputUpToTheBoundIsLaid) {
    EXPECT_EQ(EndOfRun([&] {
                  Add(1, 4);
                  bindings->Fill(scanner, 4, 3, 0xF);
                  bindings->AddBytes(scanner, "\1", 1);
                  Add(0x1234, 8);
              }),
              "");
    EXPECT_EQ(bindings.Bytes(), "1F FF 01 34");
}

TEST_F(RCBindingsBoundTest, AnythingPastTheBoundEndsTheRunBeforeItIsLaid) {
    std::string const outOfMemory = "# Fatal error: Out of memory.\n";
    Add(0x7F, 8);
    EXPECT_EQ(EndOfRun([&] { bindings->Fill(scanner, 32, 0x7FFFFFFFFFFFFFFF, 0); }).find(outOfMemory), 0U);
    EXPECT_EQ(EndOfRun([&] { bindings->Fill(scanner, 8, 4, 0); }).find(outOfMemory), 0U);
    EXPECT_EQ(EndOfRun([&] { bindings->AddBytes(scanner, "abcd", 4); }).find(outOfMemory), 0U);
    bindings->Fill(scanner, 8, 3, 0);
    EXPECT_EQ(EndOfRun([&] { Add(1, 1); }).find(outOfMemory), 0U);
    EXPECT_EQ(bindings.Bytes(), "7F 00 00 00");
}

TEST_F(RCBindingsTest, PutValueKeepsTheNeighbouringBits) {
    Add(0xFFFFFF, 24);
    bindings->PutValue(4, 12, RCNumber(0L), true);
    EXPECT_EQ(bindings.Bytes(), "F0 00 FF");
    bindings->PutValue(8, 16, RCNumber(0x1234L), true);
    EXPECT_EQ(bindings.Bytes(), "F0 34 12");
    bindings->PutValue(3, 2, RCNumber(3L), true);
    EXPECT_EQ(bindings.Bytes(), "F8 34 12");
    // Past the end of the data nothing is written.
    bindings->PutValue(20, 16, RCNumber(-1L), true);
    EXPECT_EQ(bindings.Bytes(), "F8 34 1F");
}

TEST_F(RCBindingsTest, GetValueIsSignedWhenAlignedAndZeroExtendedOtherwise) {
    Add(0xFFFE, 16);
    Add(0x80, 8);
    EXPECT_EQ(bindings->GetValue(0, 16), -2);
    EXPECT_EQ(bindings->GetValue(16, 8), -128);
    EXPECT_EQ(bindings->GetValue(0, 24), -8323074);
    EXPECT_EQ(bindings->GetValue(4, 8), 0xEF);
    EXPECT_EQ(bindings->GetValue(0, 3), 7);
    EXPECT_EQ(bindings->GetValue(0, 40), 0);  // an aligned width with no reading of its own
    EXPECT_EQ(bindings->GetValue(20, 8), 0);  // bytes beyond the data read as zero
}

TEST_F(RCBindingsTest, StringsGetTheirCountTerminatorAndPadding) {
    RCByteString ab = narrowString("ab");
    EXPECT_TRUE(bindings->AddString(scanner, ab, kRCScan_Cstring));
    EXPECT_TRUE(bindings->AddString(scanner, ab, kRCScan_Pstring, 4));
    EXPECT_TRUE(bindings->AddString(scanner, ab, kRCScan_Wstring));
    EXPECT_EQ(bindings.Bytes(), "61 62 00 02 61 62 00 00 02 00 61 62");

    RCCapturedMessages messages;
    EXPECT_TRUE(bindings->AddString(scanner, ab, kRCScan_String, 1));
    EXPECT_FALSE(bindings->AddString(scanner, ab, kRCScan_Istring));
    std::string text = messages.Text();
    EXPECT_NE(text.find("String truncated to 1 bytes."), std::string::npos);
    EXPECT_NE(text.find("Double-byte and single-byte strings not compatible."), std::string::npos);
    EXPECT_EQ(bindings.Bytes(), "61 62 00 02 61 62 00 00 02 00 61 62 61");
    ab.Destroy();
}

TEST_F(RCBindingsTest, AnEmptyStringWithoutCountNeitherAlignsNorWrites) {
    RCByteString empty = narrowString("");
    Add(1, 1);
    EXPECT_TRUE(bindings->AddString(scanner, empty, kRCScan_String));
    EXPECT_EQ(bindings->GetResourceBit(), 1);
    EXPECT_TRUE(bindings->AddString(scanner, empty, kRCScan_Pstring));
    EXPECT_EQ(bindings.Bytes(), "80 00");
    empty.Destroy();
}

// Only the first reduction defers: it reports the name and marks its cell defined, so later uses
// take the cell's value of the moment.
TEST_F(RCBindingsTest, AForwardLabelIsReportedOnceAndPatchedWhereItWasDeferred) {
    RCCapturedMessages messages;
    AddExpression("later", 8);
    AddExpression("later + 1", 8);
    AddExpression("later * 2", 16);
    Label("later");
    Add(0, 8);
    std::string bytes = bindings.Close();
    EXPECT_EQ(countOf(messages.Text(), "Undefined name 'later'."), 1);
    EXPECT_EQ(bytes, "20 01 00 00 00");
}

TEST_F(RCBindingsTest, ANameThatNeverGetsItsLabelCountsAsZero) {
    RCCapturedMessages messages;
    AddExpression("nowhere + 5", 8);
    EXPECT_EQ(bindings.Close(), "05");
    EXPECT_EQ(countOf(messages.Text(), "Undefined name 'nowhere'."), 1);
}

TEST_F(RCBindingsTest, ADuplicateLabelKeepsItsFirstPosition) {
    RCValueCell* first = Label("here");
    Add(0, 8);
    RCCapturedMessages messages;
    EXPECT_EQ(Label("here"), first);
    EXPECT_EQ(first->Value().AsInteger(), 0);
    EXPECT_NE(messages.Text().find("Label 'Label '%s' previously defined.\n' previously defined."), std::string::npos);
}

TEST_F(RCBindingsTest, FunctionsReadTheFinishedOutputOfTheInstance) {
    RCCapturedMessages messages;
    AddExpression("$$Byte(tail)", 8);
    Label("first");
    Add(0xFFFE, 16);
    Add(0xA, 4);
    Label("half");
    Add(0xBC, 8);
    Add(0xD, 4);
    AddExpression("$$Word(first)", 16);
    AddExpression("$$Byte(half)", 8);
    AddExpression("$$BitField(first, 4, 8)", 8);
    AddExpression("$$Long(first)", 32);
    Label("tail");
    Add(0x5A, 8);
    EXPECT_EQ(bindings.Close(), "5A FE FF AB CD FE FF BC EF FE FF AB CD 5A");
    EXPECT_EQ(countOf(messages.Text(), "Undefined name 'tail'."), 1);
}

TEST_F(RCBindingsTest, ADeferredFloatReservesItsBytesAndIsPatchedAsAFloat) {
    AddExpression("$$Byte(two)", 32, false);
    Label("two");
    Add(2, 8);
    EXPECT_EQ(bindings.Close(), "00 00 00 40 02");
}

TEST_F(RCBindingsTest, CountOfBeforeItsArrayGetsTheFinalCount) {
    AddExpression("$$CountOf(items)", 8);
    {
        RCBindArray array(bindings.get(), uniqueOf("items"));
        for (int i = 0; i < 3; ++i) {
            RCNewArrayElement element(bindings.get());
            AddExpression("$$ArrayIndex(items) + $$CountOf(items) * 16", 8);
        }
    }
    EXPECT_EQ(bindings.Close(), "03 31 32 33");
}

TEST_F(RCBindingsTest, EachOuterElementCountsItsInnerArrayAfresh) {
    {
        RCBindArray outer(bindings.get(), uniqueOf("outer"));
        for (int count : {2, 1}) {
            RCNewArrayElement element(bindings.get());
            AddExpression("$$CountOf(inner)", 8);
            RCBindArray inner(bindings.get(), uniqueOf("inner"));
            for (int i = 0; i < count; ++i) RCNewArrayElement innerElement(bindings.get());
        }
    }
    EXPECT_EQ(bindings.Close(), "02 01");
}

TEST_F(RCBindingsTest, ArrayLabelsReadPositionsFromEveryElement) {
    AddExpression("mark[2] + mark[1] * 256", 16);
    {
        RCBindArray array(bindings.get(), uniqueOf("items"));
        for (int i = 0; i < 2; ++i) {
            RCNewArrayElement element(bindings.get());
            Add(0, 8);
            Label("mark");
            Add(0, 8);
        }
    }
    RCCapturedMessages messages;
    AddExpression("mark", 8);  // after the array the plain name is a new, undefined cell
    EXPECT_EQ(bindings.Close(), "28 18 00 00 00 00 00");
    EXPECT_EQ(countOf(messages.Text(), "Undefined name 'mark'."), 1);
}

// Outer element 1 holds three inner elements, outer element 2 one; all levels share one table,
// so the last subscript decides and the last assignment with it wins.
TEST_F(RCBindingsTest, ANestedArrayLabelReadsTheSharedTable) {
    {
        RCBindArray outer(bindings.get(), uniqueOf("rows"));
        for (int columns : {3, 1}) {
            RCNewArrayElement row(bindings.get());
            RCBindArray inner(bindings.get(), nullptr);
            for (int i = 0; i < columns; ++i) {
                RCNewArrayElement cell(bindings.get());
                Label("m");
                Add(0, 8);
            }
        }
    }
    AddExpression("m[1, 1]", 8);
    AddExpression("m[1, 2]", 8);
    AddExpression("m[2, 1]", 8);
    AddExpression("m[9, 2]", 8);
    RCCapturedMessages messages;
    EXPECT_EQ(bindings.Close(), "00 00 00 00 18 08 18 00");
    EXPECT_EQ(countOf(messages.Text(), "Array label 'm': index out of bounds"), 1);
}

TEST_F(RCBindingsTest, ALabelBeyondThirtyTwoNestedArraysIsRefused) {
    std::vector<std::unique_ptr<RCBindArray>> arrays;
    std::vector<std::unique_ptr<RCNewArrayElement>> elements;
    for (int depth = 0; depth < 33; ++depth) {
        arrays.push_back(std::make_unique<RCBindArray>(bindings.get(), nullptr));
        elements.push_back(std::make_unique<RCNewArrayElement>(bindings.get()));
    }
    RCCapturedMessages messages;
    Label("deep");
    EXPECT_NE(messages.Text().find("Label 'deep' too deeply nested in arrays."), std::string::npos);
    while (!arrays.empty()) {
        elements.pop_back();
        arrays.pop_back();
    }
}

TEST_F(RCBindingsTest, ClassParametersPatchTheirLabelledFieldsAfterTheFixups) {
    RCCapturedMessages messages;
    AddExpression("$$Word(size)", 16);
    Label("size", 16);
    Add(0x1111, 16);
    bindings->AssignToClassParameter(uniqueOf("size"), 0x2222);
    bindings->AssignToClassParameter(uniqueOf("size"), 0x3333);  // the first assignment wins
    bindings->AssignToClassParameter(uniqueOf("absent"), 0x4444);
    EXPECT_EQ(bindings.Close(), "11 11 22 22");
}

TEST_F(RCBindingsTest, AutoAndSetVariablesLiveInTheFrame) {
    RCTestScanner source("3 + 4");
    RCPtr<RCExpression> seven(RCExpression::ParseExpression(source, -1));
    bindings->AssignValue_Auto(scanner, uniqueOf("counter"), seven);
    RCValueCell* counter = bindings->LookupValue(uniqueOf("counter"));
    ASSERT_NE(counter, nullptr);
    EXPECT_EQ(counter->Value().AsInteger(), 7);

    RCTestScanner later("counter * 2");
    RCPtr<RCExpression> doubled(RCExpression::ParseExpression(later, -1));
    bindings->AssignValue(scanner, uniqueOf("counter"), doubled);
    EXPECT_EQ(counter->Value().AsInteger(), 14);

    RCCapturedMessages messages;
    bindings->AssignValue(scanner, uniqueOf("stranger"), doubled);
    EXPECT_NE(messages.Text().find("Name 'stranger' not previously defined as 'auto' or 'static'."), std::string::npos);
}

TEST_F(RCBindingsTest, AssignmentsNeedAValueKnownAtOnce) {
    RCTestScanner source("$$Byte(0)");
    RCPtr<RCExpression> deferred(RCExpression::ParseExpression(source, -1));
    RCCapturedMessages messages;
    bindings->AssignValue_Auto(scanner, uniqueOf("v"), deferred);
    EXPECT_NE(messages.Text().find("Could not evaluate expression in 'set/auto/static v = <expr>'"), std::string::npos);
    EXPECT_EQ(bindings->LookupValue(uniqueOf("v"))->Value().AsInteger(), 0);
}

TEST_F(RCBindingsTest, StaticsComeFromTheSymbolTable) {
    bindings.Symbols().AddStatic(uniqueOf("total"), RCNumber(5L));
    AddExpression("total", 8);
    EXPECT_EQ(bindings.Close(), "05");
}

// The output area of one resource serves the next; nothing of the first shows through.
TEST(RCBindingsReuse, ANewResourceStartsFromEmptyOutput) {
    RCTestScanner scanner{""};
    {
        RCTestBindings first{scanner};
        first->AddValue(scanner, RCNumber(-1L), 32, true);
        EXPECT_EQ(first.Close(), "FF FF FF FF");
    }
    RCTestBindings second{scanner};
    second->AddValue(scanner, RCNumber(1L), 3, true);
    second->AddValue(scanner, RCNumber(0L), 13, true);
    EXPECT_EQ(second.Close(), "20 00");
}

TEST(RCBindingsWithoutFrame, FindsNoNames) {
    RCSymbolTable symbols;
    RCBindings bindings(&symbols, nullptr, 0, 0);
    EXPECT_EQ(bindings.LookupValue(uniqueOf("anything")), nullptr);
}

TEST(RCBindingsDeathTest, NameOperationsAndArraysWithoutAFrameStopOnAnAssertion) {
    RCSymbolTable symbols;
    RCBindings bindings(&symbols, nullptr, 0, 0);
    EXPECT_DEATH(bindings.Array(uniqueOf("x")), "Assertion failed: fDef != 0");
    EXPECT_DEATH(RCBindArray(&bindings, nullptr), "Assertion failed: fEnv->fDef != 0");
    EXPECT_DEATH(RCNewArrayElement{&bindings}, "Assertion failed: fEnv->fDef != 0");
}

} // namespace
