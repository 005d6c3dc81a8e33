#pragma once

#include "zul_tag.h"

#include <memory>

/// A copy of @p tag for the container @p parent, where it is not filed. What the tag refers to stays the same. A tag
/// whose class is not the format's own becomes a ZUL_binary_data with the bytes that it saves.
/// @throws std::bad_alloc; what assigning the tag throws, or measuring and saving one of a class not the format's own
std::unique_ptr<ZUL_tag> copyTag(ZUL* parent, ZUL_tag& tag);

/// A copy of @p single, which may be null, for the container @p parent.
template <class Tag>
std::unique_ptr<Tag> copySingle(ZUL* parent, std::unique_ptr<Tag> const& single)
{
    if (single == nullptr) {
        return nullptr;
    }
    auto copy = std::make_unique<Tag>(*single);
    copy->setParent(parent);
    return copy;
}
