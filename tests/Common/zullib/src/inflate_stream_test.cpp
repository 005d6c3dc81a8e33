#include "bytes.h"
#include "inflate_stream.h"
#include "throwing.h"
#include "zlib_failure.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <new>
#include <stdexcept>

namespace {

constexpr int corrupt = -5;

/// A zlib stream of one stored block that holds "abc".
Bytes abcStream()
{
    return Bytes()
        .u8(0x78) // deflate, window of 32 KiB
        .u8(0x01) // no dictionary
        .u8(0x01) // last block, stored
        .u16(3)
        .u16(0xFFFC) // the length's complement
        .chars("abc")
        .u8(0x02) // checksum, from the high byte down
        .u8(0x4D)
        .u8(0x01)
        .u8(0x27);
}

struct Result {
    int code = 0;
    Bytes bytes;
    std::vector<std::size_t> pieces;
};

Result inflated(Bytes const& stream)
{
    std::vector<std::byte> const exact(stream.data(), stream.data() + stream.size());
    Result result;
    result.code = inflateStream(exact, [&result](std::span<std::byte const> piece) {
        result.bytes.chars({reinterpret_cast<char const*>(piece.data()), piece.size()});
        result.pieces.push_back(piece.size());
        return 0;
    });
    return result;
}

/// What zlib makes of @p bytes.
Bytes deflated(Bytes const& bytes, int level = 6)
{
    uLongf length = compressBound(bytes.size());
    std::vector<Bytef> stream(length);
    compress2(stream.data(), &length, reinterpret_cast<Bytef const*>(bytes.data()), bytes.size(), level);
    return Bytes().chars({reinterpret_cast<char const*>(stream.data()), length});
}

TEST(InflateStream, StoredBlock)
{
    Result const result = inflated(abcStream());
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.bytes, Bytes().chars("abc"));
}

TEST(InflateStream, StreamOfNothing)
{
    Bytes const stream = Bytes().u8(0x78).u8(0x9C).u8(0x03).u8(0x00).u32(0x01000000);
    Result const result = inflated(stream);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.bytes, Bytes());
}

TEST(InflateStream, BytesBehindTheStreamAreIgnored)
{
    Result const result = inflated(abcStream().chars("whatever follows"));
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.bytes, Bytes().chars("abc"));
}

TEST(InflateStream, EveryTruncationIsCorrupt)
{
    Bytes const whole = abcStream();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(inflated(Bytes(whole).cut(size)).code, corrupt) << size << " bytes";
    }
}

TEST(InflateStream, DamageIsCorrupt)
{
    EXPECT_EQ(inflated(abcStream().setU8(0, 0x79)).code, corrupt) << "another method";
    EXPECT_EQ(inflated(abcStream().setU8(1, 0x02)).code, corrupt) << "header check";
    EXPECT_EQ(inflated(abcStream().setU8(2, 0x07)).code, corrupt) << "block type that there is not";
    EXPECT_EQ(inflated(abcStream().setU8(5, 0xFD)).code, corrupt) << "complement of the length";
    EXPECT_EQ(inflated(abcStream().setU8(8, 'B')).code, corrupt) << "contents against checksum";
    EXPECT_EQ(inflated(abcStream().setU8(13, 0x28)).code, corrupt) << "checksum against contents";
}

TEST(InflateStream, NeededDictionaryIsCorrupt)
{
    EXPECT_EQ(inflated(Bytes().u8(0x78).u8(0x20).u32(0x12345678).u8(3).u8(0).u32(0x01000000)).code, corrupt);
}

TEST(InflateStream, ComesInSmallPieces)
{
    constexpr std::size_t piece = 65536;
    for (std::size_t const size : {piece - 1, piece, piece + 1, 3 * piece, std::size_t{10'000'000}}) {
        Bytes const contents = Bytes().fill('z', size - 1).u8('!');
        Result const result = inflated(deflated(contents));
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(result.bytes == contents) << size;
        EXPECT_GE(result.pieces.size(), (size + piece - 1) / piece);
        for (std::size_t const each : result.pieces) {
            EXPECT_LE(each, piece);
        }
    }
}

TEST(InflateStream, LongStreamIsReadToItsEnd)
{
    Bytes contents;
    std::uint32_t noise = 1;
    for (int i = 0; i < 700'000; ++i) {
        contents.u32(noise = noise * 1664525 + 1013904223);
    }
    Bytes const stream = deflated(contents, 0); // stored: as long as the contents
    Result const result = inflated(stream);
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.bytes == contents);
    EXPECT_EQ(inflated(Bytes(stream).cut(stream.size() - 1)).code, corrupt);
}

TEST(InflateStream, SinkEndsTheWork)
{
    Bytes const stream = deflated(Bytes().zeros(1'000'000));
    int calls = 0;
    int const result = inflateStream({stream.data(), stream.size()}, [&calls](std::span<std::byte const>) {
        ++calls;
        return calls == 2 ? -28 : 0;
    });
    EXPECT_EQ(result, -28);
    EXPECT_EQ(calls, 2);
}

TEST(InflateStream, MissingMemoryIsThrown)
{
    {
        ZlibFailure const failure(ZlibFailure::Of::InflateInit, Z_MEM_ERROR);
        EXPECT_THROW(inflated(abcStream()), std::bad_alloc);
    }
    ZlibFailure const failure(ZlibFailure::Of::Inflate, Z_MEM_ERROR);
    EXPECT_THROW(inflated(abcStream()), std::bad_alloc);
}

TEST(InflateStream, OtherFailuresAreThrown)
{
    {
        ZlibFailure const failure(ZlibFailure::Of::InflateInit, Z_VERSION_ERROR);
        EXPECT_TRUE(
            throws<std::runtime_error>([] { inflated(abcStream()); }, "Unknown error while decompressing"));
    }
    ZlibFailure const failure(ZlibFailure::Of::Inflate, Z_STREAM_ERROR);
    EXPECT_TRUE(
        throws<std::runtime_error>([] { inflated(abcStream()); }, "Unknown error while decompressing"));
}

} // namespace
