#include "damage.h"
#include "input.h"
#include "json_output.h"
#include "register_map.h"
#include "text_output.h"
#include "verb.h"
#include "zullib.h"

#include <ostream>

namespace {

char const* layoutOf(MappedRegister const& reg)
{
    return reg.tag->id == ZUL_register::old_tag_id ? "older" : "newer";
}

std::string joined(std::vector<std::string_view> const& texts)
{
    std::string result;
    for (std::string_view const text : texts) {
        result += (result.empty() ? "" : ", ") + std::string(text);
    }
    return result;
}

void writeTables(Session& session, RegisterMap const& map)
{
    Table registers({"name", "address", "bits", "access", "writable", "value", "layout", "aliases"});
    for (MappedRegister const& reg : map.registers) {
        registers.row({std::string(reg.name), asHex(reg.address),
                       std::to_string(reg.msb) + ":" + std::to_string(reg.lsb), std::to_string(reg.access),
                       reg.writable ? "yes" : "no", asHex(reg.value), layoutOf(reg), joined(reg.aliases)});
    }
    registers.print(session);
    Table lost({"link", "target", "leads to"});
    for (MappedLink const& link : map.links) {
        if (link.end != MappedLink::End::Register) {
            lost.row({std::string(link.alias), std::string(link.target), nameOf(link.end)});
        }
    }
    if (!lost.empty()) {
        session.out << '\n';
        lost.print(session);
    }
}

Json registerJson(MappedRegister const& reg)
{
    Json aliases = Json::array();
    for (std::string_view const alias : reg.aliases) {
        aliases.push_back(jsonText(alias));
    }
    return {{"tag", reg.tag->index},    {"name", jsonText(reg.name)},
            {"address", reg.address},   {"msb", reg.msb},
            {"lsb", reg.lsb},           {"access", reg.access},
            {"writable", reg.writable}, {"value", reg.value},
            {"layout", layoutOf(reg)},  {"aliases", aliases}};
}

Json linkJson(RegisterMap const& map, MappedLink const& link)
{
    Json json{{"tag", link.tag->index},
              {"alias", jsonText(link.alias)},
              {"target", jsonText(link.target)},
              {"leadsTo", nameOf(link.end)}};
    if (link.end == MappedLink::End::Register) {
        json["register"] = jsonText(map.registers[link.reg].name);
    }
    return json;
}

void writeJsonMap(Session& session, std::string const& fileName, RegisterMap const& map)
{
    JsonObjectWriter json(session.out);
    json.member("schema", "zul-regs");
    json.member("version", 1);
    json.member("file", jsonText(fileName));
    json.beginList("registers");
    for (MappedRegister const& reg : map.registers) {
        json.element(registerJson(reg));
    }
    json.endList();
    json.beginList("links");
    for (MappedLink const& link : map.links) {
        json.element(linkJson(map, link));
    }
    json.endList();
}

void showRegisters(Session& session, FileOptions const& options)
{
    ContainerFile const container(session, options.file);
    RegisterMap const map(container.walk);
    if (options.json) {
        writeJsonMap(session, container.file.name(), map);
    } else {
        writeTables(session, map);
    }
    reportDamage(session, container.file.name(), container.walk);
}

} // namespace

void addRegsVerb(CLI::App& app, Session& session)
{
    auto const options = std::make_shared<FileOptions>();
    addFileVerb(app, "regs",
                "Show the register map: name, address, bits (msb:lsb), access, value, layout, aliases",
                "zul regs design.zul", *options)
        .does([&session, options] { showRegisters(session, *options); });
}
