#include "zul_private.h"
#include "zullib.h"

namespace {

using Replacement = std::function<ZUL_tag*(ZUL_tag const*)>;

/// @return what stands for @p old, which has the same class
template <class Tag>
Tag* replaced(Tag const* old, Replacement const& replacement)
{
    return old == nullptr ? nullptr : static_cast<Tag*>(replacement(old));
}

template <class Tag>
bool replaceModule(ZUL_tag& tag, Replacement const& replacement)
{
    auto* const user = dynamic_cast<Tag*>(&tag);
    if (user != nullptr) {
        user->setModule(replaced(user->getModule(), replacement));
    }
    return user != nullptr;
}

void replaceDestination(ZUL_multi_data& config, Replacement const& replacement)
{
    ZUL_destination* const destination = replaced(config.getDestination(), replacement);
    if (destination == config.getDestination()) {
        return;
    }
    // setDestination takes the destination's index over, which may have changed since the two were bound.
    unsigned int const index = config.getIndex();
    config.setDestination(destination);
    config.setIndex(index);
}

} // namespace

void replaceReferences(ZUL_tag& tag, Replacement const& replacement)
{
    if (replaceModule<ZUL_param>(tag, replacement) || replaceModule<ZUL_channel_param>(tag, replacement) ||
        replaceModule<ZUL_camparam>(tag, replacement) || replaceModule<ZUL_dma_param>(tag, replacement)) {
        return;
    }
    if (auto* const module = dynamic_cast<ZUL_module*>(&tag)) {
        module->setProcess(replaced(module->getProcess(), replacement));
    } else if (auto* const link = dynamic_cast<ZUL_param_link*>(&tag)) {
        link->setSourceModule(replaced(link->getSourceModule(), replacement));
        link->setDestinationModule(replaced(link->getDestinationModule(), replacement));
    } else if (auto* const event = dynamic_cast<ZUL_event*>(&tag)) {
        event->setRegister(replaced(event->getRegister(), replacement));
    } else if (auto* const config = dynamic_cast<ZUL_multi_data*>(&tag)) {
        replaceDestination(*config, replacement);
    }
}
