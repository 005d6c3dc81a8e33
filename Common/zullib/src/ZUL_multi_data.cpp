#include "ZUL_multi_data.h"

#include "ZUL_destination.h"
#include "ZUL_user_info.h"
#include "tag_layout.h"
#include "zul_class.h"
#include "zul_errors.h"

#include <memory>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::uint64_t bitsOffset = 88;

/// Adds @p tag to @p zul, which owns it from then on.
template <class Tag>
Tag* add(ZUL& zul, std::unique_ptr<Tag> tag)
{
    zul.AddTag(tag.get());
    return tag.release();
}

} // namespace

ZUL_multi_data::ZUL_multi_data(ZUL_multi_data const& other) : LaidOutTag(other.getParent())
{
    *this = other;
}

ZUL_multi_data& ZUL_multi_data::operator=(ZUL_multi_data const& other)
{
    if (this == &other) {
        return *this;
    }
    copyFieldsFrom(other);
    if (other.m_destination == nullptr) {
        dropDestination();
    } else if (m_destination != nullptr || getParent() != nullptr) {
        setBoard(other.m_destination->getBoard(), other.m_destination->getRevision());
    }
    return *this;
}

void ZUL_multi_data::copyFieldsFrom(ZUL_multi_data const& other)
{
    m_bitstream = other.m_bitstream;
    m_fpgaType = other.m_fpgaType;
    m_speedGrade = other.m_speedGrade;
    m_package = other.m_package;
    m_clocks = other.m_clocks;
    m_index = other.m_index;
}

void ZUL_multi_data::dropDestination()
{
    ZUL_destination* const destination = std::exchange(m_destination, nullptr);
    if (destination != nullptr && destination->getParent() != nullptr) {
        destination->getParent()->removeTag(destination);
    }
}

// clang-format off
void ZUL_multi_data::layout(TagLayout& row)
{
    row.payload(bitsOffset,  "bitstream",    m_bitstream);
    row.u32     ( 8,         "fpga type",    m_fpgaType);
    row.u32     (12,         "speed grade",  m_speedGrade);
    row.u32     (16,         "package",      m_package);
    row.u32     (20,         "clock 0",      m_clocks[0]);
    row.u32     (24,         "clock 1",      m_clocks[1]);
    row.u32     (28,         "clock 2",      m_clocks[2]);
    row.reserved(32, 48);
    row.u32     (80,         "config index", m_index);
    row.reserved(84, 4);
}
// clang-format on

void ZUL_multi_data::checkDependentFields()
{
    if (bitsOffset + m_bitstream.size() > UINT32_MAX) {
        throw std::runtime_error("The size of a multi_data grew to big to save it!");
    }
}

unsigned int ZUL_multi_data::getClock(unsigned int i) const
{
    if (i >= m_clocks.size()) {
        throw ZUL_invalid_data("invalid clock index");
    }
    return m_clocks[i];
}

unsigned int ZUL_multi_data::setClock(unsigned int i, unsigned int value)
{
    if (i >= m_clocks.size()) {
        throw ZUL_invalid_data("invalid clock index");
    }
    return m_clocks[i] = value;
}

void ZUL_multi_data::setDestination(ZUL_destination* destination)
{
    m_destination = destination;
    if (destination != nullptr) {
        setIndex(destination->getIndex());
    }
}

void ZUL_multi_data::setBoard(unsigned short const& board, unsigned short const& revision)
{
    if (m_destination != nullptr) {
        m_destination->setBoard(board, revision);
        return;
    }
    ZUL& zul = container("a board");
    auto const index = static_cast<unsigned char>(m_index);
    m_destination = zul.searchDestination(index, board, revision);
    if (m_destination == nullptr) {
        m_destination = add(zul, std::make_unique<ZUL_destination>(&zul, index, board, revision));
    }
}

unsigned short ZUL_multi_data::getBoardType() const noexcept
{
    // Containers made before there were destinations hold the board type in the FPGA type.
    return m_destination != nullptr ? m_destination->getBoard() : static_cast<unsigned short>(m_fpgaType);
}

unsigned short ZUL_multi_data::getBoardRevision() const noexcept
{
    return m_destination != nullptr ? m_destination->getRevision() : static_cast<unsigned short>(0);
}

void ZUL_multi_data::setId(char const* id)
{
    ZUL_user_info* const info = findId();
    if (info != nullptr && id != nullptr) {
        info->setValue(id);
    } else if (info != nullptr) {
        getParent()->removeTag(info);
    } else if (id != nullptr) {
        addId(id);
    }
}

char const* ZUL_multi_data::generateId(bool)
{
    // The flag does not ask for a new identifier: one that is there is kept, whoever asks.
    if (findId() == nullptr) {
        addId("__INVALID_ZUL_MULTI_DATA_ID__");
    }
    return getId();
}

char const* ZUL_multi_data::getId() const
{
    ZUL_user_info const* const info = findId();
    return info == nullptr ? nullptr : info->getInfoString();
}

std::string ZUL_multi_data::idName() const
{
    // The number overwrites the beginning of the text: files hold the names that this makes.
    std::string name = "__ZUL_MULTI_DATA_ID__";
    std::string const number = ":" + std::to_string(m_index);
    return name.replace(0, number.size(), number);
}

ZUL_user_info* ZUL_multi_data::findId() const
{
    return getParent() == nullptr ? nullptr : getParent()->findUserInfo(idName().c_str());
}

void ZUL_multi_data::addId(char const* id)
{
    ZUL& zul = container("an identifier");
    add(zul, std::make_unique<ZUL_user_info>(&zul, idName().c_str(), id));
}

ZUL& ZUL_multi_data::container(char const* purpose) const
{
    if (getParent() == nullptr) {
        throw ZUL_invalid_data(std::string("a configuration without container cannot have ") + purpose);
    }
    return *getParent();
}
