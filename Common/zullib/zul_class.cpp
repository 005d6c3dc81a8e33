#include "zul_class.h"

#include "tag_cast.h"
#include "zul_private.h"
#include "zullib.h"

#include <algorithm>
#include <string>

namespace {

constexpr char const* invalidContainerId = "__INVALID_ZUL_ID__";

/// The single instance @p single, made on first use.
template <class Tag>
Tag& ensure(std::unique_ptr<Tag>& single, ZUL* parent)
{
    if (single == nullptr) {
        single = std::make_unique<Tag>(parent);
    }
    return *single;
}

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

ZUL::ZUL() : m_private(std::make_unique<ZUL_private>(*this)) {}

ZUL::ZUL(ZUL const& other) : ZUL()
{
    m_private->copyFrom(*other.m_private);
    m_loadMode = other.m_loadMode;
}

ZUL& ZUL::operator=(ZUL const& other)
{
    if (this != &other) {
        auto copy = std::make_unique<ZUL_private>(*this);
        copy->copyFrom(*other.m_private);
        m_private = std::move(copy);
        m_loadMode = other.m_loadMode;
    }
    return *this;
}

ZUL::~ZUL() = default;

void ZUL::tagKeyChanged(ZUL_tag const& tag)
{
    std::uint32_t const id = tag.getTagId();
    m_private->m_index.changed(id);
    if (id == ZUL_register::old_tag_id || id == ZUL_register::new_tag_id) {
        // A long name moves a register to the newer layout, and so from one list to the other.
        m_private->m_search.invalidate(ZUL_register::old_tag_id);
        m_private->m_search.invalidate(ZUL_register::new_tag_id);
    }
}

void ZUL::AddTag(ZUL_tag* tag)
{
    if (tag == nullptr) {
        return;
    }
    if (auto* const author = tagOfKind<ZUL_author>(tag)) {
        m_private->replace(m_private->m_author, author);
    } else if (auto* const name = tagOfKind<ZUL_design_name>(tag)) {
        m_private->replace(m_private->m_designName, name);
    } else if (auto* const version = tagOfKind<ZUL_design_version>(tag)) {
        m_private->replace(m_private->m_designVersion, version);
    } else if (auto* const number = tagOfKind<ZUL_design_version_nr>(tag)) {
        if (!m_private->isFiled(*number)) {
            setDesignVersion(number);
            delete number;
        }
    } else if (auto* const config = tagOfKind<ZUL_multi_data>(tag)) {
        AddConfig(config);
    } else {
        m_private->appendChecked(tag);
        m_private->m_search.invalidate(tag->getTagId());
    }
}

void ZUL::AddLib(ZUL_dll* lib)
{
    if (lib != nullptr) {
        m_private->appendLib(lib);
        m_private->m_search.invalidate(ZUL_dll::tag_id);
    }
}

bool ZUL::hasLib(ZUL_dll const* lib) const
{
    return lib != nullptr && m_private->m_index.library(lib->getName(), lib->getSystem()) != nullptr;
}

void ZUL::AddRegister(ZUL_register* reg)
{
    if (reg != nullptr) {
        m_private->appendRegister(reg);
        m_private->m_search.invalidate(reg->getTagId());
    }
}

void ZUL::AddLink(ZUL_register_link* link)
{
    if (link != nullptr) {
        m_private->appendLink(link);
        m_private->m_search.invalidate(ZUL_register_link::tag_id);
    }
}

void ZUL::AddConfig(ZUL_multi_data* config, char const* id)
{
    if (config != nullptr) {
        config->setParent(this); // the identifier is stored in the configuration's container
        config->setId(id);
        m_private->appendConfig(config);
    }
}

void ZUL::setAuthor(char const* author)
{
    if (author == nullptr) {
        m_private->m_author.reset();
    } else {
        ensure(m_private->m_author, this).setAuthor(author);
    }
}

char const* ZUL::getAuthor() const
{
    return m_private->m_author == nullptr ? nullptr : m_private->m_author->getAuthor();
}

void ZUL::setDesignName(char const* name)
{
    if (name == nullptr) {
        m_private->m_designName.reset();
    } else {
        ensure(m_private->m_designName, this).setName(name);
    }
}

char const* ZUL::getDesignName() const
{
    return m_private->m_designName == nullptr ? nullptr : m_private->m_designName->getName();
}

void ZUL::setDesignVersion(char const* version)
{
    if (version == nullptr) {
        m_private->m_designVersion.reset();
    } else {
        ensure(m_private->m_designVersion, this).setVersion(version);
    }
}

void ZUL::setDesignVersion(unsigned short major, unsigned short minor)
{
    setDesignVersion((std::to_string(major) + "." + std::to_string(minor)).c_str());
}

void ZUL::setDesignVersion(ZUL_design_version const* version)
{
    if (version == nullptr) {
        m_private->m_designVersion.reset();
    } else {
        ensure(m_private->m_designVersion, this) = *version;
    }
}

void ZUL::setDesignVersion(ZUL_design_version_nr const* version)
{
    if (version != nullptr) {
        m_private->setVersionNumber(*version);
    }
}

char const* ZUL::getDesignVersion() const
{
    return m_private->m_designVersion == nullptr ? nullptr : m_private->m_designVersion->getVersion();
}

char const* ZUL::generateId(bool)
{
    // The flag does not ask for a new id: an id that is there is kept, whoever asks.
    if (findUserInfo(containerIdName) == nullptr) {
        setId(invalidContainerId);
    }
    return getId();
}

void ZUL::generateAllIds(bool flag)
{
    // Configurations are not in the tag list, so none is reached here, and a save does not add user infos for them.
    generateId(flag);
}

void ZUL::setId(char const* id)
{
    ZUL_user_info* const info = findUserInfo(containerIdName);
    if (info != nullptr && id != nullptr) {
        info->setValue(id);
    } else if (info != nullptr) {
        removeTag(info);
    } else if (id != nullptr) {
        auto made = std::make_unique<ZUL_user_info>(this, containerIdName, id);
        m_private->appendAndInvalidate(made.get());
        made.release();
    }
}

char const* ZUL::getId() const
{
    ZUL_user_info* const info = findUserInfo(containerIdName);
    return info == nullptr ? nullptr : info->getInfoString();
}

void ZUL::removeTag(ZUL_tag* tag)
{
    if (tag == nullptr) {
        return;
    }
    std::uint32_t const position = m_private->positionOf(tag);
    if (position == m_private->m_tags.getCount()) {
        throw ZUL_invalid_data("given tag is not member of this ZUL");
    }
    m_private->takeOut(position);
}

void ZUL::removeTags(unsigned int id)
{
    if (id == ZUL_multi_data::tag_id) {
        auto& configs = m_private->m_configs;
        for (std::uint32_t i = 0; i < configs.getCount(); ++i) {
            delete configs.at(i);
        }
        configs.clear();
        removeTags(ZUL_destination::tag_id);
    } else {
        m_private->removeTagsIf([id](ZUL_tag const& tag) { return tag.getTagId() == id; });
    }
}

void ZUL::removeDestination(ZUL_destination* destination)
{
    std::uint32_t const position = m_private->positionOf(destination);
    if (position != m_private->m_tags.getCount()) {
        m_private->takeOut(position).release()->setParent(nullptr);
    }
}

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

void ZUL::setRegisterPolicy(ZULRegisterPolicy const& policy)
{
    m_private->m_registerPolicy = policy;
}

ZULRegisterPolicy ZUL::getRegisterPolicy() const
{
    return m_private->m_registerPolicy;
}

unsigned int ZUL::getHeadDestination() const
{
    return m_private->m_headDestination;
}
