#include "damage.h"

#include "input.h"
#include "session.h"
#include "text_output.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::size_t mostMessages = 10;

/// Writes the first messages and counts the rest.
class Messages {
public:
    Messages(Session& session, std::string const& fileName) : m_session(session), m_fileName(fileName) {}
    Messages(Messages const&) = delete;
    Messages& operator=(Messages const&) = delete;
    ~Messages()
    {
        if (m_count > mostMessages) {
            warn(m_session, m_fileName + ": " + std::to_string(m_count - mostMessages) +
                                " more of this; zul check tells all of it");
        }
    }

    void add(std::string const& message)
    {
        m_session.result = std::max(m_session.result, ExitCode::Damaged);
        if (++m_count <= mostMessages) {
            warn(m_session, m_fileName + ": " + message);
        }
    }

private:
    Session& m_session;
    std::string const& m_fileName;
    std::size_t m_count = 0;
};

std::string place(std::string const& owner, std::uint64_t offset, char const* field)
{
    return "offset " + asHex(offset) + ", " + owner + ", field '" + field + "': ";
}

std::string ownerOf(WalkedTag const& tag)
{
    return "tag " + std::to_string(tag.index) + " (" + kindName(tag) + ")";
}

void addProblems(Messages& messages, TagFields const& fields, std::string const& owner, std::uint64_t offset)
{
    for (TagProblem const& problem : fields.problems()) {
        messages.add(place(owner, offset + problem.offset, problem.field) + "expected " + problem.expected +
                     ", found " + problem.found);
    }
}

bool isAboutLength(TagProblem const& problem)
{
    return std::string_view(problem.field) == "length";
}

void addTag(Messages& messages, Walk const& walk, WalkedTag const& tag)
{
    TagFields const fields(tag);
    addProblems(messages, fields, ownerOf(tag), tag.offset);
    bool const isKnown = std::any_of(fields.problems().begin(), fields.problems().end(), isAboutLength);
    bool const endsWalk = walk.end == WalkEnd::BadLength && tag.index + 1 == walk.tags.size();
    if (endsWalk && !isKnown) {
        bool const isShort = tag.statedLength < 8;
        messages.add(place(ownerOf(tag), tag.offset + 4, "length") + "expected " +
                     (isShort ? "at least 8" : "at most " + std::to_string(tag.length)) + ", found " +
                     std::to_string(tag.statedLength));
    }
}

} // namespace

void reportDamage(Session& session, std::string const& fileName, Walk const& walk,
                  std::span<WalkedTag const> tags)
{
    Messages messages(session, fileName);
    for (WalkedTag const& tag : tags) {
        addTag(messages, walk, tag);
    }
}

void reportDamage(Session& session, std::string const& fileName, Walk const& walk)
{
    Messages messages(session, fileName);
    if (walk.end == WalkEnd::NoContainer) {
        messages.add(whyNoContainer(walk));
        return;
    }
    addProblems(messages, TagFields::ofHead(walk.head), "head", 0);
    for (WalkedTag const& tag : walk.tags) {
        addTag(messages, walk, tag);
    }
}

char const* kindName(WalkedTag const& tag) noexcept
{
    return tag.kind == nullptr ? "unknown tag" : tag.kind->meaning;
}
