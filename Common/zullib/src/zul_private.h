#pragma once

#include "ZUL_author.h"
#include "ZUL_design_name.h"
#include "ZUL_design_version.h"
#include "ZUL_multi_data.h"
#include "dynarray.h"
#include "mapped_file.h"
#include "tag_blocks.h"
#include "tag_index.h"
#include "zul_class.h"
#include "zultagsearch.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// The name of the user info whose value is the container's id.
constexpr char const* containerIdName = "__ZUL_ID__";

/// What a container holds, and the bookkeeping that every change of its tag list needs.
class ZUL_private {
public:
    explicit ZUL_private(ZUL& zul);

    /// Appends to the tag list and takes @p tag over; when this throws, the tag is still the caller's.
    void append(ZUL_tag* tag);
    /// append for a tag with the id @p id that a load has just made for this container.
    void appendLoaded(std::uint32_t id, ZUL_tag* tag);
    /// append for a tag that the index knows already; when this throws, the index has forgotten it.
    void appendIndexed(ZUL_tag* tag);
    /// append, then forgets what the search cache knows of the tag's id.
    void appendAndInvalidate(ZUL_tag* tag);
    /// As append, after the check that the tag kind demands.
    void appendLib(ZUL_dll* lib);
    void appendRegister(ZUL_register* reg);
    void appendLink(ZUL_register_link* link);
    /// Appends to the configurations and takes @p config over; when this throws, it is still the caller's.
    void appendConfig(ZUL_multi_data* config);
    /// append, with the check that @p tag demands.
    void appendChecked(ZUL_tag* tag);
    /// Takes @p tag over as the one of its kind.
    template <class Tag>
    void replace(std::unique_ptr<Tag>& single, Tag* tag)
    {
        if (single.get() != tag) {
            tag->setParent(&m_zul);
            single.reset(tag);
        }
    }
    void setVersionNumber(ZUL_design_version_nr const& version);

    /// Takes out of the tag list, and deletes, every tag for which @p leaves is true; changes nothing when it throws.
    void removeTagsIf(std::function<bool(ZUL_tag const&)> const& leaves);
    /// The same without deleting them.
    std::vector<std::unique_ptr<ZUL_tag>> takeOutIf(std::function<bool(ZUL_tag const&)> const& leaves);
    /// Makes the tag list what it was; @p tags are no more than it has held already.
    void refile(std::vector<ZUL_tag*> const& tags) noexcept;
    /// Makes every reference to @p tag null.
    void forget(ZUL_tag const& tag);
    /// The position of @p tag in the tag list, or its length.
    std::uint32_t positionOf(ZUL_tag const* tag) const;
    /// Takes the tag at @p position out of the list; nothing refers to it any more.
    std::unique_ptr<ZUL_tag> takeOut(std::uint32_t position);

    /// Whether @p tag is in the tag list; that is an error of the caller who is about to add it.
    bool isFiled(ZUL_tag const& tag) const;
    /// Whether a list of @p tag's container holds it; asking is no error.
    static bool isListed(ZUL_tag const& tag) noexcept { return tag.m_filed; }
    /// Makes this empty part an exact copy of @p other.
    void copyFrom(ZUL_private const& other);
    /// Adds renumbered copies of what @p other, possibly this part, holds; what was added before a failure stays.
    ZUL_private& operator+=(ZUL_private const& other);

private:
    void noteInIndex(std::uint32_t id, ZUL_tag& tag) noexcept;

public:
    ZUL& m_zul;
    std::vector<MappedFile>
        m_mappings;     // of every file that tags may have been read from; they outlive the tags
    TagBlocks m_blocks; // with the tags that were loaded, and their texts
    dynarray_zultp<ZUL_multi_data> m_configs;
    dynarray_zultp<ZUL_tag> m_tags;
    std::unique_ptr<ZUL_author> m_author;
    std::unique_ptr<ZUL_design_version> m_designVersion;
    std::unique_ptr<ZUL_design_name> m_designName;
    ZULRegisterPolicy m_registerPolicy{};
    std::uint32_t m_headDestination = 0;
    TagIndex m_index;
    mutable ZulTagSearch m_search;
};

/// Replaces what @p tag refers to (process, modules, register, destination) by what @p replacement answers for it; a
/// reference that is null stays so.
void replaceReferences(ZUL_tag& tag, std::function<ZUL_tag*(ZUL_tag const*)> const& replacement);
