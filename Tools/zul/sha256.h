#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// A SHA-256 digest (FIPS 180-4) of bytes that come in pieces.
class Sha256 {
public:
    using Digest = std::array<std::byte, 32>;

    void add(std::span<std::byte const> bytes);
    /// The digest of everything that was added.
    Digest digest() const;

private:
    static constexpr std::size_t blockSize = 64;
    using State = std::array<std::uint32_t, 8>;

    static void addBlock(State& state, std::byte const* block);
    static void addEnd(State& state, std::span<std::byte const> rest, std::uint64_t length);

    State m_state{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                  0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<std::byte, blockSize> m_rest{}; // m_length % blockSize bytes of it wait for more
    std::uint64_t m_length = 0;
};

/// The SHA-256 digest of @p bytes.
Sha256::Digest sha256(std::span<std::byte const> bytes);
