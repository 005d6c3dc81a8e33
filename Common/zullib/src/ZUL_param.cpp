#include "ZUL_param.h"

#include "ZUL_module.h"
#include "tag_layout.h"
#include "zul_errors.h"

#include <cstring>
#include <limits>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::uint64_t elementSize = 8;

enum class Storage { None, Integer, Real, Field, Text };

Storage storageOf(std::uint32_t type) noexcept
{
    switch (type) {
    case 1:
    case 2:
    case 3:
    case 4:
        return Storage::Integer;
    case 5:
        return Storage::Real;
    case QL_SINTFIELD:
    case QL_UINTFIELD:
    case QL_DOUBLEFIELD:
        return Storage::Field;
    case 13:
    case 14:
    case 16:
        return Storage::Text;
    default:
        return Storage::None;
    }
}

} // namespace

ZUL_param::ZUL_param(ZUL_param const& other) : ZUL_param(nullptr, QL_ParamType{1}, nullptr)
{
    *this = other;
}

ZUL_param& ZUL_param::operator=(ZUL_param const& other)
{
    if (this == &other) {
        return *this;
    }
    if (storageOf(other.m_type) == Storage::None) {
        throw std::runtime_error("Zul Param: Tried to assign an invalid type.");
    }
    if (storageOf(other.m_type) == Storage::Field && other.m_fieldSize == 0) {
        throw ZUL_invalid_data("field without elements");
    }
    other.checkElements();
    TagText name = other.m_name;
    auto copy = other.m_value;
    if (auto* const text = std::get_if<TagText>(&copy); text != nullptr && !*text) {
        text->set("", 1);
    }
    m_name = std::move(name);
    m_module = other.m_module;
    m_paramIndex = other.m_paramIndex;
    m_flags = other.m_flags;
    m_type = other.m_type;
    m_fieldSize = other.m_fieldSize;
    m_value = std::move(copy);
    return *this;
}

// clang-format off
void ZUL_param::layout(TagLayout& row)
{
    row.needsContainer();
    row.dependencies();
    if (row.writing()) {
        checkValueCanBeSaved();
    }
    row.variable(192);
    row.module(8, "module index", m_module);

    std::uint32_t type = m_type;
    row.u32(100, "type", type);
    Storage const storage = storageOf(type);
    bool const isField = storage == Storage::Field;
    bool const isText = storage == Storage::Text;
    row.demandOnceTotalled(storage != Storage::None, "1 to 8, 13, 14 or 16");
    auto const elements = row.tailLength(104, 4, "element count", isField ? m_fieldSize : 0);
    row.demandOnceTotalled(isField == (elements != 0), isField ? "at least 1" : "0");
    auto const* const text = value<TagText>();
    auto const characters = row.tailLength(120, 4, "text length", text == nullptr ? 0 : text->length());
    row.demandOnceTotalled(isText || characters == 0, "0");
    std::uint64_t const fieldBytes = isField ? elements * elementSize : 0;
    row.total(fieldBytes + characters, "The size of a parameter description grew to big to save it!");

    if (row.reading()) {
        m_type = QL_ParamType{type};
        discardValue();
        m_fieldSize = static_cast<std::uint32_t>(elements);
        m_paramIndex = -1;
    }
    std::uint64_t integer = getValue();
    double real = storage == Storage::Real ? getValueDouble() : 0;
    row.reserved( 12, 4);
    row.text    ( 16, nameWidth, "name", m_name);
    row.u64     ( 80, "integer value", integer);
    row.real    ( 88, "double value", real);
    row.u32     ( 96, "flags", m_flags);
    row.reserved(108, 12);
    row.reserved(124, 68);
    if (isField) {
        row.tailBytes("elements", fieldBytes, *std::get_if<TagBytes>(&m_value));
    }
    TagText none;
    row.tailText("text", characters, isText ? *std::get_if<TagText>(&m_value) : none);

    if (row.reading() && storage == Storage::Integer) {
        m_value = integer;
    } else if (row.reading() && storage == Storage::Real) {
        m_value = real;
    }
}
// clang-format on

void ZUL_param::checkDependentFields()
{
    if (m_module == nullptr) {
        throw std::runtime_error("Tried to save ZUL_param without assigning a ZUL_module. Not allowed.");
    }
}

void ZUL_param::checkValueCanBeSaved() const
{
    if (storageOf(m_type) == Storage::None) {
        throw std::invalid_argument("Save Zul Param: Tried to write an unimplemented type");
    }
    checkElements();
}

void ZUL_param::checkElements() const
{
    // A change from one field type to another keeps the count but not the elements.
    auto const* const field = value<TagBytes>();
    if (field != nullptr && b_fieldlen() != field->size()) {
        throw ZUL_invalid_data("field without elements");
    }
}

int ZUL_param::getModuleIndex() const noexcept
{
    return m_module == nullptr ? -1 : m_module->getIndex();
}

void ZUL_param::setType(QL_ParamType const& type) noexcept
{
    if (type != m_type) {
        m_type = type;
        discardValue();
    }
}

bool ZUL_param::isStringType(QL_ParamType type) const noexcept
{
    return storageOf(type) == Storage::Text;
}

void ZUL_param::setValue(unsigned long long const& value) noexcept
{
    if (storageOf(m_type) == Storage::Integer) {
        m_value.emplace<std::uint64_t>(value);
    }
}

void ZUL_param::setValue(double const& value) noexcept
{
    if (storageOf(m_type) == Storage::Real) {
        m_value = value;
    }
}

double ZUL_param::getValueDouble() const noexcept
{
    return value<double>() == nullptr ? std::numeric_limits<double>::quiet_NaN() : *value<double>();
}

void ZUL_param::setParamString(char const* text)
{
    if (auto* const own = std::get_if<TagText>(&m_value)) {
        // The terminator counts as room, so that "" is kept as an empty text.
        own->set(text, text == nullptr ? 0 : std::strlen(text) + 1);
    }
}

void ZUL_param::setField(void const* data, fieldType kind, unsigned int count)
{
    if (count == 0) {
        throw ZUL_invalid_data("field without elements");
    }
    checkFieldKind(kind);
    if (data == nullptr) {
        throw ZUL_invalid_data("field without elements");
    }
    std::get_if<TagBytes>(&m_value)->copyFrom(data, count * elementSize);
    m_fieldSize = count;
}

void ZUL_param::checkFieldKind(fieldType kind) const
{
    if (kind != FIELD_INTEGER && kind != FIELD_DOUBLE) {
        throw ZUL_invalid_data("type parameter is invalid");
    }
    if (kind == FIELD_DOUBLE && m_type != QL_DOUBLEFIELD) {
        throw ZUL_inconsistent_data("FIELD_DOUBLE data but parameter is not QL_DOUBLEFIELD");
    }
    if (kind == FIELD_INTEGER && m_type != QL_SINTFIELD && m_type != QL_UINTFIELD) {
        throw ZUL_inconsistent_data("FIELD_INTEGER data but parameter is not QL_SINTFIELD or QL_UINTFIELD");
    }
}

unsigned long ZUL_param::b_fieldlen() const noexcept
{
    return storageOf(m_type) == Storage::Field ? m_fieldSize * elementSize : 0;
}

void ZUL_param::discardValue() noexcept
{
    switch (storageOf(m_type)) {
    case Storage::Real:
        m_value.emplace<double>(0);
        break;
    case Storage::Text:
        m_value.emplace<TagText>();
        break;
    case Storage::Field:
        m_value.emplace<TagBytes>();
        break;
    default:
        m_value.emplace<std::uint64_t>(0);
    }
}
