#include "design_tree.h"

#include "seeded_hash.h"
#include "tag_fields.h"
#include "zullib.h"

#include <optional>

namespace {

using Numbers = std::unordered_map<std::uint64_t, std::size_t, SeededHash>;

/// The index of the node that @p number leads to.
std::optional<std::size_t> find(Numbers const& numbers, std::uint32_t number)
{
    auto const found = numbers.find(number);
    return found == numbers.end() ? std::nullopt : std::optional(found->second);
}

bool isMember(std::uint32_t id)
{
    return id == ZUL_param::tag_id || id == ZUL_channel_param::tag_id || id == ZUL_camparam::tag_id ||
           id == ZUL_dma_param::tag_id || id == ZUL_param_link::tag_id;
}

std::vector<WalkedTag const*>& listFor(ModuleNode& module, std::uint32_t id)
{
    switch (id) {
    case ZUL_param::tag_id:
        return module.parameters;
    case ZUL_param_link::tag_id:
        return module.links;
    default:
        return module.channels;
    }
}

} // namespace

DesignTree::DesignTree(Walk const& walk)
{
    Numbers processes;
    for (WalkedTag const& tag : walk.tags) {
        if (tag.id == ZUL_process::tag_id) {
            processes.try_emplace(TagFields(tag).word("process id"), m_processes.size());
            m_processes.push_back({&tag, {}});
        } else if (tag.id == ZUL_module::tag_id) {
            m_modules.push_back({&tag, {}, {}, {}});
        }
    }
    for (ModuleNode const& module : m_modules) { // no module moves from here on
        auto const process = find(processes, TagFields(*module.tag).word("process id"));
        (process ? m_processes[*process].modules : m_strayModules).push_back(&module);
    }
    addMembers(walk);
}

void DesignTree::addMembers(Walk const& walk)
{
    Numbers modules;
    for (std::size_t i = 0; i < m_modules.size(); ++i) {
        modules.try_emplace(TagFields(*m_modules[i].tag).word("module index"), i);
    }
    for (WalkedTag const& tag : walk.tags) {
        if (!isMember(tag.id)) {
            continue;
        }
        char const* const field = tag.id == ZUL_param_link::tag_id ? "source module index" : "module index";
        auto const module = find(modules, TagFields(tag).word(field));
        (module ? listFor(m_modules[*module], tag.id) : m_strayTags).push_back(&tag);
    }
}
