#include "floor.h"

#include "little_endian.h"

#include <cstring>

namespace {

std::string text(std::span<std::byte const> bytes, std::size_t offset, std::size_t width)
{
    auto const* const chars = reinterpret_cast<char const*>(bytes.data() + offset);
    return {chars, strnlen(chars, width)};
}

} // namespace

std::unique_ptr<Floor::Tag> Floor::make(std::uint32_t id, std::span<std::byte const> bytes)
{
    auto const named = [&bytes](std::size_t offset, std::size_t width) {
        auto tag = std::make_unique<NamedTag>();
        tag->name = text(bytes, offset, width);
        return tag;
    };
    switch (id) {
    case 0x8158000:
        return named(12, 64);
    case 0x815A000:
        return named(16, 64);
    case 0x8159000:
        return named(8, 64);
    case 0x8151000:
        return named(32, 64);
    case 0x8151002:
        return named(32, bytes.size() - 32);
    case 0x8151001: {
        auto link = std::make_unique<LinkTag>();
        link->name = text(bytes, 10, 64);
        link->alias = text(bytes, 74, 128);
        return link;
    }
    case 0x8157000: {
        auto module = std::make_unique<ModuleTag>();
        auto const type = little_endian::read<std::uint16_t>(bytes.data() + 12);
        auto const instance = little_endian::read<std::uint16_t>(bytes.data() + 14);
        module->type = text(bytes, 120, type);
        module->name = text(bytes, 120U + type, instance);
        module->fullName = text(bytes, 120U + type + instance, bytes.size() - 120U - type - instance);
        return module;
    }
    default:
        return std::make_unique<Tag>();
    }
}

bool Floor::load(std::span<std::byte const> file)
{
    constexpr std::size_t head = 24;
    constexpr std::size_t header = 8;
    for (std::size_t offset = head; offset + header < file.size();) {
        auto const id = little_endian::read<std::uint32_t>(file.data() + offset);
        auto const length = little_endian::read<std::uint32_t>(file.data() + offset + 4);
        if (length < header || length > file.size() - offset) {
            return false;
        }
        auto const bytes = file.subspan(offset, length);
        std::unique_ptr<Tag> tag = make(id, bytes);
        tag->id = id;
        tag->payload = bytes.subspan(header);
        if (id == 0x8151000 || id == 0x8151002) {
            m_registers.emplace(static_cast<NamedTag*>(tag.get())->name, tag.get());
        }
        m_tags.push_back(std::move(tag));
        offset += length;
    }
    return true;
}
