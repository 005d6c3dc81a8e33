#include "tag_fields.h"

#include "ZUL_multi_head.h"
#include "laid_out_tag.h"

#include <algorithm>
#include <cstring>

TagFields::TagFields(WalkedTag const& tag)
{
    if (tag.kind != nullptr) {
        m_fields.reserve(24);
        tag.kind->create(nullptr)->visit(tag.bytes, *this);
    }
}

TagFields TagFields::ofHead(std::span<std::byte const> bytes)
{
    TagFields fields;
    findTagKind(ZUL_multi_head::tag_id)->create(nullptr)->visit(bytes, fields);
    return fields;
}

TagField const* TagFields::find(std::string_view name) const noexcept
{
    auto const found = std::find_if(m_fields.begin(), m_fields.end(), [name](TagField const& field) {
        return field.name == name && field.bytes.size() == field.width;
    });
    return found == m_fields.end() ? nullptr : &*found;
}

std::uint64_t TagFields::number(std::string_view name) const noexcept
{
    TagField const* const field = find(name);
    return field == nullptr ? 0 : field->number();
}

std::string_view TagFields::text(std::string_view name) const noexcept
{
    TagField const* const field = find(name);
    return field == nullptr ? std::string_view() : charactersOf(*field);
}

std::string_view charactersOf(TagField const& field) noexcept
{
    auto const* const characters = reinterpret_cast<char const*>(field.bytes.data());
    return {characters, field.bytes.empty() ? 0 : strnlen(characters, field.bytes.size())};
}
