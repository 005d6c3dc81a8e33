#include "format.h"

#include "content.h"
#include "design_generated.h"

#include <algorithm>
#include <stdexcept>

namespace {

using namespace field::flat;

std::vector<std::uint8_t> payload(Content::Payload bytes)
{
    auto const* const first = reinterpret_cast<std::uint8_t const*>(bytes.data());
    return {first, first + bytes.size()};
}

/// Appends a table and hands it out to be filled.
template <class Table>
Table& added(std::vector<std::unique_ptr<Table>>& tables)
{
    return *tables.emplace_back(std::make_unique<Table>());
}

void writeModules(Content const& content, DesignT& design)
{
    for (auto const& from : content.processes) {
        ProcessT& to = added(design.processes);
        to.id = from.id;
        to.name = from.name;
        to.clock = from.clock;
    }
    for (auto const& from : content.modules) {
        ModuleT& to = added(design.modules);
        to.index = from.index;
        to.process = from.process;
        to.type = from.type;
        to.name = from.name;
        to.full_name = from.fullName;
        for (auto const& parameter : from.parameters) {
            ParameterT& last = added(to.parameters);
            last.name = parameter.name;
            last.value = parameter.value;
            last.type = parameter.type;
            last.flags = parameter.flags;
        }
    }
    for (auto const& from : content.cameras) {
        CameraT& to = added(design.cameras);
        to.channel = from.channel;
        to.module_ = from.module;
    }
}

void writeRegisters(Content const& content, DesignT& design)
{
    std::uint32_t number = 0;
    for (auto const& from : content.registers) {
        RegisterT& to = added(design.registers);
        to.name = from.name;
        to.number = ++number;
        to.address = from.address;
        to.value = from.value;
        to.msb = from.msb;
        to.lsb = from.lsb;
        to.access = from.access;
        to.read_only = from.readOnly;
        to.old = from.old;
    }
    std::sort(design.registers.begin(), design.registers.end(),
              [](auto const& a, auto const& b) { return a->name < b->name; });
    for (auto const& from : content.links) {
        LinkT& to = added(design.links);
        to.alias = from.alias;
        to.target = from.target;
        to.access = from.access;
        to.read_only = from.readOnly;
    }
    for (auto const& from : content.events) {
        EventT& to = added(design.events);
        to.name = from.name;
        to.register_name = from.registerName;
        to.queue = from.queue;
        to.bit = from.bit;
        to.data_length = from.dataLength;
    }
}

void writePayloads(Content const& content, DesignT& design)
{
    for (auto const& from : content.userInfos) {
        UserInfoT& to = added(design.user_infos);
        to.name = from.name;
        to.number = from.number;
        to.text = from.text;
    }
    for (auto const& from : content.libraries) {
        LibraryT& to = added(design.libraries);
        to.name = from.name;
        to.system = from.system;
        to.compressed = from.compressed;
        to.content = payload(from.bytes);
    }
    for (auto const& from : content.configurations) {
        ConfigurationT& to = added(design.configurations);
        to.index = from.index;
        to.fpga_type = from.fpgaType;
        to.board = from.board;
        to.revision = from.revision;
        to.bitstream = payload(from.bitstream);
    }
}

Stored packed(DesignT const& design)
{
    flatbuffers::FlatBufferBuilder builder;
    builder.Finish(Design::Pack(builder, &design));
    return Stored(builder.Release());
}

/// The bytes as they are, after they have been verified.
class FlatDesign : public OpenDesign {
public:
    explicit FlatDesign(std::span<std::byte const> bytes)
    {
        auto const* const buffer = reinterpret_cast<std::uint8_t const*>(bytes.data());
        constexpr flatbuffers::uoffset_t depth = 64;
        // No more tables than bytes can hold; what is usual stops at a million.
        auto const tables = static_cast<flatbuffers::uoffset_t>(bytes.size() / 4);
        flatbuffers::Verifier verifier(buffer, bytes.size(), depth, tables);
        if (!VerifyDesignBuffer(verifier)) {
            throw std::runtime_error("the buffer is damaged");
        }
        m_design = GetDesign(buffer);
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (Register const* const found = m_design->registers()->LookupByKey(name.c_str())) {
                all.add(found->address());
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (Module const* const module : *m_design->modules()) {
            for (Parameter const* const parameter : *module->parameters()) {
                walked.add(parameter->value(), *parameter->name()->c_str());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        std::vector<std::span<std::byte const>> all;
        for (Configuration const* const configuration : *m_design->configurations()) {
            auto const& bitstream = *configuration->bitstream();
            all.push_back(std::as_bytes(std::span(bitstream.data(), bitstream.size())));
        }
        return all;
    }

    // What has been opened takes no more than other numbers in place: for a change, it is unpacked and packed.
    Stored save() override
    {
        DesignT design;
        m_design->UnPackTo(&design);
        return packed(design);
    }

private:
    Design const* m_design;
};

class FlatBuffers : public Format {
    std::string name() const override { return "FlatBuffers"; }

    Stored write(Content const& content, std::span<std::byte const>) const override
    {
        DesignT design;
        writeModules(content, design);
        writeRegisters(content, design);
        writePayloads(content, design);
        return packed(design);
    }

    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<FlatDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> flatBuffers()
{
    return std::make_unique<FlatBuffers>();
}
