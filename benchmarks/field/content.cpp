#include "content.h"

#include "zullib.h"

#include <stdexcept>

namespace {

std::string text(char const* characters)
{
    return characters == nullptr ? "" : characters;
}

Content::Payload payload(void const* data, unsigned long length)
{
    return {static_cast<std::byte const*>(data), length};
}

template <class Tag, class Visit>
void forEach(ZUL const& zul, Visit visit, std::uint32_t id)
{
    for (unsigned int i = 0; i < zul.getTagCount(id); ++i) {
        visit(static_cast<Tag const&>(*zul.getTagAt(id, i)));
    }
}

template <class Tag, class Visit>
void forEach(ZUL const& zul, Visit visit)
{
    forEach<Tag>(zul, visit, Tag::tag_id);
}

void readModules(ZUL const& zul, Content& content)
{
    forEach<ZUL_process>(zul, [&](ZUL_process const& process) {
        content.processes.push_back({process.getId(), text(process.getName()), process.getClock()});
    });
    forEach<ZUL_module>(zul, [&](ZUL_module const& module) {
        content.modules.push_back({static_cast<std::uint32_t>(module.getIndex()),
                                   module.getProcessId(),
                                   text(module.getType()),
                                   text(module.getInstance()),
                                   text(module.getFullName()),
                                   {}});
    });
    // The modules of this content are numbered as they follow each other.
    forEach<ZUL_param>(zul, [&](ZUL_param const& param) {
        content.modules.at(static_cast<std::size_t>(param.getModuleIndex()))
            .parameters.push_back(
                {text(param.getName()), param.getValue(), param.getType(), param.getFlags()});
    });
    forEach<ZUL_camparam>(zul, [&](ZUL_camparam const& camera) {
        content.cameras.push_back({camera.getChannel(), camera.getModuleIndex()});
    });
}

void readRegisters(ZUL const& zul, Content& content)
{
    auto const add = [&](ZUL_register const& r) {
        content.registers.push_back({text(r.getName()), r.getAddress(), r.getCache(), r.getMSB(), r.getLSB(),
                                     r.getType(), r.isReadOnly(), r.getTagId() == ZUL_register::old_tag_id});
    };
    forEach<ZUL_register>(zul, add, ZUL_register::old_tag_id);
    forEach<ZUL_register>(zul, add, ZUL_register::new_tag_id);
    forEach<ZUL_register_link>(zul, [&](ZUL_register_link const& link) {
        content.links.push_back(
            {text(link.getAlias()), text(link.getTarget()), link.getType(), link.isReadOnly()});
    });
    forEach<ZUL_event>(zul, [&](ZUL_event const& event) {
        content.events.push_back({text(event.getName()), text(event.getRegisterName()), event.getUiq(),
                                  event.getBit(), event.getDataLen()});
    });
}

void readPayloads(ZUL const& zul, Content& content)
{
    forEach<ZUL_user_info>(zul, [&](ZUL_user_info const& info) {
        content.userInfos.push_back({text(info.getInfo()), info.getInfoValue(), text(info.getInfoString())});
    });
    forEach<ZUL_dll>(zul, [&](ZUL_dll const& library) {
        content.libraries.push_back({text(library.getName()), library.getSystem(), library.isCompressed(),
                                     payload(library.getLib(), library.getLibLength())});
    });
    for (unsigned int i = 0; i < zul.getConfigCount(); ++i) {
        ZUL_multi_data const& config = *zul.getConfigAt(i);
        content.configurations.push_back({config.getIndex(), config.getFpgaType(), config.getBoardType(),
                                          config.getBoardRevision(),
                                          payload(config.getData(), config.getLength())});
    }
}

} // namespace

Content contentOf(std::span<std::byte const> container)
{
    ZUL zul;
    if (zul.Load(container.data(), container.size()) != 0) {
        throw std::runtime_error("the container does not load");
    }
    Content content;
    readModules(zul, content);
    readRegisters(zul, content);
    readPayloads(zul, content);
    return content;
}
