#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// A board that the design is built for. Configurations with the same index belong to it.
class ZUL_destination : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150099;

    /// @param index of the configurations for this board
    /// @param board board type number
    ZUL_destination(ZUL* parent, unsigned char const& index, unsigned short const& board,
                    unsigned short const& revision);
    ZUL_destination(ZUL_destination const& other) = default;
    explicit ZUL_destination(ZUL_destination const* other) : ZUL_destination(*other) {}
    ZUL_destination& operator=(ZUL_destination const& other);

    void setBoard(unsigned short const& board);
    void setBoard(unsigned short const& board, unsigned short const& revision);
    /// The board type number.
    unsigned short getBoard() const noexcept { return m_board; }
    void setRevision(unsigned short const& revision);
    unsigned short getRevision() const noexcept { return m_revision; }
    void setIndex(unsigned char const& index);
    unsigned char getIndex() const noexcept { return m_index; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint16_t m_board;
    std::uint16_t m_revision;
    std::uint8_t m_index;
};
