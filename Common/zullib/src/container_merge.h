#pragma once

#include "event_queues.h"
#include "renumbered_copies.h"
#include "zul_private.h"
#include "zullib.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

struct ProcessId {
    static std::uint32_t of(ZUL_process const& process) { return process.getId(); }
    static void set(ZUL_process& process, std::uint32_t id) { process.setId(id); }
};

struct ModuleIndex {
    static std::uint32_t of(ZUL_module const& module)
    {
        return static_cast<std::uint32_t>(module.getIndex());
    }
    static void set(ZUL_module& module, std::uint32_t index) { module.setIndex(static_cast<int>(index)); }
};

/// Whether @p tag is the user info that holds a container's id.
bool isContainerId(ZUL_tag const& tag);

/// One merge: the tag list, the configurations and the single instances of one container, copied into another one or
/// into itself.
class ContainerMerge {
public:
    ContainerMerge(ZUL_private& to, ZUL_private const& from);
    ContainerMerge(ContainerMerge const&) = delete;
    ContainerMerge& operator=(ContainerMerge const&) = delete;
    // Appending does not touch the search cache during the merge.
    ~ContainerMerge() { m_to.m_search.invalidate(0); }

    void run();

private:
    void copySingles();
    void numberCopies();
    void addTag(ZUL_tag& tag);
    std::unique_ptr<ZUL_tag> copyOf(ZUL_tag& tag);
    void bind(ZUL_tag& copy);
    template <class Tag>
    void bindToModule(Tag* copy, char const* message);
    void bindLink(ZUL_param_link& copy);
    ZUL_process* process(std::uint32_t otherId);
    ZUL_module* module(std::uint32_t otherIndex, char const* message, std::uint32_t tagId);
    void forgetUnfiledCopies();
    void separateQueues();
    void addEvents();
    void addConfig(ZUL_multi_data& config);

    ZUL& m_zul;
    ZUL_private& m_to;
    ZUL_private const& m_from;
    std::uint32_t m_tagCountBefore;
    std::uint32_t m_tagCount; // of what is merged in, which grows when it is the same container
    std::uint32_t m_configCount;
    RenumberedCopies<ZUL_process, ProcessId> m_processes;
    RenumberedCopies<ZUL_module, ModuleIndex> m_modules;
    // The copy that is about to be filed outlives a failure to do so: tags filed before it may refer to it.
    std::unique_ptr<ZUL_tag> m_adding;
    std::unordered_map<ZUL_tag const*, ZUL_destination*> m_destinations; // of what is merged in: their copies
    std::vector<ZUL_event*> m_events;                                    // that were there before
    std::vector<ZUL_event const*> m_newEvents;                           // of what is merged in
    EventQueues m_queues;
    std::uint8_t m_queueOffset = 0;
};
