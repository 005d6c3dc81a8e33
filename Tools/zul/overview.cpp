#include "overview.h"

#include "seeded_hash.h"
#include "tag_fields.h"
#include "zullib.h"

#include <string>
#include <unordered_map>

namespace {

constexpr std::string_view containerIdName = "__ZUL_ID__";

/// The name of the user info that holds the identifier of the configuration with @p index.
std::string identifierName(std::uint32_t index)
{
    ZUL zul;
    ZUL_multi_data configuration(&zul);
    configuration.setIndex(index);
    configuration.generateId(true);
    return static_cast<ZUL_user_info const*>(zul.getTagAt(ZUL_user_info::tag_id, 0))->getInfo();
}

std::uint64_t sizeOf(TagFields const& fields, std::string_view name)
{
    TagField const* const field = fields.find(name);
    return field == nullptr ? 0 : field->width;
}

class OverviewMaker {
public:
    explicit OverviewMaker(Overview& overview) : m_overview(overview) {}

    void tag(WalkedTag const& tag)
    {
        ++m_overview.counts[tag.id];
        TagFields const fields(tag);
        switch (tag.id) {
        case ZUL_author::tag_id:
            return keepFirst(tag.id, m_overview.author, fields.text("author"));
        case ZUL_design_name::tag_id:
            return keepFirst(tag.id, m_overview.name, fields.text("name"));
        case ZUL_design_version::tag_id:
            m_overview.version = fields.text("version");
            return;
        case ZUL_design_version_nr::tag_id:
            return versionNumber(fields);
        case ZUL_destination::tag_id:
            m_destinations[fields.word("index")] = {fields.word("board"), fields.word("revision")};
            return;
        case ZUL_multi_data::tag_id:
            return configuration(fields);
        case ZUL_dll::tag_id:
            m_overview.libraries.push_back({fields.text("name"), fields.word("system"),
                                            fields.word("compressed") != 0, sizeOf(fields, "library")});
            return;
        case ZUL_process::tag_id:
            m_overview.processes.push_back(
                {fields.word("process id"), fields.text("name"), fields.word("clock")});
            return;
        case ZUL_user_info::tag_id:
            m_infos.try_emplace(fields.text("info"), fields.text("text value"));
            return;
        default:
            return;
        }
    }

    /// After the last tag: identifiers may lie anywhere.
    void end()
    {
        m_overview.id = info(containerIdName);
        for (Configuration& each : m_overview.configurations) {
            each.id = m_infos.empty() ? std::string_view() : info(identifierName(each.index));
        }
    }

private:
    struct Destination {
        unsigned board;
        unsigned revision;
    };

    void keepFirst(std::uint32_t id, std::string_view& kept, std::string_view text) const
    {
        if (m_overview.counts[id] == 1) {
            kept = text;
        }
    }

    void versionNumber(TagFields const& fields)
    {
        VersionNumber const number{fields.word("index"), fields.word("version"), fields.word("revision")};
        for (VersionNumber& each : m_overview.versionNumbers) { // 256 at most
            if (each.index == number.index) {
                each = number;
                return;
            }
        }
        m_overview.versionNumbers.push_back(number);
    }

    void configuration(TagFields const& fields)
    {
        Configuration made;
        made.index = fields.word("config index");
        made.fpgaType = fields.word("fpga type");
        made.bytes = sizeOf(fields, "bitstream");
        if (auto const found = m_destinations.find(made.index); found != m_destinations.end()) {
            made.isBound = true;
            made.board = found->second.board;
            made.revision = found->second.revision;
        }
        m_overview.configurations.push_back(made);
    }

    std::string_view info(std::string_view name) const
    {
        auto const found = m_infos.find(name);
        return found == m_infos.end() ? std::string_view() : found->second;
    }

    Overview& m_overview;
    std::unordered_map<std::uint64_t, Destination, SeededHash> m_destinations; // the last one of an index
    std::unordered_map<std::string_view, std::string_view, SeededHash> m_infos;
};

} // namespace

Overview::Overview(Walk const& walk)
{
    OverviewMaker maker(*this);
    for (WalkedTag const& tag : walk.tags) {
        maker.tag(tag);
    }
    maker.end();
}

std::size_t Overview::count(std::vector<std::uint32_t> const& ids) const
{
    std::size_t sum = 0;
    for (std::uint32_t const each : ids) {
        auto const found = counts.find(each);
        sum += found == counts.end() ? 0 : found->second;
    }
    return sum;
}

std::vector<Counter> const& counters()
{
    // clang-format off
    static std::vector<Counter> const all{
        {"modules",           "module",                 "modules",                 {ZUL_module::tag_id}},
        {"parameters",        "parameter",              "parameters",              {ZUL_param::tag_id}},
        {"parameterLinks",    "parameter link",         "parameter links",         {ZUL_param_link::tag_id}},
        {"channels",          "channel",                "channels",                {ZUL_channel_param::tag_id}},
        {"cameraChannels",    "camera channel",         "camera channels",         {ZUL_camparam::tag_id}},
        {"dmaChannels",       "DMA channel",            "DMA channels",            {ZUL_dma_param::tag_id}},
        {"registers",         "register",               "registers",               {ZUL_register::old_tag_id, ZUL_register::new_tag_id}},
        {"registerLinks",     "register link",          "register links",          {ZUL_register_link::tag_id}},
        {"dmaRegisters",      "DMA register",           "DMA registers",           {ZUL_dmacnt_register::tag_id, ZUL_dmatag_register::tag_id}},
        {"interruptRegisters","interrupt register tag", "interrupt register tags", {ZUL_intvectorreg::tag_id, ZUL_localintreg::tag_id}},
        {"queues",            "interrupt queue",        "interrupt queues",        {ZUL_usrintqueue_read::tag_id, ZUL_usrintqueue_write::tag_id}},
        {"events",            "event",                  "events",                  {ZUL_event::tag_id}},
        {"userInfos",         "user info",              "user infos",              {ZUL_user_info::tag_id}},
    };
    // clang-format on
    return all;
}
