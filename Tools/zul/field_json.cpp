#include "field_json.h"

#include "field_text.h"
#include "utf8.h"

#include <algorithm>
#include <cmath>

namespace {

bool isZero(std::byte byte)
{
    return byte == std::byte{0};
}

bool areZeros(std::span<std::byte const> bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), isZero);
}

bool isText(FieldKind kind)
{
    return kind == FieldKind::Text || kind == FieldKind::RegisterReference;
}

/// Whether the value of a complete field is enough to write its bytes again, for every reader of JSON: some keep
/// numbers as doubles.
bool valueSays(TagField const& field)
{
    if (isText(field.kind)) {
        std::string_view const text = charactersOf(field);
        return isUtf8(text) && areZeros(field.bytes.subspan(text.size()));
    }
    return isFiller(field.kind) ? areZeros(field.bytes) : field.width <= 4;
}

Json valueOf(TagField const& field)
{
    if (isText(field.kind)) {
        return jsonText(charactersOf(field));
    }
    if (field.kind == FieldKind::Signed) {
        return field.signedNumber();
    }
    if (field.kind == FieldKind::Real) {
        return std::isfinite(field.real()) ? Json(field.real()) : Json(nullptr);
    }
    return field.number();
}

void addBytes(Json& json, std::span<std::byte const> bytes, Payload payload)
{
    switch (payload) {
    case Payload::Digest:
        json["sha256"] = sha256Text(bytes);
        break;
    case Payload::Base64:
        json["base64"] = base64(bytes);
        break;
    case Payload::Hex:
        json["hex"] = hexText(bytes);
        break;
    }
}

} // namespace

Json fieldJson(ByteRange const& range, Payload payload)
{
    TagField const& field = range.field;
    Json json{
        {"name", field.name}, {"offset", field.offset}, {"width", field.width}, {"kind", kindOf(range)}};
    bool const isComplete = field.bytes.size() == field.width;
    if (!isComplete) {
        json["present"] = field.bytes.size();
    }
    if (field.kind == FieldKind::Bytes) {
        addBytes(json, field.bytes, payload);
        return json;
    }
    if (isComplete && !isFiller(field.kind)) {
        json["value"] = valueOf(field);
    }
    if (!isComplete || !valueSays(field)) {
        json["hex"] = hexText(field.bytes);
    }
    return json;
}

Json problemsJson(TagFields const& fields)
{
    Json list = Json::array();
    for (TagProblem const& problem : fields.problems()) {
        list.push_back({{"field", problem.field},
                        {"offset", problem.offset},
                        {"expected", jsonText(problem.expected)},
                        {"found", jsonText(problem.found)}});
    }
    return list;
}
