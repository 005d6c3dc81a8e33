#pragma once

#include <cstdint>
#include <vector>

namespace examples {

using Samples = std::vector<std::uint16_t>;

/// The host's side of one operator of the design: takes its parameters, and computes what the hardware computes.
class Operator {
public:
    virtual ~Operator() = default;

    /// What the operator does, e.g. "Fir".
    virtual char const* kind() const noexcept = 0;
    /// @return false when the operator has no parameter of that name or refuses the value; nothing changes then
    virtual bool set(char const* parameter, double value) = 0;
    /// @param line one line of pixels, or one run of signal samples
    virtual Samples run(Samples const& line) const = 0;
};

/// What the factory of an operator library is: its symbol is the module's type followed by "QelLocalCreate".
/// @param instance name of the module: the kind of the operator, followed by a number, e.g. "Fir0"
/// @return a new operator, the caller's to delete; null for a kind that the library does not have, when
///         @p instance is null, and when memory runs out
using OperatorFactory = Operator* (*)(char const* instance);

} // namespace examples

extern "C" {
[[gnu::visibility("default")]] examples::Operator* ImageOperatorsQelLocalCreate(char const* instance);
[[gnu::visibility("default")]] examples::Operator* SignalOperatorsQelLocalCreate(char const* instance);
}
