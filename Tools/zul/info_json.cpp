#include "info_json.h"

#include "fpga_types.h"
#include "input.h"
#include "overview.h"
#include "quiet_load.h"

namespace {

Json configurationJson(Configuration const& configuration)
{
    char const* const part = FPGAtype2RBTstring(static_cast<int>(configuration.fpgaType));
    Json json{{"index", configuration.index},
              {"fpgaType", configuration.fpgaType},
              {"part", part == nullptr ? Json(nullptr) : Json(part)},
              {"bytes", configuration.bytes},
              {"id", jsonText(configuration.id)}};
    if (configuration.isBound) {
        json["board"] = configuration.board;
        json["revision"] = configuration.revision;
    }
    return json;
}

Json libraryJson(Library const& library)
{
    return {{"name", jsonText(library.name)},
            {"system", library.system},
            {"compressed", library.isCompressed},
            {"bytes", library.bytes}};
}

Json processJson(Process const& process)
{
    return {{"id", process.id}, {"name", jsonText(process.name)}, {"clock", process.clock}};
}

Json versionNumberJson(VersionNumber const& number)
{
    return {{"index", number.index}, {"version", number.version}, {"revision", number.revision}};
}

template <class Item>
Json listJson(std::vector<Item> const& items, Json (*jsonOf)(Item const&))
{
    Json list = Json::array();
    for (Item const& item : items) {
        list.push_back(jsonOf(item));
    }
    return list;
}

Json countsJson(Overview const& overview)
{
    Json counts = Json::object();
    for (Counter const& counter : counters()) {
        counts[counter.jsonName] = overview.count(counter.ids);
    }
    return counts;
}

} // namespace

Json designJson(ContainerFile const& container, Overview const& overview, LoadOutcome const& load)
{
    return {{"file", jsonText(container.file.name())},
            {"size", container.walk.file.size()},
            {"tags", container.walk.tags.size()},
            {"name", jsonText(overview.name)},
            {"version", jsonText(overview.version)},
            {"versionNumbers", listJson(overview.versionNumbers, versionNumberJson)},
            {"author", jsonText(overview.author)},
            {"id", jsonText(overview.id)},
            {"load",
             {{"result", load.result},
              {"exception", load.exceptionClass},
              {"message", jsonText(load.message)},
              {"details", jsonText(load.details)},
              {"printed", jsonText(load.printed)}}},
            {"configurations", listJson(overview.configurations, configurationJson)},
            {"libraries", listJson(overview.libraries, libraryJson)},
            {"processes", listJson(overview.processes, processJson)},
            {"counts", countsJson(overview)}};
}
