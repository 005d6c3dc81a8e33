#include "tag_index.h"

#include "ZUL_register.h"
#include "ZUL_register_link.h"

std::optional<std::string_view> TagIndex::ByInfo::keyOf(ZUL_user_info const& tag)
{
    return tag.getInfo() == nullptr ? std::nullopt : std::optional<std::string_view>(tag.getInfo());
}

std::optional<LibraryKey> TagIndex::ByLibrary::keyOf(ZUL_dll const& tag)
{
    return tag.getName() == nullptr
               ? std::nullopt
               : std::optional<LibraryKey>({tag.getName(), std::uint32_t{tag.getSystem()}});
}

template <class Do>
void TagIndex::forEachTag(Do const& action) const
{
    for (std::uint32_t i = 0; i < m_tags.getCount(); ++i) {
        action(*m_tags.at(i));
    }
}

void TagIndex::added(std::uint32_t id, ZUL_tag& tag)
{
    switch (id) {
    case ZUL_process::tag_id:
        return m_processes.added(tag);
    case ZUL_module::tag_id:
        return m_modules.added(tag);
    case ZUL_user_info::tag_id:
        return m_userInfos.added(tag);
    case ZUL_dll::tag_id:
        return m_libraries.added(tag);
    case ZUL_design_version_nr::tag_id:
        return m_versionNumbers.added(tag);
    case ZUL_destination::tag_id:
        m_destinations.added(tag);
        return m_lastDestinations.added(tag);
    case ZUL_register::old_tag_id:
    case ZUL_register::new_tag_id:
        return m_namesState.drop(); // those that are not copied along with all others come with addNew()
    case ZUL_register_link::tag_id:
        if (auto* const link = tagCast<ZUL_register_link>(&tag); link != nullptr && m_namesState.built()) {
            m_names.add(*link);
        }
        return;
    default:
        return;
    }
}

void TagIndex::changed(std::uint32_t id) noexcept
{
    switch (id) {
    case ZUL_process::tag_id:
        return m_processes.drop();
    case ZUL_module::tag_id:
        return m_modules.drop();
    case ZUL_user_info::tag_id:
        return m_userInfos.drop();
    case ZUL_dll::tag_id:
        return m_libraries.drop();
    case ZUL_design_version_nr::tag_id:
        return m_versionNumbers.drop();
    case ZUL_destination::tag_id:
        m_destinations.drop();
        return m_lastDestinations.drop();
    case ZUL_register::old_tag_id:
    case ZUL_register::new_tag_id:
    case ZUL_register_link::tag_id:
        return m_namesState.drop();
    default:
        return;
    }
}

void TagIndex::changed() noexcept
{
    m_processes.drop();
    m_modules.drop();
    m_userInfos.drop();
    m_libraries.drop();
    m_versionNumbers.drop();
    m_destinations.drop();
    m_lastDestinations.drop();
    m_namesState.drop();
}

ZUL_process* TagIndex::process(std::uint32_t id) const
{
    return m_processes.find(id, [this](auto const& action) { forEachTag(action); });
}

ZUL_module* TagIndex::module(std::uint32_t index) const
{
    return m_modules.find(index, [this](auto const& action) { forEachTag(action); });
}

ZUL_user_info* TagIndex::userInfo(std::string_view info) const
{
    return m_userInfos.find(info, [this](auto const& action) { forEachTag(action); });
}

ZUL_dll* TagIndex::library(char const* name, std::uint32_t system) const
{
    if (name == nullptr) {
        return nullptr;
    }
    return m_libraries.find({name, system}, [this](auto const& action) { forEachTag(action); });
}

ZUL_design_version_nr* TagIndex::versionNumber(std::uint8_t index) const
{
    return m_versionNumbers.find(index, [this](auto const& action) { forEachTag(action); });
}

ZUL_destination* TagIndex::destination(std::uint8_t index, std::uint16_t board, std::uint16_t revision) const
{
    return m_destinations.find(ByDestination::key(index, board, revision),
                               [this](auto const& action) { forEachTag(action); });
}

ZUL_destination* TagIndex::lastDestination(std::uint32_t index) const
{
    return m_lastDestinations.find(index, [this](auto const& action) { forEachTag(action); });
}

RegisterNames::Found TagIndex::registerNamed(std::string_view name) const
{
    return registerNames().find(name);
}

bool TagIndex::addNew(ZUL_register& reg)
{
    return addNewName(reg);
}

bool TagIndex::addNew(ZUL_register_link& link)
{
    return addNewName(link);
}

template <class Tag>
bool TagIndex::addNewName(Tag& tag)
{
    try {
        return registerNames().addNew(tag);
    } catch (...) {
        m_namesState.drop(); // it may refer to texts of a tag that nobody files
        throw;
    }
}

RegisterNames& TagIndex::registerNames() const
{
    m_namesState.ensure([this] {
        m_names.clear();
        forEachTag([this](ZUL_tag& tag) {
            if (auto* const reg = tagOfKind<ZUL_register>(&tag)) {
                m_names.add(*reg);
            }
        });
        forEachTag([this](ZUL_tag& tag) {
            if (auto* const link = tagOfKind<ZUL_register_link>(&tag)) {
                m_names.add(*link);
            }
        });
    });
    return m_names;
}
