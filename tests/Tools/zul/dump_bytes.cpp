#include "dump_bytes.h"

#include <stdexcept>
#include <string>

namespace {

using Json = nlohmann::ordered_json;

Bytes fromHex(std::string const& text)
{
    Bytes bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        bytes.u8(std::stoul(text.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

Bytes fromBase64(std::string const& text)
{
    std::string const digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Bytes bytes;
    unsigned bits = 0;
    unsigned count = 0;
    for (char const c : text.substr(0, text.find('='))) {
        bits = (bits << 6U) | static_cast<unsigned>(digits.find(c));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.u8((bits >> count) & 0xFFU);
        }
    }
    return bytes;
}

Bytes fromNumber(Json const& value, std::size_t width)
{
    auto number = value.is_number_unsigned() ? value.get<std::uint64_t>()
                                             : static_cast<std::uint64_t>(value.get<std::int64_t>());
    Bytes bytes;
    for (std::size_t i = 0; i < width; ++i, number >>= 8U) {
        bytes.u8(number & 0xFFU);
    }
    return bytes;
}

Bytes fieldBytes(Json const& field)
{
    if (field.contains("base64")) {
        return fromBase64(field["base64"]);
    }
    if (field.contains("hex")) {
        return fromHex(field["hex"]);
    }
    auto const width = field["width"].get<std::size_t>();
    if (!field.contains("value")) {
        return Bytes().zeros(width);
    }
    Json const& value = field["value"];
    if (value.is_string()) {
        return Bytes().text(value.get<std::string>(), width);
    }
    return fromNumber(value, width);
}

void appendFields(Bytes& bytes, Json const& fields)
{
    for (Json const& field : fields) {
        bytes.append(fieldBytes(field));
    }
}

} // namespace

Bytes bytesOfDump(Json const& dump)
{
    Bytes bytes;
    appendFields(bytes, dump["head"]["fields"]);
    for (Json const& tag : dump["tags"]) {
        if (tag["offset"] != bytes.size()) {
            throw std::runtime_error("a tag is not where it says");
        }
        appendFields(bytes, tag["fields"]);
    }
    return bytes.append(fieldBytes(dump["trailing"]));
}
