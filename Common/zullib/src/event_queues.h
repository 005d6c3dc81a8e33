#pragma once

#include <array>
#include <bitset>
#include <cstdint>

/// The interrupt queues and bits that a container's events use.
class EventQueues {
public:
    /// @param bit 255: the event uses the whole queue
    void add(std::uint8_t queue, std::uint8_t bit);
    /// @throws ZUL_add_tag_error as the first of the queue's events, in the order in which they were added, demands that
    ///         cannot be beside an event with @p bit
    void refuseConflict(std::uint8_t queue, std::uint8_t bit) const;

private:
    static constexpr std::uint8_t wholeQueue = 255;

    struct Queue {
        std::bitset<wholeQueue> bits; // of the events before the first one that uses the queue exclusively
        bool exclusive = false;
    };

    std::array<Queue, 256> m_queues;
};
