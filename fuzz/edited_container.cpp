#include "edited_container.h"

#include "container_bytes.h"
#include "failing_allocations.h"
#include "run.h"
#include "sample_tags.h"
#include "shadow_list.h"

#include <array>
#include <new>

namespace {

constexpr unsigned fewNames = 7;     // so that names meet often
constexpr std::size_t manyTags = 40; // more are not merged: the plain search is slow
constexpr char const* idName = "__ZUL_ID__";
constexpr std::array kinds{ZUL_register::old_tag_id, ZUL_register::new_tag_id, ZUL_register_link::tag_id,
                           ZUL_process::tag_id,      ZUL_module::tag_id,       ZUL_user_info::tag_id,
                           ZUL_destination::tag_id,  ZUL_event::tag_id,        ZUL_param::tag_id};

std::string nameOf(unsigned number)
{
    // A long one moves a register to the newer layout.
    return number % 31 == 30 ? std::string(70, 'x')
                             : std::string(1, static_cast<char>('a' + number % fewNames));
}

/// Containers to load or to merge. What was loaded refers to their bytes, so they stay.
Bytes const& containerOf(unsigned number)
{
    static std::array const containers{
        ContainerBytes().tag(sample::oldRegister("a")).tag(sample::newRegister("b")).build(8),
        ContainerBytes().tag(sample::registerLink("c", "a")).tag(sample::userInfo("d", 4)).build(8),
        ContainerBytes()
            .tag(sample::process(2))
            .tag(sample::module(1, 2))
            .tag(sample::channel("e", 1))
            .build(8),
        ContainerBytes()
            .tag(sample::destination(1))
            .tag(sample::library("f"))
            .config(sample::config(1))
            .build(8),
        ContainerBytes().tag(sample::cameraParam(1, 0)).build(8),
        ContainerBytes().tag(sample::userInfo(idName, "4711")).tag(sample::event("g", "a")).build(8)};
    return containers.at(number % containers.size());
}

bool isId(ZUL_tag const* tag)
{
    auto const* const info = tagAs<ZUL_user_info>(tag);
    return info != nullptr && info->getInfo() != nullptr && std::string_view(info->getInfo()) == idName;
}

std::vector<ZUL_tag*> listOf(ZUL const& zul)
{
    std::vector<ZUL_tag*> tags;
    zul.forEachTag([&tags](ZUL_tag& tag) { tags.push_back(&tag); });
    return tags;
}

} // namespace

void EditedContainer::apply(Operation const& operation)
{
    m_tags.reserve(m_tags.size() + 1);
    m_mayHaveGrown = false;
    m_mayBeSorted = false;
    try {
        FailingAllocations const failing;
        edit(operation);
    } catch (std::bad_alloc const&) {
        must(anAllocationFailed(), "memory does not run out before it does");
    } catch (ZUL_runtime_error const&) {
        // refused
    }
    compareList();
}

void EditedContainer::compareList()
{
    std::vector<ZUL_tag*> tags = listOf(m_zul);
    must(tags.size() == m_tags.size() || (m_mayHaveGrown && tags.size() > m_tags.size()),
         "as many tags are there as were added");
    if (m_mayBeSorted) {
        ShadowList const shadow(tags);
        must(std::ranges::all_of(m_tags, [&](ZUL_tag const* tag) { return shadow.holds(tag); }),
             "what was there stays");
    } else {
        must(std::equal(m_tags.begin(), m_tags.end(), tags.begin()), "tags stay in order");
    }
    m_tags.swap(tags);
}

void EditedContainer::edit(Operation const& operation)
{
    switch (operation.code % 28) {
    case 16:
    case 17:
    case 18:
    case 19:
        return change(pickAny(operation.a), operation);
    case 20:
    case 21:
        return remove(pickAny(operation.a));
    case 22:
        return removeKind(kinds.at(operation.a % kinds.size()));
    case 23:
        return compareName(operation.a);
    case 24:
        return load(operation.a);
    case 25:
        return merge(operation.a);
    case 26:
        return changeWhole(operation);
    case 27:
        return addConfig(operation);
    default:
        return makeTag(operation);
    }
}

void EditedContainer::makeTag(Operation const& operation)
{
    auto const [code, a, b, c] = operation;
    std::string const name = nameOf(a);
    auto* const module = pick<ZUL_module>(b);
    switch (code % 28) {
    case 0:
    case 1:
        return add(std::make_unique<ZUL_register>(nullptr, name.c_str(), true));
    case 2:
    case 3:
        return add(std::make_unique<ZUL_register>(nullptr, name.c_str(), false));
    case 4:
    case 5:
        return add(std::make_unique<ZUL_register_link>(nullptr, name.c_str(), nameOf(b).c_str()));
    case 6:
        return add(std::make_unique<ZUL_process>(nullptr, a % fewNames, "process"));
    case 7: {
        auto made = std::make_unique<ZUL_module>(nullptr, pick<ZUL_process>(b));
        made->setIndex(static_cast<int>(a % fewNames));
        return add(std::move(made));
    }
    case 8:
        return add(std::make_unique<ZUL_user_info>(nullptr, name.c_str(), b));
    case 9: {
        auto made = std::make_unique<ZUL_event>(nullptr, static_cast<std::uint8_t>(c % 3),
                                                static_cast<std::uint8_t>(c), std::uint8_t{4});
        made->setName(name.c_str());
        made->setRegister(pick<ZUL_register>(b));
        return add(std::move(made));
    }
    case 10:
        return add(std::make_unique<ZUL_param>(nullptr, QL_ParamType{c % 2 == 0 ? 2U : 13U}, module));
    case 11:
        return add(std::make_unique<ZUL_camparam>(nullptr, a, module));
    case 12:
        return add(std::make_unique<ZUL_destination>(nullptr, static_cast<std::uint8_t>(a % 3),
                                                     std::uint16_t{0xA44}, std::uint16_t{1}));
    case 13: {
        auto made = std::make_unique<ZUL_dll>(static_cast<ZUL*>(nullptr));
        made->setName(name.c_str());
        return add(std::move(made));
    }
    case 14:
        return add(std::make_unique<ZUL_param_link>(nullptr, pick<ZUL_module>(a), module));
    default:
        return add(std::make_unique<ZUL_channel_param>(nullptr, c % 2 == 0, module, name.c_str()));
    }
}

template <class Tag>
void EditedContainer::add(std::unique_ptr<Tag> tag)
{
    m_zul.AddTag(tag.get()); // when it throws, the tag is still ours
    m_tags.push_back(tag.release());
}

void EditedContainer::addConfig(Operation const& operation)
{
    m_mayHaveGrown = true; // its identifier is a user info
    auto config = std::make_unique<ZUL_multi_data>(&m_zul);
    config->setIndex(operation.a % 3);
    config->setDestination(pick<ZUL_destination>(operation.b));
    m_zul.AddConfig(config.get(), nameOf(operation.c).c_str());
    config.release();
}

void EditedContainer::change(ZUL_tag* tag, Operation const& operation)
{
    auto const [code, number, a, b] = operation;
    std::string const name = nameOf(a);
    if (auto* const reg = tagAs<ZUL_register>(tag)) {
        reg->setName(name.c_str());
    } else if (auto* const link = tagAs<ZUL_register_link>(tag)) {
        if (b % 2 == 0) {
            link->setTarget(name.c_str());
        } else {
            link->setAlias(name.c_str());
        }
    } else if (auto* const process = tagAs<ZUL_process>(tag)) {
        process->setId(a % fewNames);
    } else if (auto* const module = tagAs<ZUL_module>(tag)) {
        if (b % 2 == 0) {
            module->setIndex(static_cast<int>(a % fewNames));
        } else {
            module->setProcess(pick<ZUL_process>(a));
        }
    } else if (auto* const info = tagAs<ZUL_user_info>(tag)) {
        info->setInfo(name.c_str());
    } else if (auto* const event = tagAs<ZUL_event>(tag)) {
        event->setRegister(pick<ZUL_register>(a));
    } else if (auto* const destination = tagAs<ZUL_destination>(tag)) {
        destination->setIndex(static_cast<std::uint8_t>(a % 3));
    } else if (auto* const library = tagAs<ZUL_dll>(tag)) {
        library->setName(name.c_str());
    } else if (auto* const param = tagAs<ZUL_param>(tag)) {
        param->setModule(pick<ZUL_module>(a));
    }
}

void EditedContainer::changeWhole(Operation const& operation)
{
    std::string const name = nameOf(operation.b);
    char const* const text = operation.c % 4 == 0 ? nullptr : name.c_str();
    switch (operation.a % 6) {
    case 0:
        return m_zul.setAuthor(text);
    case 1:
        return m_zul.setDesignName(text);
    case 2:
        return m_zul.setDesignVersion(text);
    case 3:
        return m_zul.setRegisterPolicy(ZULRegisterPolicy{operation.b % 2});
    case 4:
        return setId(text);
    default:
        return copyOver();
    }
}

void EditedContainer::setId(char const* id)
{
    ZUL_user_info* const info = m_zul.findUserInfo(idName);
    m_mayHaveGrown = true;
    m_zul.setId(id);
    if (id == nullptr) {
        std::erase(m_tags, info);
    }
}

void EditedContainer::copyOver()
{
    m_zul = ZUL(m_zul);
    m_tags.clear();
    m_mayHaveGrown = true;
}

void EditedContainer::remove(ZUL_tag* tag)
{
    m_zul.removeTag(tag);
    std::erase(m_tags, tag);
}

void EditedContainer::removeKind(std::uint32_t id)
{
    auto left = m_tags;
    std::erase_if(left, [id](ZUL_tag const* tag) { return tag->getTagId() == id; });
    m_zul.removeTags(id);
    m_tags.swap(left);
}

void EditedContainer::load(unsigned number)
{
    Bytes const& container = containerOf(number);
    m_mayHaveGrown = true; // up to the tag that is refused
    m_mayBeSorted = true;
    m_zul.setLoadMode(number % 2 == 0 ? ZUL_LOAD_STRICT : ZUL_LOAD_TOLERANT);
    m_zul.Load(container.data(), container.size());
}

void EditedContainer::merge(unsigned number)
{
    if (m_tags.size() + m_zul.getConfigCount() > manyTags) { // merged into itself, it doubles
        return;
    }
    ZUL other;
    Bytes const& container = containerOf(number);
    other.Load(container.data(), container.size());
    ZUL const& merged = number % 7 == 6 ? m_zul : other;
    auto left = m_tags;
    if (merged.getId() != nullptr) {
        std::erase_if(left, isId);
    }
    m_zul.mergeAllOrNothing(merged, {});
    m_tags.swap(left);
    m_mayHaveGrown = true;
}

template <class Tag>
Tag* EditedContainer::pick(unsigned number) const
{
    for (std::size_t i = 0; i < m_tags.size(); ++i) {
        if (auto* const tag = tagAs<Tag>(m_tags[(number + i) % m_tags.size()])) {
            return tag;
        }
    }
    return nullptr;
}

ZUL_tag* EditedContainer::pickAny(unsigned number) const
{
    return m_tags.empty() ? nullptr : m_tags[number % m_tags.size()];
}

void EditedContainer::compareName(unsigned number) const
{
    ShadowList const shadow(m_tags);
    std::string const name(1, static_cast<char>('a' + number % fewNames));
    auto const registers = shadow.registers();
    ZUL_register* const expected = shadow.findRegister(name);
    auto const place = std::ranges::find(registers, expected) - registers.begin();
    auto const regNumber = expected == nullptr ? 0U : static_cast<unsigned>(place) + 1;
    must(m_zul.findRegister(name.c_str()) == expected, "a register is found by name");
    must(m_zul.getRegisterByName(name.c_str()) == regNumber, "a register has its number");
    must(m_zul.getRegisterAt(regNumber) == expected, "a number leads to its register");

    unsigned const id = number % fewNames;
    must(m_zul.getProcessAt(id) == shadow.first<ZUL_process>([&](auto& p) { return p.getId() == id; }),
         "a process is found by id");
    must(m_zul.getModuleAt(id) ==
             shadow.first<ZUL_module>([&](auto& m) { return m.getIndex() == static_cast<int>(id); }),
         "a module is found by index");
    must(m_zul.findUserInfo(name.c_str()) ==
             shadow.first<ZUL_user_info>([&](auto& info) { return name == info.getInfo(); }),
         "an info is found by name");
}

void EditedContainer::compareAll() const
{
    for (unsigned i = 0; i < fewNames; ++i) {
        compareName(i);
    }
    ShadowList const shadow(m_tags);
    for (std::uint32_t const id : kinds) {
        auto const tags = shadow.all<ZUL_tag>(id);
        must(m_zul.getTagCount(id) == tags.size(), "tags are counted");
        for (unsigned i = 0; i < tags.size(); ++i) {
            must(m_zul.getTagAt(id, i) == tags[i], "tags are in order");
        }
    }
    for (ZUL_tag const* const tag : m_tags) {
        must(shadow.holdsReferencesOf(*tag), "no tag refers to a removed one");
    }
    for (unsigned i = 0; i < m_zul.getConfigCount(); ++i) {
        must(shadow.holds(m_zul.getConfigAt(i)->getDestination()),
             "no configuration refers to a removed tag");
    }
    ZUL const copy(m_zul);
    must(copy.getTotalTagCount() == m_zul.getTotalTagCount(), "a copy has all tags");
}
