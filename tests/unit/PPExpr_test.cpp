#include <gtest/gtest.h>

#include <string>

#include "PPExpr.h"
#include "cpp5.h"

namespace {

struct Outcome {
    bool value;
    int error;
    bool operator==(Outcome const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Outcome const& o) { return out << "{" << o.value << ", " << o.error << "}"; }

Outcome evaluate(std::string const& text) {
    PP_CExpr expression(text.c_str());
    int error = -1;
    bool value = expression.Eval(&error);
    return {value, error};
}

TEST(PPExpr, ArithmeticIsSigned32BitButATopValueIs64) {
    struct Case {
        char const* text;
        bool value;
    } const cases[] = {
        {"4294967296", true},        {"4294967296 + 0", false},     {"-1 < 0", true},
        {"0xFFFFFFFF < 0", true},    {"1 | 0 ^ 1", false},          {"2 * 3 + 4 == 10", true},
        {"1 + 2 * 3 == 7", true},    {"(1 + 2) * 3 == 9", true},    {"-2147483647 - 1 == 1 << 31", true},
        {"7 / 0", false},            {"7 % 0", false},              {"1 || (1/0)", true},
        {"-2147483647 - 1 == (-2147483647 - 1) / -1", true},        {"-8 >> 1 == -4", true},
        {"1 << 33 == 2", true},      {"017 == 15", true},           {"0x1fUL == 31", true},
        {"10 % 3 == 1", true},       {"!0 && ~0 == -1", true},      {"1 ? 0 : 1", false},
        {"0 ? 0 : 2", true},         {"1 ? 2 ? 0 : 1 : 1", false},  {"1, 0", false},
        {"0, 1", false},             {"UNDEFINED", false},          {"+1 - -1 == 2", true},
        {"1)", true},                {"3 >= 3 && 2 <= 1 == 0", true}, {"1 != 1", false},
    };
    for (Case const& c : cases)
        EXPECT_EQ(evaluate(c.text), (Outcome{c.value, 0})) << c.text;
}

TEST(PPExpr, CharacterConstants) {
    char const* const trueCases[] = {
        "'ab' == 0x6162", "L'a' == 97", "'\\n' == 10", "'\\x41' == 65", "'\\101' == 65", "'\\'' == 39",
        "'\\xFFF' == 0xFF46",  "'\\q' == 'q'", "'\\a\\b\\f\\r\\t\\v' == 0x07080C0D090B",
    };
    for (char const* text : trueCases)
        EXPECT_EQ(evaluate(text), (Outcome{true, 0})) << text;
}

TEST(PPExpr, MalformedExpressionsGiveTheirCodes) {
    struct Case {
        char const* text;
        int error;
    } const cases[] = {
        {"", kPPErr_OperatorOutOfPlace},     {"1 2", kPPErr_BadExpression},
        {"(1", kPPErr_UnbalancedParenthesis}, {"1 ? 2", kPPErr_OperatorOutOfPlace},
        {"1 : 2", kPPErr_ColonWithoutQuestion}, {"\"a\"", kPPErr_StringInExpression},
        {"1.0", kPPErr_FloatInExpression},    {"x = 1", kPPErr_AssignmentInExpression},
        {"x += 1", kPPErr_AssignmentInExpression}, {"UNDEFINED(1)", kPPErr_OperatorOutOfPlace},
        {"1 +", kPPErr_OperatorOutOfPlace},    {"1LL", kPPErr_BadNumber},
    };
    for (Case const& c : cases)
        EXPECT_EQ(evaluate(c.text), (Outcome{true, c.error})) << c.text;
    // Tokens with no meaning in a condition stop it as true, without a code.
    EXPECT_EQ(evaluate("$10"), (Outcome{true, 0}));
    EXPECT_EQ(evaluate("0b0"), (Outcome{true, 0}));
    EXPECT_EQ(evaluate("a[1]"), (Outcome{true, 0}));
}

TEST(PPExpr, StacksHold127Entries) {
    std::string parentheses = std::string(127, '(') + "0" + std::string(127, ')');
    EXPECT_EQ(evaluate(parentheses), (Outcome{false, 0}));
    EXPECT_EQ(evaluate("(" + parentheses + ")"), (Outcome{true, kPPErr_ExpressionTooComplex}));
    std::string questions;
    for (int i = 0; i < 126; ++i)
        questions += "1?";
    EXPECT_EQ(evaluate(questions + "1").error, kPPErr_OperatorOutOfPlace);
    EXPECT_EQ(evaluate(questions + "1?1").error, kPPErr_ExpressionTooComplex);
}

} // namespace
