#include "check_rules.h"

#include "text_output.h"
#include "zullib.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>

namespace {

constexpr std::uint64_t highestBit = 64;

struct Bits {
    std::uint64_t lsb;
    std::uint64_t msb;
};

/// What setting address, bits and value at once would refuse: msb counts from 0 there, and lsb from 1.
bool valueFits(std::uint64_t value, Bits const& bits)
{
    bool const fitsAbove = bits.msb >= highestBit - 1 || value >> (bits.msb + 1) == 0;
    bool const fitsBelow = bits.lsb == 0 || (value & ((std::uint64_t{1} << (bits.lsb - 1)) - 1)) == 0;
    return fitsAbove && fitsBelow;
}

std::string shown(Bits const& bits)
{
    return std::to_string(bits.lsb) + " to " + std::to_string(bits.msb);
}

/// The bits that a register occupies.
struct Range {
    std::uint32_t address;
    std::uint32_t access;
    std::uint32_t writable;
    Bits bits;
    FieldPlace place; // of lsb
    std::string_view name;

    bool samePlace(Range const& other) const
    {
        return std::tie(address, access, writable) == std::tie(other.address, other.access, other.writable);
    }
    bool operator<(Range const& other) const
    {
        return std::tie(address, access, writable, bits.lsb, place.tag) <
               std::tie(other.address, other.access, other.writable, other.bits.lsb, other.place.tag);
    }
};

class RegisterRules : public RuleSet {
public:
    using RuleSet::RuleSet;

    void tag(WalkedTag const& tag, TagFields const& fields) override
    {
        bool const isRegister = tag.id == ZUL_register::old_tag_id || tag.id == ZUL_register::new_tag_id;
        if (!isRegister || fields.find("lsb") == nullptr || fields.find("msb") == nullptr ||
            fields.find("value") == nullptr) {
            return;
        }
        Bits const bits{fields.number("lsb"), fields.number("msb")};
        if (bits.lsb > highestBit || bits.msb > highestBit) {
            char const* const field = bits.lsb > highestBit ? "lsb" : "msb";
            m_findings.add(Rule::BitBeyond64, placeOf(tag, fields, field), "at most 64",
                           std::to_string(fields.number(field)));
        } else if (bits.lsb > bits.msb) {
            m_findings.add(Rule::BitsOutOfOrder, placeOf(tag, fields, "lsb"),
                           "at most " + std::to_string(bits.msb), std::to_string(bits.lsb));
        } else {
            occupied(tag, fields, bits);
        }
    }

    void end() override
    {
        std::sort(m_ranges.begin(), m_ranges.end());
        Range const* widest = nullptr; // the one that reaches highest of those before in the same place
        for (Range const& range : m_ranges) {
            if (widest != nullptr && widest->samePlace(range) && range.bits.lsb <= widest->bits.msb) {
                overlap(*widest, range);
            }
            if (widest == nullptr || !widest->samePlace(range) || range.bits.msb > widest->bits.msb) {
                widest = &range;
            }
        }
    }

private:
    void occupied(WalkedTag const& tag, TagFields const& fields, Bits const& bits)
    {
        std::uint64_t const value = fields.number("value");
        if (!valueFits(value, bits)) {
            m_findings.add(Rule::ValueOutsideBits, placeOf(tag, fields, "value"),
                           "a value in bits " + shown(bits), asHex(value));
        }
        m_ranges.push_back({fields.word("address"), fields.word("access"), fields.word("writable"), bits,
                            placeOf(tag, fields, "lsb"), fields.text("name")});
    }

    /// Reported at the one that comes later in the file.
    void overlap(Range const& one, Range const& two)
    {
        bool const oneIsLater = one.place.tag > two.place.tag;
        Range const& later = oneIsLater ? one : two;
        Range const& earlier = oneIsLater ? two : one;
        m_findings.add(Rule::OverlappingBits, later.place,
                       "no bits in common with " + inQuotes(earlier.name) + " (tag " +
                           std::to_string(earlier.place.tag) + ", bits " + shown(earlier.bits) + ")",
                       "bits " + shown(later.bits));
    }

    std::vector<Range> m_ranges;
};

} // namespace

std::unique_ptr<RuleSet> makeRegisterRules(Findings& findings)
{
    return std::make_unique<RegisterRules>(findings);
}
