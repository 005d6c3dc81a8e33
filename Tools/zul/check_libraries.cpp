#include "check_rules.h"

#include "inflate_stream.h"
#include "seeded_hash.h"
#include "zullib.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_set>

namespace {

/// How much all libraries of a file may grow to: the work stays linear in the file, whatever is packed into it.
std::uint64_t inflatingBudget(std::uint64_t fileSize)
{
    constexpr std::uint64_t growth = 64;
    constexpr std::uint64_t freeBytes = std::uint64_t{64} << 20U;
    return growth * fileSize + freeBytes;
}

class LibraryRules : public RuleSet {
public:
    LibraryRules(Walk const& walk, Findings& findings)
        : RuleSet(findings), m_budget(inflatingBudget(walk.file.size()))
    {
    }

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        if (tag.id == ZUL_dll::tag_id && fields.find("name") != nullptr) {
            name(tag, fields);
            if (fields.number("compressed") != 0) {
                compressed(tag, fields);
            }
        }
    }

private:
    struct Key {
        std::string_view name;
        std::uint32_t system;
        bool operator==(Key const&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(Key const& key) const noexcept
        {
            return SeededHash()(SeededHash()(key.name) + key.system);
        }
    };

    void name(WalkedTag const& tag, TagFields const& fields)
    {
        std::string_view const name = fields.text("name");
        if (name.find('/') != std::string_view::npos || name.find("..") != std::string_view::npos) {
            m_findings.add(Rule::UnsafeLibraryName, placeOf(tag, fields, "name"), "no '/' and no '..'",
                           inQuotes(name));
        }
        // A library without a name equals no other.
        if (!name.empty() && !m_known.insert({name, fields.word("system")}).second) {
            m_findings.add(Rule::LibraryTwice, placeOf(tag, fields, "name"), "a name and system of its own",
                           inQuotes(name) + " for system " + std::to_string(fields.word("system")));
        }
    }

    void compressed(WalkedTag const& tag, TagFields const& fields)
    {
        TagField const* const library = fields.find("library");
        FieldPlace const place =
            library == nullptr ? placeOf(tag, fields, "compressed") : placeOf(tag, *library);
        auto const bytes = library == nullptr ? std::span<std::byte const>() : library->bytes;
        switch (inflate(bytes)) {
        case Result::Whole:
            return;
        case Result::Corrupt:
            return m_findings.add(Rule::LibraryDoesNotInflate, place, "a complete zlib stream",
                                  std::to_string(bytes.size()) + " bytes that are none");
        case Result::TooLarge:
            return m_findings.add(Rule::LibraryNotTried, place, "at most 64 times the file and 64 MiB",
                                  "more than that");
        }
    }

    enum class Result { Whole, Corrupt, TooLarge };

    Result inflate(std::span<std::byte const> bytes)
    {
        constexpr int stopped = 1;
        auto const spend = [this](std::span<std::byte const> piece) {
            bool const isAffordable = piece.size() <= m_budget;
            m_budget -= std::min<std::uint64_t>(piece.size(), m_budget);
            return isAffordable ? 0 : stopped;
        };
        try {
            int const result = bytes.empty() ? -1 : inflateStream(bytes, spend);
            return result == 0 ? Result::Whole : result == stopped ? Result::TooLarge : Result::Corrupt;
        } catch (std::runtime_error const&) {
            return Result::Corrupt;
        }
    }

    std::uint64_t m_budget; // bytes that may still be inflated
    std::unordered_set<Key, KeyHash> m_known;
};

} // namespace

std::unique_ptr<RuleSet> makeLibraryRules(Walk const& walk, Findings& findings)
{
    return std::make_unique<LibraryRules>(walk, findings);
}
