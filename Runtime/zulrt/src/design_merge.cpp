#include "fpga_design.h"
#include "register_links.h"
#include "zullib.h"

#include <cerrno>
#include <exception>
#include <new>

namespace {

constexpr int refused = -113; // not the negated errno: callers tell a refused merge from other failures by it

int fail(int error)
{
    errno = error;
    return -1;
}

/// Merges a container that @p load fills into @p design.
template <class Load>
int mergeLoaded(fpga_design* design, Load const& load)
{
    if (design == nullptr) {
        return fail(EINVAL);
    }
    try {
        ZUL other;
        int const loaded = load(other);
        return loaded != 0 ? fail(-loaded) : design->merge(&other);
    } catch (std::bad_alloc const&) {
        return fail(ENOMEM);
    } catch (std::exception const&) {
        return fail(EINVAL);
    }
}

} // namespace

int mergeFpgaDesign(fpga_design* design, char const* file)
{
    return mergeLoaded(design, [file](ZUL& zul) { return zul.Load(file); });
}

int mergeFpgaDesign(fpga_design* design, void const* data, unsigned long length)
{
    return mergeLoaded(design, [=](ZUL& zul) { return zul.Load(data, length); });
}

int fpga_design::merge(ZUL const* other)
{
    if (other == nullptr || m_zul == nullptr) {
        return fail(EINVAL);
    }
    try {
        if (checkRegisterLinks(other, m_zul.get()) == 0) {
            errno = EINVAL;
            return refused;
        }
        DesignTags tags;
        EventTable events;
        m_zul->mergeAllOrNothing(*other, [&] {
            tags = DesignTags(*m_zul);
            events = makeEvents(tags);
            m_events.reserve(m_events.size() + 1);
            // Last, since nothing brings removed tags back: a merged design never demands a fixed firmware version.
            m_zul->removeTags(ZUL_fixed_fpga_info::tag_id);
        });
        tags.fixedInfos = {};
        m_tags = std::move(tags);
        m_events.push_back(std::move(events));
        // The module extensions and library names stay those of the load: pointers to them were handed out.
        return 0;
    } catch (std::bad_alloc const&) {
        return fail(ENOMEM);
    } catch (std::exception const&) {
        errno = EINVAL;
        return refused;
    }
}
