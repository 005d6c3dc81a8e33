#pragma once

#include "zul_class.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// What a load did, and everything that it said.
struct LoadOutcome {
    int result = 0;                     ///< what a load from a file returns: 0 or a negated errno
    std::string exceptionClass;         ///< of the exception that ended the load; empty when there was none
    std::string message;                ///< its what()
    std::string details;                ///< its asString(): any bytes
    std::optional<std::uint32_t> tagId; ///< of the tag that it is about
    std::string printed;                ///< what the load wrote to standard output: any bytes

    bool loads() const noexcept { return result == 0; }
    /// For people: "yes", or "no: " and what the load reported.
    std::string text() const;
};

/// Loads @p bytes, as a load from a file would do, and keeps what the class library prints off standard output.
///
/// Redirects descriptor 1 of the whole process while it runs: no other thread may write there.
/// @param zul keeps referring to @p bytes
/// @throws Failure System when descriptor 1 cannot be redirected; std::bad_alloc
LoadOutcome loadQuietly(ZUL& zul, std::span<std::byte const> bytes, ZULLoadMode mode = ZUL_LOAD_STRICT);
