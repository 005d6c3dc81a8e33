#pragma once

#include <functional>

/// What @p action returns in a child process where every system call of a number, like SYS_fsync, fails.
/// @param error the errno that it fails with; 0 for a call that does nothing and returns 0
/// @throws std::runtime_error when the child ends without an answer
int withFailingCall(long number, int error, std::function<int()> const& action);

/// The same, where only calls fail whose first argument is @p first, like AT_FDCWD.
int withFailingCall(long number, int first, int error, std::function<int()> const& action);
