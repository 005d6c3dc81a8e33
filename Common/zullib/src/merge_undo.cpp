#include "merge_undo.h"

#include "zullib.h"

MergeUndo::MergeUndo(ZUL_private& store)
    : m_store(store),
      m_configCount(store.m_configs.getCount()),
      m_hadAuthor(store.m_author != nullptr),
      m_hadAuthorText(store.m_zul.getAuthor() != nullptr),
      m_hadDesignName(store.m_designName != nullptr),
      m_hadDesignNameText(store.m_zul.getDesignName() != nullptr),
      m_hadDesignVersion(store.m_designVersion != nullptr)
{
    m_tags.reserve(store.m_tags.getCount());
    for (std::uint32_t i = 0; i < store.m_tags.getCount(); ++i) {
        ZUL_tag* const tag = store.m_tags.at(i);
        m_tags.push_back(tag);
        if (auto* const event = tagOfKind<ZUL_event>(tag)) {
            m_events.push_back({event, event->getUiq(), event->isFirmwareEvent()});
        }
    }
}

void MergeUndo::restore() noexcept
{
    dropAdded();
    m_store.refile(m_tags);
    for (auto& tag : m_takenOut) {
        static_cast<void>(tag.release()); // the list's again
    }
    for (EventState const& state : m_events) {
        state.event->setUiq(state.queue);
        state.event->setFirmwareEvent(state.firmware);
    }
    restoreSingles();
}

void MergeUndo::dropAdded() noexcept
{
    auto const kept = static_cast<std::uint32_t>(m_tags.size() - m_takenOut.size());
    for (std::uint32_t i = kept; i < m_store.m_tags.getCount(); ++i) {
        delete m_store.m_tags.at(i);
    }
    for (std::uint32_t i = m_configCount; i < m_store.m_configs.getCount(); ++i) {
        delete m_store.m_configs.at(i);
    }
    while (m_store.m_configs.getCount() > m_configCount) {
        m_store.m_configs.remove(m_store.m_configs.getCount() - 1);
    }
}

void MergeUndo::restoreSingles() noexcept
{
    if (!m_hadAuthor) {
        m_store.m_author.reset();
    } else if (!m_hadAuthorText) {
        m_store.m_author->setAuthor(nullptr);
    }
    if (!m_hadDesignName) {
        m_store.m_designName.reset();
    } else if (!m_hadDesignNameText) {
        m_store.m_designName->setName(nullptr);
    }
    if (!m_hadDesignVersion) {
        m_store.m_designVersion.reset();
    }
}
