#include "event_queues.h"

#include "zul_errors.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::string conflict(EventQueues const& queues, std::uint8_t queue, std::uint8_t bit)
{
    try {
        queues.refuseConflict(queue, bit);
    } catch (ZUL_add_tag_error const& error) {
        EXPECT_EQ(error.getTagId(), 0x8156576U);
        return error.what();
    }
    return "";
}

/// What looking at each event of a queue in turn says.
std::string conflictByWalking(std::vector<std::uint8_t> const& bits, std::uint8_t bit)
{
    for (std::uint8_t const own : bits) {
        if (own == bit) {
            return "Tried to add a ZUL_event with already used UIQ and bit";
        }
        if (own > 254) {
            return "Tried to add a ZUL_event to a UIQ already used exclusively by another event";
        }
        if (bit > 254) {
            return "Tried to add a ZUL_event using a UIQ exclusively when this UIQ was already used by "
                   "another event";
        }
    }
    return "";
}

TEST(EventQueues, AnswerAsAWalkOverTheEventsDoes)
{
    std::vector<std::uint8_t> const values{0, 1, 127, 254, 255};
    for (std::size_t code = 0; code < 6 * 6 * 6 * 6; ++code) { // up to four events on one queue
        EventQueues queues;
        std::vector<std::uint8_t> bits;
        for (std::size_t rest = code; rest != 0; rest /= 6) {
            if (rest % 6 != 0) {
                bits.push_back(values[rest % 6 - 1]);
                queues.add(7, bits.back());
            }
        }
        for (std::uint8_t const bit : values) {
            EXPECT_EQ(conflict(queues, 7, bit), conflictByWalking(bits, bit))
                << testing::PrintToString(bits) << " and " << +bit;
            EXPECT_EQ(conflict(queues, 8, bit), "") << "another queue";
        }
    }
}

TEST(EventQueues, KnowEveryQueueAndBit)
{
    EventQueues queues;
    for (unsigned i = 0; i < 256; ++i) {
        queues.add(static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(255 - i));
    }
    for (unsigned i = 0; i < 256; ++i) {
        EXPECT_EQ(conflict(queues, static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(255 - i)),
                  "Tried to add a ZUL_event with already used UIQ and bit");
    }
    EXPECT_EQ(conflict(queues, 9, 1), "");
}

} // namespace
