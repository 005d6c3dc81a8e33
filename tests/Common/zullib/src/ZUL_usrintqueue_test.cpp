#include "ZUL_usrintqueue.h"

#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "virtual_slot.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace {

constexpr std::uint32_t queueId = 0x08150015;
constexpr std::uint32_t readId = 0x08151060;
constexpr std::uint32_t writeId = 0x08151070;

ZUL* const noContainer = nullptr;

Bytes queueBytes(std::uint32_t id, std::uint32_t burst)
{
    return Bytes()
        .u32(id)
        .u32(28)
        .u32(0x00012340) // address
        .u32(8)          // shiftr
        .u32(2)          // queue number
        .u32(512)        // queue depth
        .u32(burst);
}

template <class Queue>
Queue emptyQueue()
{
    return Queue(noContainer);
}

template <class Queue>
Queue filledQueue()
{
    Queue queue(noContainer);
    queue.setAddress(0x12340);
    queue.setShiftr(8);
    queue.setQueueNumber(2);
    queue.setQueueDepth(512);
    queue.setMaxBurstLength(16);
    return queue;
}

} // namespace

TEST(UserInterruptQueueTag, BeginsWithZeros)
{
    ZUL_usrintqueue_write const queue(noContainer);
    EXPECT_EQ(queue.getAddress(), 0U);
    EXPECT_EQ(queue.getShiftr(), 0U);
    EXPECT_EQ(queue.getQueueNumber(), 0U);
    EXPECT_EQ(queue.getQueueDepth(), 0U);
    EXPECT_EQ(queue.getMaxBurstLength(), 0U);
}

TEST(UserInterruptQueueTag, EachKindHasItsIdAndDirection)
{
    ZUL_usrintqueue const plain(noContainer);
    ZUL_usrintqueue_read const read(noContainer);
    ZUL_usrintqueue_write const write(noContainer);
    EXPECT_EQ(plain.getTagId(), queueId);
    EXPECT_EQ(read.getTagId(), readId);
    EXPECT_EQ(write.getTagId(), writeId);
    EXPECT_FALSE(plain.isWriteQueue());
    EXPECT_FALSE(static_cast<ZUL_usrintqueue const&>(read).isWriteQueue());
    EXPECT_TRUE(static_cast<ZUL_usrintqueue const&>(write).isWriteQueue());
}

TEST(UserInterruptQueueTag, DirectionStandsBehindTheOperationsOfEveryTag)
{
    EXPECT_GT(virtualSlot(&ZUL_usrintqueue::isWriteQueue),
              virtualSlot<bool (ZUL_tag::*)(ZUL_tag const&) const>(&ZUL_tag::operator==));
}

TEST(UserInterruptQueueTag, SavesEveryByte)
{
    auto read = filledQueue<ZUL_usrintqueue_read>();
    auto write = filledQueue<ZUL_usrintqueue_write>();
    EXPECT_EQ(savedBytes(read, 0xA5), queueBytes(readId, 16));
    EXPECT_EQ(savedBytes(write, 0xA5), queueBytes(writeId, 16));
    EXPECT_EQ(savedBytes(write, 0x00), queueBytes(writeId, 16));
}

TEST(UserInterruptQueueTag, PlainQueueIsSavedAsAReadQueue)
{
    auto plain = filledQueue<ZUL_usrintqueue>();
    EXPECT_EQ(savedBytes(plain, 0xA5), queueBytes(readId, 16));
    EXPECT_EQ(plain.getTagId(), queueId);
}

TEST(UserInterruptQueueTag, DirectionOfADerivedQueueDecidesTheSavedId)
{
    class Turning : public ZUL_usrintqueue {
    public:
        using ZUL_usrintqueue::ZUL_usrintqueue;
        bool isWriteQueue() const override { return true; }
    };
    Turning queue(noContainer);
    EXPECT_EQ(savedBytes(queue).cut(4), Bytes().u32(writeId));
}

TEST(UserInterruptQueueTag, LoadsEveryField)
{
    ZUL_usrintqueue_write queue(noContainer);
    EXPECT_EQ(loadFrom(queue, queueBytes(writeId, 16)), 28U);
    EXPECT_EQ(queue.getAddress(), 0x12340U);
    EXPECT_EQ(queue.getShiftr(), 8U);
    EXPECT_EQ(queue.getQueueNumber(), 2U);
    EXPECT_EQ(queue.getQueueDepth(), 512U);
    EXPECT_EQ(queue.getMaxBurstLength(), 16U);
}

TEST(UserInterruptQueueTag, LoadedReadQueueHasNoBurstLength)
{
    auto queue = filledQueue<ZUL_usrintqueue_read>();
    EXPECT_EQ(loadFrom(queue, savedBytes(queue)), 28U);
    EXPECT_EQ(queue.getMaxBurstLength(), 0U);
    EXPECT_EQ(savedBytes(queue), queueBytes(readId, 0));
    queue.setMaxBurstLength(16);
    EXPECT_EQ(queue.getMaxBurstLength(), 16U) << "only loading takes it away";
}

TEST(UserInterruptQueueTag, LoadedPlainQueueKeepsItsBurstLength)
{
    ZUL_usrintqueue queue(noContainer);
    loadFrom(queue, queueBytes(readId, 16));
    EXPECT_EQ(queue.getMaxBurstLength(), 16U);
}

TEST(UserInterruptQueueTag, TakesEveryNumber)
{
    ZUL_usrintqueue_write queue(noContainer);
    Bytes const extreme = queueBytes(writeId, 0).cut(8).fill(0xFF, 20);
    loadFrom(queue, extreme);
    EXPECT_EQ(savedBytes(queue), extreme);
}

TEST(UserInterruptQueueTag, IsAlways28BytesLongAndRefusedUnderItsOwnId)
{
    expectFixedLength(emptyQueue<ZUL_usrintqueue_read>, queueBytes(readId, 16), readId);
    expectFixedLength(emptyQueue<ZUL_usrintqueue_write>, queueBytes(writeId, 16), writeId);
    expectFixedLength(emptyQueue<ZUL_usrintqueue>, queueBytes(readId, 16), queueId);
}

TEST(UserInterruptQueueTag, RefusedLoadChangesNothing)
{
    auto queue = filledQueue<ZUL_usrintqueue_read>();
    Bytes const refused = Bytes().u32(readId).u32(29).fill(0xFF, 28);
    ASSERT_TRUE(loadThrows<ZUL_file_bad_tag_length>(queue, refused, readId));
    EXPECT_EQ(savedBytes(queue), queueBytes(readId, 16));
}

template <class Queue>
class UserInterruptQueueCopy : public testing::Test {
};

using QueueKinds = testing::Types<ZUL_usrintqueue, ZUL_usrintqueue_read, ZUL_usrintqueue_write>;
TYPED_TEST_SUITE(UserInterruptQueueCopy, QueueKinds, );

TYPED_TEST(UserInterruptQueueCopy, TakesEverythingButTheContainer)
{
    ZUL zul;
    auto source = filledQueue<TypeParam>();
    source.setParent(&zul);
    Bytes const expected = savedBytes(source);
    TypeParam copy(source);
    TypeParam fromPointer(&source);
    TypeParam assigned(noContainer);
    assigned = source;
    for (TypeParam* const queue : {&copy, &fromPointer, &assigned}) {
        EXPECT_EQ(savedBytes(*queue), expected);
        EXPECT_EQ(queue->getParent(), nullptr);
    }
    source = TypeParam(noContainer);
    EXPECT_EQ(source.getParent(), &zul);
    copy = std::as_const(copy);
    EXPECT_EQ(savedBytes(copy), expected);
}

TEST(UserInterruptQueueTag, HasNoOrder)
{
    ZUL_usrintqueue_read const queue(noContainer);
    EXPECT_THROW(static_cast<void>(queue < queue), std::runtime_error);
    EXPECT_THROW(static_cast<void>(queue == queue), std::runtime_error);
}

TEST(UserInterruptQueueTag, VisitCoversItOnce)
{
    ZUL_usrintqueue_read queue(noContainer);
    VisitRecord const record = visited(queue, queueBytes(readId, 16));
    EXPECT_TRUE(coversOnce(record, 28));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "address");
    EXPECT_STREQ(record.at(12).name, "shiftr");
    EXPECT_STREQ(record.at(16).name, "queue number");
    EXPECT_STREQ(record.at(20).name, "queue depth");
    EXPECT_STREQ(record.at(24).name, "max burst length");
    EXPECT_EQ(record.at(24).number(), 16U) << "what the bytes say, though loading drops it";
    EXPECT_EQ(visited(queue, queueBytes(readId, 16).setU32(4, 29)).problems.size(), 1U);
    expectCutsAreShown(emptyQueue<ZUL_usrintqueue_read>, queueBytes(readId, 16), 28);
    expectCutsAreShown(emptyQueue<ZUL_usrintqueue_write>, queueBytes(writeId, 16), 28);
}
