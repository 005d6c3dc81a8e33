#include "design_tags.h"

#include "tag_cast.h"
#include "zullib.h"

#include <algorithm>

namespace {

/// Adds @p tag when its class is the format's own for its id.
template <class Tag>
void addTo(TagList<Tag>& list, ZUL_tag& tag)
{
    if (auto* const cast = tagOfKind<Tag>(&tag)) {
        list.add(cast);
    }
}

} // namespace

DesignTags::DesignTags(ZUL const& zul)
{
    TagList<ZUL_register> newer;
    zul.forEachTag([&](ZUL_tag& tag) {
        switch (tag.getTagId()) {
        case ZUL_process::tag_id:
            return addTo(processes, tag);
        case ZUL_module::tag_id:
            return addTo(modules, tag);
        case ZUL_param::tag_id:
            return addTo(params, tag);
        case ZUL_channel_param::tag_id:
            return addTo(channels, tag);
        case ZUL_param_link::tag_id:
            return addTo(paramLinks, tag);
        case ZUL_dma_param::tag_id:
            return addTo(dmas, tag);
        case ZUL_camparam::tag_id:
            return addTo(cameras, tag);
        case ZUL_user_info::tag_id:
            return addTo(userInfos, tag);
        case ZUL_event::tag_id:
            return addTo(events, tag);
        case ZUL_dll::tag_id:
            return addTo(libraries, tag);
        case ZUL_design_version_nr::tag_id:
            return addTo(versionNumbers, tag);
        case ZUL_fixed_fpga_info::tag_id:
            return addTo(fixedInfos, tag);
        case ZUL_register::old_tag_id:
            return addTo(registers, tag);
        case ZUL_register::new_tag_id:
            return addTo(newer, tag);
        default:
            return;
        }
    });
    for (ZUL_register* const reg : newer) {
        registers.add(reg);
    }
    sortCameras();
}

void DesignTags::sortCameras()
{
    camerasByProcess.reserve(cameras.size());
    for (ZUL_camparam const* const camera : cameras) {
        // The module index is a position here: the tools that number cameras by process rely on it.
        ZUL_module const* const module = modules.at(camera->getModuleIndex());
        int const process = module == nullptr ? -1 : static_cast<int>(module->getProcessId());
        camerasByProcess.push_back({process, static_cast<int>(camera->getChannel())});
    }
    std::stable_sort(camerasByProcess.begin(), camerasByProcess.end(),
                     [](auto const& left, auto const& right) { return left.process < right.process; });
}
