#include "fpga_design.h"
#include "zullib.h"

#include <algorithm>
#include <cerrno>
#include <span>

int fpga_design::stripConfigs(void* buffer, unsigned long* length) const
{
    constexpr int failed = -1;
    if (length == nullptr || m_zul == nullptr) {
        errno = EINVAL;
        return failed;
    }
    try {
        ZUL copy(*m_zul);
        for (unsigned int const id :
             {ZUL_multi_data::tag_id, ZUL_dll::tag_id, ZUL_design_version_nr::tag_id}) {
            copy.removeTags(id);
        }
        unsigned long const needed = copy.getSaveLength();
        if (buffer == nullptr || *length < needed) {
            *length = needed;
            return failed;
        }
        std::ranges::fill(std::span(static_cast<std::byte*>(buffer), needed),
                          std::byte{0}); // reserved bytes too
        copy.Save(buffer, needed);
        *length = needed;
        return 0;
    } catch (std::bad_alloc const&) {
        errno = ENOMEM;
    } catch (std::exception const&) {
        errno = EINVAL;
    }
    return failed;
}
