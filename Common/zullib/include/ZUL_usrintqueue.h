#pragma once

#include "laid_out_tag.h"

#include <cstdint>

/// A queue of user interrupts. Its numbers are carried through as they are.
///
/// Files know read and write queues only: an object of this class itself is saved as a read queue, and a tag with
/// its id is not loaded as a queue.
class ZUL_usrintqueue : public LaidOutTag {
public:
    static constexpr std::uint32_t tag_id = 0x8150015;

    explicit ZUL_usrintqueue(ZUL* parent) : LaidOutTag(parent) {}
    ZUL_usrintqueue(ZUL_usrintqueue const& other) = default;
    explicit ZUL_usrintqueue(ZUL_usrintqueue const* other) : ZUL_usrintqueue(*other) {}
    ZUL_usrintqueue& operator=(ZUL_usrintqueue const& other) = default;

    /// Whether the host writes into the queue.
    virtual bool isWriteQueue() const { return false; }

    void setAddress(unsigned int address) noexcept { m_address = address; }
    unsigned int getAddress() const noexcept { return m_address; }
    void setShiftr(unsigned int shiftr) noexcept { m_shiftr = shiftr; }
    unsigned int getShiftr() const noexcept { return m_shiftr; }
    void setQueueNumber(unsigned int number) noexcept { m_queueNumber = number; }
    unsigned int getQueueNumber() const noexcept { return m_queueNumber; }
    void setQueueDepth(unsigned int depth) noexcept { m_queueDepth = depth; }
    unsigned int getQueueDepth() const noexcept { return m_queueDepth; }
    void setMaxBurstLength(unsigned int length) noexcept { m_maxBurstLength = length; }
    unsigned int getMaxBurstLength() const noexcept { return m_maxBurstLength; }

    std::uint32_t getTagId() const override { return tag_id; }

private:
    void layout(TagLayout& row) override;

    std::uint32_t m_address = 0;
    std::uint32_t m_shiftr = 0;
    std::uint32_t m_queueNumber = 0;
    std::uint32_t m_queueDepth = 0;
    std::uint32_t m_maxBurstLength = 0;
};

/// A queue that the host reads.
class ZUL_usrintqueue_read : public ZUL_usrintqueue {
public:
    static constexpr std::uint32_t tag_id = 0x8151060;

    explicit ZUL_usrintqueue_read(ZUL* parent) : ZUL_usrintqueue(parent) {}
    ZUL_usrintqueue_read(ZUL_usrintqueue_read const& other) = default;
    explicit ZUL_usrintqueue_read(ZUL_usrintqueue_read const* other) : ZUL_usrintqueue_read(*other) {}
    ZUL_usrintqueue_read& operator=(ZUL_usrintqueue_read const& other) = default;

    /// A loaded read queue has no burst length, whatever the file says.
    /// @throws ZUL_file_bad_tag_length when the length is not 28
    unsigned long Load(void const* tag, unsigned long avail) override;
    bool isWriteQueue() const override { return false; }
    std::uint32_t getTagId() const override { return tag_id; }
};

/// A queue that the host writes.
class ZUL_usrintqueue_write : public ZUL_usrintqueue {
public:
    static constexpr std::uint32_t tag_id = 0x8151070;

    explicit ZUL_usrintqueue_write(ZUL* parent) : ZUL_usrintqueue(parent) {}
    ZUL_usrintqueue_write(ZUL_usrintqueue_write const& other) = default;
    explicit ZUL_usrintqueue_write(ZUL_usrintqueue_write const* other) : ZUL_usrintqueue_write(*other) {}
    ZUL_usrintqueue_write& operator=(ZUL_usrintqueue_write const& other) = default;

    bool isWriteQueue() const override { return true; }
    std::uint32_t getTagId() const override { return tag_id; }
};
