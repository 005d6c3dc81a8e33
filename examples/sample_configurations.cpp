#include "sample_design.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace sample {

namespace {

struct Board {
    unsigned char index; // of the configuration that belongs to the board
    unsigned short type;
    unsigned short revision;
    unsigned int fpga;
    std::size_t bitstreamBytes;
    std::array<unsigned int, 3> clocks; // Hz
    char const* id;
};

// clang-format off
constexpr std::array<Board, 2> boards{{
    {0, 2625, 1, 0xBBEA0, 301'832, {62'500'000, 125'000'000, 0},           "bitstream-2625-3s1600efg484-b1482"},
    {1, 2628, 2, 0xBD594, 407'216, {62'500'000, 125'000'000, 200'000'000}, "bitstream-2628-3s4000fg676-b1482"},
}};
// clang-format on

/// Writes the words of a bitstream, each with its highest byte first.
class BitstreamWriter {
public:
    explicit BitstreamWriter(std::size_t bytes) : m_bytes(bytes) {}

    void word(std::uint32_t value)
    {
        for (unsigned int shift = 32; shift > 0; shift -= 8) {
            m_bytes[m_position++] = static_cast<std::byte>(value >> (shift - 8) & 0xFF);
        }
    }
    std::size_t wordsLeft() const { return (m_bytes.size() - m_position) / 4; }
    std::vector<std::byte> const& bytes() const { return m_bytes; }

private:
    std::vector<std::byte> m_bytes;
    std::size_t m_position = 0;
};

/// Configuration frames look like this: most words are empty, few are dense. The same words for the same seed.
class FrameWords {
public:
    explicit FrameWords(std::uint32_t seed) : m_state(seed) {}

    std::uint32_t next()
    {
        std::uint32_t const random = step();
        return random % 4 == 0 ? step() & step() : 0;
    }

private:
    std::uint32_t step() // xorshift with period 2^32 - 1
    {
        m_state ^= m_state << 13;
        m_state ^= m_state >> 17;
        m_state ^= m_state << 5;
        return m_state;
    }

    std::uint32_t m_state;
};

/// @param bytes a multiple of 4
std::vector<std::byte> bitstream(std::size_t bytes, std::uint32_t seed)
{
    constexpr std::uint32_t padding = 0xFFFFFFFF;
    constexpr std::uint32_t sync = 0xAA995566;
    constexpr std::uint32_t noOperation = 0x20000000;

    BitstreamWriter stream(bytes);
    for (int i = 0; i < 8; ++i) {
        stream.word(padding);
    }
    stream.word(sync);
    FrameWords frames(seed);
    while (stream.wordsLeft() > 4) {
        stream.word(frames.next());
    }
    while (stream.wordsLeft() > 0) {
        stream.word(noOperation);
    }
    return stream.bytes();
}

} // namespace

void addDestinations(ZUL& design)
{
    for (Board const& board : boards) {
        add<ZUL_destination>(design, board.index, board.type, board.revision);
        add<ZUL_fixed_fpga_info>(design, board.index, static_cast<unsigned char>(3),
                                 static_cast<unsigned char>(7));
    }
}

void addConfigurations(ZUL& design)
{
    for (Board const& board : boards) {
        auto configuration = std::make_unique<ZUL_multi_data>(&design);
        configuration->setDestination(design.searchDestination(board.index, board.type, board.revision));
        configuration->setFpgaType(board.fpga);
        for (unsigned int i = 0; i < board.clocks.size(); ++i) {
            configuration->setClock(i, board.clocks[i]);
        }
        auto const bytes = bitstream(board.bitstreamBytes, board.fpga);
        configuration->setData(bytes.data(), bytes.size());
        design.AddConfig(configuration.get(), board.id);
        static_cast<void>(configuration.release()); // the design owns it now
    }
}

} // namespace sample
