#pragma once

#include <array>
#include <cstddef>
#include <span>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
inline constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
inline constexpr bool isSanitized = false;
#endif

/// One of @p values for the place with that number, in turn: for what takes long.
template <class Value, std::size_t Count>
std::span<Value const> oneInTurn(std::array<Value, Count> const& values, std::size_t place)
{
    return std::span(values).subspan(place % Count, 1);
}

/// Which of @p values to try at the place with that number: all of them; with a sanitizer, which makes everything many
/// times slower, one in turn, so that every place is still tried.
template <class Value, std::size_t Count>
std::span<Value const> valuesToTry(std::array<Value, Count> const& values, std::size_t place)
{
    return isSanitized ? oneInTurn(values, place) : std::span(values);
}
