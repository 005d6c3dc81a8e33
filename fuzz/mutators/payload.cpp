// Mutations for fuzz_payload: what a stream unpacks to is changed and packed again, in any way that deflate knows; or the
// stream is, and gets the header and the sum that fit.

#include "mutation.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::size_t headerLength = 2;
constexpr std::size_t sumLength = 4;
constexpr std::size_t mostUnpacked = 64 * 1024;

/// As much as there is of what @p stream unpacks to, whatever its sum says.
/// @param used receives how many bytes of the stream that took
RawBytes unpacked(RawBytes const& stream, std::size_t& used)
{
    RawBytes content(mostUnpacked);
    z_stream zlib{};
    used = 0;
    if (stream.size() <= headerLength || inflateInit2(&zlib, -MAX_WBITS) != Z_OK) {
        return {};
    }
    zlib.next_in = const_cast<Bytef*>(stream.data() + headerLength);
    zlib.avail_in = static_cast<uInt>(stream.size() - headerLength);
    zlib.next_out = content.data();
    zlib.avail_out = static_cast<uInt>(content.size());
    inflate(&zlib, Z_SYNC_FLUSH);
    used = stream.size() - zlib.avail_in;
    content.resize(content.size() - zlib.avail_out);
    inflateEnd(&zlib);
    return content;
}

RawBytes packed(RawBytes const& content, Random& random)
{
    constexpr std::array strategies{Z_DEFAULT_STRATEGY, Z_FILTERED, Z_HUFFMAN_ONLY, Z_RLE, Z_FIXED};
    constexpr std::array flushes{Z_NO_FLUSH, Z_SYNC_FLUSH, Z_FULL_FLUSH, Z_BLOCK};
    z_stream zlib{};
    int const level = static_cast<int>(random.below(10));
    int const windowBits = 9 + static_cast<int>(random.below(7));
    if (deflateInit2(&zlib, level, Z_DEFLATED, windowBits, 8, random.oneOf(strategies)) != Z_OK) {
        return {};
    }
    RawBytes stream(deflateBound(&zlib, static_cast<uLong>(content.size())) + 64);
    std::size_t const before = random.below(content.size() + 1);
    zlib.next_in = const_cast<Bytef*>(content.data());
    zlib.avail_in = static_cast<uInt>(before);
    zlib.next_out = stream.data();
    zlib.avail_out = static_cast<uInt>(stream.size());
    deflate(&zlib, random.oneOf(flushes));
    zlib.avail_in += static_cast<uInt>(content.size() - before);
    deflate(&zlib, Z_FINISH);
    stream.resize(stream.size() - zlib.avail_out);
    deflateEnd(&zlib);
    return stream;
}

void fixHeader(RawBytes& stream)
{
    constexpr unsigned modulus = 31;
    stream[0] = 0x78;
    stream[1] = static_cast<std::uint8_t>(stream[1] & 0xC0U); // no dictionary
    stream[1] = static_cast<std::uint8_t>(stream[1] + modulus - (stream[0] * 256U + stream[1]) % modulus);
}

/// Big-endian, behind the last block.
void fixSum(RawBytes& stream)
{
    std::size_t used = 0;
    RawBytes const content = unpacked(stream, used);
    uLong const sum = adler32(adler32(0, nullptr, 0), content.data(), static_cast<uInt>(content.size()));
    stream.resize(std::max(stream.size(), used + sumLength));
    for (std::size_t i = 0; i < sumLength; ++i) {
        stream[used + i] = static_cast<std::uint8_t>(sum >> (8 * (sumLength - 1 - i)));
    }
}

void mutateStream(RawBytes& stream, std::size_t mostBytes, Random& random)
{
    std::size_t used = 0;
    switch (random.below(4)) {
    case 0: {
        RawBytes content = unpacked(stream, used);
        mutateBytes(content, std::min(mostUnpacked, content.size() + mostBytes));
        stream = packed(content, random);
        break;
    }
    case 1:
    case 2:
        mutateBytes(stream, mostBytes);
        if (stream.size() > headerLength) {
            fixHeader(stream);
            fixSum(stream);
        }
        break;
    default:
        mutateBytes(stream, mostBytes);
    }
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostBytes,
                                               unsigned seed)
{
    return mutateRun({data, mostBytes}, size, seed, mutateStream);
}
