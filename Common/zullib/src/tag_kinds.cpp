#include "tag_kinds.h"

#include "zullib.h"

#include <algorithm>
#include <array>

namespace {

template <class Tag>
std::unique_ptr<Tag> blank(ZUL* parent)
{
    return std::make_unique<Tag>(parent);
}

template <>
std::unique_ptr<ZUL_multi_head> blank(ZUL* parent)
{
    return std::make_unique<ZUL_multi_head>(parent, 0, 0);
}

template <>
std::unique_ptr<ZUL_fixed_fpga_info> blank(ZUL* parent)
{
    return std::make_unique<ZUL_fixed_fpga_info>(parent, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0});
}

template <>
std::unique_ptr<ZUL_destination> blank(ZUL* parent)
{
    return std::make_unique<ZUL_destination>(parent, std::uint8_t{0}, std::uint16_t{0}, std::uint16_t{0});
}

template <>
std::unique_ptr<ZUL_register> blank(ZUL* parent)
{
    return std::make_unique<ZUL_register>(parent, nullptr, false);
}

template <>
std::unique_ptr<ZUL_register_link> blank(ZUL* parent)
{
    return std::make_unique<ZUL_register_link>(parent, nullptr, nullptr);
}

template <>
std::unique_ptr<ZUL_dmacnt_register> blank(ZUL* parent)
{
    return std::make_unique<ZUL_dmacnt_register>(parent, 0U, 0U, 0U);
}

template <>
std::unique_ptr<ZUL_event> blank(ZUL* parent)
{
    return std::make_unique<ZUL_event>(parent, std::uint8_t{0}, std::uint8_t{0}, std::uint8_t{0});
}

template <>
std::unique_ptr<ZUL_module> blank(ZUL* parent)
{
    return std::make_unique<ZUL_module>(parent, nullptr);
}

template <>
std::unique_ptr<ZUL_process> blank(ZUL* parent)
{
    return std::make_unique<ZUL_process>(parent, 0U, nullptr);
}

template <>
std::unique_ptr<ZUL_user_info> blank(ZUL* parent)
{
    return std::make_unique<ZUL_user_info>(parent, nullptr, 0U);
}

template <>
std::unique_ptr<ZUL_param> blank(ZUL* parent)
{
    return std::make_unique<ZUL_param>(parent, QL_ParamType{1}, nullptr);
}

template <>
std::unique_ptr<ZUL_channel_param> blank(ZUL* parent)
{
    return std::make_unique<ZUL_channel_param>(parent, false, nullptr, nullptr);
}

template <>
std::unique_ptr<ZUL_dma_param> blank(ZUL* parent)
{
    return std::make_unique<ZUL_dma_param>(parent, 0U, nullptr);
}

template <>
std::unique_ptr<ZUL_camparam> blank(ZUL* parent)
{
    return std::make_unique<ZUL_camparam>(parent, 0U, nullptr);
}

template <>
std::unique_ptr<ZUL_param_link> blank(ZUL* parent)
{
    return std::make_unique<ZUL_param_link>(parent, nullptr, nullptr);
}

template <class Tag>
std::unique_ptr<LaidOutTag> create(ZUL* parent)
{
    return blank<Tag>(parent);
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
    return {Tag::tag_id, className, meaning, create<Tag>, copy<Tag>};
}

// clang-format off
constexpr std::array kinds{
    kind<ZUL_comment>           ("ZUL_comment",           "comment"),
    kind<ZUL_author>            ("ZUL_author",            "author"),
    kind<ZUL_fixed_fpga_info>   ("ZUL_fixed_fpga_info",   "fixed FPGA info"),
    kind<ZUL_destination>       ("ZUL_destination",       "destination"),
    kind<ZUL_multi_data>        ("ZUL_multi_data",        "configuration data"),
    TagKind{ZUL_register::old_tag_id, "ZUL_register",     "register, older layout",       create<ZUL_register>, copy<ZUL_register>},
    kind<ZUL_register_link>     ("ZUL_register_link",     "register link"),
    TagKind{ZUL_register::new_tag_id, "ZUL_register",     "register, newer layout",       create<ZUL_register>, copy<ZUL_register>},
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

} // namespace

std::span<TagKind const> tagKinds() noexcept
{
    return kinds;
}

TagKind const* findTagKind(std::uint32_t id) noexcept
{
    auto const found =
        std::lower_bound(kinds.begin(), kinds.end(), id,
                         [](TagKind const& kind, std::uint32_t sought) { return kind.id < sought; });
    return found != kinds.end() && found->id == id ? &*found : nullptr;
}
