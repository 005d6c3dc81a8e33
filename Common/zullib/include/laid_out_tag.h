#pragma once

#include "tag_field.h"
#include "zul_tag.h"

#include <cstddef>
#include <span>

class TagLayout;

/// A tag whose on-disk layout is stated once, in layout(); loading, measuring, saving and showing follow from it.
class LaidOutTag : public ZUL_tag {
public:
    /// @throws ZUL_file_bad_tag_length when the length field contradicts the layout or @p avail
    /// @throws ZUL_file_malformed_tag when a field has a value that the format does not allow
    /// @throws ZUL_file_bad_reference when the tag names another one that the container does not hold
    unsigned long Load(void const* tag, unsigned long avail) override;
    /// @throws std::runtime_error when the tag cannot be saved: it says why
    unsigned long getSaveLength() override;
    /// @throws std::runtime_error when the tag cannot be saved: it says why
    void Save(void* dst) override;

    /// Names every field of @p bytes and every rule of the layout that they break; refuses nothing.
    ///
    /// The numbers are stored into this object like a load would do, so use an object made for the purpose.
    /// @param bytes the tag from its header on; may be cut short or be longer than the tag
    void visit(std::span<std::byte const> bytes, FieldVisitor& visitor);

protected:
    using ZUL_tag::ZUL_tag;

private:
    virtual void layout(TagLayout& row) = 0;
};
