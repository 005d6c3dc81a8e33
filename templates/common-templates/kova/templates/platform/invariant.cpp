#include "kova/templates/platform/invariant.h"

#include <cstdio>
#include <cstdlib>

namespace kova::templates::platform {

void endForBrokenInvariant(char const* text, char const* place, unsigned line) noexcept
{
    std::fprintf(stderr, "%s:%u: Assertion `%s' failed.\n", place, line, text);
    std::abort();
}

} // namespace kova::templates::platform
