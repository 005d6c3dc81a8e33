#pragma once

#include "zul_private.h"

#include <cstdint>
#include <memory>
#include <vector>

class ZUL_event;

/// Remembers what a merge changes in a container, so that it can be made as it was.
class MergeUndo {
public:
    /// @throws std::bad_alloc
    explicit MergeUndo(ZUL_private& store);

    /// Takes care of tags that were taken out of the tag list.
    void keep(std::vector<std::unique_ptr<ZUL_tag>> takenOut) noexcept { m_takenOut = std::move(takenOut); }
    /// Deletes what was added and puts back what was there. Nothing else may have been removed.
    void restore() noexcept;

private:
    /// What a merge changes in an event.
    struct EventState {
        ZUL_event* event;
        std::uint8_t queue;
        bool firmware;
    };

    void dropAdded() noexcept;
    void restoreSingles() noexcept;

    ZUL_private& m_store;
    std::vector<ZUL_tag*> m_tags;
    std::vector<std::unique_ptr<ZUL_tag>> m_takenOut;
    std::vector<EventState> m_events;
    std::uint32_t m_configCount;
    bool m_hadAuthor;
    bool m_hadAuthorText;
    bool m_hadDesignName;
    bool m_hadDesignNameText;
    bool m_hadDesignVersion;
};
