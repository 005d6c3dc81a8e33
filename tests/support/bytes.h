#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

/// Bytes written by hand, one field a line, little-endian: the golden side of the tests.
///
///     Bytes().u32(0x8158000).u32(80).u32(3).text("acquisition", 64).u32(62'500'000)
class Bytes {
public:
    Bytes& u8(std::uint64_t value) { return number(value, 1); }
    Bytes& u16(std::uint64_t value) { return number(value, 2); }
    Bytes& u32(std::uint64_t value) { return number(value, 4); }
    Bytes& u64(std::uint64_t value) { return number(value, 8); }
    Bytes& real(double value) { return u64(std::bit_cast<std::uint64_t>(value)); }
    /// The characters, then NUL up to @p width; cut at the width.
    Bytes& text(std::string_view characters, std::size_t width)
    {
        chars(characters.substr(0, width));
        return zeros(width - std::min(width, characters.size()));
    }
    /// The characters without terminator.
    Bytes& chars(std::string_view characters)
    {
        for (char const c : characters) {
            m_bytes.push_back(static_cast<std::byte>(c));
        }
        return *this;
    }
    /// The characters and a terminator.
    Bytes& charsZ(std::string_view characters) { return chars(characters).u8(0); }
    Bytes& zeros(std::size_t count) { return fill(0, count); }
    Bytes& fill(unsigned value, std::size_t count)
    {
        m_bytes.insert(m_bytes.end(), count, static_cast<std::byte>(value));
        return *this;
    }
    Bytes& append(Bytes const& other)
    {
        m_bytes.insert(m_bytes.end(), other.m_bytes.begin(), other.m_bytes.end());
        return *this;
    }

    /// Overwrites the u32 (u8) at @p offset: one field broken.
    Bytes& setU32(std::size_t offset, std::uint32_t value)
    {
        std::memcpy(m_bytes.data() + offset, &value, sizeof value);
        return *this;
    }
    Bytes& setU8(std::size_t offset, unsigned value)
    {
        m_bytes.at(offset) = static_cast<std::byte>(value);
        return *this;
    }
    Bytes& cut(std::size_t size)
    {
        m_bytes.resize(size);
        return *this;
    }

    std::byte const* data() const { return m_bytes.data(); }
    std::byte* data() { return m_bytes.data(); }
    std::size_t size() const { return m_bytes.size(); }
    bool operator==(Bytes const& other) const = default;

private:
    Bytes& number(std::uint64_t value, unsigned width)
    {
        for (unsigned i = 0; i < width; ++i) {
            m_bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
        }
        return *this;
    }

    std::vector<std::byte> m_bytes;
};

/// Shown by failing tests: offset, hexadecimal, characters.
std::ostream& operator<<(std::ostream& out, Bytes const& bytes);

/// What tag.Save() writes into a buffer that was filled with @p background.
template <class Tag>
Bytes savedBytes(Tag& tag, unsigned background = 0)
{
    Bytes saved;
    saved.fill(background, tag.getSaveLength());
    tag.Save(saved.data());
    return saved;
}
