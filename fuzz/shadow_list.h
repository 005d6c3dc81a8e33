#pragma once

#include "zullib.h"

#include <algorithm>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

/// @p tag as one of the kind, or null; much faster than asking for its type.
template <class Tag, class Base>
auto tagAs(Base* tag)
{
    using Wanted = std::conditional_t<std::is_const_v<Base>, Tag const, Tag>;
    std::uint32_t const id = tag == nullptr ? 0 : tag->getTagId();
    bool isOfKind = false;
    if constexpr (std::is_same_v<Tag, ZUL_register>) {
        isOfKind = id == ZUL_register::old_tag_id || id == ZUL_register::new_tag_id;
    } else {
        isOfKind = id == Tag::tag_id;
    }
    return isOfKind ? static_cast<Wanted*>(tag) : nullptr;
}

/// The tags of a container in order, searched from front to back: what its lookups have to answer.
class ShadowList {
public:
    explicit ShadowList(std::span<ZUL_tag* const> tags) : m_tags(tags) {}

    template <class Tag>
    std::vector<Tag*> all(std::uint32_t id) const
    {
        std::vector<Tag*> found;
        for (ZUL_tag* const tag : m_tags) {
            if (tag->getTagId() == id) {
                found.push_back(static_cast<Tag*>(tag));
            }
        }
        return found;
    }
    /// The first tag of the kind for which @p matches is true, or null.
    template <class Tag, class Matches>
    Tag* first(Matches const& matches) const
    {
        for (ZUL_tag* const tag : m_tags) {
            if (tag->getTagId() == Tag::tag_id && matches(static_cast<Tag const&>(*tag))) {
                return static_cast<Tag*>(tag);
            }
        }
        return nullptr;
    }
    /// In the order of their numbers.
    std::vector<ZUL_register*> registers() const;
    /// The register with that name or alias, or null.
    ZUL_register* findRegister(std::string name) const;
    /// Whether @p tag is null or in the list.
    bool holds(ZUL_tag const* tag) const
    {
        return tag == nullptr || std::ranges::find(m_tags, tag) != m_tags.end();
    }
    /// Whether everything that @p tag refers to is in the list.
    bool holdsReferencesOf(ZUL_tag const& tag) const;

private:
    std::span<ZUL_tag* const> m_tags;
};
