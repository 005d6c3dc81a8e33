#include "huge_text.h"

#if HUGE_TEXTS_ARE_CHEAP

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::size_t hugeFrom = std::size_t{1} << 30U;
constexpr std::size_t pieceSize = std::size_t{2} << 20U;
constexpr int writable = PROT_READ | PROT_WRITE;

struct HugeArray {
    std::atomic<char*> begin = nullptr;
    std::size_t mapped = 0;
};

std::array<HugeArray, 16> hugeArrays; // operator delete finds here what is not from malloc

/// All pieces but the last, in which a terminator may stand, are the same pages.
void mapPieces(char* begin, std::size_t pieces)
{
    int const pages = memfd_create("huge text", MFD_CLOEXEC);
    bool good = pages >= 0 && ftruncate(pages, pieceSize) == 0;
    for (std::size_t i = 0; good && i + 1 < pieces; ++i) {
        int const flags = MAP_SHARED | MAP_FIXED | MAP_POPULATE;
        good = mmap(begin + i * pieceSize, pieceSize, writable, flags, pages, 0) != MAP_FAILED;
    }
    close(pages);
    if (!good) {
        munmap(begin, pieces * pieceSize);
        throw std::bad_alloc();
    }
}

char* makeHuge(std::size_t size)
{
    std::size_t const pieces = (size - 1) / pieceSize + 1;
    void* const space =
        mmap(nullptr, pieces * pieceSize, writable, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    auto* const free = std::find_if(hugeArrays.begin(), hugeArrays.end(),
                                    [](HugeArray const& array) { return array.begin == nullptr; });
    if (space == MAP_FAILED || free == hugeArrays.end()) {
        throw std::bad_alloc();
    }
    char* const begin = static_cast<char*>(space);
    mapPieces(begin, pieces);
    free->mapped = pieces * pieceSize;
    free->begin = begin;
    return begin;
}

bool releaseHuge(void* begin) noexcept
{
    auto* const array =
        std::find_if(hugeArrays.begin(), hugeArrays.end(),
                     [begin](HugeArray const& candidate) { return candidate.begin == begin; });
    if (begin == nullptr || array == hugeArrays.end()) {
        return false;
    }
    munmap(begin, array->mapped);
    array->begin = nullptr;
    return true;
}

} // namespace

HugeText::HugeText(std::size_t length) : m_chars(makeHuge(length + 1))
{
    std::size_t const last = length / pieceSize * pieceSize;
    std::memset(m_chars, 'x', std::min(length, pieceSize));
    std::memset(m_chars + last, 'x', length - last);
    m_chars[length] = '\0';
}

HugeText::~HugeText()
{
    releaseHuge(m_chars);
}

void* operator new(std::size_t size)
{
    if (size >= hugeFrom) {
        return makeHuge(size);
    }
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    return memory == nullptr ? throw std::bad_alloc() : memory;
}

void operator delete(void* memory) noexcept
{
    if (!releaseHuge(memory)) {
        std::free(memory);
    }
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

#endif
