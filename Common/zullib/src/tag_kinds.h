#pragma once

#include "laid_out_tag.h"

#include <cstdint>
#include <memory>
#include <span>

class TagBlocks;
class ZUL;

/// One tag kind of the format.
struct TagKind {
    std::uint32_t id;
    char const* className;
    char const* meaning; ///< a few words for people, e.g. "register, older layout"
    /// A new tag of this kind that belongs to @p parent and is not filed there.
    std::unique_ptr<LaidOutTag> (*create)(ZUL* parent);
    /// The same in @p blocks, which have to outlive it. Destinations are no part of them: they may leave a container.
    std::unique_ptr<LaidOutTag> (*createIn)(TagBlocks& blocks, ZUL* parent);
    /// A copy for another container: what @p tag owns is copied, what it refers to is the same. Null when @p tag has
    /// the id of this kind and another class.
    std::unique_ptr<LaidOutTag> (*copy)(ZUL* parent, ZUL_tag const& tag);
};

/// All kinds, ascending by id.
std::span<TagKind const> tagKinds() noexcept;
/// The kind with @p id, or null: such tags are kept as raw data.
TagKind const* findTagKind(std::uint32_t id) noexcept;
