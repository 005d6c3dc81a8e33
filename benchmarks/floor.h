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

private:
    struct Tag {
        virtual ~Tag() = default;
        std::uint32_t id = 0;
        std::span<std::byte const> payload;
    };
    struct NamedTag : Tag {
        std::string name;
    };
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
