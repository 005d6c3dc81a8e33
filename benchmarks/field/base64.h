#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// With padding (RFC 4648).
std::string toBase64(std::span<std::byte const> bytes);
/// @throws std::runtime_error for anything that toBase64 does not write
std::vector<std::byte> fromBase64(std::string_view text);
