#pragma once

#include "scenario.h"

#include "fault.h"

#include <cstddef>
#include <map>
#include <string>

/// What a sweep over a scenario gave.
struct SweepResult {
    std::size_t calls = 0; ///< in a run without failures
    std::size_t tried = 0; ///< runs with failures
    std::map<int, std::size_t> outcomes;
};

/// Runs @p scenario once for every call of that kind and every way in which it can fail, each in the same process unless
/// it ends, and expects of each run that
/// - it ends with a result that is documented;
/// - every file is as it was before or as it is after a run without failures, and nothing else is there;
/// - no memory, mapping or descriptor is left;
/// - it works when it is tried again.
/// To be called in a /tmp of its own.
SweepResult sweep(Scenario const& scenario, FaultKind kind);

/// A line of the table: name, calls, runs, and how often which result.
std::string row(Scenario const& scenario, FaultKind kind, SweepResult const& result);
