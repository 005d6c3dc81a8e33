#include "findings.h"

#include "tag_fields.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <tuple>
#include <utility>

std::string_view nameOf(Level level) noexcept
{
    switch (level) {
    case Level::Error:
        return "error";
    case Level::Warning:
        return "warning";
    case Level::Note:
        break;
    }
    return "note";
}

RuleText const& textOf(Rule rule) noexcept
{
    auto const texts = ruleTexts();
    return *std::lower_bound(texts.begin(), texts.end(), rule,
                             [](RuleText const& text, Rule sought) { return text.rule < sought; });
}

RuleText const* findRule(std::string_view id) noexcept
{
    std::string upper(id);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    auto const texts = ruleTexts();
    auto const found = std::find_if(texts.begin(), texts.end(),
                                    [&upper](RuleText const& text) { return idOf(text.rule) == upper; });
    return found == texts.end() ? nullptr : &*found;
}

std::string idOf(Rule rule)
{
    std::array<char, 8> id{};
    std::snprintf(id.data(), id.size(), "Z%04u", static_cast<unsigned>(rule) % 10'000);
    return id.data();
}

FieldPlace placeOf(WalkedTag const& tag, TagField const& field)
{
    return {tag.index, tag.offset + field.offset, field.name};
}

FieldPlace placeOf(WalkedTag const& tag, TagFields const& fields, std::string_view name)
{
    TagField const* const field = fields.find(name);
    return field == nullptr ? FieldPlace{tag.index, tag.offset, "tag id"} : placeOf(tag, *field);
}

void Findings::add(Rule rule, FieldPlace const& place, std::string expected, std::string found)
{
    m_findings.push_back({rule, place.tag, place.offset, place.field, std::move(expected), std::move(found)});
}

std::vector<Finding> Findings::take()
{
    std::stable_sort(m_findings.begin(), m_findings.end(), [](Finding const& left, Finding const& right) {
        return std::tie(left.offset, left.rule) < std::tie(right.offset, right.rule);
    });
    return std::exchange(m_findings, {});
}

std::string inQuotes(std::string_view text)
{
    // One text may be named by many findings: what is said about it must not grow with both.
    constexpr std::size_t longest = 100;
    if (text.size() <= longest) {
        return "'" + std::string(text) + "'";
    }
    std::size_t end = longest;
    while (end > 0 &&
           (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) { // within a character of UTF-8
        --end;
    }
    return "'" + std::string(text.substr(0, end)) + "...'";
}
