#include "Assertion.h"

#include <cstdio>
#include <cstdlib>

void AssertionFailed(char const* condition, char const* file, int line) {
    std::fflush(stdout);
    std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition, file, line);
    std::abort();
}
