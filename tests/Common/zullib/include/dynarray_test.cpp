#include "dynarray.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>

namespace {

/// Elements that nobody owns but this array.
class Numbers {
public:
    int* operator[](std::size_t i) { return &m_numbers.at(i); }
    void addTo(dynarraytp<int>& array, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            array.Add(&m_numbers.at(i));
        }
    }

private:
    std::array<int, 10> m_numbers{};
};

template <class Operation>
std::string indexError(Operation operation)
{
    try {
        operation();
    } catch (std::out_of_range const& error) {
        return error.what();
    }
    return "no error";
}

} // namespace

TEST(PointerArray, BeginsEmptyAndWithoutOwnership)
{
    dynarraytp<int> array;
    EXPECT_EQ(array.getCount(), 0U);
    EXPECT_EQ(array.getLength(), 0U);
    EXPECT_FALSE(array.ownsobjects());
    EXPECT_EQ(array.at(0), nullptr);
}

TEST(PointerArray, FullArrayGrowsByExactlyOneSlot)
{
    dynarraytp<int> array;
    Numbers numbers;
    for (std::uint32_t i = 0; i < 5; ++i) {
        array.Add(numbers[i]);
        EXPECT_EQ(array.getCount(), i + 1);
        EXPECT_EQ(array.getLength(), i + 1);
        EXPECT_EQ(array.at(i), numbers[i]);
    }
}

TEST(PointerArray, AddingIntoFreeSlotsKeepsTheCapacity)
{
    dynarraytp<int> array;
    Numbers numbers;
    array.scale(3);
    EXPECT_EQ(array.getCount(), 0U);
    numbers.addTo(array, 3);
    EXPECT_EQ(array.getLength(), 3U);
    array.Add(numbers[3]);
    EXPECT_EQ(array.getLength(), 4U);
    EXPECT_EQ(array.getCount(), 4U);
}

TEST(PointerArray, NullIsAnElementLikeAnyOther)
{
    dynarraytp<int> array;
    array.Add(nullptr);
    array.Add(nullptr);
    EXPECT_EQ(array.getCount(), 2U);
}

TEST(PointerArray, ScaleKeepsElementsAndCount)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 3);
    array.scale(8);
    EXPECT_EQ(array.getLength(), 8U);
    EXPECT_EQ(array.getCount(), 3U);
    EXPECT_EQ(array.get(2), numbers[2]);
    EXPECT_EQ(array.get(7), nullptr);
    array.scale(3);
    EXPECT_EQ(array.getLength(), 3U);
    EXPECT_EQ(array.getCount(), 3U);
    EXPECT_EQ(array.get(2), numbers[2]);
    array.scale(3);
    EXPECT_EQ(array.getLength(), 3U);
}

TEST(PointerArray, ScaleBelowTheCountDropsElementsAndKeepsTheCount)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 4);
    array.scale(2);
    EXPECT_EQ(array.getLength(), 2U);
    EXPECT_EQ(array.getCount(), 4U);
    EXPECT_EQ(array.get(1), numbers[1]);
    EXPECT_EQ(indexError([&] { array.get(2); }), "bad array index");
    EXPECT_EQ(array.at(2), nullptr);
    array.scale(4);
    EXPECT_EQ(array.get(2), nullptr) << "what fell off is gone";
}

TEST(PointerArray, FastScaleIsTheSame)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 2);
    array.fastScale(6);
    EXPECT_EQ(array.getLength(), 6U);
    EXPECT_EQ(array.getCount(), 2U);
    EXPECT_EQ(array.get(1), numbers[1]);
    EXPECT_EQ(array.get(5), nullptr);
    array.fastScale(2);
    EXPECT_EQ(array.getLength(), 2U);
}

TEST(PointerArray, AnnouncedCapacityIsOnlyANumber)
{
    dynarraytp<int> array;
    Numbers numbers;
    array.scale(0xFFFFFFFF); // 32 GiB if it were allocated
    EXPECT_EQ(array.getLength(), 0xFFFFFFFFU);
    array.Add(numbers[0]);
    EXPECT_EQ(array.getLength(), 0xFFFFFFFFU);
    EXPECT_EQ(array.get(0xFFFFFFFE), nullptr);
    EXPECT_EQ(array.at(0), numbers[0]);
}

TEST(PointerArray, AtAnswersNullBeyondTheCount)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 2);
    array.scale(4);
    array.set(3, numbers[3]);
    EXPECT_EQ(array.at(1), numbers[1]);
    EXPECT_EQ(array.at(2), nullptr);
    EXPECT_EQ(array.at(3), nullptr) << "stored, but not counted";
    EXPECT_EQ(array.at(4), nullptr);
    EXPECT_EQ(array.at(0xFFFFFFFF), nullptr);
}

TEST(PointerArray, GetAndSetCheckAgainstTheCapacity)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 1);
    array.scale(3);
    EXPECT_EQ(array.get(1), nullptr);
    EXPECT_EQ(array.get(2), nullptr);
    EXPECT_EQ(indexError([&] { array.get(3); }), "bad array index");
    EXPECT_EQ(indexError([&] { array.set(3, numbers[3]); }), "bad array index");
    array.set(2, numbers[2]);
    EXPECT_EQ(array.get(2), numbers[2]);
    EXPECT_EQ(array.get(1), nullptr);
    EXPECT_EQ(array.getCount(), 1U);
    array.set(0, numbers[9]);
    EXPECT_EQ(array.at(0), numbers[9]);
    EXPECT_EQ(indexError([] { dynarraytp<int>().get(0); }), "bad array index");
}

TEST(PointerArray, AddStoresAtTheCountWhateverWasSetThere)
{
    dynarraytp<int> array;
    Numbers numbers;
    array.scale(3);
    array.set(0, numbers[5]);
    array.set(2, numbers[7]);
    array.Add(numbers[0]);
    EXPECT_EQ(array.get(0), numbers[0]);
    EXPECT_EQ(array.get(1), nullptr);
    EXPECT_EQ(array.get(2), numbers[7]);
    EXPECT_EQ(array.getLength(), 3U);
}

TEST(PointerArray, RemoveMovesTheLaterElementsDown)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 4);
    array.remove(1);
    EXPECT_EQ(array.getCount(), 3U);
    EXPECT_EQ(array.getLength(), 4U);
    EXPECT_EQ(array.at(0), numbers[0]);
    EXPECT_EQ(array.at(1), numbers[2]);
    EXPECT_EQ(array.at(2), numbers[3]);
    EXPECT_EQ(array.get(3), nullptr) << "the slot that became free";
    array.remove(2);
    array.remove(0);
    EXPECT_EQ(array.at(0), numbers[2]);
    EXPECT_EQ(array.getCount(), 1U);
}

TEST(PointerArray, RemoveLeavesSlotsBeyondTheCountInPlace)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 2);
    array.scale(4);
    array.set(3, numbers[3]);
    array.remove(0);
    EXPECT_EQ(array.get(0), numbers[1]);
    EXPECT_EQ(array.get(1), nullptr);
    EXPECT_EQ(array.get(3), numbers[3]);
}

TEST(PointerArray, RemoveChecksAgainstTheCount)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 2);
    array.scale(4);
    EXPECT_EQ(indexError([&] { array.remove(2); }), "bad array index");
    EXPECT_EQ(array.getCount(), 2U);
    EXPECT_EQ(indexError([] { dynarraytp<int>().remove(0); }), "bad array index");
}

TEST(PointerArray, RemoveIfTakesOutEveryMatchInOrder)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 6);
    array.removeIf(
        [&](int* number) { return number == numbers[0] || number == numbers[3] || number == numbers[5]; });
    ASSERT_EQ(array.getCount(), 3U);
    EXPECT_EQ(array.at(0), numbers[1]);
    EXPECT_EQ(array.at(1), numbers[2]);
    EXPECT_EQ(array.at(2), numbers[4]);
    EXPECT_EQ(array.getLength(), 6U);
    EXPECT_EQ(array.get(3), nullptr);
}

TEST(PointerArray, SwapExchangesTwoSlots)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 3);
    array.swap(0, 2);
    EXPECT_EQ(array.at(0), numbers[2]);
    EXPECT_EQ(array.at(1), numbers[1]);
    EXPECT_EQ(array.at(2), numbers[0]);
    array.swap(1, 1);
    EXPECT_EQ(array.at(1), numbers[1]);
}

TEST(PointerArray, SwapReachesSlotsThatWereNeverFilled)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 1);
    array.scale(1000);
    array.swap(0, 999);
    EXPECT_EQ(array.get(0), nullptr);
    EXPECT_EQ(array.get(999), numbers[0]);
    EXPECT_EQ(array.getCount(), 1U);
}

TEST(PointerArray, ClearDropsEverythingAndKeepsTheCapacity)
{
    dynarraytp<int> array;
    Numbers numbers;
    numbers.addTo(array, 3);
    array.scale(5);
    array.set(4, numbers[4]);
    array.clear();
    EXPECT_EQ(array.getCount(), 0U);
    EXPECT_EQ(array.getLength(), 5U);
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(array.get(i), nullptr);
    }
    array.Add(numbers[1]);
    EXPECT_EQ(array.at(0), numbers[1]);
    EXPECT_EQ(array.getLength(), 5U);
}
