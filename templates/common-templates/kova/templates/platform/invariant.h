#pragma once

namespace kova::templates::platform {

/// Whether checkInvariant() does anything: in builds without NDEBUG.
constexpr bool invariantsAreChecked() noexcept
{
#ifdef NDEBUG
    return false;
#else
    return true;
#endif
}

/// Prints "PLACE:LINE: Assertion `TEXT' failed." and a line feed to standard error and aborts.
[[noreturn]] void endForBrokenInvariant(char const* text, char const* place, unsigned line) noexcept;

/// Ends the process when something that the code itself has to ensure does not hold. Does nothing with NDEBUG.
/// @param text what should hold
/// @param place the source, by its name without extension
#ifdef NDEBUG
inline void checkInvariant(bool, char const*, char const*, unsigned) noexcept {}
#else
inline void checkInvariant(bool holds, char const* text, char const* place, unsigned line) noexcept
{
    if (!holds) {
        endForBrokenInvariant(text, place, line);
    }
}
#endif

} // namespace kova::templates::platform
