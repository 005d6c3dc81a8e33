#include "fpga_design.h"
#include "key_table.h"
#include "number_table.h"
#include "seeded_hash.h"
#include "zullib.h"

#include <string_view>

namespace {

using Modules = std::vector<std::unique_ptr<zul_module_ext>>;

/// Finds the first module with an index.
using ModuleByIndex = NumberTable<zul_module_ext*>;

std::uint64_t indexKey(std::int64_t index)
{
    return static_cast<std::uint32_t>(index);
}

ModuleByIndex makeModules(TagList<ZUL_module> const& tags, Modules& modules)
{
    ModuleByIndex byIndex;
    modules.reserve(tags.size());
    for (ZUL_module* const tag : tags) {
        auto const [first, isNew] = byIndex.insert(indexKey(tag->getIndex()));
        modules.push_back(isNew ? std::make_unique<zul_module_ext>(tag)
                                : std::make_unique<zul_module_ext>(tag, **first));
        modules.back()->setIndex(static_cast<int>(modules.size() - 1));
        if (isNew) {
            *first = modules.back().get();
        }
    }
    return byIndex;
}

/// Leads parameter links to the modules and parameters that they name.
class LinkResolver {
public:
    explicit LinkResolver(Modules const& modules)
    {
        for (auto const& module : modules) {
            if (char const* const name = module->getModule()->getFullName()) {
                if (auto const [first, isNew] = m_modules.insert(name); isNew) {
                    *first = module.get();
                }
            }
        }
    }

    void resolve(ZUL_param_link& link)
    {
        char const* const moduleName = link.getDestinationModuleName();
        zul_module_ext const** const found = moduleName == nullptr ? nullptr : m_modules.find(moduleName);
        if (found == nullptr) {
            return;
        }
        link.setDestinationModule((*found)->getModule());
        noteParameters(**found);
        char const* const name = link.getDestinationName();
        std::uint64_t const index = indexKey((*found)->getModule()->getIndex());
        if (int const* const position = name == nullptr ? nullptr : m_params.find({index, name})) {
            link.setDestinationParamIndex(*position);
        }
    }

private:
    struct ParamKey {
        std::uint64_t moduleIndex;
        std::string_view name;
        bool operator==(ParamKey const&) const = default;
    };
    struct ParamHash {
        std::size_t operator()(ParamKey const& key) const noexcept
        {
            return SeededHash::mix(SeededHash()(key.name), SeededHash()(key.moduleIndex));
        }
    };

    /// Once for all modules with one index: they have the same parameters, and there may be many of both.
    void noteParameters(zul_module_ext const& module)
    {
        std::uint64_t const index = indexKey(module.getModule()->getIndex());
        if (!m_noted.insert(index).second) {
            return;
        }
        for (unsigned int i = 0; i < module.GetNrOfParam(); ++i) {
            if (char const* const name = module.getParam(i)->getName()) {
                if (auto const [position, isNew] = m_params.insert({index, name}); isNew) {
                    *position = static_cast<int>(i);
                }
            }
        }
    }

    KeyTable<std::string_view, zul_module_ext const*, SeededHash> m_modules;
    NumberTable<bool> m_noted; // indices whose parameters are in the next table
    KeyTable<ParamKey, int, ParamHash> m_params;
};

} // namespace

int fpga_design::EvaluateModuleData()
{
    m_modules.clear();
    m_relativeParams.clear();
    ModuleByIndex byIndex = makeModules(m_tags.modules, m_modules);
    m_relativeParams.reserve(m_tags.params.size());
    for (ZUL_param* const param : m_tags.params) {
        zul_module_ext** const module = byIndex.find(indexKey(param->getModuleIndex()));
        m_relativeParams.push_back(module == nullptr ? 0 : (*module)->GetNrOfParam());
        if (module != nullptr) {
            (*module)->AddParam(param, static_cast<int>(m_relativeParams.size() - 1));
        }
    }
    for (ZUL_channel_param* const channel : m_tags.channels) {
        if (zul_module_ext** const module = byIndex.find(indexKey(channel->getModuleIndex()))) {
            (*module)->AddChannel(channel);
        }
    }
    if (m_tags.paramLinks.size() != 0) {
        LinkResolver resolver(m_modules);
        for (ZUL_param_link* const link : m_tags.paramLinks) {
            resolver.resolve(*link);
        }
    }
    return 0;
}
