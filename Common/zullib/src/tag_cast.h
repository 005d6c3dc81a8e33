#pragma once

#include "zul_tag.h"

#include <type_traits>
#include <typeinfo>

/// The tag as a @p Tag, or null. Nearly every tag is exactly of the class asked for, which is quickly told.
template <class Tag, class AnyTag>
auto* tagCast(AnyTag* tag) noexcept
{
    using Result = std::conditional_t<std::is_const_v<AnyTag>, Tag const, Tag>;
    return typeid(*tag) == typeid(Tag) ? static_cast<Result*>(tag) : dynamic_cast<Result*>(tag);
}

/// The tag as a @p Tag. @throws std::bad_cast when it is none
template <class Tag>
Tag const& tagCast(ZUL_tag const& tag)
{
    return typeid(tag) == typeid(Tag) ? static_cast<Tag const&>(tag) : dynamic_cast<Tag const&>(tag);
}

/// The tag as a @p Tag, or null when it has another class or another id: a class of somebody's own may derive from one
/// of the format's and be a kind of its own.
template <class Tag>
Tag* tagOfKind(ZUL_tag* tag)
{
    std::uint32_t const id = tag->getTagId();
    bool isKind = false;
    if constexpr (requires { Tag::tag_id; }) {
        isKind = id == Tag::tag_id;
    } else {
        isKind = id == Tag::old_tag_id || id == Tag::new_tag_id;
    }
    return isKind ? tagCast<Tag>(tag) : nullptr;
}
