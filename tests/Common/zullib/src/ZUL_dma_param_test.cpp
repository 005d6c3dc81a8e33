#include "ZUL_dma_param.h"

#include "coverage.h"
#include "loading.h"
#include "modules.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

constexpr std::uint32_t dmaParamId = 0x0815C000;
constexpr char const* noModule = "Tried to save a ZUL_dma_param without a module assigned, not allowed.";

Bytes dmaBytes(std::uint32_t moduleIndex = 5)
{
    return Bytes()
        .u32(0x0815C000)
        .u32(32)
        .u32(0xFFFFFFFD) // dma channel -3
        .u32(moduleIndex)
        .u32(4096) // max width
        .u32(3072) // max height
        .u32(8)    // format
        .u32(12);  // bit width
}

class DmaParam : public Modules {
protected:
    ZUL_dma_param full() const
    {
        ZUL_dma_param parameter(nullptr, 0, module);
        parameter.setDmaChannel(-3);
        parameter.setMaxWidth(4096);
        parameter.setMaxHeight(3072);
        parameter.setFormat(8);
        parameter.setBitwidth(12);
        return parameter;
    }

    static void expectFull(ZUL_dma_param const& parameter)
    {
        EXPECT_EQ(parameter.getDmaChannel(), -3);
        EXPECT_EQ(parameter.getModuleIndex(), 5);
        EXPECT_EQ(parameter.getMaxWidth(), 4096U);
        EXPECT_EQ(parameter.getMaxHeight(), 3072U);
        EXPECT_EQ(parameter.getFormat(), 8U);
        EXPECT_EQ(parameter.getBitwidth(), 12U);
    }
};

} // namespace

TEST_F(DmaParam, NewOneHasChannelAndModuleAndZeros)
{
    ZUL_dma_param const parameter(&zul, 3, module);
    EXPECT_EQ(parameter.getDmaChannel(), 3);
    EXPECT_EQ(parameter.getModule(), module);
    EXPECT_EQ(parameter.getMaxWidth(), 0U);
    EXPECT_EQ(parameter.getMaxHeight(), 0U);
    EXPECT_EQ(parameter.getFormat(), 0U);
    EXPECT_EQ(parameter.getBitwidth(), 0U);
    EXPECT_EQ(parameter.getTagId(), dmaParamId);
    EXPECT_EQ(parameter.getParent(), &zul);
}

TEST_F(DmaParam, ChannelIsSigned)
{
    EXPECT_EQ(ZUL_dma_param(&zul, 0xFFFFFFFF, module).getDmaChannel(), -1);
}

TEST_F(DmaParam, SettersAreSeenByGetters)
{
    expectFull(full());
    ZUL_dma_param parameter = full();
    parameter.setModule(otherModule);
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_EQ(parameter.getModuleIndex(), 6);
}

TEST_F(DmaParam, ModuleIndexWithoutModuleIsMinusOne)
{
    EXPECT_EQ(ZUL_dma_param(&zul, 0, nullptr).getModuleIndex(), -1);
}

TEST_F(DmaParam, SavesEveryByte)
{
    ZUL_dma_param parameter = full();
    EXPECT_EQ(savedBytes(parameter), dmaBytes());
    EXPECT_EQ(savedBytes(parameter, 0xA5), dmaBytes());
}

TEST_F(DmaParam, WithoutModuleIsNeitherMeasuredNorSaved)
{
    ZUL_dma_param parameter(&zul, 0, nullptr);
    Bytes buffer = Bytes().fill(0xA5, 32);
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.checkDependentFields(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.getSaveLength(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { parameter.Save(buffer.data()); }, noModule));
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 32)) << "nothing is written";
    parameter.setModule(module);
    EXPECT_NO_THROW(parameter.checkDependentFields());
}

TEST_F(DmaParam, Loads)
{
    ZUL_dma_param parameter(&zul, 0, nullptr);
    EXPECT_EQ(loadFrom(parameter, dmaBytes()), 32U);
    EXPECT_EQ(parameter.getModule(), module);
    expectFull(parameter);
}

TEST_F(DmaParam, LengthIsAlways32)
{
    expectFixedLength([&] { return ZUL_dma_param(&zul, 0, nullptr); }, dmaBytes(), dmaParamId);
}

TEST_F(DmaParam, UnknownModuleIsADanglingReference)
{
    ZUL_dma_param parameter(&zul, 9, otherModule);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, dmaBytes(nobody), dmaParamId));
    EXPECT_EQ(parameter.getModule(), otherModule);
    EXPECT_EQ(parameter.getDmaChannel(), 9);
}

TEST_F(DmaParam, WrongLengthIsRefusedBeforeTheModuleIsLookedUp)
{
    ZUL_dma_param parameter(&zul, 0, nullptr);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(parameter, dmaBytes(nobody).setU32(4, 31), dmaParamId));
}

TEST_F(DmaParam, WithoutContainerNoModuleIsFound)
{
    ZUL_dma_param parameter(nullptr, 0, nullptr);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(parameter, dmaBytes(), dmaParamId));
}

TEST_F(DmaParam, CopiesShareTheModuleAndHaveNoContainer)
{
    ZUL_dma_param source = full();
    source.setParent(&zul);
    ZUL_dma_param const copy(source);
    ZUL_dma_param const copyOfPointer(&source);
    for (ZUL_dma_param const* const each : {&copy, &copyOfPointer}) {
        expectFull(*each);
        EXPECT_EQ(each->getModule(), module);
        EXPECT_EQ(each->getParent(), nullptr);
    }
}

TEST_F(DmaParam, AssignmentKeepsTheContainer)
{
    ZUL_dma_param target(&zul, 9, nullptr);
    target = full();
    expectFull(target);
    EXPECT_EQ(target.getParent(), &zul);
    ZUL_dma_param const& same = target;
    target = same;
    expectFull(target);
}

TEST_F(DmaParam, HasNoOrder)
{
    ZUL_dma_param const parameter = full();
    ZUL_tag const& tag = parameter;
    constexpr char const* noOrder = "this operator has no default implementation";
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag < tag); }, noOrder));
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag == tag); }, noOrder));
}

TEST_F(DmaParam, VisitShowsEveryByteOnce)
{
    ZUL_dma_param parameter(nullptr, 0, nullptr);
    Bytes const bytes = dmaBytes(nobody);
    VisitRecord const shown = visited(parameter, bytes);
    EXPECT_TRUE(coversOnce(shown, 32));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).kind, FieldKind::Signed);
    EXPECT_EQ(shown.at(8).signedNumber(), -3);
    EXPECT_EQ(shown.at(12).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(12).number(), nobody);
    expectCutsAreShown([] { return ZUL_dma_param(nullptr, 0, nullptr); }, bytes, 32);
}
