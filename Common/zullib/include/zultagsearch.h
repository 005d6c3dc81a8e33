#pragma once

#include "dynarray.h"
#include "kova/templates/patterns.h"
#include "kova/templates/platform.h"
#include "zul_tag.h"

#include <array>
#include <cstdint>
#include <memory>

class ZUL;

/// One slot of the search cache: the tags of one id in list order.
struct TagSearchCache {
    /// Forgets the list; its memory stays.
    void reset();

    std::uint32_t id = 0; ///< 0: the slot is empty. Changed under the work cache's lock and this slot's lock.
    std::uint32_t count = 0;  ///< number of entries
    bool populated = false;   ///< the list was gathered for id
    dynarraytp<ZUL_tag> tags; ///< not owned
    kova::templates::platform::CriticalSection lock;
};

/// Answers "how many tags with this id" and "the i-th of them" from the six most recently used lists.
///
/// Safe for concurrent readers. Locks are taken in one order: the work cache's lock, then one slot's; a slot's lock is
/// held until its reader is done, so no slot changes its id under a reader.
class ZulTagSearch {
public:
    /// @param tags the container's tag list, which has to outlive this object. Single instances and configuration
    ///        data are not in it and so are never found.
    ZulTagSearch(ZUL const* zul, dynarray_zultp<ZUL_tag> const& tags);
    virtual ~ZulTagSearch() = default;

    /// Number of tags with @p id; 0 for id 0.
    std::uint32_t count(std::uint32_t id);
    /// The @p i-th tag with @p id in list order, null when there are not so many.
    ZUL_tag* search(std::uint32_t id, std::uint32_t i);
    /// Forgets the list of @p id, 0 forgets all. To be called after every change of the tag list.
    void invalidate(std::uint32_t id);

private:
    static constexpr std::size_t slotCount = 6;

    TagSearchCache& getCache(std::uint32_t id);
    void populateCache(TagSearchCache& cache);
    void useSearch(std::size_t index);
    void invalidateAll();

    dynarray_zultp<ZUL_tag> const& m_tags;
    std::array<std::unique_ptr<TagSearchCache>, slotCount> m_workcache; // most recently used first
    kova::templates::platform::CriticalSection m_lock;                  // guards the order of m_workcache
};
