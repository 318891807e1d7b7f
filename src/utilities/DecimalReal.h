// DecimalReal: the value of the text of a real number literal, as the C library reads it.
#pragma once

#include <cstddef>

// The double that strtod gives for the text, which need not end in a NUL: the longest prefix
// that strtod accepts, rounded to nearest. A plain decimal whose digits fit in a double's mantissa
// and whose power of ten is exact is computed with one multiplication or division, which rounds
// once and so gives the same bits; every other text is handed to strtod itself.
double DecimalReal(char const* text, std::size_t length);
