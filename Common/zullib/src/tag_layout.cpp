#include "tag_layout.h"

#include "ZUL_module.h"
#include "ZUL_process.h"
#include "ZUL_register.h"
#include "zul_class.h"
#include "zul_errors.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <string_view>

TagLayout TagLayout::forMeasuring(ZUL_tag& tag)
{
    return {Pass::Measure, tag};
}

TagLayout TagLayout::forSaving(ZUL_tag& tag, std::byte* bytes)
{
    TagLayout row(Pass::Save, tag);
    row.m_to = bytes;
    row.m_id = tag.getTagId();
    return row;
}

TagLayout TagLayout::forVisiting(ZUL_tag& tag, std::span<std::byte const> bytes, FieldVisitor& visitor)
{
    TagLayout row(Pass::Visit, tag);
    row.m_from = bytes.data();
    row.m_avail = bytes.size();
    row.m_visitor = &visitor;
    return row;
}

void TagLayout::refuseLength() const
{
    throw ZUL_file_bad_tag_length(m_tag.getTagId());
}

void TagLayout::refuseField() const
{
    throw ZUL_file_malformed_tag(m_tag.getTagId());
}

void TagLayout::refuseOrphan()
{
    throw std::logic_error("loading orphaned tag without parent is invalid");
}

void TagLayout::refuseToWrite(char const* message)
{
    throw std::runtime_error(message);
}

void TagLayout::demandFails(char const* expected)
{
    if (loading()) {
        refuseField();
    }
    if (m_pass == Pass::Visit && m_last.bytes.size() == m_last.width) {
        problem(TagProblem::Kind::Malformed, expected, std::to_string(m_last.number()));
    }
}

void TagLayout::writeOrShowFixed(std::uint64_t length)
{
    if (m_pass == Pass::Save) {
        saveHeader();
    } else if (m_pass == Pass::Visit) {
        showHeader();
        if (headerLength() != length) {
            badLength(length);
        }
    }
}

std::uint64_t TagLayout::writeOrShowTailLength(std::uint64_t offset, unsigned width, char const* name,
                                               std::uint64_t current, std::uint64_t limit,
                                               char const* tooLong)
{
    if (m_pass == Pass::Visit) {
        show(offset, width, FieldKind::TailLength, name);
        return m_last.number();
    }
    require(current <= limit, tooLong);
    m_pending.at(m_pendingCount++) = {offset, width, current};
    return current;
}

void TagLayout::writeOrShowTotal(char const* tooBig, TagProblem::Kind otherwise)
{
    constexpr std::uint64_t largestTag = UINT32_MAX;
    require(m_length <= largestTag, tooBig);
    if (m_pass == Pass::Visit && headerLength() != m_length) {
        m_last = {4, 4, FieldKind::TagLength, "length", part(4, 4)};
        problem(otherwise, std::to_string(m_length), std::to_string(headerLength()));
    }
    if (m_pass == Pass::Save) {
        saveHeader();
        for (std::size_t i = 0; i < m_pendingCount; ++i) {
            std::memcpy(m_to + m_pending.at(i).offset, &m_pending.at(i).value, m_pending.at(i).width);
        }
    }
}

void TagLayout::payload(std::uint64_t fixedPart, char const* name, TagBytes& field)
{
    m_fixedPart = m_tailOffset = fixedPart;
    m_length = fixedPart + field.size();
    switch (m_pass) {
    case Pass::Load:
        needs(fixedPart);
        m_length = headerLength();
        if (m_length < fixedPart || m_length > m_avail) {
            throw ZUL_file_bad_tag_length(m_tag.getTagId());
        }
        field.borrow(m_from + fixedPart, m_length - fixedPart);
        break;
    case Pass::Save:
        saveHeader();
        tailBytes(name, field.size(), field);
        break;
    case Pass::Visit:
        showHeader();
        m_length = headerLength();
        if (m_length < fixedPart) {
            badLength(fixedPart, "at least ");
        } else {
            tailBytes(name, m_length - fixedPart, field);
        }
        break;
    case Pass::Measure:
        break;
    }
}

void TagLayout::real(std::uint64_t offset, char const* name, double& field)
{
    if (m_pass == Pass::Visit) {
        show(offset, sizeof field, FieldKind::Real, name);
        field = m_last.real();
        return;
    }
    auto bits = std::bit_cast<std::uint64_t>(field);
    u64(offset, name, bits);
    field = std::bit_cast<double>(bits);
}

void TagLayout::writtenText(std::uint64_t offset, std::uint64_t width, char const* name, char const* text)
{
    if (m_pass == Pass::Save) {
        std::size_t const length = text == nullptr ? 0 : strnlen(text, width);
        if (length != 0) {
            std::memcpy(m_to + offset, text, length);
        }
        std::memset(m_to + offset + length, 0, width - length);
    } else if (m_pass == Pass::Visit) {
        show(offset, width, FieldKind::Text, name);
    }
}

void TagLayout::process(std::uint64_t offset, char const* name, ZUL_process const*& field)
{
    if (loading()) {
        ZUL const* const zul = m_tag.getParent();
        field =
            zul == nullptr ? nullptr : zul->getProcessAt(little_endian::read<std::uint32_t>(m_from + offset));
        if (field == nullptr) {
            throw ZUL_file_bad_reference(m_tag.getTagId());
        }
    } else if (m_pass == Pass::Save) {
        little_endian::write(m_to + offset, field->getId());
    } else if (m_pass == Pass::Visit) {
        show(offset, sizeof(std::uint32_t), FieldKind::ProcessReference, name);
    }
}

void TagLayout::module(std::uint64_t offset, char const* name, ZUL_module const*& field)
{
    if (!loading()) {
        saveModuleIndex(offset, field);
        findModule(offset, name);
    } else if (ZUL_module const* const found = findModule(offset, name)) {
        field = found;
    } else {
        throw ZUL_file_bad_reference(m_tag.getTagId());
    }
}

void TagLayout::moduleElseMalformed(std::uint64_t offset, char const* name, ZUL_module const*& field)
{
    if (!loading()) {
        module(offset, name, field);
    } else if (ZUL_module const* const found = findModule(offset, name)) {
        field = found;
    } else {
        throw ZUL_file_malformed_tag(m_tag.getTagId());
    }
}

ZUL_module const* TagLayout::findModule(std::uint64_t offset, char const* name)
{
    if (m_pass == Pass::Visit) {
        show(offset, sizeof(std::uint32_t), FieldKind::ModuleReference, name);
    }
    ZUL const* const zul = loading() ? m_tag.getParent() : nullptr;
    return zul == nullptr ? nullptr : zul->getModuleAt(little_endian::read<std::uint32_t>(m_from + offset));
}

void TagLayout::saveModuleIndex(std::uint64_t offset, ZUL_module const* module)
{
    if (m_pass == Pass::Save) {
        little_endian::write(m_to + offset, module->getIndex());
    }
}

void TagLayout::writeOrShowZeros(std::uint64_t offset, std::uint64_t width)
{
    if (m_pass == Pass::Save) {
        std::memset(m_to + offset, 0, width);
    } else if (m_pass == Pass::Visit) {
        show(offset, width, FieldKind::Zero, "reserved");
    }
}

void TagLayout::mustBeZero(std::uint64_t offset)
{
    std::uint8_t value = 0;
    if (m_pass == Pass::Visit) {
        show(offset, sizeof value, FieldKind::MustBeZero, "reserved");
        value = static_cast<std::uint8_t>(m_last.number());
    } else {
        u8(offset, "reserved", value);
    }
    demand(value == 0, "0");
}

void TagLayout::writeOrShowTailText(char const* name, std::uint64_t offset, std::uint64_t length,
                                    TagText const& field)
{
    if (m_pass == Pass::Save && length != 0) {
        std::memcpy(m_to + offset, field.get(), length);
    } else if (m_pass == Pass::Visit && length != 0) {
        show(offset, length, FieldKind::Text, name);
    }
}

void TagLayout::tailBytes(char const* name, std::uint64_t length, TagBytes& field)
{
    std::uint64_t const offset = takeTail(length);
    if (loading()) {
        field.borrow(m_from + offset, length);
    } else if (m_pass == Pass::Save && length != 0) {
        std::memcpy(m_to + offset, field.data(), length);
    } else if (m_pass == Pass::Visit && length != 0) {
        show(offset, length, FieldKind::Bytes, name);
    }
}

void TagLayout::tailRegisterName(char const* name, std::uint64_t length, ZUL_register const*& field)
{
    std::uint64_t const offset = takeTail(length);
    if (loading()) {
        ZUL const* const zul = m_tag.getParent();
        std::string_view const sought(chars(offset), strnlen(chars(offset), length));
        field = zul == nullptr ? nullptr : zul->findRegister(sought);
        if (field == nullptr) {
            throw ZUL_file_bad_reference(m_tag.getTagId());
        }
    } else if (m_pass == Pass::Save && length != 0) {
        std::memcpy(m_to + offset, field->getName(), length);
    } else if (m_pass == Pass::Visit && length != 0) {
        show(offset, length, FieldKind::RegisterReference, name);
    }
}

void TagLayout::saveHeader()
{
    little_endian::write(m_to, m_id);
    little_endian::write(m_to + 4, static_cast<std::uint32_t>(m_length));
}

void TagLayout::showHeader()
{
    show(0, 4, FieldKind::TagId, "tag id");
    show(4, 4, FieldKind::TagLength, "length");
    if (m_avail < m_fixedPart) {
        problem(TagProblem::Kind::BadLength, "at least " + std::to_string(m_fixedPart) + " bytes",
                std::to_string(m_avail) + " bytes");
    }
}

void TagLayout::show(std::uint64_t offset, std::uint64_t width, FieldKind kind, char const* name)
{
    m_last = {offset, width, kind, name, part(offset, width)};
    m_visitor->field(m_last);
}

void TagLayout::problem(TagProblem::Kind kind, std::string expected, std::string found)
{
    m_visitor->problem(
        {kind, m_last.offset, m_last.width, m_last.name, std::move(expected), std::move(found)});
}

void TagLayout::badLength(std::uint64_t expected, char const* relation)
{
    m_last = {4, 4, FieldKind::TagLength, "length", part(4, 4)};
    problem(TagProblem::Kind::BadLength, relation + std::to_string(expected), std::to_string(headerLength()));
}

std::span<std::byte const> TagLayout::part(std::uint64_t offset, std::uint64_t width) const
{
    std::uint64_t const begin = std::min(offset, m_avail);
    return {m_from + begin, std::min(width, m_avail - begin)};
}
