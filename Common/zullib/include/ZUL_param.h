#pragma once

#include "laid_out_tag.h"
#include "tag_bytes.h"
#include "tag_text.h"

#include <cstdint>
#include <variant>

class ZUL_module;

/// What a parameter's value is. The numbers without a name belong to the design tool:
/// 1 to 4 are integers, 5 is a double, 13, 14 and 16 are texts; 9 to 12 and 15 are known but have no value
/// and can be neither saved nor loaded.
enum QL_ParamType : std::uint32_t {
    QL_SINTFIELD = 6,  ///< a field of signed 64-bit integers
    QL_UINTFIELD = 7,  ///< a field of unsigned 64-bit integers
    QL_DOUBLEFIELD = 8 ///< a field of doubles
};

/// One parameter of a module: a number, a text, or a field of numbers.
class ZUL_param : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x815A000;

    /// What the elements of a field are.
    enum fieldType : std::uint32_t { FIELD_INTEGER = 1, FIELD_DOUBLE = 2 };

    /// A parameter without name, with value 0, without elements, with flags 0 and parameter index -1.
    /// @param module not owned, has to outlive this tag; may be null
    ZUL_param(ZUL* parent, QL_ParamType type, ZUL_module const* module)
        : LaidOutTag(parent), m_type(type), m_module(module)
    {
        discardValue();
    }
    /// A parameter without container. @throws as the assignment
    ZUL_param(ZUL_param const& other);
    explicit ZUL_param(ZUL_param const* other) : ZUL_param(*other) {}
    /// Takes over everything but the container: the module is shared, a text or field is copied and owned. A
    /// text that is absent becomes an empty one. Nothing is changed when this throws.
    /// @throws std::runtime_error "Zul Param: Tried to assign an invalid type." when @p other
    /// has a type without value
    /// @throws ZUL_invalid_data "field without elements" when @p other is a field that has none
    ZUL_param& operator=(ZUL_param const& other);

    /// Keeps at most 64 characters.
    void setName(char const* name) { m_name.set(name, nameWidth); }
    /// Null when there is none; valid until the next change of the name.
    char const* getName() const noexcept { return m_name.get(); }
    void setModule(ZUL_module const* module) noexcept { m_module = module; }
    /// Null when there is none.
    ZUL_module const* getModule() const noexcept { return m_module; }
    /// The index of the module; -1 when there is none.
    int getModuleIndex() const noexcept;
    /// Meant for the design tool; carried unchanged.
    void setFlags(unsigned int flags) noexcept { m_flags = flags; }
    unsigned int getFlags() const noexcept { return m_flags; }
    /// Not stored in files; -1 after loading.
    void setParamIndex(int const& index) noexcept { m_paramIndex = index; }
    int getParamIndex() const noexcept { return m_paramIndex; }

    /// Another type than the present one discards the value: it is 0, or absent. The number of elements
    /// stays.
    void setType(QL_ParamType const& type) noexcept;
    QL_ParamType getType() const noexcept { return m_type; }
    /// True for 13, 14 and 16.
    bool isStringType(QL_ParamType type) const noexcept;

    /// Does nothing unless the type is an integer one.
    void setValue(unsigned long long const& value) noexcept;
    /// 0 unless the type is an integer one.
    unsigned long long getValue() const noexcept
    {
        return value<std::uint64_t>() == nullptr ? 0 : *value<std::uint64_t>();
    }
    /// Does nothing unless the type is the double one.
    void setValue(double const& value) noexcept;
    /// A quiet NaN unless the type is the double one.
    double getValueDouble() const noexcept;
    /// Keeps the whole of @p text, "" included; null leaves none. Does nothing unless the type is a text one.
    void setParamString(char const* text);
    /// Null when there is none or the type is not a text one; valid until the next change of the value.
    char const* getParamString() const noexcept
    {
        return value<TagText>() == nullptr ? nullptr : value<TagText>()->get();
    }

    /// Copies @p count elements of 8 bytes each.
    /// @param kind what the elements are; has to fit the type
    /// @throws ZUL_invalid_data "field without elements" when @p count is 0 or @p data is null;
    ///         "type parameter is invalid" when @p kind is none of the two
    /// @throws ZUL_inconsistent_data when @p kind does not fit the type
    void setField(void const* data, fieldType kind, unsigned int count);
    /// The elements; null when there are none or the type is not a field. After loading they lie in the
    /// loaded bytes and live as long as these. Valid until the next change of the value; not aligned.
    void const* getField() const noexcept
    {
        return value<TagBytes>() == nullptr ? nullptr : value<TagBytes>()->data();
    }
    /// Number of elements.
    unsigned int getFieldSize() const noexcept { return m_fieldSize; }
    /// Bytes of the elements; 0 when the type is not a field.
    unsigned long b_fieldlen() const noexcept;

    /// @throws std::runtime_error when there is no module
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    static constexpr std::uint64_t nameWidth = 64;

    void layout(TagLayout& row) override;
    /// @throws std::invalid_argument when the type has no value; ZUL_invalid_data when the elements are gone
    void checkValueCanBeSaved() const;
    void checkElements() const;
    void checkFieldKind(fieldType kind) const;
    void discardValue() noexcept;

    /// The part of the value that the type stands for, or null.
    template <class Part>
    Part const* value() const noexcept
    {
        return std::get_if<Part>(&m_value);
    }

    std::int32_t m_paramIndex = -1;
    std::uint32_t m_flags = 0;
    QL_ParamType m_type;
    std::uint32_t m_fieldSize = 0;
    ZUL_module const* m_module;
    TagText m_name;
    std::variant<std::uint64_t, double, TagText, TagBytes> m_value; // the alternative follows from the type
};
