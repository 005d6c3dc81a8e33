#include "format.h"

#include "content.h"
#include "design.pb.h"

#include <limits>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

namespace {

void setPayload(std::string& to, Content::Payload from)
{
    to.assign(reinterpret_cast<char const*>(from.data()), from.size());
}

void writeModules(Content const& content, field::proto::Design& design)
{
    for (auto const& from : content.processes) {
        field::proto::Process& to = *design.add_processes();
        to.set_id(from.id);
        to.set_name(from.name);
        to.set_clock(from.clock);
    }
    for (auto const& from : content.modules) {
        field::proto::Module& to = *design.add_modules();
        to.set_index(from.index);
        to.set_process(from.process);
        to.set_type(from.type);
        to.set_name(from.name);
        to.set_full_name(from.fullName);
        for (auto const& parameter : from.parameters) {
            field::proto::Parameter& added = *to.add_parameters();
            added.set_name(parameter.name);
            added.set_value(parameter.value);
            added.set_type(parameter.type);
            added.set_flags(parameter.flags);
        }
    }
    for (auto const& from : content.cameras) {
        field::proto::Camera& to = *design.add_cameras();
        to.set_channel(from.channel);
        to.set_module(from.module);
    }
}

void writeRegisters(Content const& content, field::proto::Design& design)
{
    for (auto const& from : content.registers) {
        field::proto::Register& to = *design.add_registers();
        to.set_name(from.name);
        to.set_address(from.address);
        to.set_value(from.value);
        to.set_msb(from.msb);
        to.set_lsb(from.lsb);
        to.set_access(from.access);
        to.set_read_only(from.readOnly);
        to.set_old(from.old);
    }
    for (auto const& from : content.links) {
        field::proto::Link& to = *design.add_links();
        to.set_alias(from.alias);
        to.set_target(from.target);
        to.set_access(from.access);
        to.set_read_only(from.readOnly);
    }
    for (auto const& from : content.events) {
        field::proto::Event& to = *design.add_events();
        to.set_name(from.name);
        to.set_register_name(from.registerName);
        to.set_queue(from.queue);
        to.set_bit(from.bit);
        to.set_data_length(from.dataLength);
    }
}

void writePayloads(Content const& content, field::proto::Design& design)
{
    for (auto const& from : content.userInfos) {
        field::proto::UserInfo& to = *design.add_user_infos();
        to.set_name(from.name);
        to.set_number(from.number);
        to.set_text(from.text);
    }
    for (auto const& from : content.libraries) {
        field::proto::Library& to = *design.add_libraries();
        to.set_name(from.name);
        to.set_system(from.system);
        to.set_compressed(from.compressed);
        setPayload(*to.mutable_content(), from.bytes);
    }
    for (auto const& from : content.configurations) {
        field::proto::Configuration& to = *design.add_configurations();
        to.set_index(from.index);
        to.set_fpga_type(from.fpgaType);
        to.set_board(from.board);
        to.set_revision(from.revision);
        setPayload(*to.mutable_bitstream(), from.bitstream);
    }
}

/// A message that lies on the heap, or in an arena of its own.
class OwnedMessage {
public:
    explicit OwnedMessage(bool inArena)
    {
        if (inArena) {
            m_arena = std::make_unique<google::protobuf::Arena>();
            m_design = google::protobuf::Arena::CreateMessage<field::proto::Design>(m_arena.get());
        } else {
            m_onHeap = std::make_unique<field::proto::Design>();
            m_design = m_onHeap.get();
        }
    }
    field::proto::Design& operator*() const { return *m_design; }
    field::proto::Design* operator->() const { return m_design; }

private:
    std::unique_ptr<google::protobuf::Arena> m_arena;
    std::unique_ptr<field::proto::Design> m_onHeap;
    field::proto::Design* m_design;
};

class ProtobufDesign : public OpenDesign {
public:
    ProtobufDesign(std::span<std::byte const> bytes, bool inArena) : m_design(inArena)
    {
        if (bytes.size() > std::numeric_limits<int>::max() ||
            !m_design->ParseFromArray(bytes.data(), static_cast<int>(bytes.size()))) {
            throw std::runtime_error("the message does not parse");
        }
        m_registers.reserve(static_cast<std::size_t>(m_design->registers_size()));
        for (field::proto::Register const& r : m_design->registers()) {
            m_registers.emplace(r.name(), &r);
        }
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (auto const found = m_registers.find(name); found != m_registers.end()) {
                all.add(found->second->address());
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (field::proto::Module const& module : m_design->modules()) {
            for (field::proto::Parameter const& parameter : module.parameters()) {
                walked.add(parameter.value(), parameter.name().front());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        std::vector<std::span<std::byte const>> all;
        for (field::proto::Configuration const& configuration : m_design->configurations()) {
            all.push_back(std::as_bytes(std::span(configuration.bitstream())));
        }
        return all;
    }

    Stored save() override { return Stored(m_design->SerializeAsString()); }

private:
    OwnedMessage m_design;
    std::unordered_map<std::string_view, field::proto::Register const*> m_registers;
};

class Protobuf : public Format {
public:
    Protobuf(char const* name, bool inArena) : m_name(name), m_inArena(inArena) {}
    std::string name() const override { return m_name; }

    Stored write(Content const& content, std::span<std::byte const>) const override
    {
        field::proto::Design design;
        writeModules(content, design);
        writeRegisters(content, design);
        writePayloads(content, design);
        return Stored(design.SerializeAsString());
    }

    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<ProtobufDesign>(bytes, m_inArena);
    }

private:
    char const* m_name;
    bool m_inArena;
};

} // namespace

std::unique_ptr<Format> protobuf()
{
    return std::make_unique<Protobuf>("Protocol Buffers", false);
}

std::unique_ptr<Format> protobufArena()
{
    return std::make_unique<Protobuf>("Protocol Buffers, arena", true);
}
