#include "container_bytes.h"
#include "merging.h"
#include "sample_tags.h"

#include <algorithm>

namespace {

using namespace merging;

constexpr char const* sameBit = "Tried to add a ZUL_event with already used UIQ and bit";
constexpr char const* ownExclusive =
    "Tried to add a ZUL_event to a UIQ already used exclusively by another event";
constexpr char const* otherExclusive =
    "Tried to add a ZUL_event using a UIQ exclusively when this UIQ was already used by another event";
constexpr std::uint32_t eventId = 0x8156576;

/// Two containers whose lowest configuration indexes are those; -1 for no configuration.
struct Sides {
    Sides(int ownIndex, int otherIndex)
    {
        fill(zul, ownIndex);
        fill(other, otherIndex);
    }

    static void fill(ZUL& zul, int index)
    {
        if (index >= 0) {
            fileConfiguration(zul, static_cast<unsigned>(index) + 3);
            fileConfiguration(zul, static_cast<unsigned>(index));
            fileConfiguration(zul, 0x80000000); // the lowest one is an unsigned number
        }
    }

    ZUL zul;
    ZUL other;
};

/// Queues of all events, in order.
std::vector<int> queues(ZUL const& zul)
{
    std::vector<int> numbers;
    for (unsigned i = 0; i < zul.getTagCount(eventId); ++i) {
        numbers.push_back(tagOf<ZUL_event>(zul, i)->getUiq());
    }
    return numbers;
}

TEST(MergedEvents, KeepAnEmptyName)
{
    Bytes const bytes = ContainerBytes()
                            .tag(sample::newRegister("done"))
                            .tag(sample::event(std::string_view("\0x", 2), "done"))
                            .build(8);
    ZUL zul;
    ZUL other;
    ASSERT_EQ(other.Load(bytes.data(), bytes.size()), 0);
    zul += other;
    EXPECT_STREQ(tagOf<ZUL_event>(zul)->getName(), "") << "it can be saved; no name cannot";
}

TEST(MergedQueues, OfTheSideWithTheHigherLowestIndexMoveUpBy16)
{
    struct Case {
        int own;
        int other;
        std::vector<int> queues;
    };
    for (Case const& expected :
         {Case{1, 1, {1, 250, 2, 251}}, Case{2, 1, {17, 10, 2, 251}}, Case{1, 2, {1, 250, 18, 11}},
          Case{-1, -1, {1, 250, 2, 251}}, Case{-1, 0, {1, 250, 2, 251}}, Case{0, -1, {1, 250, 2, 251}},
          Case{-1, 1, {1, 250, 18, 11}}, Case{1, -1, {17, 10, 2, 251}}}) {
        SCOPED_TRACE(testing::Message() << expected.own << " and " << expected.other);
        Sides sides(expected.own, expected.other);
        fileEvent(sides.zul, 1, 0);
        fileEvent(sides.zul, 250, 0);
        fileEvent(sides.other, 2, 0);
        fileEvent(sides.other, 251, 0);
        sides.zul += sides.other;
        EXPECT_EQ(queues(sides.zul), expected.queues);
        EXPECT_EQ(queues(sides.other), (std::vector<int>{2, 251})) << "the other's own stay";
    }
}

TEST(MergedQueues, AreComparedWhereTheyMove)
{
    struct Case {
        int own;
        int other;
        unsigned char ownQueue;
        unsigned char otherQueue;
        bool collide;
    };
    for (Case const& expected :
         {Case{1, 1, 5, 5, true}, Case{1, 1, 5, 21, false}, Case{1, 2, 5, 5, false}, Case{1, 2, 21, 5, true},
          Case{2, 1, 5, 5, false}, Case{2, 1, 5, 21, true}, Case{1, 2, 4, 244, true},
          Case{1, 2, 3, 244, false}, Case{2, 1, 244, 4, true}, Case{2, 1, 244, 3, false},
          Case{-1, 1, 21, 5, true}, Case{1, -1, 5, 21, true}}) {
        SCOPED_TRACE(testing::Message() << expected.own << " and " << expected.other << ", queues "
                                        << +expected.ownQueue << " and " << +expected.otherQueue);
        Sides sides(expected.own, expected.other);
        fileEvent(sides.zul, expected.ownQueue, 7);
        fileEvent(sides.other, expected.otherQueue, 7);
        if (expected.collide) {
            EXPECT_TRUE(refuses([&] { sides.zul += sides.other; }, sameBit, eventId));
        } else {
            sides.zul += sides.other;
            EXPECT_EQ(sides.zul.getTagCount(eventId), 2U);
        }
    }
}

TEST(MergedEvents, ShareAQueueOnlyByBits)
{
    struct Case {
        std::vector<int> own; // bits of the events of one queue, in order
        int other;
        char const* refusal; // null: accepted
    };
    for (Case const& expected :
         {Case{{3}, 4, nullptr}, Case{{3}, 3, sameBit}, Case{{0}, 0, sameBit}, Case{{254}, 254, sameBit},
          Case{{254}, 0, nullptr}, Case{{255}, 255, sameBit}, Case{{255}, 3, ownExclusive},
          Case{{255}, 254, ownExclusive}, Case{{3}, 255, otherExclusive}, Case{{}, 255, nullptr},
          // The first event that cannot be beside the new one decides.
          Case{{3, 255}, 3, sameBit}, Case{{255, 3}, 3, ownExclusive}, Case{{3, 255}, 4, ownExclusive},
          Case{{3, 255}, 255, otherExclusive}, Case{{255, 3}, 255, sameBit}, Case{{3, 4, 5}, 5, sameBit},
          Case{{3, 4, 5}, 6, nullptr}}) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(expected.own) << " and " << expected.other);
        Sides sides(1, 1);
        for (int const bit : expected.own) {
            fileEvent(sides.zul, 9, static_cast<unsigned char>(bit));
        }
        fileEvent(sides.other, 9, static_cast<unsigned char>(expected.other));
        if (expected.refusal != nullptr) {
            EXPECT_TRUE(refuses([&] { sides.zul += sides.other; }, expected.refusal, eventId));
        } else {
            sides.zul += sides.other;
            EXPECT_EQ(sides.zul.getTagCount(eventId), expected.own.size() + 1);
        }
    }
}

TEST(MergedEvents, AreNotComparedWithEachOther)
{
    Sides sides(1, 1);
    fileEvent(sides.zul, 9, 1);
    for (std::uint8_t const bit : std::initializer_list<std::uint8_t>{3, 3, 255, 4}) {
        fileEvent(sides.other, 8, bit);
    }
    sides.zul += sides.other;
    EXPECT_EQ(sides.zul.getTagCount(eventId), 5U);
}

TEST(MergedEvents, BeforeTheRefusedOneStayAndTheOwnQueuesHaveMoved)
{
    Sides sides(2, 1);
    fileEvent(sides.zul, 1, 0);
    fileEvent(sides.other, 2, 0);
    fileEvent(sides.other, 17, 0); // where the own one is by then
    fileEvent(sides.other, 3, 0);
    file<ZUL_comment>(sides.other);
    EXPECT_TRUE(refuses([&] { sides.zul += sides.other; }, sameBit, eventId));
    EXPECT_EQ(queues(sides.zul), (std::vector<int>{17, 2}));
    EXPECT_EQ(sides.zul.getTagCount(ZUL_comment::tag_id), 1U) << "events come last";
    EXPECT_EQ(sides.zul.getConfigCount(), 3U) << "but before the configurations";
}

TEST(MergedEvents, AreFlaggedAsFirmwareEventsOnASideWithoutConfigurations)
{
    for (int const own : {-1, 0}) {
        for (int const other : {-1, 0}) {
            Sides sides(own, other);
            auto const* const ownEvent = fileEvent(sides.zul, 1, 0);
            auto const* const otherEvent = fileEvent(sides.other, 2, 0);
            sides.zul += sides.other;
            EXPECT_EQ(ownEvent->isFirmwareEvent(), own < 0);
            EXPECT_EQ(tagOf<ZUL_event>(sides.zul, 1)->isFirmwareEvent(), other < 0);
            EXPECT_FALSE(otherEvent->isFirmwareEvent()) << "the other container is not changed";
        }
    }
}

TEST(MergedEvents, KeepTheFlagThatTheyHave)
{
    Sides sides(0, 0);
    auto* const own = fileEvent(sides.zul, 1, 0);
    own->flagAsFirmwareEvent();
    fileEvent(sides.zul, 1, 1);
    fileEvent(sides.other, 2, 0)->flagAsFirmwareEvent();
    fileEvent(sides.other, 2, 1);
    sides.zul += sides.other;
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(tagOf<ZUL_event>(sides.zul, i)->isFirmwareEvent(), i % 2 == 0) << i;
    }
}

TEST(MergedEvents, CarryNameLengthAndTheRegisterOfThatName)
{
    Sides sides(1, 1);
    auto const* const otherRegister = file<ZUL_register>(sides.other, "status", false);
    auto* const event = fileEvent(sides.other, 2, 3, otherRegister);
    event->setName("overflow");
    event->setDataLen(12);
    sides.zul += sides.other;
    auto const* const copy = tagOf<ZUL_event>(sides.zul);
    EXPECT_EQ(copy->getUiq(), 2);
    EXPECT_EQ(copy->getBit(), 3);
    EXPECT_EQ(copy->getDataLen(), 12);
    EXPECT_STREQ(copy->getName(), "overflow");
    EXPECT_EQ(copy->getRegister(), sides.zul.findRegister("status"));
    EXPECT_NE(copy->getRegister(), otherRegister);
    EXPECT_EQ(copy->getParent(), &sides.zul);
}

TEST(MergedEvents, FindTheirRegisterThroughLinks)
{
    ZUL_register const outside(static_cast<ZUL*>(nullptr), "alias", false);
    Sides sides(1, 1);
    auto const* const own = file<ZUL_register>(sides.zul, "status", false);
    file<ZUL_register_link>(sides.zul, "alias", "status");
    fileEvent(sides.other, 2, 3, &outside);
    sides.zul += sides.other;
    EXPECT_EQ(tagOf<ZUL_event>(sides.zul)->getRegister(), own);
}

TEST(MergedEvents, WithoutARegisterThatIsKnownHaveNone)
{
    ZUL_register const outside(static_cast<ZUL*>(nullptr), "unknown", false);
    ZUL_register const nameless(static_cast<ZUL*>(nullptr), nullptr, false);
    for (ZUL_register const* const reg : {static_cast<ZUL_register const*>(nullptr), &outside, &nameless}) {
        Sides sides(1, 1);
        fileEvent(sides.other, 2, 3, reg)->setName(nullptr);
        sides.zul += sides.other;
        EXPECT_EQ(tagOf<ZUL_event>(sides.zul)->getRegister(), nullptr);
        EXPECT_EQ(tagOf<ZUL_event>(sides.zul)->getName(), nullptr);
    }
}

TEST(MergedEvents, OfARefusedTagBeforeThemMoveNothing)
{
    Sides sides(2, 1);
    auto const* const own = fileEvent(sides.zul, 1, 0);
    fileEvent(sides.other, 2, 0);
    file<ZUL_camparam>(sides.other, 0U, nullptr);
    EXPECT_THROW(sides.zul += sides.other, ZUL_add_tag_error);
    EXPECT_EQ(own->getUiq(), 1);
    EXPECT_EQ(sides.zul.getTagCount(eventId), 1U);
}

TEST(MergedConfigurations, ComeAfterTheOwnInTheOthersOrder)
{
    ZUL zul;
    fileConfiguration(zul, 5);
    ZUL other;
    for (unsigned const index : {9U, 2U, 5U}) {
        auto* const config = fileConfiguration(other, index);
        config->setData("bits", 4);
        config->setFpgaType(index + 100);
        config->setClock(1, 25);
    }
    zul += other;
    ASSERT_EQ(zul.getConfigCount(), 4U);
    for (unsigned i = 1; i < 4; ++i) {
        auto const* const copy = zul.getConfigAt(i);
        auto const* const source = other.getConfigAt(i - 1);
        EXPECT_EQ(copy->getIndex(), source->getIndex());
        EXPECT_EQ(copy->getFpgaType(), source->getFpgaType());
        EXPECT_EQ(copy->getClock(1), 25U);
        EXPECT_EQ(copy->getLength(), 4U);
        EXPECT_NE(copy->getData(), source->getData());
        EXPECT_EQ(copy->getParent(), &zul);
        EXPECT_EQ(copy->getDestination(), nullptr);
    }
    EXPECT_EQ(zul.getTotalTagCount(), 0U) << "identifiers are not made";
}

TEST(MergedConfigurations, HaveTheCopyOfTheirDestination)
{
    ZUL zul;
    file<ZUL_destination>(zul, std::uint8_t{1}, std::uint16_t{2}, std::uint16_t{3}); // equal, and not theirs
    ZUL other;
    auto* const config = fileConfiguration(other, 1);
    config->setBoard(2, 3);
    config->setIndex(300); // not the destination's any more
    zul += other;
    ASSERT_EQ(zul.getTagCount(ZUL_destination::tag_id), 2U);
    EXPECT_EQ(zul.getConfigAt(0)->getDestination(), tagOf<ZUL_destination>(zul, 1));
    EXPECT_EQ(zul.getConfigAt(0)->getIndex(), 300U);
}

TEST(MergedConfigurations, OfADestinationInNoContainerFindOrMakeOneOfTheirOwn)
{
    ZUL_destination outside(nullptr, 9, 2, 3);
    for (bool const there : {false, true}) {
        ZUL zul;
        if (there) {
            file<ZUL_destination>(zul, std::uint8_t{4}, std::uint16_t{2}, std::uint16_t{3});
        }
        ZUL other;
        auto* const config = fileConfiguration(other, 0);
        config->setDestination(&outside);
        config->setIndex(4);
        zul += other;
        ASSERT_EQ(zul.getTagCount(ZUL_destination::tag_id), 1U);
        EXPECT_EQ(zul.getConfigAt(0)->getDestination(), tagOf<ZUL_destination>(zul));
        EXPECT_EQ(tagOf<ZUL_destination>(zul)->getIndex(), 4);
        EXPECT_EQ(zul.getConfigAt(0)->getBoardType(), 2);
        EXPECT_EQ(zul.getConfigAt(0)->getBoardRevision(), 3);
    }
}

TEST(MergedConfigurations, KeepTheirIdentifiers)
{
    ZUL other;
    fileConfiguration(other, 3)->setId("of three");
    ZUL zul;
    zul += other;
    EXPECT_STREQ(zul.getConfigAt(0)->getId(), "of three");
}

} // namespace
