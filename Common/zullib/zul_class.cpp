#include "zul_class.h"

#include "tag_cast.h"
#include "zul_private.h"
#include "zullib.h"

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
