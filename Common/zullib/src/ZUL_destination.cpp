#include "ZUL_destination.h"

#include "tag_layout.h"

ZUL_destination::ZUL_destination(ZUL* parent, unsigned char const& index, unsigned short const& board,
                                 unsigned short const& revision)
    : LaidOutTag(parent), m_board(board), m_revision(revision), m_index(index)
{
}

ZUL_destination& ZUL_destination::operator=(ZUL_destination const& other)
{
    m_index = other.m_index;
    setBoard(other.m_board, other.m_revision);
    return *this;
}

// clang-format off
void ZUL_destination::layout(TagLayout& row)
{
    row.fixed(16);
    row.u16  ( 8, "board",    m_board);
    row.u16  (10, "revision", m_revision);
    row.u8   (12, "index",    m_index);
    row.zeros(13, 3);
}
// clang-format on

void ZUL_destination::setBoard(unsigned short const& board)
{
    m_board = board;
    keyChanged();
}

void ZUL_destination::setBoard(unsigned short const& board, unsigned short const& revision)
{
    m_board = board;
    m_revision = revision;
    keyChanged();
}

void ZUL_destination::setRevision(unsigned short const& revision)
{
    m_revision = revision;
    keyChanged();
}

void ZUL_destination::setIndex(unsigned char const& index)
{
    m_index = index;
    keyChanged();
}
