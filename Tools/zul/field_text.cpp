#include "field_text.h"

#include "text_output.h"

#include <array>
#include <charconv>

namespace {

constexpr std::size_t longestText = 80;

std::string numberText(std::uint64_t number)
{
    std::string const decimal = std::to_string(number);
    return number < 10 ? decimal : decimal + " (" + asHex(number) + ")";
}

char const* fillerText(FieldKind kind)
{
    switch (kind) {
    case FieldKind::Zero:
        return "reserved: written as 0, not read";
    case FieldKind::MustBeZero:
        return "reserved: must be 0";
    default:
        return "reserved: neither written nor read";
    }
}

std::string shortened(std::string_view text, bool full)
{
    return full || text.size() <= longestText ? asQuoted(text)
                                              : asQuoted(text.substr(0, longestText)) + "...";
}

} // namespace

bool isFiller(FieldKind kind) noexcept
{
    return kind == FieldKind::Zero || kind == FieldKind::MustBeZero || kind == FieldKind::Reserved;
}

std::string realText(double number)
{
    std::array<char, 40> text{};
    auto const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return {text.data(), end};
}

std::string valueText(TagField const& field)
{
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::RegisterReference:
        return asQuoted(charactersOf(field));
    case FieldKind::Bytes:
        return counted(field.bytes.size(), "byte");
    case FieldKind::Signed:
        return std::to_string(field.signedNumber());
    case FieldKind::Real:
        return realText(field.real());
    case FieldKind::TagId:
        return asHex(field.number());
    default:
        return numberText(field.number());
    }
}

std::string annotation(ByteRange const& range, bool full)
{
    TagField const& field = range.field;
    if (range.owner == Owner::Nobody) {
        return "gap: " + counted(field.width, "byte") + " of no field";
    }
    if (range.owner == Owner::Trailing) {
        return "not read by a load";
    }
    std::string const name = field.name;
    if (field.bytes.size() != field.width) {
        return name + ": cut short, " + std::to_string(field.bytes.size()) + " of " +
               counted(field.width, "byte");
    }
    if (isFiller(field.kind)) {
        return fillerText(field.kind);
    }
    bool const isText = field.kind == FieldKind::Text || field.kind == FieldKind::RegisterReference;
    return name + " = " + (isText ? shortened(charactersOf(field), full) : valueText(field));
}
