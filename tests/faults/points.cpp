#include "points.h"

#include "sanitized.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <span>
#include <string_view>

bool everyPointIsTried()
{
    char const* const value = std::getenv("ZUL_FAULTS");
    return value != nullptr && std::string_view(value) == "all";
}

std::vector<Fault> waysToFail(FaultKind kind)
{
    if (kind == FaultKind::Allocation) {
        return {{.kind = kind, .error = ENOMEM}, {.kind = kind, .count = Fault::lasting, .error = ENOMEM}};
    }
    // An interruption that lasts for ever is none: whoever tries again may do so for ever.
    std::vector<Fault> ways{{.kind = kind, .error = EINTR},
                            {.kind = kind, .count = 3, .error = EINTR},
                            {.kind = kind, .error = Fault::half},
                            {.kind = kind, .count = Fault::lasting, .error = Fault::half}};
    constexpr auto errors = std::to_array({EIO, EACCES, ENOSPC, EDQUOT, EMFILE});
    for (int const error : std::span(errors).first(isSanitized ? 2 : errors.size())) {
        ways.push_back({.kind = kind, .error = error});
        ways.push_back({.kind = kind, .count = Fault::lasting, .error = error});
    }
    return ways;
}

std::vector<std::size_t> pointsToTry(std::size_t calls, bool all)
{
    bool const isEvery = everyPointIsTried() || (all && !isSanitized);
    constexpr std::size_t first = isSanitized ? 5 : 20;
    constexpr std::size_t some = isSanitized ? 10 : 40;
    std::size_t const step = std::max<std::size_t>(1, calls / some);
    std::vector<std::size_t> points;
    for (std::size_t call = 1; call <= calls; call += isEvery || call < first ? 1 : step) {
        points.push_back(call);
    }
    return points;
}
