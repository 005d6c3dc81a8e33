#include "designs.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

using designs::fields;
using designs::Loaded;

constexpr std::uint32_t dmaCount = 0x8151020;
constexpr std::uint32_t interruptVector = 0x8151030;
constexpr std::uint32_t dmaTag = 0x8151040;
constexpr std::uint32_t localInterrupt = 0x8151050;
constexpr std::uint32_t readQueue = 0x8151060;
constexpr std::uint32_t writeQueue = 0x8151070;

Bytes block(fpga_design* design)
{
    void const* const data = ZulGetUserInfoByName(design, "##_RZ3_DESIGN_SETTINGS");
    return data == nullptr ? Bytes() : Bytes().chars({static_cast<char const*>(data), 300});
}

Bytes blockOf(std::initializer_list<Bytes> tags)
{
    ContainerBytes container;
    for (Bytes const& tag : tags) {
        container.tag(tag);
    }
    Loaded design(container);
    return block(design.get());
}

/// The block of a design that says nothing.
Bytes defaults()
{
    return Bytes()
        .u32(1)          //   0 format
        .u32(0x208020)   //   4 interrupt vector base
        .u32(0x200004)   //   8 interrupt acknowledge
        .u32(0x200008)   //  12 interrupt start
        .u32(0x208000)   //  16 DMA count of channel 0
        .u32(0x208004)   //  20
        .u32(0)          //  24
        .u32(0)          //  28
        .u32(0)          //  32
        .u32(0x208008)   //  36 DMA tag of channel 0: address
        .u32(0xFFFFFFFF) //  40 mask
        .u32(0)          //  44 shift
        .u32(0)          //  48 channel
        .u32(0x20800C)   //  52 of channel 1
        .u32(0xFFFFFFFF) //  56
        .u32(0)          //  60
        .u32(1)          //  64
        .zeros(32)       //  68 of channels 2 and 3
        .u32(0x200000)   // 100 local interrupt
        .u32(0x208010)   // 104 queue 0: address
        .u32(0)          // 108 shift
        .u32(0)          // 112 number
        .u32(1024)       // 116 depth
        .u32(0x8151060)  // 120 direction
        .u32(0)          // 124 burst length
        .zeros(7 * 24)   // 128 queues 1 to 7
        .u32(0);         // 296
}

TEST(DesignSettings, AreTheDefaultsWithoutTags)
{
    ASSERT_EQ(defaults().size(), 300U);
    EXPECT_EQ(blockOf({}), defaults());
}

TEST(DesignSettings, TakeTheInterruptVectorOfTheFirstTag)
{
    EXPECT_EQ(
        blockOf({fields(interruptVector, {0x11, 0x12, 0x13}), fields(interruptVector, {0x21, 0x22, 0x23})}),
        defaults().setU32(4, 0x11).setU32(8, 0x12).setU32(12, 0x13));
}

TEST(DesignSettings, TakeTheFirstVectorAlsoWhenItIsZero)
{
    EXPECT_EQ(blockOf({fields(interruptVector, {0, 0, 0}), fields(interruptVector, {0x21, 0x22, 0x23})}),
              defaults().setU32(4, 0).setU32(8, 0).setU32(12, 0));
}

TEST(DesignSettings, TakeTheLocalInterruptOfTheFirstTag)
{
    EXPECT_EQ(blockOf({fields(localInterrupt, {0x31}), fields(localInterrupt, {0x32})}),
              defaults().setU32(100, 0x31));
    EXPECT_EQ(blockOf({fields(localInterrupt, {0}), fields(localInterrupt, {0x32})}),
              defaults().setU32(100, 0));
}

TEST(DesignSettings, TakeTheCountRegisterOfEachChannelBelowFour)
{
    for (std::uint32_t channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(blockOf({fields(dmaCount, {channel, 0x40 + channel, 9})}),
                  defaults().setU32(16 + 4 * channel, 0x40 + channel))
            << channel;
    }
    for (std::uint32_t const channel : {4U, 5U, 0xFFFFFFFFU, 0x80000000U}) {
        EXPECT_EQ(blockOf({fields(dmaCount, {channel, 0x40, 9})}), defaults()) << channel;
    }
}

TEST(DesignSettings, TakeTheLastCountRegisterOfAChannel)
{
    EXPECT_EQ(blockOf({fields(dmaCount, {2, 0x41, 9}), fields(dmaCount, {2, 0x42, 9})}),
              defaults().setU32(24, 0x42));
}

TEST(DesignSettings, TakeTheTagRegisterOfEachChannelBelowFour)
{
    for (std::uint32_t channel = 0; channel < 4; ++channel) {
        std::uint32_t const offset = 36 + 16 * channel;
        EXPECT_EQ(blockOf({fields(dmaTag, {0x51, 0x52, 0x53, channel})}), defaults()
                                                                              .setU32(offset, 0x51)
                                                                              .setU32(offset + 4, 0x52)
                                                                              .setU32(offset + 8, 0x53)
                                                                              .setU32(offset + 12, channel))
            << channel;
    }
    for (std::uint32_t const channel : {4U, 0xFFFFFFFFU}) {
        EXPECT_EQ(blockOf({fields(dmaTag, {0x51, 0x52, 0x53, channel})}), defaults()) << channel;
    }
}

Bytes withQueue(std::uint32_t id, std::uint32_t number, std::uint32_t first, std::uint32_t burst)
{
    std::uint32_t const offset = 104 + 24 * number;
    return defaults()
        .setU32(offset, first)
        .setU32(offset + 4, first + 1)
        .setU32(offset + 8, number)
        .setU32(offset + 12, first + 2)
        .setU32(offset + 16, id)
        .setU32(offset + 20, burst);
}

TEST(DesignSettings, TakeEachQueueBelowEight)
{
    for (std::uint32_t number = 0; number < 8; ++number) {
        EXPECT_EQ(blockOf({fields(readQueue, {0x60, 0x61, number, 0x62, 0x63})}),
                  withQueue(0x8151060, number, 0x60, 0))
            << "a read queue has no burst length: " << number;
        EXPECT_EQ(blockOf({fields(writeQueue, {0x60, 0x61, number, 0x62, 0x63})}),
                  withQueue(0x8151070, number, 0x60, 0x63))
            << number;
    }
    for (std::uint32_t const number : {8U, 255U, 256U, 0xFFFFFFFFU}) {
        EXPECT_EQ(blockOf({fields(readQueue, {0x60, 0x61, number, 0x62, 0x63}),
                           fields(writeQueue, {0x60, 0x61, number, 0x62, 0x63})}),
                  defaults())
            << number;
    }
}

TEST(DesignSettings, TakeTheLastQueueOfANumberAndKind)
{
    EXPECT_EQ(
        blockOf({fields(readQueue, {0x60, 0x61, 3, 0x62, 0}), fields(readQueue, {0x70, 0x71, 3, 0x72, 0})}),
        withQueue(0x8151060, 3, 0x70, 0));
}

TEST(DesignSettings, PreferWriteQueuesWhereverTheyStand)
{
    Bytes const read = fields(readQueue, {0x60, 0x61, 3, 0x62, 0});
    Bytes const write = fields(writeQueue, {0x70, 0x71, 3, 0x72, 0x73});
    EXPECT_EQ(blockOf({read, write}), withQueue(0x8151070, 3, 0x70, 0x73));
    EXPECT_EQ(blockOf({write, read}), withQueue(0x8151070, 3, 0x70, 0x73));
}

TEST(DesignSettings, AreFieldsWithThoseOffsets)
{
    Loaded design(ContainerBytes()
                      .tag(sample::dmaTagRegister())
                      .tag(sample::localInterrupt())
                      .tag(sample::writeQueue()));
    auto const* const settings =
        static_cast<rz3_design_settings const*>(ZulGetUserInfoByName(design.get(), "##_RZ3_DESIGN_SETTINGS"));
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->format, 1U);
    EXPECT_EQ(settings->interrupt_vector_base, 0x208020U);
    EXPECT_EQ(settings->dma_count_address[1], 0x208004U);
    EXPECT_EQ(settings->dma_tag[1].address, 0x500U);
    EXPECT_EQ(settings->dma_tag[1].mask, 0xFFU);
    EXPECT_EQ(settings->dma_tag[1].right_shift, 8U);
    EXPECT_EQ(settings->local_interrupt, 0x600U);
    EXPECT_EQ(settings->queue[3].depth, 256U);
    EXPECT_EQ(settings->queue[3].max_burst_length, 16U);
}

TEST(DesignSettings, AreOneBlockPerDesign)
{
    Loaded design(ContainerBytes().tag(sample::localInterrupt()));
    Loaded other{ContainerBytes()};
    void const* const first = design->GetUserInfoByName("##_RZ3_DESIGN_SETTINGS");
    EXPECT_EQ(design->GetUserInfoByName("##_RZ3_DESIGN_SETTINGS"), first);
    EXPECT_NE(other->GetUserInfoByName("##_RZ3_DESIGN_SETTINGS"), first);
    EXPECT_EQ(block(other.get()), defaults());
    EXPECT_EQ(block(design.get()), defaults().setU32(100, 0x600));
}

TEST(DesignSettings, AreNotReplacedByAUserInfoOfThatName)
{
    Loaded design(ContainerBytes().tag(sample::userInfo("##_RZ3_DESIGN_SETTINGS", "mine")));
    EXPECT_EQ(block(design.get()), defaults());
    EXPECT_EQ(design->GetUserInfoTypByName("##_RZ3_DESIGN_SETTINGS"), 300) << "its type is the info's";
    EXPECT_STREQ(static_cast<char const*>(design->GetUserInfoByNumber(0)), "mine");
}

TEST(DesignSettings, HaveNoTypeOfTheirOwn)
{
    Loaded design{ContainerBytes()};
    EXPECT_EQ(design->GetUserInfoTypByName("##_RZ3_DESIGN_SETTINGS"), 0);
}

} // namespace
