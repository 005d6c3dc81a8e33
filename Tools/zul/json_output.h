#pragma once

#include <cstddef>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

using Json = nlohmann::ordered_json;

/// @p text as a JSON text holds it: as it is when all of it is UTF-8; otherwise every byte becomes the character
/// U+00NN with the byte's number, as in Latin-1. The same rule holds for every text that the program writes as JSON.
std::string jsonText(std::string_view text);
/// The bytes as lower-case hexadecimal digits, two a byte.
std::string hexText(std::span<std::byte const> bytes);
/// The bytes in base64 with padding (RFC 4648).
std::string base64(std::span<std::byte const> bytes);

/// The SHA-256 digest of the bytes as 64 lower-case hexadecimal digits.
std::string sha256Text(std::span<std::byte const> bytes);

/// Writes @p json, indented, and a line feed.
void writeJson(std::ostream& out, Json const& json);

/// Writes one JSON object member by member, so that no list has to be held in memory: an element of a list a line.
/// Whatever happens between the calls, the object is closed when this object is destroyed.
class JsonObjectWriter {
public:
    explicit JsonObjectWriter(std::ostream& out);
    JsonObjectWriter(JsonObjectWriter const&) = delete;
    JsonObjectWriter& operator=(JsonObjectWriter const&) = delete;
    ~JsonObjectWriter();

    /// @param json null values are written like others; texts in it have to be jsonText()
    void member(char const* name, Json const& json);
    void beginList(char const* name);
    void element(Json const& json);
    void endList();

private:
    void separate(char const* indent);

    std::ostream& m_out;
    bool m_inList = false;
    bool m_first = true;
};
