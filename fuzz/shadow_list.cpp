#include "shadow_list.h"

std::vector<ZUL_register*> ShadowList::registers() const
{
    auto found = all<ZUL_register>(ZUL_register::old_tag_id);
    auto const newer = all<ZUL_register>(ZUL_register::new_tag_id);
    found.insert(found.end(), newer.begin(), newer.end());
    return found;
}

ZUL_register* ShadowList::findRegister(std::string name) const
{
    auto const registersInOrder = registers();
    auto const links = all<ZUL_register_link>(ZUL_register_link::tag_id);
    for (std::size_t step = 0; step <= links.size(); ++step) {
        for (ZUL_register* const reg : registersInOrder) {
            if (reg->getName() != nullptr && name == reg->getName()) {
                return reg;
            }
        }
        auto const link = std::ranges::find_if(links, [&](ZUL_register_link const* candidate) {
            return candidate->getAlias() != nullptr && name == candidate->getAlias();
        });
        if (link == links.end() || (*link)->getTarget() == nullptr) {
            return nullptr;
        }
        name = (*link)->getTarget();
    }
    return nullptr;
}

bool ShadowList::holdsReferencesOf(ZUL_tag const& tag) const
{
    if (auto const* const module = tagAs<ZUL_module>(&tag)) {
        return holds(module->getProcess());
    }
    if (auto const* const param = tagAs<ZUL_param>(&tag)) {
        return holds(param->getModule());
    }
    if (auto const* const camera = tagAs<ZUL_camparam>(&tag)) {
        return holds(camera->getModule());
    }
    if (auto const* const dma = tagAs<ZUL_dma_param>(&tag)) {
        return holds(dma->getModule());
    }
    if (auto const* const channel = tagAs<ZUL_channel_param>(&tag)) {
        return holds(channel->getModule());
    }
    if (auto const* const link = tagAs<ZUL_param_link>(&tag)) {
        return holds(link->getSourceModule()) && holds(link->getDestinationModule());
    }
    if (auto const* const event = tagAs<ZUL_event>(&tag)) {
        return holds(event->getRegister());
    }
    return true;
}
