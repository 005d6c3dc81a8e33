#pragma once

#include "walker.h"

#include <string_view>
#include <unordered_map>
#include <vector>

/// A module and what names it.
struct ModuleNode {
    WalkedTag const* tag;
    std::vector<WalkedTag const*> parameters;
    std::vector<WalkedTag const*> channels; ///< channel, camera and DMA parameters
    std::vector<WalkedTag const*> links;    ///< parameter links that begin here
};

struct ProcessNode {
    WalkedTag const* tag;
    std::vector<ModuleNode const*> modules;
};

/// Which tag belongs to which, in file order. A number leads to the first tag that has it, as lookups do.
class DesignTree {
public:
    explicit DesignTree(Walk const& walk);
    DesignTree(DesignTree const&) = delete;
    DesignTree& operator=(DesignTree const&) = delete;

    std::vector<ProcessNode> const& processes() const noexcept { return m_processes; }
    /// Modules whose process is not in the file.
    std::vector<ModuleNode const*> const& strayModules() const noexcept { return m_strayModules; }
    /// Tags of modules that are not in the file.
    std::vector<WalkedTag const*> const& strayTags() const noexcept { return m_strayTags; }

private:
    void addMembers(Walk const& walk);

    std::vector<ProcessNode> m_processes;
    std::vector<ModuleNode> m_modules;
    std::vector<ModuleNode const*> m_strayModules;
    std::vector<WalkedTag const*> m_strayTags;
};
