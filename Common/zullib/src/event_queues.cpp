#include "event_queues.h"

#include "ZUL_event.h"
#include "zul_errors.h"

namespace {

[[noreturn]] void refuse(char const* why)
{
    throw ZUL_add_tag_error(why, ZUL_event::tag_id);
}

} // namespace

void EventQueues::add(std::uint8_t queue, std::uint8_t bit)
{
    Queue& use = m_queues.at(queue);
    if (bit == wholeQueue) {
        use.exclusive = true;
    } else if (!use.exclusive) {
        // An event behind an exclusive one is never the first that a new event collides with.
        use.bits.set(bit);
    }
}

void EventQueues::refuseConflict(std::uint8_t queue, std::uint8_t bit) const
{
    Queue const& use = m_queues.at(queue);
    bool const exclusiveFirst = use.exclusive && use.bits.none();
    if (bit == wholeQueue ? exclusiveFirst : use.bits.test(bit)) {
        refuse("Tried to add a ZUL_event with already used UIQ and bit");
    }
    if (bit != wholeQueue && use.exclusive) {
        refuse("Tried to add a ZUL_event to a UIQ already used exclusively by another event");
    }
    if (bit == wholeQueue && use.bits.any()) {
        refuse("Tried to add a ZUL_event using a UIQ exclusively when this UIQ was already used by another "
               "event");
    }
}
