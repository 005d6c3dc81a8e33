#pragma once

#include "laid_out_tag.h"
#include "tag_bytes.h"
#include "tag_text.h"

#include <cstdint>

/// Operating system and processor that a library was built for. Every 32-bit value is stored and compared as it is.
enum zul_opsys : std::uint32_t {};

/// The system that this library itself was built for.
zul_opsys zul_opsys_of_library();

/// A shared library of the host that belongs to the design, stored as it is or compressed with zlib.
///
/// Loaded bytes lie in the loaded buffer; bytes that were set or copied belong to the tag.
class ZUL_dll : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8154000;

    /// What toFile does when the file is there already.
    enum savepolicy : std::uint32_t {
        keep = 0,      ///< leaves it as it is
        overwrite = 1, ///< writes into it; a file that may not be written counts as success
        replace = 2    ///< removes it and makes a new one
    };

    /// No name, no bytes, not compressed, system 0.
    explicit ZUL_dll(ZUL* parent) : LaidOutTag(parent) {}
    /// The copy has bytes of its own. @throws std::bad_alloc
    ZUL_dll(ZUL_dll const& other) = default;
    explicit ZUL_dll(ZUL_dll const* other) : ZUL_dll(*other) {}
    /// @throws std::bad_alloc; this object is unchanged then
    ZUL_dll& operator=(ZUL_dll const& other);

    /// The short name, without "lib" in front and without extension. Keeps at most 64 characters; null or "" leaves
    /// no name.
    void setName(char const* name);
    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }

    /// Stores a copy of @p length bytes; whether they count as compressed stays as it is.
    /// @throws std::bad_alloc; the old bytes are kept then
    void setData(void const* data, unsigned long length) { m_library.copyFrom(data, length); }
    /// The bytes as they are stored; valid until they change, loaded ones as long as the loaded buffer.
    void const* getLib() const noexcept { return m_library.data(); }
    /// Number of stored bytes.
    unsigned long getLibLength() const noexcept { return m_library.size(); }
    /// Whether the stored bytes are a zlib stream.
    bool isCompressed() const noexcept { return m_compressed; }

    zul_opsys getSystem() const noexcept { return m_system; }
    void setSystem(zul_opsys system);
    /// zul_opsys_of_library()
    static zul_opsys get_library_opsys() { return zul_opsys_of_library(); }

    /// Stores the library in the file @p path, compressed when that saves more than 100 bytes or when the file has
    /// fewer than 100 bytes. The name stays as it is.
    /// @return 0, or the negated errno of a file that cannot be mapped: -22 for an empty one, -27 for one of 128 MiB
    ///         or more; the tag is unchanged then
    /// @throws std::bad_alloc, also when compressing fails; the tag is unchanged then
    int setLib(char const* path, zul_opsys system);

    /// Writes the library, decompressed, into the directory @p dir under its name and the system's pattern for
    /// libraries. A path of more than 1023 bytes is cut there.
    /// @return 0 when the file is complete or @p policy leaves it as it is; -2 for a name with a '/', nothing is
    ///         touched then; -5 when the stored bytes are no complete zlib stream; -22 when @p dir is null; otherwise
    ///         the negated errno of looking for, opening or writing the file. A file that was opened and could not be
    ///         completed is removed.
    /// @throws std::bad_alloc when memory runs out, the file is removed
    /// @throws std::runtime_error "Unknown error while decompressing", the file is removed
    int toFile(char const* dir, ZUL_dll::savepolicy policy) const;

    /// @throws std::runtime_error "The size of a dll grew to big to save it!" when the tag's length is no u32
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    zul_opsys m_system{};
    bool m_compressed = false;
    TagBytes m_library;
    TagText m_name;
};
