#pragma once

#include "tag_bytes.h"
#include "zul_tag.h"

#include <cstdint>

/// A tag of a kind that is not known, kept byte for byte with its header.
class ZUL_binary_data : public ZUL_tag {
public:
    /// No bytes yet.
    /// @param tagId what getTagId() answers; Load does not look for it in the bytes
    ZUL_binary_data(ZUL* parent, unsigned int tagId) noexcept : ZUL_tag(parent), m_tagId(tagId) {}
    /// Copies the id too. @throws std::bad_alloc
    ZUL_binary_data(ZUL_binary_data const& other);
    explicit ZUL_binary_data(ZUL_binary_data const* other) : ZUL_binary_data(*other) {}
    /// Copies bytes and length, not the id. From an object without bytes the length is not taken over either.
    /// @throws std::bad_alloc
    ZUL_binary_data& operator=(ZUL_binary_data const& other);

    /// Copies all of the @p avail bytes at @p data, whatever their header says: nobody knows how to read it.
    /// @return @p avail
    /// @throws ZUL_file_bad_tag_length, with the tag id 0, when @p avail is less than 8
    /// @throws std::bad_alloc
    unsigned long Load(void const* data, unsigned long avail) override;
    /// Number of bytes, header included.
    unsigned long getSaveLength() override { return m_length; }
    /// Writes the bytes as they were read.
    void Save(void* dest) override;
    std::uint32_t getTagId() const override { return m_tagId; }

    /// Number of bytes, header included.
    unsigned long getLength() const noexcept { return m_length; }

private:
    std::uint32_t m_tagId;
    unsigned long m_length = 0; // survives assignment from an object without bytes
    TagBytes m_bytes;
};
