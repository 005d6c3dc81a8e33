#include "ZUL_camparam.h"

#include "coverage.h"
#include "loading.h"
#include "modules.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <typeinfo>

namespace {

constexpr std::uint32_t camparamId = 0x0815D000;
constexpr char const* noModule = "Tried to save a ZUL_camparam without a module assigned, not allowed.";

Bytes camparamBytes(std::uint32_t moduleIndex = 5)
{
    return Bytes()
        .u32(0x0815D000)
        .u32(16)
        .u32(2) // camera channel
        .u32(moduleIndex);
}

class Camparam : public Modules {};

} // namespace

TEST_F(Camparam, NewOneHasChannelAndModule)
{
    ZUL_camparam const parameter(&zul, 2, module);
    EXPECT_EQ(parameter.getChannel(), 2U);
    EXPECT_EQ(parameter.getModule(), module);
    EXPECT_EQ(parameter.getModuleIndex(), 5U);
    EXPECT_EQ(parameter.getTagId(), camparamId);
    EXPECT_EQ(parameter.getParent(), &zul);
}

TEST_F(Camparam, SettersAreSeenByGetters)
{
    ZUL_camparam parameter(nullptr, 0, nullptr);
    parameter.setChannel(0xFFFFFFFF);
    parameter.setModule(otherModule);
    EXPECT_EQ(parameter.getChannel(), 0xFFFFFFFFU);
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_EQ(parameter.getModuleIndex(), 6U);
}

TEST_F(Camparam, ModuleIndexWithoutModuleIsAllOnes)
{
    EXPECT_EQ(ZUL_camparam(&zul, 2, nullptr).getModuleIndex(), 0xFFFFFFFFU);
}

TEST_F(Camparam, SavesEveryByte)
{
    ZUL_camparam parameter(&zul, 2, module);
    EXPECT_EQ(savedBytes(parameter), camparamBytes());
    EXPECT_EQ(savedBytes(parameter, 0xA5), camparamBytes());
}

TEST_F(Camparam, WithoutModuleIsNeitherMeasuredNorSaved)
{
    ZUL_camparam parameter(&zul, 2, nullptr);
    Bytes buffer = Bytes().fill(0xA5, 16);
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.checkDependentFields(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.getSaveLength(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.Save(buffer.data()); }, noModule));
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 16)) << "nothing is written";
    parameter.setModule(module);
    EXPECT_NO_THROW(parameter.checkDependentFields());
}

TEST_F(Camparam, Loads)
{
    ZUL_camparam parameter(&zul, 0, nullptr);
    EXPECT_EQ(loadFrom(parameter, camparamBytes()), 16U);
    EXPECT_EQ(parameter.getChannel(), 2U);
    EXPECT_EQ(parameter.getModule(), module);
}

TEST_F(Camparam, LengthIsAlways16)
{
    expectFixedLength([&] { return ZUL_camparam(&zul, 0, nullptr); }, camparamBytes(), camparamId);
}

TEST_F(Camparam, LengthOf20IsRefusedEvenWhen20BytesAreThere)
{
    ZUL_camparam parameter(&zul, 0, nullptr);
    Bytes const bytes = camparamBytes().setU32(4, 20).u32(0);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(parameter, bytes, camparamId));
}

TEST_F(Camparam, UnknownModuleIsADanglingReference)
{
    ZUL_camparam parameter(&zul, 9, otherModule);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, camparamBytes(nobody), camparamId));
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_EQ(parameter.getChannel(), 9U);
}

TEST_F(Camparam, WrongLengthIsRefusedBeforeTheModuleIsLookedUp)
{
    ZUL_camparam parameter(&zul, 0, nullptr);
    EXPECT_TRUE(
        loadThrows<ZUL_file_bad_tag_length>(parameter, camparamBytes(nobody).setU32(4, 17), camparamId));
}

TEST_F(Camparam, WithoutContainerNoModuleIsFound)
{
    ZUL_camparam parameter(nullptr, 0, nullptr);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, camparamBytes(), camparamId));
}

TEST_F(Camparam, CopiesShareTheModuleAndHaveNoContainer)
{
    ZUL_camparam const source(&zul, 2, module);
    ZUL_camparam const copy(source);
    ZUL_camparam const copyOfPointer(&source);
    for (ZUL_camparam const* const each : {&copy, &copyOfPointer}) {
        EXPECT_EQ(each->getChannel(), 2U);
        EXPECT_EQ(each->getModule(), module);
        EXPECT_EQ(each->getParent(), nullptr);
    }
}

TEST_F(Camparam, AssignmentKeepsTheContainer)
{
    ZUL_camparam target(&zul, 9, nullptr);
    target = ZUL_camparam(nullptr, 2, module);
    EXPECT_EQ(target.getChannel(), 2U);
    EXPECT_EQ(target.getModule(), module);
    EXPECT_EQ(target.getParent(), &zul);
    ZUL_camparam const& same = target;
    target = same;
    EXPECT_EQ(target.getChannel(), 2U);
    EXPECT_EQ(target.getModule(), module);
}

TEST_F(Camparam, OrderIsThatOfTheChannels)
{
    ZUL_camparam const low(nullptr, 1, otherModule);
    ZUL_camparam const high(nullptr, 0x80000000, module);
    ZUL_tag const& lowTag = low;
    ZUL_tag const& highTag = high;
    EXPECT_TRUE(low < highTag);
    EXPECT_FALSE(low > highTag);
    EXPECT_TRUE(high > lowTag);
    EXPECT_FALSE(high < lowTag);
    EXPECT_TRUE(low < &highTag);
}

TEST_F(Camparam, SameChannelOfDifferentModulesIsNeitherLessNorGreaterNorEqual)
{
    ZUL_camparam const left(nullptr, 2, module);
    ZUL_camparam const right(nullptr, 2, otherModule);
    ZUL_tag const& rightTag = right;
    EXPECT_FALSE(left < rightTag);
    EXPECT_FALSE(left > rightTag);
    EXPECT_FALSE(left == rightTag);
    EXPECT_FALSE(left == right);
    EXPECT_TRUE(left != right);
}

TEST_F(Camparam, EqualMeansSameChannelAndModuleIndex)
{
    ZUL_module twin(nullptr, process);
    twin.setIndex(5);
    ZUL_camparam const parameter(nullptr, 2, module);
    ZUL_camparam const same(&zul, 2, &twin);
    EXPECT_TRUE(parameter == same) << "the index counts, not the object";
    EXPECT_TRUE(parameter == static_cast<ZUL_tag const&>(same));
    EXPECT_FALSE(parameter == ZUL_camparam(nullptr, 3, module));
    EXPECT_FALSE(parameter == ZUL_camparam(nullptr, 2, nullptr));
    EXPECT_TRUE(ZUL_camparam(nullptr, 2, nullptr) == ZUL_camparam(nullptr, 2, nullptr));
}

TEST_F(Camparam, NeverEqualsAnotherKindAndHasNoOrderWithIt)
{
    ZUL_camparam const parameter(nullptr, 2, module);
    ZUL_tag const& other = *process;
    EXPECT_FALSE(parameter == other);
    EXPECT_THROW(static_cast<void>(parameter < other), std::bad_cast);
    EXPECT_THROW(static_cast<void>(parameter > other), std::bad_cast);
}

TEST_F(Camparam, VisitShowsEveryByteOnce)
{
    ZUL_camparam parameter(nullptr, 0, nullptr);
    Bytes const bytes = camparamBytes(nobody);
    VisitRecord const shown = visited(parameter, bytes);
    EXPECT_TRUE(coversOnce(shown, 16));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).number(), 2U);
    EXPECT_EQ(shown.at(12).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(12).number(), nobody);
    expectCutsAreShown([] { return ZUL_camparam(nullptr, 0, nullptr); }, bytes, 16);
}
