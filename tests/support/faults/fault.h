#pragma once

#include <cstddef>
#include <cstdint>

/// What can be made to fail: taking memory, and calls of the system about files.
enum class FaultKind { Allocation, SystemCall };

/// Which calls fail, and how.
struct Fault {
    /// For first: no call.
    static constexpr std::size_t none = 0;
    /// For count: all that follow.
    static constexpr std::size_t lasting = SIZE_MAX;
    /// For error: reading and writing transfer half of what they are asked for, and other calls succeed.
    static constexpr int half = 0;

    FaultKind kind = FaultKind::Allocation;
    std::size_t first = none; ///< the first call that fails, counted from 1
    std::size_t count = 1;    ///< how many fail, one after the other
    int error = 0;            ///< the errno that they fail with
};

/// While one lives, calls of one kind are counted in this thread, and those that the fault names fail.
///
/// In a program that has this directory's sources linked or preloaded, the functions are reached through ones of the
/// same names that ask this class first.
class InjectedFault {
public:
    explicit InjectedFault(Fault const& fault) noexcept;
    ~InjectedFault();
    InjectedFault(InjectedFault const&) = delete;
    InjectedFault& operator=(InjectedFault const&) = delete;

    /// How many there were, failed or not.
    std::size_t calls() const noexcept;
    /// The function that was the first to fail; null when none did.
    char const* failed() const noexcept;
    /// Sum of the sizes of all memory asked for, whether or not it was given back.
    std::size_t bytes() const noexcept;
};

/// What this process has taken and not given back.
struct InUse {
    std::ptrdiff_t blocks = 0;
    std::ptrdiff_t bytes = 0;
    std::ptrdiff_t mappings = 0;
    bool operator==(InUse const&) const = default;
};
InUse inUse() noexcept;
