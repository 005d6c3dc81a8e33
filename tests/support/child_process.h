#pragma once

#include <functional>
#include <sys/types.h>

/// What @p action returns in a child process, for limits and rights that would not leave this process again.
/// @throws std::runtime_error when the child ends without an answer
int inChildProcess(std::function<int()> const& action);

/// The same, as a user without special rights.
int asOrdinaryUser(std::function<int()> const& action);

/// The same, where no file can grow beyond @p bytes: writing up to there is short, writing there fails with EFBIG.
int withFileSizeLimit(off_t bytes, std::function<int()> const& action);
