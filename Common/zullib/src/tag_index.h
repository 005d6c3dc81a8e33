#pragma once

#include "ZUL_design_version_nr.h"
#include "ZUL_destination.h"
#include "ZUL_dll.h"
#include "ZUL_module.h"
#include "ZUL_process.h"
#include "ZUL_user_info.h"
#include "dynarray.h"
#include "first_with_key.h"
#include "register_names.h"
#include "tag_cast.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// A library's identity within a container.
struct LibraryKey {
    std::string_view name;
    std::uint32_t system = 0;
    bool operator==(LibraryKey const&) const = default;
};

struct LibraryKeyHash {
    std::size_t operator()(LibraryKey const& key) const noexcept
    {
        return SeededHash::mix(SeededHash()(key.name), SeededHash()(key.system));
    }
};

/// Finds the tags of a container's list by what they are called, in constant time.
///
/// Each map is fed with what is appended; a changed key or a removed tag drops it, and the next question builds it anew
/// by one scan. Keys are borrowed from the tags.
class TagIndex {
public:
    explicit TagIndex(dynarray_zultp<ZUL_tag> const& tags) : m_tags(tags) {}

    /// @p tag, whose id is @p id, was appended to the list.
    void added(std::uint32_t id, ZUL_tag& tag);
    /// Notes @p reg (@p link), which is about to be appended, unless its name is known (its target is an alias).
    /// @return false in that case
    bool addNew(ZUL_register& reg);
    bool addNew(ZUL_register_link& link);
    /// A key of a tag with this id changed.
    void changed(std::uint32_t id) noexcept;
    /// Tags were removed, or anything else happened.
    void changed() noexcept;

    ZUL_process* process(std::uint32_t id) const;
    ZUL_module* module(std::uint32_t index) const;
    ZUL_user_info* userInfo(std::string_view info) const;
    ZUL_dll* library(char const* name, std::uint32_t system) const;
    ZUL_design_version_nr* versionNumber(std::uint8_t index) const;
    ZUL_destination* destination(std::uint8_t index, std::uint16_t board, std::uint16_t revision) const;
    /// The last destination with @p index.
    ZUL_destination* lastDestination(std::uint32_t index) const;
    RegisterNames::Found registerNamed(std::string_view name) const;

private:
    template <class Do>
    void forEachTag(Do const& action) const;
    template <class Tag>
    bool addNewName(Tag& tag);
    RegisterNames& registerNames() const;

    template <class Tag>
    struct Cast {
        static Tag* cast(ZUL_tag& tag) { return tagOfKind<Tag>(&tag); }
    };
    struct ByProcessId : Cast<ZUL_process> {
        static std::optional<std::uint64_t> keyOf(ZUL_process const& tag) { return tag.getId(); }
    };
    struct ByModuleIndex : Cast<ZUL_module> {
        static std::optional<std::uint64_t> keyOf(ZUL_module const& tag)
        {
            return static_cast<std::uint32_t>(tag.getIndex());
        }
    };
    struct ByInfo : Cast<ZUL_user_info> {
        static std::optional<std::string_view> keyOf(ZUL_user_info const& tag);
    };
    struct ByLibrary : Cast<ZUL_dll> {
        static std::optional<LibraryKey> keyOf(ZUL_dll const& tag);
    };
    struct ByVersionIndex : Cast<ZUL_design_version_nr> {
        static std::optional<std::uint64_t> keyOf(ZUL_design_version_nr const& tag) { return tag.getIndex(); }
    };
    struct ByDestination : Cast<ZUL_destination> {
        static std::uint64_t key(std::uint8_t index, std::uint16_t board, std::uint16_t revision)
        {
            return (std::uint64_t{index} << 32U) | (std::uint64_t{board} << 16U) | revision;
        }
        static std::optional<std::uint64_t> keyOf(ZUL_destination const& tag)
        {
            return key(tag.getIndex(), tag.getBoard(), tag.getRevision());
        }
    };
    struct ByDestinationIndex : Cast<ZUL_destination> {
        static std::optional<std::uint64_t> keyOf(ZUL_destination const& tag) { return tag.getIndex(); }
    };

    dynarray_zultp<ZUL_tag> const& m_tags;
    mutable TagByKey<ZUL_process, std::uint64_t, ByProcessId> m_processes;
    mutable TagByKey<ZUL_module, std::uint64_t, ByModuleIndex> m_modules;
    mutable TagByKey<ZUL_user_info, std::string_view, ByInfo> m_userInfos{false}; // loading asks for none
    mutable TagByKey<ZUL_dll, LibraryKey, ByLibrary, Keeps::First, LibraryKeyHash> m_libraries;
    mutable TagByKey<ZUL_design_version_nr, std::uint64_t, ByVersionIndex> m_versionNumbers;
    mutable TagByKey<ZUL_destination, std::uint64_t, ByDestination> m_destinations;
    mutable TagByKey<ZUL_destination, std::uint64_t, ByDestinationIndex, Keeps::Last> m_lastDestinations;
    mutable BuiltOnDemand m_namesState{true};
    mutable RegisterNames m_names;
};
