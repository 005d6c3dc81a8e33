#include "tag_fields.h"
#include "text_output.h"
#include "walker.h"
#include "zullib.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// One line about the tags of an id. {field} stands for the field's text, number or size in bytes, {field#} for the
/// number in hexadecimal; a field that the tag does not have is left out.
struct SummaryPattern {
    std::uint32_t id;
    std::string_view pattern;
};

// clang-format off
constexpr std::array summaryPatterns{
    SummaryPattern{ZUL_comment::tag_id,           "comment '{comment}'"},
    SummaryPattern{ZUL_author::tag_id,            "author '{author}'"},
    SummaryPattern{ZUL_fixed_fpga_info::tag_id,   "fixed FPGA info {index}: version {version}.{revision}"},
    SummaryPattern{ZUL_destination::tag_id,       "destination of configuration {index}: board {board}, revision {revision}"},
    SummaryPattern{ZUL_multi_data::tag_id,        "configuration {config index}: FPGA type {fpga type#}, {bitstream} bytes"},
    SummaryPattern{ZUL_register::old_tag_id,      "register '{name}' at {address#}"},
    SummaryPattern{ZUL_register_link::tag_id,     "register link '{alias}' to '{target}'"},
    SummaryPattern{ZUL_register::new_tag_id,      "register '{name}' at {address#}"},
    SummaryPattern{ZUL_dmacnt_register::tag_id,   "DMA count register of channel {channel} at {address#}"},
    SummaryPattern{ZUL_intvectorreg::tag_id,      "interrupt vector registers at {base address#}, {ack address#}, {start address#}"},
    SummaryPattern{ZUL_dmatag_register::tag_id,   "DMA tag register of channel {channel} at {address#}"},
    SummaryPattern{ZUL_localintreg::tag_id,       "local interrupt register at {address#}"},
    SummaryPattern{ZUL_usrintqueue_read::tag_id,  "read queue {queue number} at {address#}"},
    SummaryPattern{ZUL_usrintqueue_write::tag_id, "write queue {queue number} at {address#}"},
    SummaryPattern{ZUL_dll::tag_id,               "library '{name}' for system {system}, {library} bytes"},
    SummaryPattern{ZUL_design_name::tag_id,       "design name '{name}'"},
    SummaryPattern{ZUL_design_version::tag_id,    "design version '{version}'"},
    SummaryPattern{ZUL_design_version_nr::tag_id, "design version number {index}: {version}.{revision}"},
    SummaryPattern{ZUL_event::tag_id,             "event '{name}' of register '{register name}'"},
    SummaryPattern{ZUL_module::tag_id,            "module {module index} '{full name}' of type '{type}', process {process id}"},
    SummaryPattern{ZUL_process::tag_id,           "process {process id} '{name}'"},
    SummaryPattern{ZUL_user_info::tag_id,         "user info '{info}' = '{integer value}{text value}'"},
    SummaryPattern{ZUL_param::tag_id,             "parameter '{name}' of module {module index}, type {type}"},
    SummaryPattern{ZUL_channel_param::tag_id,     "channel '{name}' of module {module index}"},
    SummaryPattern{ZUL_dma_param::tag_id,         "DMA channel {dma channel} of module {module index}"},
    SummaryPattern{ZUL_camparam::tag_id,          "camera channel {camera channel} of module {module index}"},
    SummaryPattern{ZUL_param_link::tag_id,        "parameter link from '{source name}' of module {source module index} "
                                                  "to '{destination name}' of '{destination module name}'"},
    SummaryPattern{ZUL_multi_head::tag_id,        "container head"},
};
// clang-format on

std::string shown(TagField const& field)
{
    switch (field.kind) {
    case FieldKind::Text:
    case FieldKind::RegisterReference:
        return field.text();
    case FieldKind::Bytes:
        return std::to_string(field.bytes.size());
    case FieldKind::Signed:
        return std::to_string(field.signedNumber());
    default:
        return std::to_string(field.number());
    }
}

/// What stands for @p place, the text between the braces of a pattern.
std::string filled(TagFields const& fields, std::string_view place)
{
    bool const hex = place.ends_with('#');
    std::string_view const name = hex ? place.substr(0, place.size() - 1) : place;
    auto const field = std::find_if(fields.all().begin(), fields.all().end(),
                                    [name](TagField const& each) { return each.name == name; });
    if (field == fields.all().end()) {
        return "";
    }
    if (field->kind != FieldKind::Bytes && field->bytes.size() < field->width) {
        return "?";
    }
    return hex ? asHex(field->number()) : shown(*field);
}

std::string filledPattern(std::string_view pattern, TagFields const& fields)
{
    std::string text;
    for (std::size_t brace = pattern.find('{'); brace != std::string_view::npos; brace = pattern.find('{')) {
        std::size_t const end = pattern.find('}', brace);
        text += pattern.substr(0, brace);
        text += filled(fields, pattern.substr(brace + 1, end - brace - 1));
        pattern.remove_prefix(end + 1);
    }
    return text.append(pattern);
}

} // namespace

std::string summaryOf(WalkedTag const& tag)
{
    auto const found = std::find_if(summaryPatterns.begin(), summaryPatterns.end(),
                                    [&tag](SummaryPattern const& pattern) { return pattern.id == tag.id; });
    if (tag.kind == nullptr || found == summaryPatterns.end()) {
        return "unknown tag " + asHex(tag.id) + ", " + std::to_string(tag.length) + " bytes";
    }
    return filledPattern(found->pattern, TagFields(tag));
}
