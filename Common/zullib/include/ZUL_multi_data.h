#pragma once

#include "laid_out_tag.h"
#include "tag_bytes.h"

#include <array>
#include <cstdint>
#include <string>

class ZUL_destination;
class ZUL_user_info;

/// The configuration bitstream of one FPGA, for one configuration index.
///
/// Its board is that of a destination tag, its identifier the value of a user info tag of the same container. A loaded
/// bitstream lies in the loaded buffer; one that was set or copied belongs to the tag.
class ZUL_multi_data : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150120;

    /// FPGA type 0xFFFFFFFF, everything else 0, no destination, no bitstream.
    explicit ZUL_multi_data(ZUL* parent) : LaidOutTag(parent) {}
    /// The copy starts with the container of @p other, so that its destination can be found there.
    /// @throws as assignment does
    ZUL_multi_data(ZUL_multi_data const& other);
    explicit ZUL_multi_data(ZUL_multi_data const* other) : ZUL_multi_data(*other) {}
    /// Copies every field; the bitstream is then this tag's own.
    ///
    /// A destination of @p other is taken over with setBoard, so that this tag's container has it, unless this tag has
    /// neither container nor destination. When @p other has none, this tag's destination is deleted from its container.
    /// @throws std::bad_alloc; ZUL_invalid_data when the destination that should go is not in its container
    ZUL_multi_data& operator=(ZUL_multi_data const& other);
    /// Copies all but container and destination; the bitstream is then this tag's own. @throws std::bad_alloc
    void copyFieldsFrom(ZUL_multi_data const& other);

    /// Stores a copy of @p length bytes. @throws std::bad_alloc; the old bitstream is kept then
    void setData(void const* data, unsigned long length) { m_bitstream.copyFrom(data, length); }
    /// The bitstream; valid until it changes, a loaded one as long as the loaded buffer.
    void const* getData() const noexcept { return m_bitstream.data(); }
    /// Bytes of the bitstream.
    unsigned long getLength() const noexcept { return m_bitstream.size(); }

    void setFpgaType(unsigned int type) noexcept { m_fpgaType = type; }
    unsigned int getFpgaType() const noexcept { return m_fpgaType; }
    unsigned int getSpeedgrade() const noexcept { return m_speedGrade; }
    unsigned int getPackage() const noexcept { return m_package; }
    /// @param i 0, 1 or 2
    /// @throws ZUL_invalid_data "invalid clock index"
    unsigned int getClock(unsigned int i) const;
    /// @param i 0, 1 or 2
    /// @return @p value
    /// @throws ZUL_invalid_data "invalid clock index"; nothing is stored
    unsigned int setClock(unsigned int i, unsigned int value);
    void setIndex(unsigned int index) noexcept { m_index = index; }
    unsigned int getIndex() const noexcept { return m_index; }

    /// Refers to @p destination, which stays its owner's, and takes over its index; null leaves no destination and
    /// keeps the index.
    void setDestination(ZUL_destination* destination);
    ZUL_destination* getDestination() const noexcept { return m_destination; }
    /// Changes the destination's board; without destination, finds the container's for the low 8 bits of the index,
    /// @p board and @p revision, or adds it. The index stays.
    /// @throws ZUL_invalid_data when there is neither destination nor container
    void setBoard(unsigned short const& board, unsigned short const& revision);
    /// The destination's board type; the low 16 bits of the FPGA type without destination.
    unsigned short getBoardType() const noexcept;
    /// The destination's revision; 0 without destination.
    unsigned short getBoardRevision() const noexcept;

    /// Stores the identifier in the container; null removes it.
    /// @throws ZUL_invalid_data when @p id is not null and there is no container
    void setId(char const* id);
    /// The identifier; one that says that it is not valid is made when there is none. The flag changes nothing.
    /// @throws ZUL_invalid_data when there is no container
    char const* generateId(bool);
    /// The identifier, valid until it is changed; null when there is none.
    char const* getId() const;

    /// The container calls this before it measures its configurations: a measured length may be beyond u32.
    /// @throws std::runtime_error "The size of a multi_data grew to big to save it!" when the tag's length is no u32
    void checkDependentFields() override;
    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;
    void dropDestination();
    std::string idName() const;
    ZUL_user_info* findId() const;
    void addId(char const* id);
    ZUL& container(char const* purpose) const;

    std::uint32_t m_fpgaType = 0xFFFFFFFF;
    std::uint32_t m_speedGrade = 0;
    std::uint32_t m_package = 0;
    std::array<std::uint32_t, 3> m_clocks{};
    std::uint32_t m_index = 0;
    ZUL_destination* m_destination = nullptr;
    TagBytes m_bitstream;
};
