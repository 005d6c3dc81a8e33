#pragma once

#include "tag_field.h"
#include "walker.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The fields of one tag by the names that its layout gives them, and the rules of the layout that its bytes break.
///
/// Refers to the tag's bytes.
class TagFields : private FieldVisitor {
public:
    /// Visits the bytes of @p tag; an unknown tag has no fields.
    explicit TagFields(WalkedTag const& tag);
    /// Visits the bytes @p bytes, which are the head of a container.
    static TagFields ofHead(std::span<std::byte const> bytes);

    std::vector<TagField> const& all() const noexcept { return m_fields; }
    std::vector<TagProblem> const& problems() const noexcept { return m_problems; }

    /// The field with @p name, or null: not in the layout of this tag, cut short, or a variable part of length 0.
    TagField const* find(std::string_view name) const noexcept;
    /// The unsigned number; 0 where there is none.
    std::uint64_t number(std::string_view name) const noexcept;
    /// The 32 bits of a number, signed or not; 0 where there is none.
    std::uint32_t word(std::string_view name) const noexcept
    {
        return static_cast<std::uint32_t>(number(name));
    }
    /// The characters up to the first NUL, not copied; empty where there are none.
    std::string_view text(std::string_view name) const noexcept;

private:
    TagFields() = default;

    void field(TagField const& field) override { m_fields.push_back(field); }
    void problem(TagProblem const& problem) override { m_problems.push_back(problem); }

    std::vector<TagField> m_fields;
    std::vector<TagProblem> m_problems;
};

/// The characters of @p field up to the first NUL, not copied.
std::string_view charactersOf(TagField const& field) noexcept;
