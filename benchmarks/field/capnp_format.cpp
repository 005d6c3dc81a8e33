#include "format.h"

#include "content.h"
#include "design.capnp.h"

#include <capnp/message.h>
#include <capnp/serialize.h>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

namespace {

using namespace field::capn;

capnp::Data::Reader payload(Content::Payload bytes)
{
    return {reinterpret_cast<kj::byte const*>(bytes.data()), bytes.size()};
}

unsigned count(auto const& records)
{
    return static_cast<unsigned>(records.size());
}

void writeParameters(Content::Module const& from, Module::Builder to)
{
    auto parameters = to.initParameters(count(from.parameters));
    for (unsigned i = 0; i < count(from.parameters); ++i) {
        parameters[i].setName(from.parameters[i].name);
        parameters[i].setValue(from.parameters[i].value);
        parameters[i].setType(from.parameters[i].type);
        parameters[i].setFlags(from.parameters[i].flags);
    }
}

void writeModules(Content const& content, Design::Builder design)
{
    auto processes = design.initProcesses(count(content.processes));
    for (unsigned i = 0; i < count(content.processes); ++i) {
        processes[i].setId(content.processes[i].id);
        processes[i].setName(content.processes[i].name);
        processes[i].setClock(content.processes[i].clock);
    }
    auto modules = design.initModules(count(content.modules));
    for (unsigned i = 0; i < count(content.modules); ++i) {
        modules[i].setIndex(content.modules[i].index);
        modules[i].setProcess(content.modules[i].process);
        modules[i].setType(content.modules[i].type);
        modules[i].setName(content.modules[i].name);
        modules[i].setFullName(content.modules[i].fullName);
        writeParameters(content.modules[i], modules[i]);
    }
    auto cameras = design.initCameras(count(content.cameras));
    for (unsigned i = 0; i < count(content.cameras); ++i) {
        cameras[i].setChannel(content.cameras[i].channel);
        cameras[i].setModule(content.cameras[i].module);
    }
}

void writeRegisters(Content const& content, Design::Builder design)
{
    auto registers = design.initRegisters(count(content.registers));
    for (unsigned i = 0; i < count(content.registers); ++i) {
        Content::Register const& from = content.registers[i];
        registers[i].setName(from.name);
        registers[i].setAddress(from.address);
        registers[i].setValue(from.value);
        registers[i].setMsb(from.msb);
        registers[i].setLsb(from.lsb);
        registers[i].setAccess(from.access);
        registers[i].setReadOnly(from.readOnly);
        registers[i].setOld(from.old);
    }
    auto links = design.initLinks(count(content.links));
    for (unsigned i = 0; i < count(content.links); ++i) {
        links[i].setAlias(content.links[i].alias);
        links[i].setTarget(content.links[i].target);
        links[i].setAccess(content.links[i].access);
        links[i].setReadOnly(content.links[i].readOnly);
    }
    auto events = design.initEvents(count(content.events));
    for (unsigned i = 0; i < count(content.events); ++i) {
        events[i].setName(content.events[i].name);
        events[i].setRegisterName(content.events[i].registerName);
        events[i].setQueue(content.events[i].queue);
        events[i].setBit(content.events[i].bit);
        events[i].setDataLength(content.events[i].dataLength);
    }
}

void writePayloads(Content const& content, Design::Builder design)
{
    auto infos = design.initUserInfos(count(content.userInfos));
    for (unsigned i = 0; i < count(content.userInfos); ++i) {
        infos[i].setName(content.userInfos[i].name);
        infos[i].setNumber(content.userInfos[i].number);
        infos[i].setText(content.userInfos[i].text);
    }
    auto libraries = design.initLibraries(count(content.libraries));
    for (unsigned i = 0; i < count(content.libraries); ++i) {
        libraries[i].setName(content.libraries[i].name);
        libraries[i].setSystem(content.libraries[i].system);
        libraries[i].setCompressed(content.libraries[i].compressed);
        libraries[i].setContent(payload(content.libraries[i].bytes));
    }
    auto configurations = design.initConfigurations(count(content.configurations));
    for (unsigned i = 0; i < count(content.configurations); ++i) {
        Content::Configuration const& from = content.configurations[i];
        configurations[i].setIndex(from.index);
        configurations[i].setFpgaType(from.fpgaType);
        configurations[i].setBoard(from.board);
        configurations[i].setRevision(from.revision);
        configurations[i].setBitstream(payload(from.bitstream));
    }
}

Stored flattened(capnp::MessageBuilder& message)
{
    auto const words = std::make_shared<kj::Array<capnp::word>>(capnp::messageToFlatArray(message));
    auto const bytes = words->asBytes();
    return {words, std::as_bytes(std::span(bytes.begin(), bytes.size()))};
}

/// @throws std::runtime_error when the bytes do not end with a word
kj::ArrayPtr<capnp::word const> wordsOf(std::span<std::byte const> bytes)
{
    if (bytes.size() % sizeof(capnp::word) != 0) {
        throw std::runtime_error("the message ends within a word");
    }
    auto const* const first = static_cast<capnp::word const*>(static_cast<void const*>(bytes.data()));
    return {first, bytes.size() / sizeof(capnp::word)};
}

/// Every pointer is checked when it is followed; how much may be followed is limited to some walks over everything.
capnp::ReaderOptions severalWalks(std::span<std::byte const> bytes)
{
    capnp::ReaderOptions options;
    options.traversalLimitInWords += 16 * bytes.size() / sizeof(capnp::word);
    return options;
}

/// The bytes as they are, and a map from the names of the registers.
class CapnDesign : public OpenDesign {
public:
    explicit CapnDesign(std::span<std::byte const> bytes)
        : m_message(wordsOf(bytes), severalWalks(bytes)), m_design(m_message.getRoot<Design>())
    {
        auto const registers = m_design.getRegisters();
        m_registers.reserve(registers.size());
        for (auto const reg : registers) {
            auto const name = reg.getName();
            m_registers.emplace(std::string_view(name.begin(), name.size()), reg);
        }
    }

    // Its members' destructors promise nothing; a base class that has no say in that does.
    ~CapnDesign() noexcept override = default;

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (auto const found = m_registers.find(name); found != m_registers.end()) {
                all.add(found->second.getAddress());
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (auto const module : m_design.getModules()) {
            for (auto const parameter : module.getParameters()) {
                walked.add(parameter.getValue(), *parameter.getName().cStr());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        std::vector<std::span<std::byte const>> all;
        for (auto const configuration : m_design.getConfigurations()) {
            auto const bitstream = configuration.getBitstream();
            all.push_back(std::as_bytes(std::span(bitstream.begin(), bitstream.size())));
        }
        return all;
    }

    // What has been opened cannot be changed: for a change, it is copied into a builder.
    Stored save() override
    {
        capnp::MallocMessageBuilder message;
        message.setRoot(m_design);
        return flattened(message);
    }

private:
    capnp::FlatArrayMessageReader m_message;
    Design::Reader m_design;
    std::unordered_map<std::string_view, Register::Reader> m_registers;
};

class CapnProto : public Format {
    std::string name() const override { return "Cap'n Proto"; }

    Stored write(Content const& content, std::span<std::byte const>) const override
    {
        capnp::MallocMessageBuilder message;
        auto const design = message.initRoot<Design>();
        writeModules(content, design);
        writeRegisters(content, design);
        writePayloads(content, design);
        return flattened(message);
    }

    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<CapnDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> capnProto()
{
    return std::make_unique<CapnProto>();
}
