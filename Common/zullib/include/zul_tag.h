#pragma once

#include <cstdint>
#include <new>

class TagBlocks;
class ZUL;

/// One tagged record of a design container.
///
/// On disk every tag begins with a u32 id at offset 0 and a u32 total length, these eight bytes included, at
/// offset 4; all numbers are little-endian and nothing is aligned. Derive from this class to make a tag kind of
/// your own; the kinds of the format derive from LaidOutTag, which implements loading and saving for them.
class ZUL_tag {
public:
    /// @param parent the container the tag belongs to; null for a free tag
    explicit ZUL_tag(ZUL* parent = nullptr) noexcept : m_parent(parent) {}

    /// Lets a tag check, before it is saved, what it takes from other tags.
    /// @throws std::runtime_error (overrides) when something it depends on is missing
    virtual void checkDependentFields() {}
    virtual ~ZUL_tag() = default;
    /// Ends @p tag; memory that belongs to the blocks of a container stays theirs.
    static void operator delete(ZUL_tag* tag, std::destroying_delete_t);

    /// Reads the tag.
    /// @param tag the first byte of the tag's header
    /// @param avail number of bytes from there to the end of the buffer
    /// @return the number of bytes consumed
    /// @throws ZUL_file_error and its family, as the tag kind says
    virtual unsigned long Load(void const* tag, unsigned long avail) = 0;

    /// Number of bytes that Save will write, header included.
    virtual unsigned long getSaveLength() = 0;

    /// Writes header and payload.
    /// @param dst room for getSaveLength() bytes
    virtual void Save(void* dst) = 0;

    /// Makes @p parent the container of this tag; it is not added there.
    virtual void setParent(ZUL* parent);
    virtual std::uint32_t getTagId() const = 0;

    virtual bool operator<=(ZUL_tag const& other) const;
    virtual bool operator>=(ZUL_tag const& other) const;
    virtual bool operator!=(ZUL_tag const& other) const;
    /// @throws std::runtime_error "this operator has no default implementation", unless the tag kind has an order
    virtual bool operator<(ZUL_tag const& other) const;
    virtual bool operator>(ZUL_tag const& other) const;
    /// @throws std::runtime_error "this operator has no default implementation", unless the tag kind has an order
    virtual bool operator==(ZUL_tag const& other) const;

    // The same comparisons, forwarded to the virtual ones above.
    bool operator<=(ZUL_tag const* other) const { return *this <= *other; }
    bool operator>=(ZUL_tag const* other) const { return *this >= *other; }
    bool operator!=(ZUL_tag const* other) const { return *this != *other; }
    bool operator<(ZUL_tag const* other) const { return *this < *other; }
    bool operator>(ZUL_tag const* other) const { return *this > *other; }
    bool operator==(ZUL_tag const* other) const { return *this == *other; }

    /// The container of this tag, or null.
    ZUL* getParent() const noexcept { return m_parent; }

    /// The one rule for owned texts: frees the old text (array delete), then stores a terminated copy of @p src.
    /// @param field the owned text, null when there is none
    /// @param src terminated text; null or empty leaves the field null
    static void changeString(char** field, char const* src);
    /// As above with at most @p len characters, fewer when @p src ends earlier.
    /// @param len room in characters; the new text occupies len + 1 bytes. 0 leaves the field null.
    static void changeString(char** field, char const* src, unsigned long len);

protected:
    // A copy is a free tag: it has no container until it is given one. Assignment keeps the container.
    ZUL_tag(ZUL_tag const&) noexcept {}
    ZUL_tag& operator=(ZUL_tag const&) noexcept { return *this; }

    /// Tells the container that a name or number it finds this tag by has changed.
    void keyChanged()
    {
        if (m_filed && m_parent != nullptr) {
            tellContainer();
        }
    }
    /// Where the texts of this tag go: to the blocks of the container that is loading it; null when nothing is.
    TagBlocks* textBlocks() const noexcept;

private:
    void tellContainer();

    friend class TagBlocks;
    friend class ZUL_private;

    ZUL* m_parent = nullptr;
    bool m_filed = false;    // the container's lists hold this tag
    bool m_inBlocks = false; // a load made it: its memory belongs to the container
};
