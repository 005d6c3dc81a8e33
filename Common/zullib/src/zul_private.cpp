#include "zul_private.h"

#include "kova/templates/platform/invariant.h"
#include "tag_copies.h"
#include "tag_kinds.h"
#include "zullib.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

using TagPointers = std::unordered_map<ZUL_tag const*, ZUL_tag*>;

namespace {

/// Whether other tags may refer to tags with this id. A class that is not the format's own may derive from one of
/// these, under an id of its own.
bool isReferable(std::uint32_t id)
{
    return id == ZUL_process::tag_id || id == ZUL_module::tag_id || id == ZUL_destination::tag_id ||
           id == ZUL_register::old_tag_id || id == ZUL_register::new_tag_id || findTagKind(id) == nullptr;
}

} // namespace

ZUL_private::ZUL_private(ZUL& zul)
    : m_zul(zul), m_configs(&zul), m_tags(&zul), m_index(m_tags), m_search(&zul, m_tags)
{
}

/// A second place in the list would delete a tag twice.
bool ZUL_private::isFiled(ZUL_tag const& tag) const
{
    bool const filed = tag.m_filed && tag.getParent() == &m_zul;
    kova::templates::platform::checkInvariant(!filed, "m_list[i] != n", "Common/zullib/include/dynarray", 44);
    return filed;
}

void ZUL_private::append(ZUL_tag* tag)
{
    if (!isFiled(*tag)) {
        appendIndexed(tag);
        noteInIndex(tag->getTagId(), *tag);
    }
}

void ZUL_private::appendLoaded(std::uint32_t id, ZUL_tag* tag)
{
    m_tags.addNew(tag);
    tag->m_filed = true;
    noteInIndex(id, *tag);
}

void ZUL_private::noteInIndex(std::uint32_t id, ZUL_tag& tag) noexcept
{
    try {
        m_index.added(id, tag);
    } catch (...) {
        m_index.changed(); // the tag is filed; the index is made again when it is asked
    }
}

void ZUL_private::appendIndexed(ZUL_tag* tag)
{
    try {
        m_tags.addNew(tag);
    } catch (...) {
        m_index.changed();
        throw;
    }
    tag->setParent(&m_zul);
    tag->m_filed = true;
}

void ZUL_private::appendAndInvalidate(ZUL_tag* tag)
{
    append(tag);
    m_search.invalidate(tag->getTagId());
}

void ZUL_private::appendLib(ZUL_dll* lib)
{
    if (m_zul.hasLib(lib)) {
        throw ZUL_dll_already_exists(lib->getName());
    }
    append(lib);
}

void ZUL_private::appendRegister(ZUL_register* reg)
{
    if (reg->getName() == nullptr && isFiled(*reg)) {
        return;
    }
    if (!m_index.addNew(*reg)) {
        // The older layout's id for both: callers know the error by it.
        throw ZUL_file_duplicate_tag(ZUL_register::old_tag_id, reg->getName());
    }
    appendIndexed(reg);
}

void ZUL_private::appendLink(ZUL_register_link* link)
{
    if (isFiled(*link)) {
        return;
    }
    if (!m_index.addNew(*link)) {
        throw ZUL_link_loop_detected("link loop detected", link->getTagId(), ZUL_register_link::tag_id);
    }
    appendIndexed(link);
}

void ZUL_private::appendConfig(ZUL_multi_data* config)
{
    if (isFiled(*config)) {
        return;
    }
    m_configs.addNew(config);
    config->setParent(&m_zul);
    config->m_filed = true;
}

void ZUL_private::appendChecked(ZUL_tag* tag)
{
    if (auto* const lib = tagOfKind<ZUL_dll>(tag)) {
        appendLib(lib);
    } else if (auto* const reg = tagOfKind<ZUL_register>(tag)) {
        appendRegister(reg);
    } else if (auto* const link = tagOfKind<ZUL_register_link>(tag)) {
        appendLink(link);
    } else {
        append(tag);
    }
}

void ZUL_private::setVersionNumber(ZUL_design_version_nr const& version)
{
    if (ZUL_design_version_nr* const existing = m_index.versionNumber(version.getIndex())) {
        *existing = version;
        return;
    }
    auto copy = std::make_unique<ZUL_design_version_nr>(version);
    appendAndInvalidate(copy.get());
    copy.release();
}

std::uint32_t ZUL_private::positionOf(ZUL_tag const* tag) const
{
    std::uint32_t position = 0;
    while (position < m_tags.getCount() && m_tags.at(position) != tag) {
        ++position;
    }
    return position;
}

std::unique_ptr<ZUL_tag> ZUL_private::takeOut(std::uint32_t position)
{
    std::unique_ptr<ZUL_tag> tag(m_tags.at(position));
    m_tags.remove(position);
    tag->m_filed = false;
    m_index.changed();
    m_search.invalidate(0);
    forget(*tag);
    return tag;
}

void ZUL_private::removeTagsIf(std::function<bool(ZUL_tag const&)> const& leaves)
{
    takeOutIf(leaves); // and deletes
}

std::vector<std::unique_ptr<ZUL_tag>>
ZUL_private::takeOutIf(std::function<bool(ZUL_tag const&)> const& leaves)
{
    std::vector<std::unique_ptr<ZUL_tag>> leaving;
    std::unordered_set<ZUL_tag const*> gone;
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        if (leaves(*m_tags.at(i))) {
            gone.insert(m_tags.at(i));
        }
    }
    if (gone.empty()) {
        return leaving;
    }
    leaving.reserve(gone.size()); // the last thing that can fail
    m_tags.removeIf([&](ZUL_tag* tag) {
        bool const isLeaving = gone.contains(tag);
        if (isLeaving) {
            tag->m_filed = false;
            leaving.emplace_back(tag);
        }
        return isLeaving;
    });
    m_index.changed();
    m_search.invalidate(0);
    auto const unlessGone = [&gone](ZUL_tag const* tag) {
        return gone.contains(tag) ? nullptr : const_cast<ZUL_tag*>(tag);
    };
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        replaceReferences(*m_tags.at(i), unlessGone);
    }
    for (std::uint32_t i = 0; i < m_configs.getCount(); ++i) {
        replaceReferences(*m_configs.at(i), unlessGone);
    }
    return leaving;
}

void ZUL_private::refile(std::vector<ZUL_tag*> const& tags) noexcept
{
    m_index.changed();
    m_search.invalidate(0);
    m_tags.clear();
    for (ZUL_tag* const tag : tags) {
        m_tags.addNew(tag);
        tag->m_filed = true;
    }
}

void ZUL_private::forget(ZUL_tag const& tag)
{
    if (!isReferable(tag.getTagId())) {
        return;
    }
    auto const unlessForgotten = [&tag](ZUL_tag const* other) {
        return other == &tag ? nullptr : const_cast<ZUL_tag*>(other);
    };
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        replaceReferences(*m_tags.at(i), unlessForgotten);
    }
    for (std::uint32_t i = 0; i < m_configs.getCount(); ++i) {
        replaceReferences(*m_configs.at(i), unlessForgotten);
    }
}

void ZUL_private::copyFrom(ZUL_private const& other)
{
    m_author = copySingle(&m_zul, other.m_author);
    m_designVersion = copySingle(&m_zul, other.m_designVersion);
    m_designName = copySingle(&m_zul, other.m_designName);
    m_registerPolicy = other.m_registerPolicy;
    m_headDestination = other.m_headDestination;
    TagPointers copies;
    for (std::uint32_t i = 0; i < other.m_tags.getCount(); ++i) {
        ZUL_tag& tag = *other.m_tags.at(i);
        std::unique_ptr<ZUL_tag> made = copyTag(&m_zul, tag);
        append(made.get());
        ZUL_tag* const copy = made.release();
        if (isReferable(tag.getTagId())) {
            bool const isRaw = dynamic_cast<ZUL_binary_data*>(copy) != nullptr; // nothing can refer to that
            copies.emplace(&tag, isRaw ? nullptr : copy);
        }
    }
    for (std::uint32_t i = 0; i < other.m_configs.getCount(); ++i) {
        auto copy = findTagKind(ZUL_multi_data::tag_id)->copy(&m_zul, *other.m_configs.at(i));
        appendConfig(static_cast<ZUL_multi_data*>(copy.get()));
        copy.release();
    }
    auto const toCopy = [&copies](ZUL_tag const* tag) {
        auto const found = copies.find(tag);
        return found == copies.end() ? const_cast<ZUL_tag*>(tag) : found->second;
    };
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        replaceReferences(*m_tags.at(i), toCopy);
    }
    for (std::uint32_t i = 0; i < m_configs.getCount(); ++i) {
        replaceReferences(*m_configs.at(i), toCopy);
    }
}
