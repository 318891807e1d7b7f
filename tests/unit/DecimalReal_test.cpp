// DecimalReal must give the bits that strtod gives, on the fast path and off it.

#include "DecimalReal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace {

void expectSameAsStrtod(std::string const& text) {
    double const expected = std::strtod(text.c_str(), nullptr);
    double const actual = DecimalReal(text.data(), text.size());
    std::uint64_t expectedBits, actualBits;
    std::memcpy(&expectedBits, &expected, sizeof expected);
    std::memcpy(&actualBits, &actual, sizeof actual);
    EXPECT_EQ(expectedBits, actualBits) << text;
}

TEST(DecimalReal, PlainDecimalsAndTheEdgesOfTheFastPath) {
    for (char const* text : {"0.5", "12.5", "8.0", "1.0e19", "1.0e0", "0.0", ".5", "5.", "0.1", "0.3",
                             "1e22", "1e23", "1e-22", "1e-23", "123456789e-22", "9007199254740991.0",
                             "9007199254740992.0", "9007199254740993.0", "3.14159265358979323846",
                             "1.7976931348623157e308", "4.9e-324", "1E+5", "2.5e-3", "1.5f", "2.0L"})
        expectSameAsStrtod(text);
}

TEST(DecimalReal, TextThatOnlyStrtodReadsInFull) {
    // Hexadecimal, a dangling exponent, words and trailing text all leave the fast path.
    for (char const* text : {"0x1.8p3", "1.5e", "1.5e+", "inf", "nan", "1.5x", "1..5", "", "."})
        expectSameAsStrtod(text);
}

TEST(DecimalReal, TextWithoutATerminatorIsReadOnlyUpToItsLength) {
    char const text[] = {'2', '.', '5', '5'};
    EXPECT_EQ(DecimalReal(text, 3), 2.5);
}

TEST(DecimalReal, RandomDecimalsAgreeWithStrtod) {
    std::mt19937_64 random(14);
    for (int i = 0; i < 20000; ++i) {
        std::string text = std::to_string(random() % 100000000000ULL);
        int point = static_cast<int>(random() % (text.size() + 1));
        text.insert(static_cast<std::size_t>(point), ".");
        if (random() % 2) text += "e" + std::to_string(static_cast<int>(random() % 61) - 30);
        expectSameAsStrtod(text);
    }
}

}  // namespace
