#include "inflate_stream.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>
#include <stdexcept>
#include <zlib.h>

namespace {

constexpr std::size_t pieceSize = std::size_t{64} * 1024;
constexpr std::size_t largestPortion = std::size_t{1024} * 1024;
constexpr int corrupt = -EIO;

/// @return 0 when the work may go on or is done, corrupt for a broken stream
int checked(int zlibResult)
{
    switch (zlibResult) {
    case Z_OK:
    case Z_STREAM_END:
        return 0;
    case Z_MEM_ERROR:
        throw std::bad_alloc();
    case Z_DATA_ERROR:
    case Z_NEED_DICT:
    case Z_BUF_ERROR: // no progress although there is room: the stream is cut short
        return corrupt;
    default:
        throw std::runtime_error("Unknown error while decompressing");
    }
}

class Inflater {
public:
    explicit Inflater(std::span<std::byte const> stream) : m_rest(stream) { checked(inflateInit(&m_zlib)); }
    Inflater(Inflater const&) = delete;
    Inflater& operator=(Inflater const&) = delete;
    ~Inflater() { inflateEnd(&m_zlib); }

    /// Fills the buffer. @return what zlib says
    int fill()
    {
        m_zlib.next_out = m_piece.get();
        m_zlib.avail_out = pieceSize;
        int result = Z_OK;
        while (result == Z_OK && m_zlib.avail_out != 0) {
            feed();
            result = inflate(&m_zlib, Z_NO_FLUSH);
        }
        return result;
    }

    std::span<std::byte const> piece() const
    {
        return std::as_bytes(std::span(m_piece.get(), pieceSize - m_zlib.avail_out));
    }

private:
    /// In portions: zlib counts in 32 bits, and a stream may be longer.
    void feed()
    {
        if (m_zlib.avail_in == 0) {
            std::size_t const count = std::min(m_rest.size(), largestPortion);
            m_zlib.next_in = reinterpret_cast<Bytef*>(const_cast<std::byte*>(m_rest.data()));
            m_zlib.avail_in = static_cast<uInt>(count);
            m_rest = m_rest.subspan(count);
        }
    }

    std::span<std::byte const> m_rest;
    std::unique_ptr<Bytef[]> m_piece = std::make_unique_for_overwrite<Bytef[]>(pieceSize);
    z_stream m_zlib{};
};

} // namespace

int inflateStream(std::span<std::byte const> stream,
                  std::function<int(std::span<std::byte const>)> const& sink)
{
    Inflater inflater(stream);
    int zlibResult = Z_OK;
    int result = 0;
    while (zlibResult != Z_STREAM_END && result == 0) {
        zlibResult = inflater.fill();
        result = checked(zlibResult);
        if (result == 0) {
            result = sink(inflater.piece());
        }
    }
    return result;
}
