#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// What the bytes of a field mean.
enum class FieldKind {
    TagId,             ///< u32 at offset 0
    TagLength,         ///< u32 at offset 4
    Unsigned,          ///< unsigned number, little-endian
    Signed,            ///< two's complement number, little-endian
    Real,              ///< IEEE 754 double
    TailLength,        ///< number of bytes or elements of a variable part; unsigned
    ProcessReference,  ///< u32 process id of an earlier tag
    ModuleReference,   ///< u32 module index of an earlier tag
    Text,              ///< characters, ending at the first NUL or at the width
    RegisterReference, ///< characters: the name of an earlier register or register link
    Bytes,             ///< uninterpreted bytes
    Zero,              ///< written as zero, not looked at when read
    MustBeZero,        ///< written as zero, refused when it is not
    Reserved           ///< neither written nor read
};

/// One field of a tag as it lies in the tag's bytes.
struct TagField {
    std::uint64_t offset;             ///< from the first byte of the tag's header
    std::uint64_t width;              ///< bytes that the layout gives it
    FieldKind kind;                   ///< how to read the bytes
    char const* name;                 ///< static text, e.g. "process id"
    std::span<std::byte const> bytes; ///< the field's bytes; fewer than width where the tag is cut short

    /// The number of an unsigned kind; 0 when bytes are missing.
    std::uint64_t number() const noexcept;
    /// The number of FieldKind::Signed, sign-extended; 0 when bytes are missing.
    std::int64_t signedNumber() const noexcept;
    /// The number of FieldKind::Real; 0 when bytes are missing.
    double real() const noexcept;
    /// The characters up to the first NUL.
    std::string text() const;
};

/// A rule of the layout that a tag's bytes break.
struct TagProblem {
    enum class Kind { BadLength, Malformed };

    Kind kind;
    std::uint64_t offset; ///< of the field, from the first byte of the tag's header
    std::uint64_t width;  ///< of the field in bytes
    char const* field;    ///< its name; static text
    std::string expected; ///< what would be right
    std::string found;    ///< what is there
};

/// Is shown the fields of a tag, in the order in which the layout names them.
class FieldVisitor {
public:
    virtual ~FieldVisitor() = default;
    virtual void field(TagField const& field) = 0;
    virtual void problem(TagProblem const&) {}
};
