#include "format.h"

#include "base64.h"
#include "content.h"

#include <nlohmann/json.hpp>
#include <string_view>
#include <unordered_map>

namespace {

using nlohmann::json;

json modulesOf(Content const& content)
{
    json modules = json::array();
    for (auto const& from : content.modules) {
        json parameters = json::array();
        for (auto const& parameter : from.parameters) {
            parameters.push_back({{"name", parameter.name},
                                  {"value", parameter.value},
                                  {"type", parameter.type},
                                  {"flags", parameter.flags}});
        }
        modules.push_back({{"index", from.index},
                           {"process", from.process},
                           {"type", from.type},
                           {"name", from.name},
                           {"fullName", from.fullName},
                           {"parameters", std::move(parameters)}});
    }
    return modules;
}

json registersOf(Content const& content)
{
    json registers = json::array();
    for (auto const& from : content.registers) {
        registers.push_back({{"name", from.name},
                             {"address", from.address},
                             {"value", from.value},
                             {"msb", from.msb},
                             {"lsb", from.lsb},
                             {"access", from.access},
                             {"readOnly", from.readOnly},
                             {"old", from.old}});
    }
    return registers;
}

void addSmallRecords(Content const& content, json& design)
{
    for (auto const& from : content.processes) {
        design["processes"].push_back({{"id", from.id}, {"name", from.name}, {"clock", from.clock}});
    }
    for (auto const& from : content.links) {
        design["links"].push_back({{"alias", from.alias},
                                   {"target", from.target},
                                   {"access", from.access},
                                   {"readOnly", from.readOnly}});
    }
    for (auto const& from : content.events) {
        design["events"].push_back({{"name", from.name},
                                    {"register", from.registerName},
                                    {"queue", from.queue},
                                    {"bit", from.bit},
                                    {"dataLength", from.dataLength}});
    }
    for (auto const& from : content.userInfos) {
        design["userInfos"].push_back({{"name", from.name}, {"number", from.number}, {"text", from.text}});
    }
    for (auto const& from : content.cameras) {
        design["cameras"].push_back({{"channel", from.channel}, {"module", from.module}});
    }
}

void addPayloads(Content const& content, json& design)
{
    for (auto const& from : content.libraries) {
        design["libraries"].push_back({{"name", from.name},
                                       {"system", from.system},
                                       {"compressed", from.compressed},
                                       {"base64", toBase64(from.bytes)}});
    }
    for (auto const& from : content.configurations) {
        design["configurations"].push_back({{"index", from.index},
                                            {"fpgaType", from.fpgaType},
                                            {"board", from.board},
                                            {"revision", from.revision},
                                            {"base64", toBase64(from.bitstream)}});
    }
}

/// The tree that the text is parsed to, and a map from the names of the registers.
class JsonDesign : public OpenDesign {
public:
    explicit JsonDesign(std::span<std::byte const> bytes)
    {
        auto const* const text = reinterpret_cast<char const*>(bytes.data());
        m_design = json::parse(text, text + bytes.size());
        json const& registers = m_design.at("registers");
        m_registers.reserve(registers.size());
        for (json const& r : registers) {
            m_registers.emplace(r.at("name").get_ref<std::string const&>(), &r);
        }
    }

    LookedUp lookUp(std::span<std::string const> names) override
    {
        LookedUp all;
        for (std::string const& name : names) {
            if (auto const found = m_registers.find(name); found != m_registers.end()) {
                all.add(found->second->at("address").get<std::uint32_t>());
            }
        }
        return all;
    }

    Walked walk() override
    {
        Walked walked;
        for (json const& module : m_design.at("modules")) {
            for (json const& parameter : module.at("parameters")) {
                walked.add(parameter.at("value").get<std::uint64_t>(),
                           parameter.at("name").get_ref<std::string const&>().front());
            }
        }
        return walked;
    }

    std::vector<std::span<std::byte const>> bitstreams() override
    {
        m_bitstreams.clear();
        for (json const& configuration : m_design.at("configurations")) {
            m_bitstreams.push_back(fromBase64(configuration.at("base64").get_ref<std::string const&>()));
        }
        return {m_bitstreams.begin(), m_bitstreams.end()};
    }

    Stored save() override { return Stored(m_design.dump()); }

private:
    json m_design;
    std::unordered_map<std::string_view, json const*> m_registers;
    std::vector<std::vector<std::byte>> m_bitstreams;
};

class Json : public Format {
    std::string name() const override { return "JSON"; }

    Stored write(Content const& content, std::span<std::byte const>) const override
    {
        json design;
        design["modules"] = modulesOf(content);
        design["registers"] = registersOf(content);
        addSmallRecords(content, design);
        addPayloads(content, design);
        return Stored(design.dump());
    }

    std::unique_ptr<OpenDesign> open(std::span<std::byte const> bytes) const override
    {
        return std::make_unique<JsonDesign>(bytes);
    }
};

} // namespace

std::unique_ptr<Format> jsonText()
{
    return std::make_unique<Json>();
}
