#include "container_bytes.h"
#include "shapes.h"
#include "zul_class.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <malloc.h>
#include <memory>
#include <new>
#include <unistd.h>

namespace {

std::size_t live = 0;
std::size_t peak = 0;

constexpr std::size_t blockHeader = 8; // what the allocator keeps beside each block

void note(void* block) noexcept
{
    live += malloc_usable_size(block) + blockHeader;
    peak = std::max(peak, live);
}

void* allocate(std::size_t size)
{
    void* const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    note(block);
    return block;
}

void release(void* block) noexcept
{
    if (block != nullptr) {
        live -= malloc_usable_size(block) + blockHeader;
        std::free(block);
    }
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}
void* operator new[](std::size_t size)
{
    return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    auto const unit = static_cast<std::size_t>(alignment);
    void* const block = std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    note(block);
    return block;
}
void operator delete(void* block, std::align_val_t) noexcept
{
    release(block);
}
void operator delete(void* block) noexcept
{
    release(block);
}
void operator delete[](void* block) noexcept
{
    release(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// The most that loading @p container holds at any time, in bytes.
std::size_t peakOfLoad(Bytes const& container, int expected)
{
    std::size_t const before = live;
    peak = live;
    ZUL zul;
    if (zul.Load(container.data(), container.size()) != expected) {
        std::cerr << "the container does not load as it should\n";
        std::exit(2);
    }
    return peak - before;
}

bool check(char const* what, std::size_t held, std::size_t tagBytes)
{
    constexpr std::size_t factor = 6;
    bool const fits = held <= factor * tagBytes + mebibyte;
    std::printf("%-24s %10zu bytes of tags %10zu held at most %5.2f times %s\n", what, tagBytes, held,
                static_cast<double>(held) / static_cast<double>(tagBytes), fits ? "" : "TOO MUCH");
    return fits;
}

/// Tags so small that what is kept for each of them shows most.
Bytes smallTags(std::uint32_t tags)
{
    ContainerBytes container;
    for (std::uint32_t i = 0; i < tags; ++i) {
        container.tag(Bytes().u32(0x8151050).u32(12).u32(i));
    }
    return container.build(8);
}

Bytes namelessRegisters(std::uint32_t tags)
{
    ContainerBytes container;
    for (std::uint32_t i = 0; i < tags; ++i) {
        container.tag(Bytes().u32(0x8151002).u32(32).u8(1).u8(1).u8(0).u8(31).u32(i).u64(0).u32(0).u32(0));
    }
    return container.build(8);
}

std::size_t residentBytes()
{
    std::ifstream statm("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    statm >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// 120 MiB of configurations: a load looks at none of their bytes.
bool checkPayloads()
{
    char name[] = "/tmp/zul-memory-probe-XXXXXX";
    int const fd = mkstemp(name);
    constexpr std::uint32_t payload = 30 * mebibyte;
    constexpr std::uint32_t configs = 4;
    Bytes const head = headBytes(0, configs);
    off_t offset = pwrite(fd, head.data(), head.size(), 0);
    for (std::uint32_t i = 0; i < configs; ++i) {
        Bytes const tag = Bytes().u32(0x8150120).u32(88 + payload).zeros(72).u32(i).u32(0);
        offset += pwrite(fd, tag.data(), tag.size(), offset) + static_cast<off_t>(payload);
    }
    bool const written = ftruncate(fd, offset) == 0;
    close(fd);
    std::size_t const before = residentBytes();
    ZUL zul;
    int const result = written ? zul.Load(name) : -1;
    std::size_t const grown = residentBytes() - before;
    unlink(name);
    std::printf("%-24s %10zu bytes more resident for %u MiB\n", "payloads", grown, configs * 30);
    return result == 0 && grown < 2 * mebibyte;
}

} // namespace

int main()
{
    constexpr std::uint32_t tags = 100'000;
    bool fits = checkPayloads();
    for (Shape const& shape : shapes()) {
        Bytes const container = shape.make(tags);
        fits = check(shape.name, peakOfLoad(container, 0), container.size()) && fits;
    }
    Bytes const smallest = smallTags(tags);
    fits = check("smallest tags", peakOfLoad(smallest, 0), smallest.size()) && fits;
    Bytes const nameless = namelessRegisters(tags);
    fits = check("nameless registers", peakOfLoad(nameless, 0), nameless.size()) && fits;
    constexpr int invalidData = -22;
    Bytes announced =
        headBytes(0xFFFFFFFF, 0xFFFFFFFF).append(Bytes().u32(0x8151050).u32(12).u32(0).zeros(8));
    fits = check("announced only", peakOfLoad(announced, invalidData), announced.size()) && fits;
    return fits ? 0 : 1;
}
