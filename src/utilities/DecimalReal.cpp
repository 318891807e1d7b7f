// Reading real number literals: an exact fast path for short decimals, strtod for the rest.

#include "DecimalReal.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

// Every power of ten up to 10^22 is exact in a double; 10^23 is not.
constexpr int kLargestExactPower = 22;
constexpr double kPowersOfTen[kLargestExactPower + 1] = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22,
};

// Integers up to 2^53 are exact in a double.
constexpr std::uint64_t kExactMantissaLimit = std::uint64_t{1} << 53;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A decimal taken apart: value = mantissa * 10^exponent, exactly.
struct Decimal {
    std::uint64_t mantissa = 0;
    long exponent = 0;
};

// Reads digits into the mantissa; false when one would take it to 2^53 or beyond.
bool readDigits(char const*& at, char const* end, Decimal& decimal, long& count) {
    count = 0;
    for (; at != end && isDigit(*at); ++at, ++count) {
        decimal.mantissa = decimal.mantissa * 10 + static_cast<std::uint64_t>(*at - '0');
        if (decimal.mantissa >= kExactMantissaLimit) return false;
    }
    return true;
}

// Splits text of the form digits [ "." digits ] [ ("e" | "E") [ sign ] digits ], with a digit
// somewhere in the mantissa and nothing but suffix letters f, F, l, L behind it. False for any
// other text and for one whose digits do not fit, leaving the answer to strtod.
bool splitPlainDecimal(char const* at, char const* end, Decimal& decimal) {
    long wholeDigits = 0;
    long fractionDigits = 0;
    if (!readDigits(at, end, decimal, wholeDigits)) return false;
    if (at != end && *at == '.') {
        ++at;
        if (!readDigits(at, end, decimal, fractionDigits)) return false;
    }
    if (wholeDigits + fractionDigits == 0) return false;
    decimal.exponent = -fractionDigits;
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        bool negative = at != end && *at == '-';
        if (at != end && (*at == '-' || *at == '+')) ++at;
        if (at == end || !isDigit(*at)) return false;
        long power = 0;
        for (; at != end && isDigit(*at); ++at) {
            power = power * 10 + (*at - '0');
            if (power > 2 * kLargestExactPower) return false;
        }
        decimal.exponent += negative ? -power : power;
    }
    for (; at != end; ++at)
        if (*at != 'f' && *at != 'F' && *at != 'l' && *at != 'L') return false;
    return true;
}

}  // namespace

double DecimalReal(char const* text, std::size_t length) {
    Decimal decimal;
    if (splitPlainDecimal(text, text + length, decimal) && decimal.exponent >= -kLargestExactPower &&
        decimal.exponent <= kLargestExactPower) {
        // Both operands are exact, so the one operation rounds once, to nearest, as strtod does.
        double const mantissa = static_cast<double>(decimal.mantissa);
        if (decimal.exponent >= 0) return mantissa * kPowersOfTen[decimal.exponent];
        return mantissa / kPowersOfTen[-decimal.exponent];
    }
    std::string const terminated(text, length);
    return std::strtod(terminated.c_str(), nullptr);
}
