// Invariant checks that stay on in every build, so a broken invariant stops with a clear
// message instead of running on into undefined behaviour.
#pragma once

// Invariant checks that stay on in every build. A failed check prints its condition (or the text
// given for it) with the function and the place in the source, and ends the process at once,
// before any undefined behaviour can follow.

[[noreturn]] void AssertionFailed(char const* condition, char const* function, char const* file, int line);

#define VELOR_ASSERT(condition) \
    ((condition) ? static_cast<void>(0) : AssertionFailed(#condition, __func__, __FILE__, __LINE__))

// For checks whose message names the place rather than the condition, as in
// VELOR_ASSERT_TEXT("RCScanner::EvalNumber", false).
#define VELOR_ASSERT_TEXT(text, condition) \
    ((condition) ? static_cast<void>(0) : AssertionFailed(text, __func__, __FILE__, __LINE__))
