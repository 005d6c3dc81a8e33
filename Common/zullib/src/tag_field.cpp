#include "tag_field.h"

#include <algorithm>
#include <bit>
#include <cstring>

std::uint64_t TagField::number() const noexcept
{
    std::uint64_t value = 0;
    if (!bytes.empty() && bytes.size() == width && width <= sizeof value) {
        std::memcpy(&value, bytes.data(), bytes.size());
    }
    return value;
}

std::int64_t TagField::signedNumber() const noexcept
{
    unsigned const unused = width == 0 || width > 8 ? 0 : 64 - 8 * static_cast<unsigned>(width);
    return static_cast<std::int64_t>(number() << unused) >> unused;
}

double TagField::real() const noexcept
{
    return std::bit_cast<double>(number());
}

std::string TagField::text() const
{
    auto const end = std::find(bytes.begin(), bytes.end(), std::byte{0});
    std::string text(static_cast<std::size_t>(end - bytes.begin()), '\0');
    if (!text.empty()) {
        std::memcpy(text.data(), bytes.data(), text.size());
    }
    return text;
}
