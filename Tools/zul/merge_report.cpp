#include "merge_report.h"

#include "each_tag.h"
#include "register_links.h"
#include "tag_cast.h"
#include "tag_kinds.h"
#include "text_output.h"
#include "zullib.h"

#include <map>
#include <set>

namespace {

template <class Tag>
Tag* tagAt(ZUL const& zul, unsigned int i)
{
    return dynamic_cast<Tag*>(zul.getTagAt(Tag::tag_id, i));
}

std::string textOr(char const* text, char const* otherwise)
{
    return text == nullptr ? otherwise : text;
}

std::string nameOf(ZUL_process const& process)
{
    return textOr(process.getName(), "");
}

std::string nameOf(ZUL_module const& module)
{
    char const* const name = module.getFullName() != nullptr ? module.getFullName() : module.getInstance();
    return textOr(name, "");
}

/// Whether both are there and differ.
bool differ(char const* a, char const* b)
{
    return a != nullptr && b != nullptr && std::string_view(a) != b;
}

// What the merge will leave out.

void dropSingles(MergeReport& report, ZUL const& a, ZUL const& b)
{
    auto const note = [&report](char const* what, char const* ofA, char const* ofB) {
        if (differ(ofA, ofB)) {
            report.dropped.push_back({'B', what + asQuoted(ofB), "A has one"});
        }
    };
    note("author ", a.getAuthor(), b.getAuthor());
    note("design name ", a.getDesignName(), b.getDesignName());
    note("design version ", a.getDesignVersion(), b.getDesignVersion());
}

void dropIds(MergeReport& report, ZUL const& a, ZUL const& b)
{
    for (auto const& [side, id] : {std::pair('A', a.getId()), std::pair('B', b.getId())}) {
        if (id != nullptr) {
            report.dropped.push_back({side, "id " + asQuoted(id), "a merged design is a new one"});
        }
    }
}

void dropVersionNumbers(MergeReport& report, ZUL const& a, ZUL& b)
{
    std::set<unsigned int> taken;
    forEach<ZUL_design_version_nr>(a, [&](auto& number) { taken.insert(number.getIndex()); });
    std::vector<ZUL_tag*> leaving;
    forEach<ZUL_design_version_nr>(b, [&](auto& number) {
        if (taken.contains(number.getIndex())) {
            leaving.push_back(&number);
            report.dropped.push_back(
                {'B', "design version number " + std::to_string(number.getIndex()), "A has one"});
        }
    });
    for (ZUL_tag* const tag : leaving) { // 256 at most
        b.removeTag(tag);
    }
}

void dropLibraries(MergeReport& report, ZUL const& a, ZUL const& b)
{
    forEach<ZUL_dll>(b, [&](ZUL_dll& lib) {
        if (a.hasLib(&lib)) {
            report.dropped.push_back({'B', "library " + asQuoted(textOr(lib.getName(), "")),
                                      "A has one, and a load skips the second"});
        }
    });
}

void dropFixedFirmware(MergeReport& report, ZUL const& zul, char side)
{
    if (unsigned int const count = zul.getTagCount(ZUL_fixed_fpga_info::tag_id); count != 0) {
        report.dropped.push_back(
            {side, counted(count, "fixed FPGA info"), "a merged design demands no firmware"});
    }
}

// What the merge does.

/// What is there before a merge, to see afterwards what has become of it.
struct Before {
    explicit Before(ZUL const& zul)
        : processes(zul.getTagCount(ZUL_process::tag_id)), modules(zul.getTagCount(ZUL_module::tag_id))
    {
        forEach<ZUL_event>(zul, [this](ZUL_event& event) { queues.push_back(event.getUiq()); });
        zul.forEachTag([this](ZUL_tag& tag) { ++counts[tag.getTagId()]; });
    }

    unsigned int processes;
    unsigned int modules;
    std::vector<unsigned int> queues;
    std::map<std::uint32_t, unsigned int> counts;
};

void noteNumbers(MergeReport& report, ZUL const& merged, ZUL const& b, Before const& before)
{
    for (unsigned int i = 0; i < b.getTagCount(ZUL_process::tag_id); ++i) {
        auto const& process = *tagAt<ZUL_process>(b, i);
        report.processes.push_back(
            {nameOf(process), process.getId(), tagAt<ZUL_process>(merged, before.processes + i)->getId()});
    }
    for (unsigned int i = 0; i < b.getTagCount(ZUL_module::tag_id); ++i) {
        auto const& module = *tagAt<ZUL_module>(b, i);
        auto const& copy = *tagAt<ZUL_module>(merged, before.modules + i);
        report.modules.push_back({nameOf(module), static_cast<std::uint32_t>(module.getIndex()),
                                  static_cast<std::uint32_t>(copy.getIndex())});
    }
}

void noteEvents(MergeReport& report, ZUL const& merged, ZUL const& b, Before const& before)
{
    auto const ofA = static_cast<unsigned int>(before.queues.size());
    for (unsigned int i = 0; i < merged.getTagCount(ZUL_event::tag_id); ++i) {
        auto const& event = *tagAt<ZUL_event>(merged, i);
        bool const isOfA = i < ofA;
        if (event.getUiq() != (isOfA ? before.queues[i] : tagAt<ZUL_event>(b, i - ofA)->getUiq())) {
            report.movedSide = isOfA ? 'A' : 'B';
            ++report.movedEvents;
        }
    }
}

// Why the merge is refused.

/// What tells @p tag from others of its kind.
std::string identity(ZUL_tag& tag)
{
    if (auto const* const event = tagOfKind<ZUL_event>(&tag)) {
        return asQuoted(textOr(event->getName(), "")) + ", queue " + std::to_string(event->getUiq()) +
               ", bit " + std::to_string(event->getBit());
    }
    if (auto const* const module = tagOfKind<ZUL_module>(&tag)) {
        return asQuoted(nameOf(*module)) + ", index " + std::to_string(module->getIndex());
    }
    if (auto const* const parameter = tagOfKind<ZUL_param>(&tag)) {
        return asQuoted(textOr(parameter->getName(), ""));
    }
    if (auto const* const channel = tagOfKind<ZUL_channel_param>(&tag)) {
        return asQuoted(textOr(channel->getName(), ""));
    }
    return "";
}

/// @param error ended the merge of @p b into what is @p half merged now: tags of a kind are added in order
std::string conflict(ZUL_file_error const& error, ZUL const& half, ZUL const& b, Before const& before)
{
    std::string text = error.what();
    if (dynamic_cast<ZUL_file_duplicate_tag const*>(&error) != nullptr) {
        return text + ": both designs have a register named " + asQuoted(error.asString());
    }
    std::uint32_t const id = error.getTagId();
    auto const there = before.counts.find(id);
    unsigned int const added = half.getTagCount(id) - (there == before.counts.end() ? 0 : there->second);
    if (ZUL_tag* const tag = b.getTagAt(id, added)) {
        TagKind const* const kind = findTagKind(id);
        std::string const which = identity(*tag);
        text += " (B's " + std::string(kind == nullptr ? "tag" : kind->meaning) + " number " +
                std::to_string(added + 1) + (which.empty() ? "" : ", " + which) + ")";
    }
    return text;
}

void noteBadLinks(MergeReport& report, ZUL const& a, ZUL const& b)
{
    forEach<ZUL_register_link>(a, [&](ZUL_register_link& link) {
        if (!leadsToItsRegister(link, b, a)) {
            report.conflicts.push_back("A's register link " + asQuoted(textOr(link.getAlias(), "")) +
                                       " leads to " + asQuoted(textOr(link.getTarget(), "")) +
                                       ", which is not there or has another access");
        }
    });
}

} // namespace

MergeReport mergeAndReport(ZUL& a, ZUL& b)
{
    MergeReport report;
    noteBadLinks(report, a, b);
    if (!report.succeeded()) {
        return report;
    }
    dropSingles(report, a, b);
    dropIds(report, a, b);
    dropVersionNumbers(report, a, b);
    dropLibraries(report, a, b);
    dropFixedFirmware(report, a, 'A');
    dropFixedFirmware(report, b, 'B');
    Before const before(a);
    try {
        a += b;
    } catch (ZUL_file_error const& error) {
        report.conflicts.push_back(conflict(error, a, b, before));
        return report;
    }
    a.removeTags(ZUL_fixed_fpga_info::tag_id);
    a.setId(nullptr);
    noteNumbers(report, a, b, before);
    noteEvents(report, a, b, before);
    return report;
}
