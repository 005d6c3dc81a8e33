#pragma once

#include "operator.h"

#include <memory>
#include <new>
#include <span>
#include <string_view>

namespace examples {

/// One kind of operator that a library offers.
struct OperatorKind {
    std::string_view name;
    std::unique_ptr<Operator> (*make)();
};

template <class Kind>
std::unique_ptr<Operator> makeOperator()
{
    return std::make_unique<Kind>();
}

/// What the factory of a library with these @p kinds answers.
inline Operator* createOperator(std::span<OperatorKind const> kinds, char const* instance) noexcept
{
    if (instance == nullptr) {
        return nullptr;
    }
    std::string_view kind = instance;
    kind = kind.substr(0, kind.find_last_not_of("0123456789") + 1);
    for (OperatorKind const& known : kinds) {
        if (known.name == kind) {
            try {
                return known.make().release();
            } catch (std::bad_alloc const&) {
                return nullptr;
            }
        }
    }
    return nullptr;
}

/// Stores @p value when it lies between the limits.
inline bool setWithin(double& target, double value, double lowest, double highest)
{
    bool const fits = value >= lowest && value <= highest;
    if (fits) {
        target = value;
    }
    return fits;
}

} // namespace examples
