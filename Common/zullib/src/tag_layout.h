#pragma once

#include "little_endian.h"
#include "tag_bytes.h"
#include "tag_field.h"
#include "tag_text.h"
#include "zul_tag.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class TagBlocks;
class ZUL_module;
class ZUL_process;
class ZUL_register;

/// Walks the rows of a tag's layout in one of four passes: load, measure, save, visit.
///
/// A layout function first states the tag's size (fixed, payload, or variable ... total), then its fields by offset,
/// then the variable parts in the order in which they lie behind the fixed part. Once the size is stated while
/// loading, every later row lies within the bytes that are there: this is the only place that checks bounds, in
/// 64-bit arithmetic. While saving, nothing is written before the size is known to be right, except by rows that
/// stand before it.
class TagLayout {
public:
    /// @param texts where loaded texts go; null for texts of the tag's own
    static TagLayout forLoading(ZUL_tag& tag, std::byte const* bytes, std::uint64_t avail,
                                TagBlocks* texts = nullptr);
    static TagLayout forMeasuring(ZUL_tag& tag);
    static TagLayout forSaving(ZUL_tag& tag, std::byte* bytes);
    static TagLayout forVisiting(ZUL_tag& tag, std::span<std::byte const> bytes, FieldVisitor& visitor);

    bool loading() const noexcept { return m_pass == Pass::Load; }
    /// Rows take their values from bytes: loading or visiting.
    bool reading() const noexcept { return m_pass == Pass::Load || m_pass == Pass::Visit; }
    /// Rows give their values to somebody: measuring or saving.
    bool writing() const noexcept { return m_pass == Pass::Measure || m_pass == Pass::Save; }
    bool saving() const noexcept { return m_pass == Pass::Save; }
    /// Length of the tag in bytes, header included, once its size was stated.
    std::uint64_t length() const noexcept { return m_length; }

    // What has to hold.

    /// Loading needs @p count bytes. @throws ZUL_file_bad_tag_length
    void needs(std::uint64_t count);
    /// Loading needs a container. @throws std::logic_error "loading orphaned tag without parent is invalid"
    void needsContainer() const;
    /// Measuring and saving call the tag's checkDependentFields().
    void dependencies();
    /// Measuring and saving need @p holds. @throws std::runtime_error with @p message
    void require(bool holds, char const* message) const;
    /// Loading needs @p holds, about the field read last. @throws ZUL_file_malformed_tag
    /// @param expected the values that are right, for the visit
    void demand(bool holds, char const* expected);
    /// As demand, for a row that stands before total() because the length depends on it: a wrong length is the first
    /// thing to be refused, so loading leaves the refusal to total().
    void demandOnceTotalled(bool holds, char const* expected);

    // The size of the tag.

    /// The id that is in the header when reading, @p saved when writing: for tags with more than one.
    std::uint32_t headerId(std::uint32_t saved);
    /// The whole tag has exactly @p length bytes. @throws ZUL_file_bad_tag_length
    void fixed(std::uint64_t length);
    /// A fixed part of @p fixedPart bytes; variable parts follow. @throws ZUL_file_bad_tag_length
    void variable(std::uint64_t fixedPart);
    /// The number, stored in @p width bytes at @p offset, that gives the length of a variable part.
    /// @param current the number to write
    /// @param limit the largest number that can be written
    /// @param tooLong message of the std::runtime_error for a larger one
    /// @return the number that was read, or @p current
    std::uint64_t tailLength(std::uint64_t offset, unsigned width, char const* name, std::uint64_t current,
                             std::uint64_t limit = UINT64_MAX, char const* tooLong = nullptr);
    /// Ends what tailLength began: the variable parts have @p tail bytes altogether.
    /// @param tooBig message of the std::runtime_error when the tag would not fit a u32 length
    /// @throws ZUL_file_bad_tag_length
    void total(std::uint64_t tail, char const* tooBig);
    /// As total, for a tag whose inner lengths make it malformed where they do not add up.
    /// @throws ZUL_file_bad_tag_length when fewer bytes are there than the tag says to have
    /// @throws ZUL_file_malformed_tag when the lengths do not add up
    void totalElseMalformed(std::uint64_t tail, char const* tooBig);
    /// A fixed part of @p fixedPart bytes and whatever the length field says behind it. @throws ZUL_file_bad_tag_length
    void payload(std::uint64_t fixedPart, char const* name, TagBytes& field);

    // Fields of the fixed part.

    void u8(std::uint64_t offset, char const* name, std::uint8_t& field) { number(offset, name, field); }
    void u16(std::uint64_t offset, char const* name, std::uint16_t& field) { number(offset, name, field); }
    void u32(std::uint64_t offset, char const* name, std::uint32_t& field) { number(offset, name, field); }
    void s32(std::uint64_t offset, char const* name, std::int32_t& field) { number(offset, name, field); }
    void u64(std::uint64_t offset, char const* name, std::uint64_t& field) { number(offset, name, field); }
    void real(std::uint64_t offset, char const* name, double& field);
    /// A NUL-padded text of @p width bytes, without terminator when it fills them.
    void text(std::uint64_t offset, std::uint64_t width, char const* name, TagText& field);
    /// As text; nothing but NUL means that there is none.
    void optionalText(std::uint64_t offset, std::uint64_t width, char const* name, TagText& field);
    /// A text that is written for readers of the file and not looked at when loading.
    void writtenText(std::uint64_t offset, std::uint64_t width, char const* name, char const* text);
    /// The id of an earlier process. @throws ZUL_file_bad_reference
    void process(std::uint64_t offset, char const* name, ZUL_process const*& field);
    /// The index of an earlier module. @throws ZUL_file_bad_reference
    void module(std::uint64_t offset, char const* name, ZUL_module const*& field);
    /// The index of an earlier module. @throws ZUL_file_malformed_tag where there is none
    void moduleElseMalformed(std::uint64_t offset, char const* name, ZUL_module const*& field);
    /// Bytes that saving leaves as the buffer has them and loading ignores.
    void reserved(std::uint64_t offset, std::uint64_t width);
    /// Bytes that are written as zero and ignored when loading.
    void zeros(std::uint64_t offset, std::uint64_t width);
    /// One byte that is written as zero. @throws ZUL_file_malformed_tag when it is not zero
    void mustBeZero(std::uint64_t offset);

    // Variable parts, back to back behind the fixed part.

    /// @p length characters, a stored terminator included.
    void tailText(char const* name, std::uint64_t length, TagText& field);
    /// @p length bytes; a loaded field borrows them.
    void tailBytes(char const* name, std::uint64_t length, TagBytes& field);
    /// @p length characters, the name of an earlier register. @throws ZUL_file_bad_reference
    void tailRegisterName(char const* name, std::uint64_t length, ZUL_register const*& field);

private:
    enum class Pass { Load, Measure, Save, Visit };

    struct PendingLength {
        std::uint64_t offset;
        unsigned width;
        std::uint64_t value;
    };

    // What m_pendingCount does not count is not set: loading makes one of these for each tag.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
    TagLayout(Pass pass, ZUL_tag& tag) : m_pass(pass), m_tag(tag) {}

    template <std::integral T>
    void number(std::uint64_t offset, char const* name, T& field);
    ZUL_module const* findModule(std::uint64_t offset, char const* name);
    void saveModuleIndex(std::uint64_t offset, ZUL_module const* module);
    void finishTotal(std::uint64_t tail, char const* tooBig, TagProblem::Kind otherwise);
    [[noreturn]] void refuseLength() const;
    [[noreturn]] void refuseField() const;
    [[noreturn]] static void refuseOrphan();
    [[noreturn]] static void refuseToWrite(char const* message);
    void demandFails(char const* expected);
    void writeOrShowFixed(std::uint64_t length);
    std::uint64_t writeOrShowTailLength(std::uint64_t offset, unsigned width, char const* name,
                                        std::uint64_t current, std::uint64_t limit, char const* tooLong);
    void writeOrShowTotal(char const* tooBig, TagProblem::Kind otherwise);
    void writeOrShowZeros(std::uint64_t offset, std::uint64_t width);
    void writeOrShowTailText(char const* name, std::uint64_t offset, std::uint64_t length,
                             TagText const& field);
    void saveHeader();
    void showHeader();
    void show(std::uint64_t offset, std::uint64_t width, FieldKind kind, char const* name);
    void problem(TagProblem::Kind kind, std::string expected, std::string found);
    void badLength(std::uint64_t expected, char const* relation = "");
    std::uint32_t headerLength() const;
    std::span<std::byte const> part(std::uint64_t offset, std::uint64_t width) const;
    char const* chars(std::uint64_t offset) const;
    std::uint64_t takeTail(std::uint64_t length);

    Pass m_pass;
    ZUL_tag& m_tag;
    std::byte const* m_from = nullptr;
    std::byte* m_to = nullptr;
    std::uint64_t m_avail = 0;
    TagBlocks* m_texts = nullptr;
    FieldVisitor* m_visitor = nullptr;
    TagField m_last{}; // the field shown last, for demand()
    std::uint32_t m_id = 0;
    std::uint64_t m_fixedPart = 0;
    std::uint64_t m_length = 0;
    std::uint64_t m_tailOffset = 0;
    std::array<PendingLength, 3> m_pending; // lengths that are written once all of them are known to fit
    std::size_t m_pendingCount = 0;
    bool m_malformed = false; // total() refuses the tag once its lengths are right
};

// What loading does is inline: it runs for each field of each tag.

inline TagLayout TagLayout::forLoading(ZUL_tag& tag, std::byte const* bytes, std::uint64_t avail,
                                       TagBlocks* texts)
{
    TagLayout row(Pass::Load, tag);
    row.m_from = bytes;
    row.m_avail = avail;
    row.m_texts = texts;
    return row;
}

inline void TagLayout::needs(std::uint64_t count)
{
    if (loading() && m_avail < count) {
        refuseLength();
    }
}

inline void TagLayout::needsContainer() const
{
    if (loading() && m_tag.getParent() == nullptr) {
        refuseOrphan();
    }
}

inline void TagLayout::dependencies()
{
    if (writing()) {
        m_tag.checkDependentFields();
    }
}

inline void TagLayout::require(bool holds, char const* message) const
{
    if (!holds && writing()) {
        refuseToWrite(message);
    }
}

inline void TagLayout::demand(bool holds, char const* expected)
{
    if (!holds) {
        demandFails(expected);
    }
}

inline void TagLayout::demandOnceTotalled(bool holds, char const* expected)
{
    if (loading()) {
        m_malformed = m_malformed || !holds;
    } else {
        demand(holds, expected);
    }
}

inline std::uint32_t TagLayout::headerId(std::uint32_t saved)
{
    if (reading()) {
        return m_avail < sizeof(std::uint32_t) ? 0 : little_endian::read<std::uint32_t>(m_from);
    }
    return m_id = saved;
}

inline void TagLayout::fixed(std::uint64_t length)
{
    m_length = m_fixedPart = length;
    if (!loading()) {
        writeOrShowFixed(length);
    } else if (m_avail < length || headerLength() != length) {
        refuseLength();
    }
}

inline void TagLayout::variable(std::uint64_t fixedPart)
{
    m_fixedPart = m_tailOffset = fixedPart;
    needs(fixedPart);
    if (m_pass == Pass::Visit) {
        showHeader();
    }
}

inline std::uint64_t TagLayout::tailLength(std::uint64_t offset, unsigned width, char const* name,
                                           std::uint64_t current, std::uint64_t limit, char const* tooLong)
{
    if (!loading()) {
        return writeOrShowTailLength(offset, width, name, current, limit, tooLong);
    }
    switch (width) {
    case 1:
        return little_endian::read<std::uint8_t>(m_from + offset);
    case 2:
        return little_endian::read<std::uint16_t>(m_from + offset);
    default:
        return little_endian::read<std::uint32_t>(m_from + offset);
    }
}

inline void TagLayout::total(std::uint64_t tail, char const* tooBig)
{
    finishTotal(tail, tooBig, TagProblem::Kind::BadLength);
}

inline void TagLayout::totalElseMalformed(std::uint64_t tail, char const* tooBig)
{
    finishTotal(tail, tooBig, TagProblem::Kind::Malformed);
}

inline void TagLayout::finishTotal(std::uint64_t tail, char const* tooBig, TagProblem::Kind otherwise)
{
    m_length = m_fixedPart + tail;
    if (!loading()) {
        return writeOrShowTotal(tooBig, otherwise);
    }
    std::uint64_t const stated = headerLength();
    if (stated > m_avail || (stated != m_length && otherwise == TagProblem::Kind::BadLength)) {
        refuseLength();
    }
    if (stated != m_length || m_malformed) {
        refuseField();
    }
}

inline void TagLayout::text(std::uint64_t offset, std::uint64_t width, char const* name, TagText& field)
{
    if (loading()) {
        field.set(chars(offset), width, m_texts);
    } else {
        writtenText(offset, width, name, field.get());
    }
}

inline void TagLayout::optionalText(std::uint64_t offset, std::uint64_t width, char const* name,
                                    TagText& field)
{
    if (loading()) {
        field.set(chars(offset), *chars(offset) == '\0' ? 0 : width, m_texts);
    } else {
        writtenText(offset, width, name, field.get());
    }
}

inline void TagLayout::reserved(std::uint64_t offset, std::uint64_t width)
{
    if (m_pass == Pass::Visit) {
        show(offset, width, FieldKind::Reserved, "reserved");
    }
}

inline void TagLayout::zeros(std::uint64_t offset, std::uint64_t width)
{
    if (!loading()) {
        writeOrShowZeros(offset, width);
    }
}

inline void TagLayout::tailText(char const* name, std::uint64_t length, TagText& field)
{
    std::uint64_t const offset = takeTail(length);
    if (loading()) {
        field.set(chars(offset), length, m_texts);
    } else {
        writeOrShowTailText(name, offset, length, field);
    }
}

inline std::uint32_t TagLayout::headerLength() const
{
    constexpr std::uint64_t headerSize = 8;
    return m_avail < headerSize ? 0 : little_endian::read<std::uint32_t>(m_from + 4);
}

inline char const* TagLayout::chars(std::uint64_t offset) const
{
    return reinterpret_cast<char const*>(m_from + offset);
}

/// Where the next variable part begins.
inline std::uint64_t TagLayout::takeTail(std::uint64_t length)
{
    std::uint64_t const offset = m_tailOffset;
    m_tailOffset += length;
    return offset;
}

template <std::integral T>
inline void TagLayout::number(std::uint64_t offset, char const* name, T& field)
{
    switch (m_pass) {
    case Pass::Load:
        field = little_endian::read<T>(m_from + offset);
        break;
    case Pass::Save:
        little_endian::write(m_to + offset, field);
        break;
    case Pass::Visit:
        show(offset, sizeof(T), std::is_signed_v<T> ? FieldKind::Signed : FieldKind::Unsigned, name);
        field = m_last.bytes.size() == sizeof(T) ? little_endian::read<T>(m_last.bytes.data()) : T{};
        break;
    case Pass::Measure:
        break;
    }
}
