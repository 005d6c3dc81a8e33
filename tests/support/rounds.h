#pragma once

#include "sanitized.h"

#include <cstdlib>

/// How often a test repeats what depends on chance: what ZUL_TEST_ROUNDS says, otherwise @p ordinary times, and with a
/// sanitizer a fifth of that.
inline int rounds(int ordinary)
{
    if (char const* const wanted = std::getenv("ZUL_TEST_ROUNDS")) {
        return std::atoi(wanted);
    }
    return isSanitized ? (ordinary + 4) / 5 : ordinary;
}
