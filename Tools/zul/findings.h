#pragma once

#include "walker.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

enum class Level {
    Error,   ///< a load refuses it, or what it says can never be used
    Warning, ///< it loads, and something is lost or not what it seems
    Note     ///< worth knowing
};

std::string_view nameOf(Level level) noexcept;

/// What `zul check` looks for. The number is that of the id: 101 is Z0101. Ids are never used again for another rule.
enum class Rule : std::uint16_t {
    NotAContainer = 101,
    BadLength = 102,
    BadValue = 103,
    LengthBelowHeader = 104,
    LengthOverEnd = 105,
    UnknownTag = 106,
    TagCountDiffers = 107,
    ConfigCountDiffers = 108,
    Padding = 109,
    IgnoredBytes = 110,
    LargerThanLoaded = 111,
    SecondHead = 112,
    SecondSingle = 113,
    ReplacedVersion = 114,

    ReferenceToNothing = 201,
    ReferenceBeforeTarget = 202,
    ModuleIndexTwice = 203,
    ProcessIdTwice = 204,
    TextFillsField = 205,
    NameCutForCallers = 206,
    RegisterNameTooLong = 207,
    EventWithoutName = 208,
    EventNameTooLong = 209,

    BitsOutOfOrder = 301,
    BitBeyond64 = 302,
    ValueOutsideBits = 303,
    OverlappingBits = 304,
    RegisterNameTwice = 305,
    LinkToEarlierAlias = 306,
    LinkInCircle = 307,
    LinkToNothing = 308,
    LinkAccessDiffers = 309,
    LinkWithoutAlias = 310,

    ParameterCountDiffers = 401,
    ChannelCountDiffers = 402,
    LinkModuleUnknown = 403,
    LinkParameterUnknown = 404,

    LateDestination = 501,
    UnknownFpgaType = 502,
    ChannelOutsideSettings = 503,
    QueueOutsideSettings = 504,
    NoContainerId = 505,
    PlaceholderId = 506,
    UnsafeId = 507,
    NoBoardCode = 508,
    UnknownBoardCode = 509,

    LibraryTwice = 601,
    UnsafeLibraryName = 602,
    LibraryDoesNotInflate = 603,
    LibraryNotTried = 604,
};

/// All that is said about a rule, wherever it is said.
struct RuleText {
    Rule rule;
    Level level;
    std::string_view title;       ///< a few words, lower case
    std::string_view explanation; ///< the rule exactly, and what follows from breaking it
    std::string_view hint;        ///< what to do
};

/// Every rule, ascending by id.
std::span<RuleText const> ruleTexts() noexcept;
RuleText const& textOf(Rule rule) noexcept;
/// The rule whose id is @p id, as in "Z0101" or "z0101"; null when there is none.
RuleText const* findRule(std::string_view id) noexcept;
/// "Z0101" and the like.
std::string idOf(Rule rule);

/// A rule that a file breaks, and where.
struct Finding {
    static constexpr std::size_t noTag = SIZE_MAX; ///< the head or the file itself

    Rule rule;
    std::size_t tag = noTag;  ///< its index in the walk
    std::uint64_t offset = 0; ///< of the field in the file
    char const* field = "";   ///< its name; static text
    std::string expected;     ///< may hold any bytes of the file, as found may
    std::string found;
};

/// A field of a tag, for a finding that is known only later.
struct FieldPlace {
    std::size_t tag;
    std::uint64_t offset; ///< in the file
    char const* field;
};

class TagFields;

/// The field of @p tag called @p name; its header where the field is not there.
FieldPlace placeOf(WalkedTag const& tag, TagFields const& fields, std::string_view name);
FieldPlace placeOf(WalkedTag const& tag, TagField const& field);

/// Gathers what the rules find.
class Findings {
public:
    void add(Rule rule, FieldPlace const& place, std::string expected, std::string found);
    /// All of them by offset in the file, then by id.
    std::vector<Finding> take();

private:
    std::vector<Finding> m_findings;
};

/// 'text', with all its bytes, cut after 100 of them
std::string inQuotes(std::string_view text);
