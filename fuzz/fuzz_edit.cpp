// Any sequence of edits leaves a container whose lookups answer what a plain search through a shadow list answers.

#include "quiet_output.h"
#include "zullib.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr unsigned fewNames = 7; // so that names meet often

/// Numbers taken from the input; 0 when it is used up.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : m_data(data), m_size(size) {}
    bool empty() const { return m_size == 0; }
    unsigned next()
    {
        if (m_size == 0) {
            return 0;
        }
        --m_size;
        return *m_data++;
    }
    std::string name()
    {
        unsigned const number = next();
        // A long one moves a register to the newer layout.
        return number % 31 == 30 ? std::string(70, 'x')
                                 : std::string(1, static_cast<char>('a' + number % fewNames));
    }

private:
    std::uint8_t const* m_data;
    std::size_t m_size;
};

/// A container and, beside it, its tags in order.
class Edited {
public:
    void step(Input& input);
    void compare();

private:
    template <class Tag>
    std::vector<Tag*> all(std::uint32_t id) const
    {
        std::vector<Tag*> found;
        for (ZUL_tag* const tag : m_tags) {
            if (tag->getTagId() == id) {
                found.push_back(static_cast<Tag*>(tag));
            }
        }
        return found;
    }
    std::vector<ZUL_register*> registers() const;
    ZUL_register* search(std::string name) const;
    template <class Tag, class... Arguments>
    void add(Arguments... arguments);
    ZUL_tag* pick(unsigned number) const { return m_tags.empty() ? nullptr : m_tags[number % m_tags.size()]; }
    void change(ZUL_tag* tag, Input& input);
    void remove(ZUL_tag* tag);

    ZUL m_zul;
    std::vector<ZUL_tag*> m_tags;
};

/// In the order of their numbers.
std::vector<ZUL_register*> Edited::registers() const
{
    auto found = all<ZUL_register>(ZUL_register::old_tag_id);
    auto const newer = all<ZUL_register>(ZUL_register::new_tag_id);
    found.insert(found.end(), newer.begin(), newer.end());
    return found;
}

ZUL_register* Edited::search(std::string name) const
{
    auto const links = all<ZUL_register_link>(ZUL_register_link::tag_id);
    for (std::size_t step = 0; step <= links.size(); ++step) {
        for (ZUL_register* const reg : registers()) {
            if (reg->getName() != nullptr && name == reg->getName()) {
                return reg;
            }
        }
        auto const link = std::find_if(links.begin(), links.end(), [&](ZUL_register_link const* candidate) {
            return candidate->getAlias() != nullptr && name == candidate->getAlias();
        });
        if (link == links.end() || (*link)->getTarget() == nullptr) {
            return nullptr;
        }
        name = (*link)->getTarget();
    }
    return nullptr;
}

template <class Tag, class... Arguments>
void Edited::add(Arguments... arguments)
{
    auto tag = std::make_unique<Tag>(nullptr, arguments...);
    try {
        m_zul.AddTag(tag.get());
        m_tags.push_back(tag.release());
    } catch (ZUL_runtime_error const&) {
        // still ours
    }
}

void Edited::change(ZUL_tag* tag, Input& input)
{
    if (auto* const reg = dynamic_cast<ZUL_register*>(tag)) {
        reg->setName(input.name().c_str());
    } else if (auto* const link = dynamic_cast<ZUL_register_link*>(tag)) {
        if (input.next() % 2 == 0) {
            link->setTarget(input.name().c_str());
        } else {
            link->setAlias(input.name().c_str());
        }
    } else if (auto* const process = dynamic_cast<ZUL_process*>(tag)) {
        process->setId(input.next() % fewNames);
    } else if (auto* const module = dynamic_cast<ZUL_module*>(tag)) {
        module->setIndex(static_cast<int>(input.next() % fewNames));
    } else if (auto* const info = dynamic_cast<ZUL_user_info*>(tag)) {
        info->setInfo(input.name().c_str());
    }
}

void Edited::remove(ZUL_tag* tag)
{
    if (tag != nullptr) {
        m_tags.erase(std::find(m_tags.begin(), m_tags.end(), tag));
        m_zul.removeTag(tag);
    }
}

void Edited::step(Input& input)
{
    switch (input.next() % 10) {
    case 0:
        return add<ZUL_register>(input.name().c_str(), true);
    case 1:
        return add<ZUL_register>(input.name().c_str(), false);
    case 2: {
        std::string const alias = input.name();
        return add<ZUL_register_link>(alias.c_str(), input.name().c_str());
    }
    case 3:
        return add<ZUL_process>(input.next() % fewNames, "process");
    case 4: {
        add<ZUL_module>(m_zul.getProcessAt(input.next() % fewNames));
        return;
    }
    case 5:
        return add<ZUL_user_info>(input.name().c_str(), 5U);
    case 6:
    case 7:
        return change(pick(input.next()), input);
    case 8:
        return remove(pick(input.next()));
    default:
        return compare();
    }
}

void Edited::compare()
{
    auto const numbered = registers();
    for (unsigned i = 0; i < fewNames; ++i) {
        std::string const name(1, static_cast<char>('a' + i));
        ZUL_register* const expected = search(name);
        auto const place = std::find(numbered.begin(), numbered.end(), expected);
        auto const number = expected == nullptr ? 0U : static_cast<unsigned>(place - numbered.begin()) + 1;
        must(m_zul.findRegister(name.c_str()) == expected, "a register is found by name");
        must(m_zul.getRegisterByName(name.c_str()) == number, "a register has its number");
        must(m_zul.getRegisterAt(number) == expected, "a number leads to its register");

        auto const processes = all<ZUL_process>(ZUL_process::tag_id);
        auto const process =
            std::find_if(processes.begin(), processes.end(), [i](auto* p) { return p->getId() == i; });
        must(m_zul.getProcessAt(i) == (process == processes.end() ? nullptr : *process),
             "a process is found by id");
        auto const infos = all<ZUL_user_info>(ZUL_user_info::tag_id);
        auto const info =
            std::find_if(infos.begin(), infos.end(), [&](auto* u) { return name == u->getInfo(); });
        must(m_zul.findUserInfo(name.c_str()) == (info == infos.end() ? nullptr : *info),
             "an info is found by name");
    }
    for (std::uint32_t const id :
         {ZUL_register::old_tag_id, ZUL_register::new_tag_id, ZUL_register_link::tag_id, ZUL_process::tag_id,
          ZUL_module::tag_id, ZUL_user_info::tag_id}) {
        auto const tags = all<ZUL_tag>(id);
        must(m_zul.getTagCount(id) == tags.size(), "tags are counted");
        for (unsigned i = 0; i < tags.size(); ++i) {
            must(m_zul.getTagAt(id, i) == tags[i], "tags are in order");
        }
    }
    for (auto* const module : all<ZUL_module>(ZUL_module::tag_id)) {
        bool const filed = std::find(m_tags.begin(), m_tags.end(), module->getProcess()) != m_tags.end();
        must(module->getProcess() == nullptr || filed, "no module refers to a removed process");
    }
    ZUL const copy(m_zul);
    must(copy.getTotalTagCount() == m_zul.getTotalTagCount(), "a copy has all tags");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    keepOutputQuiet();
    constexpr std::size_t enough = 600; // the plain search is slow on purpose
    Input input(data, std::min(size, enough));
    Edited edited;
    while (!input.empty()) {
        edited.step(input);
    }
    edited.compare();
    return 0;
}
