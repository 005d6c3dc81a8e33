#include "sha256.h"

#include <algorithm>
#include <bit>

namespace {

// clang-format off
constexpr std::array<std::uint32_t, 64> roundConstants{
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};
// clang-format on

using Schedule = std::array<std::uint32_t, 64>;

Schedule scheduleOf(std::byte const* block)
{
    Schedule words{};
    for (std::size_t i = 0; i < 16; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            words[i] = (words[i] << 8U) | std::to_integer<std::uint32_t>(block[4 * i + j]);
        }
    }
    for (std::size_t i = 16; i < words.size(); ++i) {
        std::uint32_t const a = words[i - 15];
        std::uint32_t const b = words[i - 2];
        words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3U)) + words[i - 7] +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10U));
    }
    return words;
}

} // namespace

void Sha256::addBlock(State& state, std::byte const* block)
{
    Schedule const words = scheduleOf(block);
    State s = state;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::uint32_t const e = s[4];
        std::uint32_t const a = s[0];
        std::uint32_t const first = s[7] + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                                    ((e & s[5]) ^ (~e & s[6])) + roundConstants[i] + words[i];
        std::uint32_t const second = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) +
                                     ((a & s[1]) ^ (a & s[2]) ^ (s[1] & s[2]));
        std::rotate(s.begin(), s.end() - 1, s.end());
        s[4] += first;
        s[0] = first + second;
    }
    for (std::size_t i = 0; i < s.size(); ++i) {
        state[i] += s[i];
    }
}

/// The last bytes of a message, 0x80, zeros and the message's length in bits.
void Sha256::addEnd(State& state, std::span<std::byte const> rest, std::uint64_t length)
{
    std::array<std::byte, 2 * blockSize> end{};
    std::copy(rest.begin(), rest.end(), end.begin());
    end[rest.size()] = std::byte{0x80};
    std::size_t const used = rest.size() + 9 <= blockSize ? blockSize : 2 * blockSize;
    for (std::size_t i = 0; i < 8; ++i) {
        end[used - 1 - i] = static_cast<std::byte>((length * 8) >> (8 * i));
    }
    for (std::size_t offset = 0; offset < used; offset += blockSize) {
        addBlock(state, end.data() + offset);
    }
}

void Sha256::add(std::span<std::byte const> bytes)
{
    std::size_t const waiting = m_length % blockSize;
    m_length += bytes.size();
    if (waiting != 0) {
        std::size_t const count = std::min(blockSize - waiting, bytes.size());
        std::copy_n(bytes.begin(), count, m_rest.begin() + static_cast<std::ptrdiff_t>(waiting));
        bytes = bytes.subspan(count);
        if (waiting + count < blockSize) {
            return;
        }
        addBlock(m_state, m_rest.data());
    }
    for (; bytes.size() >= blockSize; bytes = bytes.subspan(blockSize)) {
        addBlock(m_state, bytes.data());
    }
    std::copy(bytes.begin(), bytes.end(), m_rest.begin());
}

Sha256::Digest Sha256::digest() const
{
    State state = m_state;
    addEnd(state, std::span(m_rest).first(m_length % blockSize), m_length);
    Digest digest{};
    for (std::size_t i = 0; i < digest.size(); ++i) {
        digest[i] = static_cast<std::byte>(state[i / 4] >> (24 - 8 * (i % 4)));
    }
    return digest;
}

Sha256::Digest sha256(std::span<std::byte const> bytes)
{
    Sha256 sha;
    sha.add(bytes);
    return sha.digest();
}
