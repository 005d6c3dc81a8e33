#include "sample_design.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <utility>

namespace {

using sample::all;

class SampleHardware : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(design.Load(SAMPLE_DESIGN), 0); }

    std::vector<ZUL_register*> registers() const
    {
        std::vector<ZUL_register*> found;
        for (unsigned int number = 1; design.getRegisterAt(number) != nullptr; ++number) {
            found.push_back(design.getRegisterAt(number));
        }
        return found;
    }

    ZUL design;
};

TEST_F(SampleHardware, EveryRegisterIsFoundByItsName)
{
    ASSERT_EQ(registers().size(), 31U);
    for (ZUL_register const* each : registers()) {
        EXPECT_EQ(design.findRegister(each->getName()), each);
    }
}

TEST_F(SampleHardware, NoTwoRegistersShareABit)
{
    std::set<std::pair<unsigned int, unsigned int>> bits; // of 32-bit words
    for (ZUL_register const* each : registers()) {
        ASSERT_LE(each->getLSB(), each->getMSB()) << each->getName();
        for (unsigned int bit = each->getLSB(); bit <= each->getMSB(); ++bit) {
            EXPECT_TRUE(bits.insert({each->getAddress() + bit / 32 * 4, bit % 32}).second) << each->getName();
        }
    }
}

TEST_F(SampleHardware, ValuesFitTheBits)
{
    for (ZUL_register const* each : registers()) {
        unsigned int const width = each->getMSB() - each->getLSB() + 1U;
        EXPECT_TRUE(width >= 64 || each->getCache() >> width == 0) << each->getName();
    }
}

TEST_F(SampleHardware, AliasesLeadToRegistersWithTheSameAccess)
{
    for (ZUL_register_link const* link : all<ZUL_register_link>(design)) {
        ZUL_register const* target = design.findRegister(link->getAlias());
        ASSERT_NE(target, nullptr) << link->getAlias();
        EXPECT_STREQ(target->getName(), link->getTarget());
        EXPECT_EQ(target->isReadOnly(), link->isReadOnly());
        EXPECT_EQ(target->getType(), link->getType());
    }
}

TEST_F(SampleHardware, EventsArriveOnAQueueThatIsThere)
{
    std::set<std::pair<int, int>> arrivals;
    auto const queue = all<ZUL_usrintqueue_read>(design).at(0)->getQueueNumber();
    for (ZUL_event const* event : all<ZUL_event>(design)) {
        EXPECT_EQ(event->getUiq(), queue) << event->getName();
        EXPECT_NE(event->getRegister(), nullptr) << event->getName();
        EXPECT_TRUE(arrivals.insert({event->getUiq(), event->getBit()}).second) << event->getName();
    }
}

TEST_F(SampleHardware, DmaChannelsHaveCountAndTagRegisters)
{
    for (unsigned int channel = 0; channel < 2; ++channel) {
        EXPECT_EQ(all<ZUL_dma_param>(design)[channel]->getDmaChannel(), static_cast<int>(channel));
        EXPECT_EQ(all<ZUL_dmacnt_register>(design)[channel]->getChannel(), channel);
        EXPECT_EQ(all<ZUL_dmatag_register>(design)[channel]->getChannel(), channel);
    }
}

TEST_F(SampleHardware, EveryBoardHasItsConfiguration)
{
    struct {
        unsigned int board;
        unsigned int fpga;
        char const* id;
    } const expected[] = {{2625, 0xBBEA0, "bitstream-2625-3s1600efg484-b1482"},
                          {2628, 0xBD594, "bitstream-2628-3s4000fg676-b1482"}};
    for (unsigned int i = 0; i < 2; ++i) {
        ZUL_multi_data const* configuration = design.getConfig(i, expected[i].board);
        ASSERT_NE(configuration, nullptr) << i;
        EXPECT_EQ(configuration->getDestination(), all<ZUL_destination>(design)[i]);
        EXPECT_EQ(configuration->getFpgaType(), expected[i].fpga);
        EXPECT_STREQ(configuration->getId(), expected[i].id);
    }
}

TEST_F(SampleHardware, BitstreamsBeginWithPaddingAndTheSyncWord)
{
    std::string begin(32, '\xFF');
    begin += "\xAA\x99\x55\x66";
    for (unsigned int i = 0; i < 2; ++i) {
        ZUL_multi_data const* configuration = design.getConfigAt(i);
        ASSERT_GT(configuration->getLength(), 256U * 1024);
        EXPECT_EQ(std::memcmp(configuration->getData(), begin.data(), begin.size()), 0);
    }
}

} // namespace
