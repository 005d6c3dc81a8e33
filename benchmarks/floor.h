#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The least that any loader has to do: one pass over the bytes that checks lengths and builds one heap object with
/// its owned strings for each tag, and one hash map from register names. What a load costs is told as a ratio to it.
class Floor {
public:
    /// @return false when a length is wrong
    bool load(std::span<std::byte const> file);
    std::size_t count() const { return m_tags.size(); }

    struct Tag {
        virtual ~Tag() = default;
        std::uint32_t id = 0;
        std::span<std::byte const> payload; // behind the header
    };
    struct NamedTag : Tag {
        std::string name;
    };
    std::span<std::unique_ptr<Tag> const> tags() const { return m_tags; }
    /// The first register with that name, or null.
    Tag const* findRegister(std::string_view name) const
    {
        auto const found = m_registers.find(name);
        return found == m_registers.end() ? nullptr : found->second;
    }

private:
    struct LinkTag : NamedTag {
        std::string alias;
    };
    struct ModuleTag : NamedTag {
        std::string type;
        std::string fullName;
    };

    static std::unique_ptr<Tag> make(std::uint32_t id, std::span<std::byte const> bytes);

    std::vector<std::unique_ptr<Tag>> m_tags;
    std::unordered_map<std::string_view, Tag*> m_registers;
};
