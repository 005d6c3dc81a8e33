#pragma once

#include <cstddef>
#include <cstring>

/// Index of a virtual operation in its class's table, as the platform's C++ ABI numbers it: code built against an
/// earlier version of a header finds an operation by this number.
template <class Operation>
std::size_t virtualSlot(Operation operation)
{
    std::size_t words[2];
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    return (words[0] - 1) /
           sizeof(void*); // the first word of a pointer to a virtual member is its offset plus 1
}
