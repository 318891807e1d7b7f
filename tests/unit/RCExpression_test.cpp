#include "RCExpression.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "DataArea.h"
#include "RCTestScanner.h"
#include "RCValueCell.h"
#include "UniqueNames.h"

namespace {

// Parses one expression and evaluates it inside a type instance, as a field would.
class RCExpressionTest : public testing::Test {
protected:
    RCNumber Evaluate(char const* text) {
        RCTestScanner scanner(text);
        RCTestBindings bindings(scanner);
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
        EXPECT_TRUE(expression) << text;
        if (!expression) return RCNumber();
        bool isConstant = false;
        RCPtr<RCExpression> reduced(expression->Reduce(scanner, bindings.get(), isConstant));
        EXPECT_TRUE(isConstant) << text;
        return reduced->Evaluate(scanner, bindings.get());
    }

    long Integer(char const* text) {
        RCNumber number = Evaluate(text);
        EXPECT_TRUE(number.IsInteger()) << text;
        return number.AsInteger();
    }

    // The messages of parsing a text that must fail.
    std::string ParseFailure(char const* text) {
        RCTestScanner scanner(text);
        RCCapturedMessages messages;
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
        EXPECT_FALSE(expression) << text;
        return messages.Text();
    }

    std::string Description(char const* text) {
        RCTestScanner scanner(text);
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
        DataArea area;
        expression->WriteDescription(&area, 0);
        return std::string(area.GetData(0), area.GetCursor());
    }
};

TEST_F(RCExpressionTest, BinaryOperatorsClimbByPriorityAndAssociateLeft) {
    EXPECT_EQ(Integer("1 + 2 * 3"), 7);
    EXPECT_EQ(Integer("1 - 2 - 3"), -4);
    EXPECT_EQ(Integer("1 << 2 + 1"), 8);
    EXPECT_EQ(Integer("1 | 2 == 2"), 1);
    EXPECT_EQ(Integer("(1 + 2) * 3"), 9);
    EXPECT_EQ(Integer("6 & 3 ^ 1 | 8"), 11);
    EXPECT_EQ(Integer("2 < 3 && 3 >= 3 || 0"), 1);
    EXPECT_EQ(Integer("4 != 4 || 1"), 0);
}

// A lone literal is given as a number; one that an operator follows starts a tree that takes
// the operator in, as the full parser would. Either way the value ends at the same token.
TEST_F(RCExpressionTest, AValueIsALoneLiteralOrATreeThatStartsWithIt) {
    for (char const* text : {"0x1F ;", "0 ;", "7 + 1 * 2 ;", "3 ? 4 : 5 ;", "8 >> 1 ;", "- 2 ;", "(9) ;"}) {
        RCTestScanner scanner(text);
        RCTestBindings bindings(scanner);
        RCNumber literal;
        RCPtr<RCExpression> tree;
        ASSERT_TRUE(RCExpression::ParseValue(scanner, literal, tree)) << text;
        bool const lone = std::string(text).find_first_of("+?>-(") == std::string::npos;
        EXPECT_EQ(tree == nullptr, lone) << text;
        RCNumber value = tree ? tree->Evaluate(scanner, bindings.get()) : literal;
        EXPECT_EQ(value.AsInteger(), Integer(text)) << text;
        EXPECT_EQ(scanner->TokenType(), kPPScan_Semicolon) << text;
    }
}

// A value folds operators over literals as it is parsed, but never one that would report, and
// a tree of a type body keeps every node, since its description shows it as written.
TEST_F(RCExpressionTest, AValueFoldsItsConstantsSilentlyAndABodyTreeDoesNot) {
    for (char const* text : {"(3) * 256 + (4) ;", "- 2 ;", "1 ? 2 : 3 ;", "1.5 % 2 ;", "~1.5 ;", "6 / 8.0 ;"}) {
        RCTestScanner scanner(text);
        RCTestBindings bindings(scanner);
        RCNumber literal;
        RCPtr<RCExpression> tree;
        RCCapturedMessages parsing;
        ASSERT_TRUE(RCExpression::ParseValue(scanner, literal, tree)) << text;
        EXPECT_EQ(parsing.Text(), "") << text;
        bool const folds = std::string(text).find_first_of("?%~") == std::string::npos;
        EXPECT_EQ(tree->LiteralValue() != nullptr, folds) << text;
        RCCapturedMessages evaluating;
        EXPECT_DOUBLE_EQ(tree->Evaluate(scanner, bindings.get()).AsDouble(), Evaluate(text).AsDouble()) << text;
    }
    RCTestScanner scanner("1 + 2");
    RCPtr<RCExpression> body(RCExpression::ParseExpression(scanner, -1));
    EXPECT_EQ(body->LiteralValue(), nullptr);
}

// Only a tree of integer literals, their operators and the $$ functions that read the output may
// be evaluated as it stands when its fixup runs.
TEST_F(RCExpressionTest, ATreeDependsOnTheOutputOnlyThroughFunctionsOverIntegers) {
    struct Case {
        char const* text;
        RCDependence dependence;
    };
    for (Case const& c : {Case{"(1 << 12) - ~1", RCDependence::kNothing},
                          Case{"$$Word(0) ^ ((1 << 12) - 1)", RCDependence::kOutput},
                          Case{"-$$BitField(8, 4, 4)", RCDependence::kOutput},
                          Case{"$$Byte(0) + 1.5", RCDependence::kBindings},
                          Case{"$$Long(n)", RCDependence::kBindings}, Case{"1 + n", RCDependence::kBindings}}) {
        RCTestScanner scanner(c.text);
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
        ASSERT_TRUE(expression) << c.text;
        EXPECT_EQ(expression->Dependence(), c.dependence) << c.text;
    }
}

TEST_F(RCExpressionTest, ATernaryEndsItsLevelAndNestsToTheRight) {
    EXPECT_EQ(Integer("1 ? 2 : 3 + 4"), 2);
    EXPECT_EQ(Integer("0 ? 2 : 3 + 4"), 7);
    EXPECT_EQ(Integer("0 ? 1 : 0 ? 2 : 3"), 3);
    EXPECT_EQ(Integer("(1 ? 5 : 6) * 2"), 10);
}

TEST_F(RCExpressionTest, UnaryOperatorsStack) {
    EXPECT_EQ(Integer("-~!0"), 2);
    EXPECT_EQ(Integer("- -3"), 3);
    EXPECT_EQ(Integer("!5"), 0);
}

TEST_F(RCExpressionTest, LogicalOrLooksOnlyAtItsLeftOperand) {
    EXPECT_EQ(Integer("0 || 5"), 0);
    EXPECT_EQ(Integer("1 || 0"), 1);
    EXPECT_EQ(Integer("0.5 || 1"), 0);
    EXPECT_EQ(Integer("0 && 1"), 0);
}

TEST_F(RCExpressionTest, IntegerArithmeticWrapsTruncatesAndDividesByZeroQuietly) {
    RCCapturedMessages messages;
    EXPECT_EQ(Integer("-7 / 2"), -3);
    EXPECT_EQ(Integer("-7 % 2"), -1);
    EXPECT_EQ(Integer("7 / 0"), 0);
    EXPECT_EQ(Integer("7 % 0"), 0);
    EXPECT_EQ(Integer("1 << 64"), 1);
    EXPECT_EQ(Integer("1 << 65"), 2);
    EXPECT_EQ(Integer("-8 >> 1"), -4);
    EXPECT_EQ(Integer("0x7FFFFFFFFFFFFFFF + 1"), std::numeric_limits<long>::min());
    EXPECT_EQ(Integer("(0 - 0x7FFFFFFFFFFFFFFF - 1) / -1"), std::numeric_limits<long>::min());
    EXPECT_EQ(messages.Text(), "");
}

TEST_F(RCExpressionTest, AFloatOperandMakesTheResultAFloat) {
    RCNumber equal = Evaluate("3 == 3.0");
    EXPECT_FALSE(equal.IsInteger());
    EXPECT_DOUBLE_EQ(equal.AsDouble(), 1.0);
    EXPECT_DOUBLE_EQ(Evaluate("1.5 * 2").AsDouble(), 3.0);
    EXPECT_DOUBLE_EQ(Evaluate("7.0 / 0.0").AsDouble(), 0.0);
    EXPECT_DOUBLE_EQ(Evaluate("-1.5").AsDouble(), -1.5);
    EXPECT_DOUBLE_EQ(Evaluate("!0.0").AsDouble(), 1.0);
}

TEST_F(RCExpressionTest, BitOperatorsRefuseFloats) {
    RCCapturedMessages messages;
    RCNumber remainder = Evaluate("1.5 % 2");
    RCNumber complement = Evaluate("~1.5");
    std::string text = messages.Text();
    EXPECT_NE(text.find("Operator '%' cannot be used with floating point values"), std::string::npos);
    EXPECT_NE(text.find("Operator '~' cannot be used with floating point values"), std::string::npos);
    EXPECT_FALSE(remainder.IsInteger());
    EXPECT_DOUBLE_EQ(remainder.AsDouble(), 0.0);
    EXPECT_DOUBLE_EQ(complement.AsDouble(), 0.0);
}

TEST_F(RCExpressionTest, SyntaxErrorsAreReportedAndGiveNull) {
    EXPECT_NE(ParseFailure("+1").find("Syntax error in expression."), std::string::npos);
    EXPECT_NE(ParseFailure("1 ? 2").find("Syntax error in expression."), std::string::npos);
    EXPECT_NE(ParseFailure("(1 + 2").find("Expected ')'."), std::string::npos);
    EXPECT_NE(ParseFailure("(1 ? \"a\" : \"b\")").find("Expression must be numeric."), std::string::npos);
}

TEST_F(RCExpressionTest, FunctionArgumentsAreCounted) {
    EXPECT_NE(ParseFailure("$$Byte()").find("Too few arguments to function.  1 expected"), std::string::npos);
    EXPECT_NE(ParseFailure("$$BitField(1, 2)").find("Too few arguments to function.  3 expected"), std::string::npos);
    EXPECT_NE(ParseFailure("$$Byte(1, 2)").find("Too many values.  The maximum is 1."), std::string::npos);
    EXPECT_NE(ParseFailure("$$Byte 1").find("Expected '('."), std::string::npos);
    EXPECT_NE(ParseFailure("$$CountOf(1)").find("$$CountOf() argument must be a name."), std::string::npos);
    EXPECT_NE(ParseFailure("$$ArrayIndex(2)").find("$$ArrayIndex() argument must be a name."), std::string::npos);
}

TEST_F(RCExpressionTest, SubscriptListsAreBounded) {
    EXPECT_NE(ParseFailure("x[]").find("Too few arguments to function.  0 expected"), std::string::npos);
    std::string subscripts = "x[1";
    for (int i = 0; i < 32; ++i) subscripts += ", 1";
    EXPECT_NE(ParseFailure((subscripts + "]").c_str()).find("Too many values.  The maximum is 32."), std::string::npos);
    EXPECT_NE(ParseFailure("x[1 2]").find("Expected ']'."), std::string::npos);
}

TEST_F(RCExpressionTest, AdjacentStringsAreOneString) {
    RCTestScanner scanner("\"ab\" \"cd\"");
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    ASSERT_TRUE(expression);
    ASSERT_TRUE(expression->IsString());
    EXPECT_FALSE(expression->IsNumber());
    RCByteString string = expression->AsString();
    EXPECT_EQ(std::string(string.Bytes(), static_cast<size_t>(string.fLength)), "abcd");
    string.Destroy();
}

TEST_F(RCExpressionTest, AStringInANumericPlaceIsNotANumber) {
    RCTestScanner scanner("1 ? \"a\" : \"b\"");
    RCTestBindings bindings(scanner);
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    ASSERT_TRUE(expression);
    EXPECT_FALSE(expression->IsNumber());
    RCCapturedMessages messages;
    bool isConstant = false;
    RCPtr<RCExpression> reduced(expression->Reduce(scanner, bindings.get(), isConstant));
    EXPECT_TRUE(isConstant);
    EXPECT_EQ(reduced->Evaluate(scanner, bindings.get()).AsInteger(), 0);
    EXPECT_NE(messages.Text().find("Expression must be numeric."), std::string::npos);
}

TEST_F(RCExpressionTest, ReduceLeavesTheParsedTreeForTheNextResource) {
    RCTestScanner scanner("size * 2 + 1");
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    for (long size : {3L, 10L}) {
        RCTestBindings bindings(scanner);
        bindings.Symbols().AddStatic(uniqueOf("size"), RCNumber(size));
        bool isConstant = false;
        RCPtr<RCExpression> reduced(expression->Reduce(scanner, bindings.get(), isConstant));
        ASSERT_TRUE(isConstant);
        EXPECT_EQ(reduced->Evaluate(scanner, bindings.get()).AsInteger(), size * 2 + 1);
    }
}

// Parses a text and reduces it inside a type instance, keeping the reduced tree and the messages
// of the reduction.
class RCReduction {
public:
    explicit RCReduction(char const* text) : fScanner(text), fBindings(fScanner) {
        RCPtr<RCExpression> expression(RCExpression::ParseExpression(fScanner, -1));
        EXPECT_TRUE(expression) << text;
        if (!expression) return;
        RCCapturedMessages messages;
        fReduced = expression->Reduce(fScanner, fBindings.get(), fIsConstant);
        fMessages = messages.Text();
    }

    RCTestScanner fScanner;
    RCTestBindings fBindings;
    RCPtr<RCExpression> fReduced;
    bool fIsConstant = false;
    std::string fMessages;
};

// Folding holds literals as values, but a constant that is not a literal is still evaluated where
// its fold happens: after everything on its right was reduced.
TEST(RCExpressionFolding, KeepsTheOrderOfMessages) {
    RCReduction reduction("\"a\" + 1.5 % 2 ? 1 : 2");
    std::size_t floatMessage = reduction.fMessages.find("Operator '%' cannot be used with floating point values");
    std::size_t numericMessage = reduction.fMessages.find("Expression must be numeric.");
    ASSERT_NE(floatMessage, std::string::npos);
    ASSERT_NE(numericMessage, std::string::npos);
    EXPECT_LT(floatMessage, numericMessage);
}

// Literals around a value not known yet stay in the reduced tree and count when it is evaluated.
TEST(RCExpressionFolding, KeepsTheLiteralsBesideAnUnknownPart) {
    RCReduction reduction("1 + later * 2 + 3");
    ASSERT_TRUE(reduction.fReduced);
    EXPECT_FALSE(reduction.fIsConstant);
    EXPECT_NE(reduction.fMessages.find("Undefined name 'later'."), std::string::npos);
    reduction.fBindings->LookupValue(uniqueOf("later"))->SetValue(RCNumber(10L));
    EXPECT_EQ(reduction.fReduced->Evaluate(reduction.fScanner, reduction.fBindings.get()).AsInteger(), 24);
}

TEST_F(RCExpressionTest, ANameWithoutBindingsFrameIsUndefined) {
    RCTestScanner scanner("ghost + 1");
    RCSymbolTable symbols;
    RCBindings bindings(&symbols, nullptr, 0, 0);
    RCPtr<RCExpression> expression(RCExpression::ParseExpression(scanner, -1));
    RCCapturedMessages messages;
    EXPECT_EQ(expression->Evaluate(scanner, &bindings).AsInteger(), 1);
    std::string text = messages.Text();
    EXPECT_NE(text.find("Undefined name 'ghost'."), std::string::npos);
    EXPECT_NE(text.find("Expression must be numeric."), std::string::npos);
}

TEST_F(RCExpressionTest, IncrementAddsToATree) {
    RCTestScanner scanner("");
    RCTestBindings bindings(scanner);
    RCPtr<RCExpression> next(RCExpression::Increment(RCExpression::Number(41L), 1));
    EXPECT_EQ(next->Evaluate(scanner, bindings.get()).AsInteger(), 42);
}

TEST_F(RCExpressionTest, DescriptionsIndentNestedOperands) {
    EXPECT_EQ(Description("1 + 2 * 3"), "(+ 1\n   (* 2\n      3))");
    EXPECT_EQ(Description("-1"), "(- 1)");
    EXPECT_EQ(Description("0 - 1 ? x : $$Byte(y)"), "(if (- 0\n       1)\n    x\n    ($$Byte y))");
    EXPECT_EQ(Description("$$CountOf(items) + marks[1, 2]"),
              "(+ ($$CountOf items)\n   (arrayref marks 1\n                  2))");
    EXPECT_EQ(Description("\"a\\tb\""), "\"a\\tb\"");
    EXPECT_EQ(Description("1 - 2 + x * 3 - 4"), "(- (+ (- 1\n         2)\n      (* x\n         3))\n   4)");
}

// A chain at one level is no nesting however long it is; parentheses and unary operators are.
TEST_F(RCExpressionTest, LengthIsNotDepth) {
    std::string chain = "1";
    for (int i = 1; i < 200000; ++i) chain += i % 2 == 0 ? " + 3" : " - 1";
    EXPECT_EQ(Integer(chain.c_str()), 1 + 99999 * 3 - 100000 * 1);

    std::string const tooDeep = std::string(1000, '(') + "1" + std::string(1000, ')');
    EXPECT_NE(ParseFailure(tooDeep.c_str()).find("expression too complex"), std::string::npos);
    std::string unaryTooDeep;
    for (int i = 0; i < 1000; ++i) unaryTooDeep += "~ ";
    unaryTooDeep += "1";
    EXPECT_NE(ParseFailure(unaryTooDeep.c_str()).find("expression too complex"), std::string::npos);
}

} // namespace
