#include "mapped_file.h"

#include "kova/templates/platform.h"

#include <cerrno>
#include <cstring>
#include <sys/mman.h>
#include <utility>

MappedFile::MappedFile(char const* path) noexcept
{
    m_start = const_cast<void*>(static_cast<void const*>(CF::map_file(path, &m_size)));
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : m_start(std::exchange(other.m_start, nullptr)), m_size(std::exchange(other.m_size, 0))
{
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(m_start, other.m_start);
    std::swap(m_size, other.m_size);
    return *this;
}

MappedFile::~MappedFile()
{
    if (m_start != nullptr) {
        CF::unmap_file(m_start, m_size);
    }
}

int MappedFile::detach() noexcept
{
    void* const copy = mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (copy == MAP_FAILED) {
        return -errno;
    }
    std::memcpy(copy, m_start, m_size);
    if (mremap(copy, m_size, m_size, MREMAP_MAYMOVE | MREMAP_FIXED, m_start) == MAP_FAILED) {
        int const error = errno;
        munmap(copy, m_size);
        return -error;
    }
    return 0;
}
