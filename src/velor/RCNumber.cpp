// Arithmetic on the language's one number type, integer or double, wrapping like the language.

#include "RCNumber.h"

#include <cmath>
#include <limits>

long RCNumber::DoubleAsInteger() const {
    if (std::isnan(fDouble)) return 0;
    // 2^63 is exact as a double; anything at or beyond it has no long of its own.
    constexpr double kLimit = 9223372036854775808.0;
    if (fDouble >= kLimit) return std::numeric_limits<long>::max();
    if (fDouble < -kLimit) return std::numeric_limits<long>::min();
    return static_cast<long>(fDouble);
}

RCNumber RCNumber::Increment(long delta) {
    if (fIsInteger)
        fInteger = WrappingAdd(fInteger, delta);
    else
        fDouble += static_cast<double>(delta);
    return *this;
}

long WrappingAdd(long left, long right) {
    return static_cast<long>(static_cast<unsigned long>(left) + static_cast<unsigned long>(right));
}

long WrappingSubtract(long left, long right) {
    return static_cast<long>(static_cast<unsigned long>(left) - static_cast<unsigned long>(right));
}

long WrappingMultiply(long left, long right) {
    return static_cast<long>(static_cast<unsigned long>(left) * static_cast<unsigned long>(right));
}
