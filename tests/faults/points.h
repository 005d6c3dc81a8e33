#pragma once

#include "fault.h"

#include <cstddef>
#include <vector>

/// Whether the environment has ZUL_FAULTS=all: then no call is left out, and the table is printed.
bool everyPointIsTried();

/// In which ways calls of that kind are made to fail, all from the first on.
std::vector<Fault> waysToFail(FaultKind kind);

/// Which of @p calls calls are to fail: all, or the first ones and some of the others.
/// @param all whether none is left out; with a sanitizer some are nevertheless
std::vector<std::size_t> pointsToTry(std::size_t calls, bool all = false);
