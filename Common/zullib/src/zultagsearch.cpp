#include "zultagsearch.h"

#include "zul_tag.h"

#include <algorithm>

using kova::templates::patterns::GenericLockGuard;
using kova::templates::platform::checkInvariant;

namespace {

constexpr char const* thisFile = "Common/zullib/src/zultagsearch";

/// Leaves a lock that getCache has entered, on every way out.
class EnteredSlot {
public:
    explicit EnteredSlot(TagSearchCache& cache) : m_cache(cache) {}
    EnteredSlot(EnteredSlot const&) = delete;
    EnteredSlot& operator=(EnteredSlot const&) = delete;
    ~EnteredSlot() { m_cache.lock.leave(); }

private:
    TagSearchCache& m_cache;
};

} // namespace

void TagSearchCache::reset()
{
    id = 0;
    count = 0;
    populated = false;
}

ZulTagSearch::ZulTagSearch(ZUL const*, dynarray_zultp<ZUL_tag> const& tags) : m_tags(tags)
{
    std::generate(m_workcache.begin(), m_workcache.end(), std::make_unique<TagSearchCache>);
}

std::uint32_t ZulTagSearch::count(std::uint32_t id)
{
    if (id == 0) {
        return 0; // 0 marks an empty slot, and no list can be kept for it
    }
    TagSearchCache& cache = getCache(id);
    EnteredSlot const entered(cache);
    populateCache(cache);
    return cache.count;
}

ZUL_tag* ZulTagSearch::search(std::uint32_t id, std::uint32_t i)
{
    if (id == 0) {
        return nullptr;
    }
    // Count and element are read under one hold of the slot: between two, another reader could take the slot over.
    TagSearchCache& cache = getCache(id);
    EnteredSlot const entered(cache);
    populateCache(cache);
    checkInvariant(cache.id == id, "cache->id == id", thisFile, 101);
    return i < cache.count ? cache.tags.get(i) : nullptr;
}

void ZulTagSearch::invalidate(std::uint32_t id)
{
    GenericLockGuard const guard(&m_lock, false);
    if (id == 0) {
        invalidateAll();
        return;
    }
    auto const found = std::find_if(m_workcache.begin(), m_workcache.end(),
                                    [id](auto const& slot) { return slot->id == id; });
    if (found != m_workcache.end()) {
        (*found)->lock.enter();
        EnteredSlot const entered(**found);
        (*found)->reset();
        std::rotate(found, found + 1, m_workcache.end());
    }
}

void ZulTagSearch::invalidateAll()
{
    for (auto const& slot : m_workcache) {
        slot->lock.enter();
        EnteredSlot const entered(*slot);
        slot->reset();
    }
}

/// The slot for @p id, at the front and entered; the caller leaves it.
TagSearchCache& ZulTagSearch::getCache(std::uint32_t id)
{
    GenericLockGuard const guard(&m_lock, false);
    auto const found = std::find_if(m_workcache.begin(), m_workcache.end(),
                                    [id](auto const& slot) { return slot->id == id || slot->id == 0; });
    bool const none = found == m_workcache.end();
    useSearch(none ? slotCount - 1 : static_cast<std::size_t>(found - m_workcache.begin()));
    TagSearchCache& cache = *m_workcache.front();
    if (cache.id != id) {
        cache.reset();
        cache.id = id; // before the work cache is released: two readers of a new id must not take two slots
    }
    return cache;
}

void ZulTagSearch::populateCache(TagSearchCache& cache)
{
    if (cache.populated) {
        return;
    }
    checkInvariant(cache.id != 0, "cache->id != 0", thisFile, 61);
    cache.count = 0;
    cache.tags.clear();
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        ZUL_tag* const tag = m_tags.at(i);
        if (tag->getTagId() == cache.id) {
            cache.tags.Add(tag);
            ++cache.count;
        }
    }
    cache.populated = true;
}

void ZulTagSearch::useSearch(std::size_t index)
{
    checkInvariant(index < slotCount, "index < ARRAY_SIZE(m_workcache)", thisFile, 160);
    auto const begin = m_workcache.begin();
    std::rotate(begin, begin + static_cast<std::ptrdiff_t>(index),
                begin + static_cast<std::ptrdiff_t>(index) + 1);
    m_workcache.front()->lock.enter();
}
