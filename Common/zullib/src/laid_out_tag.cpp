#include "laid_out_tag.h"

#include "tag_layout.h"

unsigned long LaidOutTag::Load(void const* tag, unsigned long avail)
{
    TagLayout row = TagLayout::forLoading(*this, static_cast<std::byte const*>(tag), avail, textBlocks());
    try {
        layout(row);
    } catch (...) {
        keyChanged(); // what was read before the failure is stored
        throw;
    }
    keyChanged();
    return row.length();
}

unsigned long LaidOutTag::getSaveLength()
{
    TagLayout row = TagLayout::forMeasuring(*this);
    layout(row);
    return row.length();
}

void LaidOutTag::Save(void* dst)
{
    TagLayout row = TagLayout::forSaving(*this, static_cast<std::byte*>(dst));
    layout(row);
}

void LaidOutTag::visit(std::span<std::byte const> bytes, FieldVisitor& visitor)
{
    TagLayout row = TagLayout::forVisiting(*this, bytes, visitor);
    layout(row);
}
