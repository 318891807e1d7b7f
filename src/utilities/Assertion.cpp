// The stop on a failed invariant: the message is written and the process ends at once.

#include "Assertion.h"

#include <cstdio>
#include <cstdlib>

void AssertionFailed(char const* condition, char const* function, char const* file, int line) {
    std::fflush(stdout);
    std::fprintf(stderr, "Assertion failed: %s, function %s, file %s, line %d\n", condition, function, file,
                 line);
    std::abort();
}
