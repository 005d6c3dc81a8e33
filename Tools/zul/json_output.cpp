#include "json_output.h"

#include "sha256.h"
#include "utf8.h"

#include <algorithm>
#include <ostream>

namespace {

// Texts went through jsonText() before; this is for those that a library brings along, like messages of exceptions.
constexpr auto invalidText = Json::error_handler_t::replace;

std::string line(Json const& json)
{
    return json.dump(-1, ' ', false, invalidText);
}

} // namespace

std::string jsonText(std::string_view text)
{
    if (isUtf8(text)) {
        return std::string(text);
    }
    std::string result;
    result.reserve(2 * text.size());
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += {static_cast<char>(0xC0U | (byte >> 6U)), static_cast<char>(0x80U | (byte & 0x3FU))};
        }
    }
    return result;
}

std::string hexText(std::span<std::byte const> bytes)
{
    constexpr char const* digits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (std::byte const byte : bytes) {
        auto const value = std::to_integer<unsigned>(byte);
        text += {digits[value >> 4U], digits[value & 0xFU]};
    }
    return text;
}

std::string base64(std::span<std::byte const> bytes)
{
    constexpr char const* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::size_t const count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = (group << 8U) | (j < count ? std::to_integer<unsigned>(bytes[i + j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text += j <= count ? digits[(group >> (18 - 6 * j)) & 0x3FU] : '=';
        }
    }
    return text;
}

std::string sha256Text(std::span<std::byte const> bytes)
{
    return hexText(sha256(bytes));
}

void writeJson(std::ostream& out, Json const& json)
{
    out << json.dump(2, ' ', false, invalidText) << '\n';
}

JsonObjectWriter::JsonObjectWriter(std::ostream& out) : m_out(out)
{
    m_out << '{';
}

JsonObjectWriter::~JsonObjectWriter()
{
    if (m_inList) {
        m_out << "\n  ]";
    }
    m_out << "\n}\n";
}

void JsonObjectWriter::separate(char const* indent)
{
    m_out << (m_first ? "\n" : ",\n") << indent;
    m_first = false;
}

void JsonObjectWriter::member(char const* name, Json const& json)
{
    separate("  ");
    m_out << line(name) << ": " << line(json);
}

void JsonObjectWriter::beginList(char const* name)
{
    separate("  ");
    m_out << line(name) << ": [";
    m_inList = m_first = true;
}

void JsonObjectWriter::element(Json const& json)
{
    separate("    ");
    m_out << line(json);
}

void JsonObjectWriter::endList()
{
    m_out << "\n  ]";
    m_inList = m_first = false;
}
