#include "zul_class.h"

#include "zul_private.h"
#include "zullib.h"

#include <algorithm>

namespace {

/// The largest of the numbers of the tags with @p id, as signed numbers, but at least 0.
template <class Tag, class Number>
unsigned int highest(ZUL const& zul, Number number)
{
    std::int32_t largest = 0;
    unsigned int const count = zul.getTagCount(Tag::tag_id);
    for (unsigned int i = 0; i < count; ++i) {
        if (auto const* const tag = dynamic_cast<Tag const*>(zul.getTagAt(Tag::tag_id, i))) {
            largest = std::max(largest, static_cast<std::int32_t>(number(*tag)));
        }
    }
    return static_cast<unsigned int>(largest);
}

} // namespace

unsigned int ZUL::getTagCount(unsigned int id) const
{
    return m_private->m_search.count(id);
}

ZUL_tag* ZUL::getTagAt(unsigned int id, unsigned int i) const
{
    return m_private->m_search.search(id, i);
}

void ZUL::forEachTag(std::function<void(ZUL_tag&)> const& visit) const
{
    for (std::uint32_t i = 0; i < m_private->m_tags.getCount(); ++i) {
        visit(*m_private->m_tags.at(i));
    }
}

template <>
ZUL_register* ZUL::getTagAt<ZUL_register>(unsigned int i) const
{
    return dynamic_cast<ZUL_register*>(getTagAt(ZUL_register::old_tag_id, i));
}

template <>
ZUL_register_link* ZUL::getTagAt<ZUL_register_link>(unsigned int i) const
{
    return dynamic_cast<ZUL_register_link*>(getTagAt(ZUL_register_link::tag_id, i));
}

unsigned int ZUL::getTotalTagCount() const
{
    return m_private->m_tags.getCount() + (m_private->m_author != nullptr ? 1U : 0U) +
           (m_private->m_designVersion != nullptr ? 1U : 0U) + (m_private->m_designName != nullptr ? 1U : 0U);
}

unsigned int ZUL::getRegisterByName(char const* name) const
{
    return name == nullptr ? 0 : m_private->m_index.registerNamed(name).number;
}

ZUL_register* ZUL::getRegisterAt(unsigned int number) const
{
    unsigned int const olderCount = getTagCount(ZUL_register::old_tag_id);
    if (number == 0) {
        return nullptr;
    }
    ZUL_tag* const tag = number <= olderCount ? getTagAt(ZUL_register::old_tag_id, number - 1)
                                              : getTagAt(ZUL_register::new_tag_id, number - olderCount - 1);
    return dynamic_cast<ZUL_register*>(tag);
}

ZUL_register* ZUL::findRegister(char const* name) const
{
    return name == nullptr ? nullptr : findRegister(std::string_view(name));
}

ZUL_register* ZUL::findRegister(std::string_view name) const
{
    return m_private->m_index.registerNamed(name).tag;
}

ZUL_user_info* ZUL::findUserInfo(char const* info) const
{
    return info == nullptr ? nullptr : m_private->m_index.userInfo(info);
}

ZUL_process* ZUL::getProcessAt(unsigned int id) const
{
    return m_private->m_index.process(id);
}

ZUL_module* ZUL::getModuleAt(unsigned int index) const
{
    return m_private->m_index.module(index);
}

unsigned int ZUL::getHighestProcessId() const
{
    return highest<ZUL_process>(*this, [](ZUL_process const& process) { return process.getId(); });
}

unsigned int ZUL::getHighestModuleId() const
{
    return highest<ZUL_module>(*this, [](ZUL_module const& module) { return module.getIndex(); });
}

unsigned int ZUL::getConfigCount() const
{
    return m_private->m_configs.getCount();
}

ZUL_multi_data* ZUL::getConfigAt(unsigned int i) const
{
    return m_private->m_configs.at(i);
}

unsigned int ZUL::getMaxConfigIndex() const
{
    // Signed, starting from -1: indexes of 0x80000000 and more never win, and tools mark spare configurations so.
    std::int32_t largest = -1;
    for (unsigned int i = 0; i < getConfigCount(); ++i) {
        largest = std::max(largest, static_cast<std::int32_t>(getConfigAt(i)->getIndex()));
    }
    return static_cast<unsigned int>(largest);
}

ZUL_multi_data* ZUL::getConfig(unsigned int index, unsigned int board) const
{
    constexpr unsigned int typeAndRevision = 0xF000;
    for (unsigned int i = 0; i < getConfigCount(); ++i) {
        ZUL_multi_data* const config = getConfigAt(i);
        unsigned int const type = config->getBoardType();
        unsigned int const own =
            (board & typeAndRevision) != 0 ? type * 16 | config->getBoardRevision() : type;
        if (config->getIndex() == index && (board == 0 || own == board)) {
            return config;
        }
    }
    return nullptr;
}

ZUL_destination* ZUL::searchDestination(unsigned char const& index, unsigned short const& board,
                                        unsigned short const& revision) const
{
    return m_private->m_index.destination(index, board, revision);
}
