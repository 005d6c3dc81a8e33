#pragma once

#include <array>
#include <cstddef>
#include <span>

/// The SHA-256 digest of @p bytes (FIPS 180-4).
std::array<std::byte, 32> sha256(std::span<std::byte const> bytes);
