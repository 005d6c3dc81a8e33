#include "parameter_value.h"

#include "ZUL_param.h"
#include "field_text.h"
#include "little_endian.h"
#include "text_output.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr std::size_t elementSize = 8;
constexpr std::size_t mostElements = 6; // shown in a text

enum class Storage { None, Integer, Real, Field, Text };

Storage storageOf(std::uint32_t type)
{
    if (type >= 1 && type <= 4) {
        return Storage::Integer;
    }
    if (type == 5) {
        return Storage::Real;
    }
    if (type >= QL_SINTFIELD && type <= QL_DOUBLEFIELD) {
        return Storage::Field;
    }
    bool const isText = ZUL_param(nullptr, QL_ParamType{type}, nullptr).isStringType(QL_ParamType{type});
    return isText ? Storage::Text : Storage::None;
}

Json realJson(double number)
{
    return std::isfinite(number) ? Json(number) : Json(realText(number));
}

/// The element that @p bytes begins with.
Json elementJson(std::byte const* bytes, std::uint32_t type)
{
    switch (type) {
    case QL_SINTFIELD:
        return little_endian::read<std::int64_t>(bytes);
    case QL_UINTFIELD:
        return little_endian::read<std::uint64_t>(bytes);
    default:
        return realJson(std::bit_cast<double>(little_endian::read<std::uint64_t>(bytes)));
    }
}

std::span<std::byte const> elementsOf(TagFields const& parameter)
{
    TagField const* const elements = parameter.find("elements");
    return elements == nullptr ? std::span<std::byte const>() : elements->bytes;
}

std::string fieldText(TagFields const& parameter)
{
    auto const bytes = elementsOf(parameter);
    std::size_t const count = bytes.size() / elementSize;
    std::string text = "[";
    for (std::size_t i = 0; i < std::min(count, mostElements); ++i) {
        Json const element = elementJson(bytes.data() + i * elementSize, parameter.word("type"));
        text += (i == 0 ? "" : ", ") + (element.is_string() ? element.get<std::string>() : element.dump());
    }
    return text + (count > mostElements ? ", ...] " + counted(count, "element") : "]");
}

Json fieldJsonOf(TagFields const& parameter)
{
    auto const bytes = elementsOf(parameter);
    Json list = Json::array();
    for (std::size_t i = 0; i + elementSize <= bytes.size(); i += elementSize) {
        list.push_back(elementJson(bytes.data() + i, parameter.word("type")));
    }
    return list;
}

double realOf(TagFields const& parameter)
{
    TagField const* const value = parameter.find("double value");
    return value == nullptr ? 0 : value->real();
}

} // namespace

std::string parameterText(TagFields const& parameter)
{
    switch (storageOf(parameter.word("type"))) {
    case Storage::Integer:
        return std::to_string(parameter.number("integer value"));
    case Storage::Real:
        return realText(realOf(parameter));
    case Storage::Field:
        return fieldText(parameter);
    case Storage::Text:
        return asQuoted(parameter.text("text"));
    case Storage::None:
        break;
    }
    return "no value";
}

Json parameterJson(TagFields const& parameter)
{
    switch (storageOf(parameter.word("type"))) {
    case Storage::Integer:
        return parameter.number("integer value");
    case Storage::Real:
        return realJson(realOf(parameter));
    case Storage::Field:
        return fieldJsonOf(parameter);
    case Storage::Text:
        return jsonText(parameter.text("text"));
    case Storage::None:
        break;
    }
    return nullptr;
}
