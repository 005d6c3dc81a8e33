#include "container_mutation.h"

#include "mutation.h"
#include "sample_tags.h"
#include "tag_sequence.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace {

constexpr std::array<std::uint32_t, 24> telling{
    0,  1,  2,   3,   4,    5,     7,      8,      9,     16,         24,         63,
    64, 65, 127, 128, 0xFF, 0x100, 0xFFFF, 0x8000, 0xA44, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
constexpr std::array<std::string_view, 6> names{"a",      "status",     "control",
                                                "Frames", "__ZUL_ID__", "BuildNumber"};

RawBytes raw(Bytes const& bytes)
{
    auto const* const data = reinterpret_cast<std::uint8_t const*>(bytes.data());
    return {data, data + bytes.size()};
}

/// What a new tag may refer to, mostly something that is there.
class Known {
public:
    Known(TagSequence const& sequence, Random& random) : m_sequence(sequence), m_random(random) {}

    std::string registerName() const
    {
        RawBytes const* const tag = oneOfKind(0x8151002);
        if (tag != nullptr && tag->size() > 32) {
            return {tag->begin() + 32, tag->end()};
        }
        return std::string(m_random.oneOf(names));
    }
    std::uint32_t process() const { return numberOf(0x8158000); }
    std::uint32_t module() const { return numberOf(0x8157000); }

private:
    /// The number behind the header of one tag with that id; a small one when there is none.
    std::uint32_t numberOf(std::uint32_t id) const
    {
        RawBytes const* const tag = oneOfKind(id);
        return tag != nullptr ? numberAt(*tag, 8) : static_cast<std::uint32_t>(m_random.below(3));
    }
    RawBytes const* oneOfKind(std::uint32_t id) const
    {
        std::vector<RawBytes const*> found;
        for (RawBytes const& tag : m_sequence.tags) {
            if (numberAt(tag, 0) == id) {
                found.push_back(&tag);
            }
        }
        return found.empty() || m_random.oneIn(8) ? nullptr : m_random.oneOf(found);
    }

    TagSequence const& m_sequence;
    Random& m_random;
};

/// An honest tag of any kind, with small numbers and names that meet those of others.
RawBytes sampleTag(TagSequence const& sequence, Random& random)
{
    Known const known(sequence, random);
    std::string_view const name = random.oneOf(names);
    std::string_view const other = random.oneOf(names);
    auto const i = static_cast<std::uint32_t>(random.below(3));
    switch (random.below(30)) {
        // clang-format off
    case 0:  return raw(sample::comment());
    case 1:  return raw(sample::author());
    case 2:  return raw(sample::designName());
    case 3:  return raw(sample::designVersion());
    case 4:  return raw(sample::versionNumber(static_cast<std::uint8_t>(i), 2, 7));
    case 5:  return raw(sample::destination(static_cast<std::uint8_t>(i)));
    case 6:  return raw(sample::fpgaInfo());
    case 7:
    case 8:  return raw(sample::config(i));
    case 9:  return raw(sample::oldRegister(name));
    case 10: return raw(sample::newRegister(name));
    case 11: return raw(sample::registerLink(name, known.registerName()));
    case 12: return raw(sample::dmaCountRegister(i));
    case 13: return raw(sample::interruptVector());
    case 14: return raw(sample::dmaTagRegister());
    case 15: return raw(sample::localInterrupt());
    case 16: return raw(sample::readQueue());
    case 17: return raw(sample::writeQueue());
    case 18: return raw(sample::library(name));
    case 19: return raw(sample::event(name, known.registerName()));
    case 20: return raw(sample::process(i));
    case 21: return raw(sample::module(i, known.process()));
    case 22: return raw(sample::userInfo(name, other));
    case 23: return raw(sample::userInfo(name, i));
    case 24: return raw(sample::integerParam(name, known.module()));
    case 25: return raw(sample::textParam(name, known.module(), other));
    case 26: return raw(sample::fieldParam(name, known.module()));
    case 27: return raw(sample::paramLink(known.module(), known.module()));
    case 28: return raw(sample::channel(name, known.module()));
    case 29: return raw(random.oneIn(2) ? sample::cameraParam(i, known.module()) : sample::dmaParam(i, known.module()));
    default: return raw(sample::unknown(0x8150015));
        // clang-format on
    }
}

/// A value that a careless reader would stumble over.
std::uint32_t tellingValue(std::uint32_t before, RawBytes const& tag, Random& random)
{
    switch (random.below(5)) {
    case 0:
        return before + 1;
    case 1:
        return before - 1;
    case 2:
        return static_cast<std::uint32_t>(tag.size() + random.below(17) - 8);
    default:
        return random.oneOf(telling);
    }
}

void breakField(RawBytes& tag, Random& random)
{
    std::size_t const offset = random.below(tag.size() / 4) * 4;
    setNumberAt(tag, offset, tellingValue(numberAt(tag, offset), tag, random));
}

/// Bytes of the one tag in the other, at the place where they were: a name, a number that refers.
void copyField(RawBytes& to, RawBytes const& from, Random& random)
{
    std::size_t const most = std::min(to.size(), from.size());
    std::size_t const offset = std::min(most, 8 + random.below(most));
    std::size_t const count = std::min(most - offset, random.oneIn(2) ? 4 : std::size_t{64});
    std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(offset), count,
                to.begin() + static_cast<std::ptrdiff_t>(offset));
}

void mutateBody(RawBytes& tag, Random& random)
{
    constexpr std::size_t header = 8;
    RawBytes body(tag.begin() + static_cast<std::ptrdiff_t>(std::min(tag.size(), header)), tag.end());
    bool const sameSize = !random.oneIn(4);
    std::size_t const size = body.size();
    mutateBytes(body, sameSize ? size : size + 16);
    if (sameSize) {
        body.resize(size, 0);
    }
    tag.resize(std::min(tag.size(), header));
    tag.insert(tag.end(), body.begin(), body.end());
    fixLength(tag);
}

void insertTag(TagSequence& sequence, RawBytes tag, Random& random)
{
    auto const place = static_cast<std::ptrdiff_t>(random.below(sequence.tags.size() + 1));
    sequence.tags.insert(sequence.tags.begin() + place, std::move(tag));
}

void dropTag(TagSequence& sequence, Random& random)
{
    sequence.tags.erase(sequence.tags.begin() +
                        static_cast<std::ptrdiff_t>(random.below(sequence.tags.size())));
}

void mutateTags(TagSequence& sequence, Random& random)
{
    auto& tags = sequence.tags;
    if (tags.empty()) {
        tags.push_back(sampleTag(sequence, random));
        return;
    }
    RawBytes& tag = random.oneOf(tags);
    switch (random.below(12)) {
    case 0:
        return insertTag(sequence, RawBytes(tag), random);
    case 1:
    case 2:
        return dropTag(sequence, random);
    case 3:
        return std::swap(tag, random.oneOf(tags));
    case 4:
    case 5:
        return insertTag(sequence, sampleTag(sequence, random), random);
    case 6:
        return copyField(tag, RawBytes(random.oneOf(tags)), random);
    case 7:
        return resizeTail(tag, random.below(random.oneIn(8) ? 300 : 24), random.below(3));
    case 8:
    case 9:
        return mutateBody(tag, random);
    default:
        return breakField(tag, random);
    }
}

} // namespace

void mutateContainer(RawBytes& container, std::size_t mostBytes, Random& random)
{
    if (random.oneIn(16)) {
        return mutateBytes(container, mostBytes);
    }
    TagSequence sequence(container);
    for (std::size_t left = 1 + random.below(4); left > 0; --left) {
        mutateTags(sequence, random);
    }
    while (sequence.bytes(mostBytes + 1).size() > mostBytes && !sequence.tags.empty()) {
        dropTag(sequence, random);
    }
    if (!random.oneIn(16)) {
        sequence.fixHead();
    } else if (sequence.head.size() >= 4) {
        breakField(sequence.head, random);
    }
    container = sequence.bytes(mostBytes);
}

RawBytes crossContainers(RawBytes const& left, RawBytes const& right, std::size_t mostBytes, Random& random)
{
    TagSequence crossed(left);
    TagSequence const other(right);
    crossed.tags.resize(random.below(crossed.tags.size() + 1));
    std::size_t const from = random.below(other.tags.size() + 1);
    crossed.tags.insert(crossed.tags.end(), other.tags.begin() + static_cast<std::ptrdiff_t>(from),
                        other.tags.end());
    while (crossed.bytes(mostBytes + 1).size() > mostBytes && !crossed.tags.empty()) {
        dropTag(crossed, random);
    }
    crossed.fixHead();
    return crossed.bytes(mostBytes);
}
