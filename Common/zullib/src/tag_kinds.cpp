#include "tag_kinds.h"

#include "tag_blocks.h"
#include "zullib.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

/// What the constructor of a tag takes behind the container, for a tag that is about to be loaded or assigned.
template <class Tag>
constexpr std::tuple<> blankArguments{};
template <>
constexpr std::tuple blankArguments<ZUL_multi_head>{0U, 0U};
template <>
constexpr std::tuple blankArguments<ZUL_fixed_fpga_info>{std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0}};
template <>
constexpr std::tuple blankArguments<ZUL_destination>{std::uint8_t{0}, std::uint16_t{0}, std::uint16_t{0}};
template <>
constexpr std::tuple blankArguments<ZUL_register>{nullptr, false};
template <>
constexpr std::tuple blankArguments<ZUL_register_link>{nullptr, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_dmacnt_register>{0U, 0U, 0U};
template <>
constexpr std::tuple blankArguments<ZUL_event>{std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0}};
template <>
constexpr std::tuple blankArguments<ZUL_module>{nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_process>{0U, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_user_info>{nullptr, 0U};
template <>
constexpr std::tuple blankArguments<ZUL_param>{QL_ParamType{1}, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_channel_param>{false, nullptr, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_dma_param>{0U, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_camparam>{0U, nullptr};
template <>
constexpr std::tuple blankArguments<ZUL_param_link>{nullptr, nullptr};

template <class Tag>
std::unique_ptr<Tag> blank(ZUL* parent)
{
    return std::apply([parent](auto... arguments) { return std::make_unique<Tag>(parent, arguments...); },
                      blankArguments<Tag>);
}

template <class Tag>
std::unique_ptr<LaidOutTag> create(ZUL* parent)
{
    return blank<Tag>(parent);
}

template <class Tag>
std::unique_ptr<LaidOutTag> createIn(TagBlocks& blocks, ZUL* parent)
{
    return std::apply([&blocks, parent](auto... arguments) { return blocks.make<Tag>(parent, arguments...); },
                      blankArguments<Tag>);
}

template <>
std::unique_ptr<LaidOutTag> createIn<ZUL_destination>(TagBlocks&, ZUL* parent)
{
    return create<ZUL_destination>(
        parent); // removeDestination hands it to the caller, who may keep it longer
}

/// Makes @p to equal to @p from.
template <class Tag>
void assign(Tag& to, Tag const& from)
{
    to = from;
}

/// Assignment would look for the destination in the target's container.
void assign(ZUL_multi_data& to, ZUL_multi_data const& from)
{
    to.copyFieldsFrom(from);
    to.setDestination(from.getDestination());
    to.setIndex(from.getIndex());
}

/// Assignment would look for the register in the target's container.
void assign(ZUL_event& to, ZUL_event const& from)
{
    to.copyFieldsFrom(from);
    to.setRegister(from.getRegister());
}

template <class Tag>
std::unique_ptr<LaidOutTag> copy(ZUL* parent, ZUL_tag const& tag)
{
    auto const* const source = dynamic_cast<Tag const*>(&tag);
    if (source == nullptr) {
        return nullptr;
    }
    auto made = blank<Tag>(parent);
    assign(*made, *source);
    return made;
}

template <class Tag>
consteval TagKind kind(char const* className, char const* meaning)
{
    return {Tag::tag_id, className, meaning, create<Tag>, createIn<Tag>, copy<Tag>};
}

// clang-format off
constexpr std::array kinds{
    kind<ZUL_comment>           ("ZUL_comment",           "comment"),
    kind<ZUL_author>            ("ZUL_author",            "author"),
    kind<ZUL_fixed_fpga_info>   ("ZUL_fixed_fpga_info",   "fixed FPGA info"),
    kind<ZUL_destination>       ("ZUL_destination",       "destination"),
    kind<ZUL_multi_data>        ("ZUL_multi_data",        "configuration data"),
    TagKind{ZUL_register::old_tag_id, "ZUL_register",     "register, older layout",       create<ZUL_register>, createIn<ZUL_register>, copy<ZUL_register>},
    kind<ZUL_register_link>     ("ZUL_register_link",     "register link"),
    TagKind{ZUL_register::new_tag_id, "ZUL_register",     "register, newer layout",       create<ZUL_register>, createIn<ZUL_register>, copy<ZUL_register>},
    kind<ZUL_dmacnt_register>   ("ZUL_dmacnt_register",   "DMA count register"),
    kind<ZUL_intvectorreg>      ("ZUL_intvectorreg",      "interrupt vector register"),
    kind<ZUL_dmatag_register>   ("ZUL_dmatag_register",   "DMA tag register"),
    kind<ZUL_localintreg>       ("ZUL_localintreg",       "local interrupt register"),
    kind<ZUL_usrintqueue_read>  ("ZUL_usrintqueue_read",  "user interrupt queue, read"),
    kind<ZUL_usrintqueue_write> ("ZUL_usrintqueue_write", "user interrupt queue, write"),
    kind<ZUL_dll>               ("ZUL_dll",               "library"),
    kind<ZUL_design_name>       ("ZUL_design_name",       "design name"),
    kind<ZUL_design_version>    ("ZUL_design_version",    "design version"),
    kind<ZUL_design_version_nr> ("ZUL_design_version_nr", "design version number"),
    kind<ZUL_event>             ("ZUL_event",             "event"),
    kind<ZUL_module>            ("ZUL_module",            "module"),
    kind<ZUL_process>           ("ZUL_process",           "process"),
    kind<ZUL_user_info>         ("ZUL_user_info",         "user info"),
    kind<ZUL_param>             ("ZUL_param",             "parameter"),
    kind<ZUL_channel_param>     ("ZUL_channel_param",     "channel parameter"),
    kind<ZUL_dma_param>         ("ZUL_dma_param",         "DMA parameter"),
    kind<ZUL_camparam>          ("ZUL_camparam",          "camera parameter"),
    kind<ZUL_param_link>        ("ZUL_param_link",        "parameter link"),
    kind<ZUL_multi_head>        ("ZUL_multi_head",        "container head"),
};
// clang-format on

static_assert(std::ranges::is_sorted(kinds, {}, &TagKind::id));

// Each tag that is read asks for its kind: one multiplication finds the only kind that it can be.
constexpr unsigned placeBits = 6;
constexpr std::uint32_t placeOf(std::uint32_t id)
{
    return id * 0xCA357569 >> (32U - placeBits);
}

constexpr std::array kindPlaces = [] {
    std::array<std::uint8_t, 1U << placeBits> places{};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        places[placeOf(kinds[i].id)] = static_cast<std::uint8_t>(i);
    }
    return places;
}();

static_assert(std::all_of(kinds.begin(), kinds.end(),
                          [](TagKind const& kind) {
                              return kinds[kindPlaces[placeOf(kind.id)]].id == kind.id;
                          }),
              "two kinds share a place: take another multiplier");

} // namespace

std::span<TagKind const> tagKinds() noexcept
{
    return kinds;
}

TagKind const* findTagKind(std::uint32_t id) noexcept
{
    std::uint8_t const place = kindPlaces[placeOf(id)];
    return kinds[place].id == id ? &kinds[place] : nullptr;
}
