#pragma once

#include "zul_tag.h"

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
