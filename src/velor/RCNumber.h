// RCNumber: the one numeric value of the resource language, a 64-bit signed integer or a double.
#pragma once

class RCNumber {
public:
    RCNumber() : fInteger(0), fIsInteger(true) {}
    RCNumber(long value) : fInteger(value), fIsInteger(true) {}
    // Literal ints would otherwise be ambiguous between the long and the double forms.
    RCNumber(int value) : RCNumber(static_cast<long>(value)) {}
    RCNumber(double value) : fDouble(value), fIsInteger(false) {}

    bool IsInteger() const { return fIsInteger; }
    // A double is truncated toward zero; one beyond the range of long saturates and NaN gives 0.
    long AsInteger() const { return fIsInteger ? fInteger : DoubleAsInteger(); }
    double AsDouble() const { return fIsInteger ? static_cast<double>(fInteger) : fDouble; }

    // Adds delta in the number's own kind (integers wrap) and returns the new value.
    RCNumber Increment(long delta);

private:
    long DoubleAsInteger() const;

    union {
        long fInteger;
        double fDouble;
    };
    bool fIsInteger;
};

// Integer arithmetic of the language wraps silently; these do it without signed overflow.
long WrappingAdd(long left, long right);
long WrappingSubtract(long left, long right);
long WrappingMultiply(long left, long right);
