#include "container_merge.h"

#include "tag_copies.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::uint8_t queueShift = 16;

/// The smallest index, 0 without configurations.
std::uint32_t lowestIndex(dynarray_zultp<ZUL_multi_data> const& configs)
{
    std::uint32_t lowest = configs.getCount() == 0 ? 0 : configs.at(0)->getIndex();
    for (std::uint32_t i = 1; i < configs.getCount(); ++i) {
        lowest = std::min(lowest, configs.at(i)->getIndex());
    }
    return lowest;
}

} // namespace

bool isContainerId(ZUL_tag const& tag)
{
    auto const* const info = tag.getTagId() == ZUL_user_info::tag_id ? tagCast<ZUL_user_info>(&tag) : nullptr;
    return info != nullptr && info->getInfo() != nullptr &&
           std::string_view(info->getInfo()) == containerIdName;
}

ContainerMerge::ContainerMerge(ZUL_private& to, ZUL_private const& from)
    : m_zul(to.m_zul),
      m_to(to),
      m_from(from),
      m_tagCountBefore(to.m_tags.getCount()),
      m_tagCount(from.m_tags.getCount()),
      m_configCount(from.m_configs.getCount()),
      m_processes(m_zul.getTagCount(ZUL_process::tag_id) != 0, m_zul.getHighestProcessId()),
      m_modules(m_zul.getTagCount(ZUL_module::tag_id) != 0, m_zul.getHighestModuleId())
{
    for (std::uint32_t i = 0; i < m_tagCountBefore; ++i) {
        if (auto* const event = tagOfKind<ZUL_event>(to.m_tags.at(i))) {
            m_events.push_back(event);
        }
    }
}

void ContainerMerge::run()
{
    copySingles();
    numberCopies();
    try {
        for (std::uint32_t i = 0; i < m_tagCount; ++i) {
            addTag(*m_from.m_tags.at(i));
        }
    } catch (...) {
        forgetUnfiledCopies();
        throw;
    }
    separateQueues();
    addEvents();
    for (std::uint32_t i = 0; i < m_configCount; ++i) {
        addConfig(*m_from.m_configs.at(i));
    }
}

void ContainerMerge::copySingles()
{
    auto const copyMissing = [this](auto& own, auto const& other) {
        if (own == nullptr) {
            own = copySingle(&m_zul, other);
        }
    };
    copyMissing(m_to.m_designVersion, m_from.m_designVersion);
    copyMissing(m_to.m_author, m_from.m_author);
    copyMissing(m_to.m_designName, m_from.m_designName);
}

/// Copies and numbers what others refer to by number. A sorted list may hold a module before its process.
void ContainerMerge::numberCopies()
{
    auto const copied = [this]<class Tag>(Tag& tag) {
        return std::unique_ptr<Tag>(static_cast<Tag*>(copyTag(&m_zul, tag).release()));
    };
    for (std::uint32_t i = 0; i < m_tagCount; ++i) {
        ZUL_tag* const tag = m_from.m_tags.at(i);
        if (auto* const process = tagOfKind<ZUL_process>(tag)) {
            m_processes.add(copied(*process));
        } else if (auto* const module = tagOfKind<ZUL_module>(tag)) {
            m_modules.add(copied(*module));
        }
    }
}

void ContainerMerge::addTag(ZUL_tag& tag)
{
    if (auto const* const event = tagOfKind<ZUL_event>(&tag)) {
        m_newEvents.push_back(event);
        return;
    }
    if (isContainerId(tag)) {
        return;
    }
    m_adding = copyOf(tag);
    bind(*m_adding);
    if (auto* const destination = tagOfKind<ZUL_destination>(m_adding.get())) {
        m_destinations.emplace(&tag, destination);
    }
    if (auto* const reg = tagOfKind<ZUL_register>(m_adding.get())) {
        m_to.appendRegister(reg);
    } else {
        // Libraries and links too: what loaded beside others of its name, or closes a circle, is kept.
        m_to.append(m_adding.get());
    }
    static_cast<void>(m_adding.release()); // the list's
}

std::unique_ptr<ZUL_tag> ContainerMerge::copyOf(ZUL_tag& tag)
{
    if (tagOfKind<ZUL_process>(&tag) != nullptr) {
        return m_processes.takeNext();
    }
    if (tagOfKind<ZUL_module>(&tag) != nullptr) {
        return m_modules.takeNext();
    }
    return copyTag(&m_zul, tag);
}

/// Lets @p copy, which refers to tags of the other container, refer to those of this one.
void ContainerMerge::bind(ZUL_tag& copy)
{
    if (auto* const module = tagOfKind<ZUL_module>(&copy)) {
        module->setProcess(process(module->getProcessId()));
    } else if (auto* const link = tagOfKind<ZUL_param_link>(&copy)) {
        bindLink(*link);
    } else {
        bindToModule(tagOfKind<ZUL_param>(&copy), "Tried to add a ZUL_param without a matching module.");
        bindToModule(tagOfKind<ZUL_channel_param>(&copy),
                     "Tried to add a ZUL_channel_param without a matching module.");
        bindToModule(tagOfKind<ZUL_dma_param>(&copy),
                     "Tried to add a ZUL_dma_param without a matching module.");
        bindToModule(tagOfKind<ZUL_camparam>(&copy),
                     "Tried to add a ZUL_camparam without a matching module.");
    }
}

template <class Tag>
void ContainerMerge::bindToModule(Tag* copy, char const* message)
{
    if (copy != nullptr) {
        copy->setModule(module(static_cast<std::uint32_t>(copy->getModuleIndex()), message, Tag::tag_id));
    }
}

void ContainerMerge::bindLink(ZUL_param_link& copy)
{
    copy.setSourceModule(module(static_cast<std::uint32_t>(copy.getSourceModuleIndex()),
                                "Tried to add a ZUL_param_link without a matching source module.",
                                ZUL_param_link::tag_id));
    copy.setDestinationModule(module(static_cast<std::uint32_t>(copy.getDestinationModuleIndex()),
                                     "Tried to add a ZUL_param_link without a matching destination module.",
                                     ZUL_param_link::tag_id));
}

/// The first process, of those that are there or come, with the number that @p otherId has become.
ZUL_process* ContainerMerge::process(std::uint32_t otherId)
{
    std::uint32_t const id = m_processes.renumbered(otherId);
    ZUL_process* const there = m_zul.getProcessAt(id);
    ZUL_process* const found = there != nullptr ? there : m_processes.find(id);
    if (found == nullptr) {
        throw ZUL_add_tag_error("Tried to add a ZUL_module without a matching process.", ZUL_module::tag_id);
    }
    return found;
}

/// As process().
ZUL_module* ContainerMerge::module(std::uint32_t otherIndex, char const* message, std::uint32_t tagId)
{
    std::uint32_t const index = m_modules.renumbered(otherIndex);
    ZUL_module* const there = m_zul.getModuleAt(index);
    ZUL_module* const found = there != nullptr ? there : m_modules.find(index);
    if (found == nullptr) {
        throw ZUL_add_tag_error(message, tagId);
    }
    return found;
}

/// What was added stays when the merge fails, but refers to nothing that does not.
void ContainerMerge::forgetUnfiledCopies()
{
    auto const ifListed = [](ZUL_tag const* tag) {
        return ZUL_private::isListed(*tag) ? const_cast<ZUL_tag*>(tag) : nullptr;
    };
    for (std::uint32_t i = m_tagCountBefore; i < m_to.m_tags.getCount(); ++i) {
        replaceReferences(*m_to.m_tags.at(i), ifListed);
    }
}

/// The side that is configured later gives way: its events move up.
void ContainerMerge::separateQueues()
{
    std::uint32_t const own = lowestIndex(m_to.m_configs);
    std::uint32_t const other = lowestIndex(m_from.m_configs);
    bool const isFirmware = m_to.m_configs.getCount() == 0;
    for (ZUL_event* const event : m_events) {
        event->setFirmwareEvent(isFirmware || event->isFirmwareEvent());
        if (other < own) {
            event->setUiq(static_cast<std::uint8_t>(event->getUiq() + queueShift));
        }
        m_queues.add(event->getUiq(), event->getBit());
    }
    m_queueOffset = other > own ? queueShift : std::uint8_t{0};
}

void ContainerMerge::addEvents()
{
    bool const isFirmware = m_configCount == 0;
    for (ZUL_event const* const event : m_newEvents) {
        auto const queue = static_cast<std::uint8_t>(event->getUiq() + m_queueOffset);
        m_queues.refuseConflict(queue, event->getBit());
        auto copy = std::make_unique<ZUL_event>(&m_zul, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0});
        copy->copyFieldsFrom(*event);
        copy->setUiq(queue);
        copy->setRegister(m_zul.findRegister(event->getRegisterName()));
        copy->setFirmwareEvent(isFirmware || event->isFirmwareEvent());
        m_to.append(copy.get());
        copy.release();
    }
}

void ContainerMerge::addConfig(ZUL_multi_data& config)
{
    auto copy = std::make_unique<ZUL_multi_data>(&m_zul);
    copy->copyFieldsFrom(config);
    if (ZUL_destination const* const other = config.getDestination()) {
        auto const found = m_destinations.find(other);
        if (found == m_destinations.end()) {
            copy->setBoard(other->getBoard(), other->getRevision());
        } else {
            copy->setDestination(found->second);
            copy->setIndex(config.getIndex()); // the destination may have got another index since
        }
    }
    m_to.appendConfig(copy.get());
    copy.release();
}
