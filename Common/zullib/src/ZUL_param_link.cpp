#include "ZUL_param_link.h"

#include "ZUL_module.h"
#include "tag_layout.h"

#include <stdexcept>

namespace {

constexpr std::uint64_t longestText = 0x7FFFFFFF; // terminator included

int indexOf(ZUL_module const* module) noexcept
{
    return module == nullptr ? -1 : module->getIndex();
}

} // namespace

// clang-format off
void ZUL_param_link::layout(TagLayout& row)
{
    std::uint32_t flag = m_flag ? 1 : 0;

    row.dependencies();
    row.variable(52);
    // The text that lies last is judged first: of several that are too long, it is the one that is reported.
    auto const module      = row.tailLength(44, 4, "destination module name length", m_destinationModuleName.sizeWithTerminator(), longestText,
                                            "Module link destination module name is too long");
    auto const destination = row.tailLength(40, 4, "destination name length", m_destinationName.sizeWithTerminator(), longestText,
                                            "Module link destination name is too long");
    auto const source      = row.tailLength(36, 4, "source name length", m_sourceName.sizeWithTerminator(), longestText,
                                            "Module link source name is too long");
    row.total(source + destination + module, "The size of a parameter link description grew to big to save it!");
    // A link to a missing module is malformed, where every other tag has a dangling reference.
    row.moduleElseMalformed( 8, "source module index",         m_sourceModule);
    row.moduleElseMalformed(12, "destination module index",    m_destinationModule);
    row.s32                (16, "source parameter index",      m_sourceParamIndex);
    row.s32                (20, "destination parameter index", m_destinationParamIndex);
    row.zeros              (24, 12);
    row.u32                (48, "flag",                        flag);
    row.tailText("source name",             source,      m_sourceName);
    row.tailText("destination name",        destination, m_destinationName);
    row.tailText("destination module name", module,      m_destinationModuleName);

    m_flag = flag == 1;
}
// clang-format on

void ZUL_param_link::checkDependentFields()
{
    if (m_destinationModule == nullptr || m_sourceModule == nullptr) {
        throw std::runtime_error(
            "Tried to save a ZUL_param_link without a destination or source module, not allowed.");
    }
}

int ZUL_param_link::getSourceModuleIndex() const noexcept
{
    return indexOf(m_sourceModule);
}

int ZUL_param_link::getDestinationModuleIndex() const noexcept
{
    return indexOf(m_destinationModule);
}
