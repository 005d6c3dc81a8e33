#include "ZUL_dll.h"

#include "inflate_stream.h"
#include "mapped_file.h"
#include "platform_description.h"
#include "tag_layout.h"
#include "unfinished_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <zlib.h>

namespace {

constexpr std::uint64_t libraryOffset = 96;
constexpr std::uint64_t nameWidth = 64;

using Path = std::array<char, 1024>;

Path libraryPath(char const* dir, char const* name)
{
    Path path{};
    std::snprintf(path.data(), path.size(), ZUL_LIBRARY_PATTERN, dir, name == nullptr ? "" : name);
    return path;
}

/// @return 0 when all of the file @p path is in @p mapping, -EFBIG when not: a mapping shows at most the lower 27 bits of
///         a length; a negated errno when that cannot be told
int whetherWhole(MappedFile const& mapping, char const* path)
{
    struct stat status {};
    if (stat(path, &status) != 0) {
        return -errno;
    }
    return static_cast<unsigned long>(status.st_size) == mapping.size() ? 0 : -EFBIG;
}

struct Compressed {
    std::unique_ptr<Bytef[]> bytes;
    uLongf length;
};

Compressed compressed(MappedFile const& file)
{
    uLongf length = compressBound(file.size());
    auto bytes = std::make_unique_for_overwrite<Bytef[]>(length);
    if (compress(bytes.get(), &length, static_cast<Bytef const*>(file.data()), file.size()) != Z_OK) {
        throw std::bad_alloc();
    }
    return {std::move(bytes), length};
}

} // namespace

zul_opsys zul_opsys_of_library()
{
    return zul_opsys{ZUL_SYSTEM_CODE};
}

ZUL_dll& ZUL_dll::operator=(ZUL_dll const& other)
{
    if (this != &other) {
        TagText name = other.m_name;
        m_library = other.m_library;
        m_compressed = other.m_compressed;
        m_name = std::move(name);
        setSystem(other.m_system);
    }
    return *this;
}

// clang-format off
void ZUL_dll::layout(TagLayout& row)
{
    std::uint32_t system = m_system;
    std::uint32_t compressed = m_compressed ? 1 : 0;
    row.dependencies();
    row.payload     (libraryOffset, "library",    m_library);
    row.zeros       ( 8, 8);
    row.u32         (16,            "system",     system);
    row.zeros       (20, 4);
    row.u32         (24,            "compressed", compressed);
    row.optionalText(28, nameWidth, "name",       m_name);
    row.zeros       (92, 4);
    m_system = zul_opsys{system};
    m_compressed = compressed != 0;
}
// clang-format on

void ZUL_dll::checkDependentFields()
{
    if (libraryOffset + m_library.size() > UINT32_MAX) {
        throw std::runtime_error("The size of a dll grew to big to save it!");
    }
}

void ZUL_dll::setName(char const* name)
{
    m_name.set(name, name == nullptr || *name == '\0' ? 0 : nameWidth);
    keyChanged();
}

void ZUL_dll::setSystem(zul_opsys system)
{
    m_system = system;
    keyChanged();
}

int ZUL_dll::setLib(char const* path, zul_opsys system)
{
    constexpr unsigned long worthwhile = 100;
    MappedFile const file(path);
    if (!file) {
        return -errno;
    }
    if (int const result = whetherWhole(file, path); result != 0) {
        return result;
    }
    Compressed const small = compressed(file);
    // The unsigned difference makes a file of fewer than 100 bytes always a compressed one: the bytes stored for a
    // library stay the same that they always were.
    if (small.length >= file.size() - worthwhile) {
        setData(file.data(), file.size());
        m_compressed = false;
    } else {
        setData(small.bytes.get(), small.length);
        m_compressed = true;
    }
    setSystem(system);
    return 0;
}

int ZUL_dll::toFile(char const* dir, ZUL_dll::savepolicy policy) const
{
    if (dir == nullptr) {
        return -EINVAL;
    }
    if (m_name.view().find('/') != std::string_view::npos) {
        return -ENOENT; // the name comes from a file and could lead out of the directory
    }
    Path const path = libraryPath(dir, m_name.get());
    struct stat status {};
    bool const exists = stat(path.data(), &status) == 0;
    if (!exists && errno != ENOENT) {
        return -errno;
    }
    if (exists && policy == keep) {
        return 0;
    }
    if (policy == replace) {
        unlink(path.data());
    }
    UnfinishedFile file(path.data());
    if (!file) {
        return policy == overwrite && errno == EACCES ? 0 : -errno;
    }
    auto const write = [&file](std::span<std::byte const> bytes) { return file.write(bytes); };
    int const result = m_compressed ? inflateStream(m_library.span(), write) : write(m_library.span());
    return result != 0 ? result : file.finish();
}
