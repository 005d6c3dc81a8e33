#include "designs.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using designs::Loaded;
using designs::module;

constexpr unsigned farAway[] = {2, 3, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

Bytes dma(std::initializer_list<std::uint32_t> values)
{
    return designs::fields(0x815C000, values);
}

ContainerBytes withModules()
{
    return ContainerBytes()
        .tag(sample::process(3, "acquisition"))
        .tag(sample::process(4, "output"))
        .tag(module(0, 4, "A", "a", "a"))
        .tag(module(1, 3, "B", "b", "b"))
        .tag(module(9, 4, "C", "c", "c"));
}

// DMA channels.

TEST(DmaQueries, AnswerWhatTheTagSays)
{
    Loaded design(withModules().tag(dma({7, 9, 1024, 768, 3, 12})).tag(dma({6, 1, 1, 2, 4, 5})));
    EXPECT_EQ(design->GetNrOfDmas(), 2U);
    EXPECT_EQ(design->GetDmaWidth(0), 1024);
    EXPECT_EQ(design->GetDmaHeight(0), 768);
    EXPECT_EQ(design->GetDmaFormat(0), 3);
    EXPECT_EQ(design->GetDmaBitWidth(0), 12);
    EXPECT_EQ(design->GetDmaModuleNr(0), 9) << "the module's index, not its position";
    EXPECT_EQ(design->GetDmaChannel(0), 7);
    EXPECT_EQ(design->GetDmaWidth(1), 1);
    EXPECT_EQ(design->GetDmaHeight(1), 2);
    EXPECT_EQ(design->GetDmaFormat(1), 4);
    EXPECT_EQ(design->GetDmaBitWidth(1), 5);
    EXPECT_EQ(design->GetDmaModuleNr(1), 1);
    EXPECT_EQ(design->GetDmaChannel(1), 6) << "they stay in the order of the file";
}

TEST(DmaQueries, MissWhatIsNotThere)
{
    Loaded design(withModules().tag(dma({7, 9, 1024, 768, 3, 12})).tag(dma({6, 1, 1, 2, 4, 5})));
    for (unsigned const i : farAway) {
        EXPECT_EQ(design->GetDmaWidth(i), -1);
        EXPECT_EQ(design->GetDmaHeight(i), -1);
        EXPECT_EQ(design->GetDmaFormat(i), -1);
        EXPECT_EQ(design->GetDmaBitWidth(i), -1);
        EXPECT_EQ(design->GetDmaModuleNr(i), -1);
        EXPECT_EQ(design->GetDmaChannel(i), -1);
        EXPECT_EQ(design->GetProcessNrFromDmaChannel(i), -1);
    }
}

TEST(DmaQueries, AnswerLargeNumbersAsTheirBits)
{
    Loaded design(withModules().tag(dma({0xFFFFFFFE, 1, 0xFFFFFFFD, 0x80000000, 0xFFFFFFFF, 0xFFFFFFF0})));
    EXPECT_EQ(design->GetDmaChannel(0), -2);
    EXPECT_EQ(design->GetDmaWidth(0), -3);
    EXPECT_EQ(design->GetDmaHeight(0), INT32_MIN);
    EXPECT_EQ(design->GetDmaBitWidth(0), -16);
}

TEST(DmaQueries, TakeTheModulesIndexAsAPositionForTheProcess)
{
    Loaded design(
        withModules().tag(dma({0, 0, 0, 0, 0, 0})).tag(dma({0, 1, 0, 0, 0, 0})).tag(dma({0, 9, 0, 0, 0, 0})));
    EXPECT_EQ(design->GetProcessNrFromDmaChannel(0), 4);
    EXPECT_EQ(design->GetProcessNrFromDmaChannel(1), 3);
    EXPECT_EQ(design->GetProcessNrFromDmaChannel(2), -1) << "there are no ten modules";
}

TEST(DmaQueries, TakeAModuleOfAnotherPositionForTheProcess)
{
    Loaded design(ContainerBytes()
                      .tag(sample::process(3))
                      .tag(sample::process(4))
                      .tag(module(1, 3, "A", "a", "a"))
                      .tag(module(0, 4, "B", "b", "b"))
                      .tag(dma({0, 1, 0, 0, 0, 0})));
    EXPECT_EQ(design->GetProcessNrFromDmaChannel(0), 4) << "of the module at position 1";
}

// Cameras.

TEST(CameraQueries, NumberCamerasAscendingByChannel)
{
    Loaded design(withModules()
                      .tag(sample::cameraParam(5, 0))
                      .tag(sample::cameraParam(2, 1))
                      .tag(sample::cameraParam(0xFFFFFFFE, 1)));
    EXPECT_EQ(design->GetNrOfCams(), 3U);
    EXPECT_EQ(design->GetCamChannel(0), 2);
    EXPECT_EQ(design->GetCamChannel(1), 5);
    EXPECT_EQ(design->GetCamChannel(2), -2);
    EXPECT_EQ(design->GetCamChannel(3), -1);
    EXPECT_EQ(design->GetCamChannel(0xFFFFFFFF), -1);
}

TEST(CameraQueries, CountThoseOfAProcess)
{
    Loaded design(withModules()
                      .tag(sample::cameraParam(1, 0))
                      .tag(sample::cameraParam(2, 1))
                      .tag(sample::cameraParam(3, 0))
                      .tag(sample::cameraParam(4, 9)));
    EXPECT_EQ(design->GetNrOfCamsPerProcess(4), 2);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(3), 1);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(0), 0);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(INT32_MAX), 0);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(INT32_MIN), 0);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(-1), 1) << "the module of the last is at no position";
    EXPECT_EQ(design->GetCamChannelPerProcess(0, -1), 4);
}

TEST(CameraQueries, FindTheNthOfAProcess)
{
    Loaded design(withModules()
                      .tag(sample::cameraParam(4, 0))
                      .tag(sample::cameraParam(2, 1))
                      .tag(sample::cameraParam(1, 0))
                      .tag(sample::cameraParam(3, 0)));
    EXPECT_EQ(design->GetCamChannelPerProcess(0, 4), 1);
    EXPECT_EQ(design->GetCamChannelPerProcess(1, 4), 3);
    EXPECT_EQ(design->GetCamChannelPerProcess(2, 4), 4);
    EXPECT_EQ(design->GetCamChannelPerProcess(3, 4), -1);
    EXPECT_EQ(design->GetCamChannelPerProcess(0xFFFFFFFF, 4), -1);
    EXPECT_EQ(design->GetCamChannelPerProcess(0, 3), 2);
    EXPECT_EQ(design->GetCamChannelPerProcess(0, 77), -1);
}

TEST(CameraQueries, KeepTheOrderOfManyCameras)
{
    ContainerBytes container = withModules();
    for (std::uint32_t channel = 0; channel < 200; ++channel) {
        container.tag(sample::cameraParam(channel, channel % 2));
    }
    Loaded design(container);
    EXPECT_EQ(design->GetNrOfCamsPerProcess(3), 100);
    for (unsigned n = 0; n < 100; ++n) {
        EXPECT_EQ(design->GetCamChannelPerProcess(n, 4), static_cast<int>(2 * n));
        EXPECT_EQ(design->GetCamChannelPerProcess(n, 3), static_cast<int>(2 * n + 1));
    }
}

TEST(CameraQueries, KnowProcessesWithLargeIds)
{
    Loaded design(ContainerBytes()
                      .tag(sample::process(0x80000005))
                      .tag(module(0, 0x80000005, "A", "a", "a"))
                      .tag(sample::cameraParam(6, 0)));
    EXPECT_EQ(design->GetNrOfCamsPerProcess(static_cast<int>(0x80000005)), 1);
    EXPECT_EQ(design->GetCamChannelPerProcess(0, static_cast<int>(0x80000005)), 6);
}

// Registers.

/// Registers of both layouts, mixed.
Loaded withRegisters()
{
    return Loaded(ContainerBytes()
                      .tag(sample::newRegister("Newer0", 0x200))
                      .tag(sample::oldRegister("Older0", 0x100))
                      .tag(sample::newRegister("Newer1", 0xFFFFFFF0))
                      .tag(sample::oldRegister("Older1", 0x104).setU32(20, 0))
                      .tag(sample::registerLink("Alias", "Newer1"))
                      .tag(sample::registerLink("Nowhere", "none")));
}

TEST(RegisterQueries, NumberRegistersFromOneOlderOnesFirst)
{
    auto design = withRegisters();
    EXPECT_EQ(design->getRegisterCount(), 4U);
    EXPECT_STREQ(design->GetRegisterName(1), "Older0");
    EXPECT_STREQ(design->GetRegisterName(2), "Older1");
    EXPECT_STREQ(design->GetRegisterName(3), "Newer0");
    EXPECT_STREQ(design->GetRegisterName(4), "Newer1");
    for (unsigned number = 1; number <= 4; ++number) {
        EXPECT_EQ(design->getRegisterByName(design->GetRegisterName(number)), number);
        EXPECT_NE(design->getRegisterAt(number), nullptr);
    }
}

TEST(RegisterQueries, LeadAliasesToTheirRegister)
{
    auto design = withRegisters();
    EXPECT_EQ(design->getRegisterByName("Alias"), 4U);
    EXPECT_EQ(design->getRegisterByName("Nowhere"), 0U);
    EXPECT_EQ(design->getRegisterByName("none"), 0U);
    EXPECT_EQ(design->getRegisterByName(""), 0U);
    EXPECT_EQ(design->getRegisterByName("older0"), 0U);
    EXPECT_EQ(design->getRegisterByName(nullptr), 0U);
}

TEST(RegisterQueries, AnswerWhatTheTagSays)
{
    auto design = withRegisters();
    EXPECT_EQ(design->GetRegisterBitPos(1), 1);
    EXPECT_EQ(design->GetRegisterBitRange(1), 32) << "both ends included";
    EXPECT_EQ(design->GetRegisterInitValue(1), 5U);
    EXPECT_EQ(design->GetRegisterDirection(1), 1);
    EXPECT_EQ(design->GetRegisterDirection(2), 0);
    EXPECT_EQ(design->GetRegisterAddress(1), 0x100);
    EXPECT_EQ(design->GetRegisterBitPos(4), 1);
    EXPECT_EQ(design->GetRegisterBitRange(4), 63);
    EXPECT_EQ(design->GetRegisterInitValue(4), 0x0123456789ABCDEFU) << "all 64 bits";
    EXPECT_EQ(design->GetRegisterDirection(4), 0);
    EXPECT_EQ(design->GetRegisterAddress(4), -16);
}

TEST(RegisterQueries, CountBitsFrom7To0As8)
{
    Bytes const byte = sample::oldRegister("byte").setU32(24, 0).setU32(28, 7);
    Bytes const bit = sample::oldRegister("bit").setU32(24, 5).setU32(28, 5);
    Bytes const reversed = sample::oldRegister("reversed").setU32(24, 7).setU32(28, 0);
    Loaded design(ContainerBytes().tag(byte).tag(bit).tag(reversed));
    EXPECT_EQ(design->GetRegisterBitRange(1), 8);
    EXPECT_EQ(design->GetRegisterBitRange(2), 1);
    EXPECT_EQ(design->GetRegisterBitPos(2), 5);
    EXPECT_EQ(design->GetRegisterBitRange(3), -6);
}

TEST(RegisterQueries, MissZeroAndWhatIsBehindTheLast)
{
    auto design = withRegisters();
    for (unsigned const n : {0U, 5U, 6U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(design->getRegisterAt(n), nullptr);
        EXPECT_EQ(design->GetRegisterBitRange(n), 0);
        EXPECT_EQ(design->GetRegisterBitPos(n), 0);
        EXPECT_EQ(design->GetRegisterInitValue(n), 0U);
        EXPECT_EQ(design->GetRegisterDirection(n), 0);
        EXPECT_EQ(design->GetRegisterAddress(n), -1);
        EXPECT_EQ(design->GetRegisterName(n), nullptr);
    }
}

} // namespace
