#pragma once

#include "fault.h"

// What the replaced functions ask and tell.

/// Counts a call of @p function. @return whether it is to fail
bool hasToFail(FaultKind kind, char const* function) noexcept;
/// Counts a call that transfers bytes. @return the errno to fail with; 0 where it is to go on, with @p length set to what
/// is to be transferred
int hasToFailTransfer(char const* function, std::size_t& length) noexcept;
/// The errno of the fault that is injected now.
int errorOfFault() noexcept;
void noteSize(std::size_t bytes) noexcept;
void noteInUse(InUse const& difference) noexcept;
