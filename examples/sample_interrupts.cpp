#include "sample_design.h"

namespace sample {

namespace {

template <class Queue>
void addQueue(ZUL& design, unsigned int number, unsigned int address, unsigned int depth, unsigned int burst)
{
    auto& queue = add<Queue>(design);
    queue.setQueueNumber(number);
    queue.setAddress(address);
    queue.setQueueDepth(depth);
    queue.setMaxBurstLength(burst);
}

void addDmaRegisters(ZUL& design, unsigned int channel, unsigned int count, unsigned int tag)
{
    add<ZUL_dmacnt_register>(design, channel, count, 0U);
    auto& tags = add<ZUL_dmatag_register>(design);
    tags.setChannel(channel);
    tags.setAddress(tag);
    tags.setMask(0xFFFFFFFF);
}

struct Event {
    unsigned char queue;
    unsigned char bit;
    unsigned char dataLength;
    char const* name;
    char const* reg;
};

// clang-format off
constexpr Event events[] = {
    {0, 0, 8, "Inspection\\Camera0\\FrameStart",  "Camera0_Status"},
    {0, 1, 8, "Inspection\\Camera0\\FrameEnd",    "Camera0_Status"},
    {0, 2, 0, "Inspection\\Buffer0\\Overflow",    "Buffer0_Overflow"},
    {0, 3, 4, "Inspection\\Trigger0\\Missed",     "Trigger0_Missed"},
    {0, 8, 8, "Overview\\Camera1\\FrameEnd",      "Camera1_Status"},
};
// clang-format on

} // namespace

void addInterrupts(ZUL& design)
{
    addDmaRegisters(design, 0, 0x208000, 0x208008);
    addDmaRegisters(design, 1, 0x208004, 0x20800C);

    auto& vector = add<ZUL_intvectorreg>(design);
    vector.setBaseAddress(0x208020);
    vector.setAckAddress(0x200004);
    vector.setStartAddress(0x200008);
    add<ZUL_localintreg>(design).setAddress(0x200000);

    addQueue<ZUL_usrintqueue_read>(design, 0, 0x208010, 1024, 0); // only the host's writes come in bursts
    addQueue<ZUL_usrintqueue_write>(design, 1, 0x208014, 256, 16);
}

void addEvents(ZUL& design)
{
    for (Event const& each : events) {
        auto& added = add<ZUL_event>(design, each.queue, each.bit, each.dataLength);
        added.setName(each.name);
        added.setRegister(design.findRegister(each.reg));
    }
}

} // namespace sample
