// The string hash of description ids; its values are part of the output and must not change.

#include "RCHash.h"

#include <cstdint>

namespace {

// Folds the bytes into 64 bits; nothing is masked to 32 bits, so long texts keep high bits.
std::uint64_t FoldBytes(unsigned char const* bytes, int length) {
    std::uint64_t h = 0;
    for (int i = 0; i < length; ++i) h = (h << 4) + (h >> 28) + bytes[i];
    return h;
}

// One step of the minimal standard generator (a = 16807, m = 2^31 - 1) by Schrage's method, fed
// with a seed that may exceed 31 bits: the result then need not land in the generator's range.
long MinimalStandardStep(std::int64_t seed) {
    constexpr std::int64_t a = 16807, m = 2147483647, q = 127773, r = 2836;
    std::int64_t t = a * (seed % q) - r * (seed / q);
    return static_cast<long>(t > 0 ? t : t + m);
}

}  // namespace

long RCHash(void const* data, int length) {
    return MinimalStandardStep(
        static_cast<std::int64_t>(FoldBytes(static_cast<unsigned char const*>(data), length)));
}
