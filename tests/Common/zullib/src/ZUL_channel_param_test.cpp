#include "ZUL_channel_param.h"

#include "coverage.h"
#include "loading.h"
#include "modules.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

constexpr std::uint32_t channelId = 0x0815B000;
constexpr char const* noModule = "Tried to save a ZUL_channel_param without a module assigned, not allowed.";

Bytes channelBytes(std::uint32_t moduleIndex = 5, std::uint32_t input = 1, std::string_view name = "image_in")
{
    return Bytes()
        .u32(0x0815B000)
        .u32(124)
        .u32(input)
        .u32(moduleIndex)
        .u32(21) // link index
        .text(name, 64)
        .u32(22)  // format index
        .u32(23)  // arith
        .u32(24)  // flavor
        .u32(25)  // width
        .u32(26)  // position
        .u32(27)  // parallel
        .u32(28)  // kernel rows
        .u32(29)  // kernel columns
        .u32(30)  // max width
        .u32(31); // max height
}

class ChannelParam : public Modules {
protected:
    ZUL_channel_param full() const
    {
        ZUL_channel_param channel(nullptr, true, module, "image_in");
        channel.setLinkIndex(21);
        channel.setFormatIndex(22);
        channel.setArith(23);
        channel.setFlavor(24);
        channel.setWidth(25);
        channel.setPosition(26);
        channel.setParallel(27);
        channel.setKernelRows(28);
        channel.setKernelColumns(29);
        channel.setMaxWidth(30);
        channel.setMaxHeight(31);
        return channel;
    }

    void expectFull(ZUL_channel_param const& channel) const
    {
        EXPECT_TRUE(channel.getInputChannel());
        EXPECT_EQ(channel.getModule(), module);
        EXPECT_EQ(channel.getModuleIndex(), 5U);
        EXPECT_STREQ(channel.getName(), "image_in");
        expectNumbers(channel, 21, 1);
    }

    /// The eleven numbers, in the order in which they are stored.
    static void expectNumbers(ZUL_channel_param const& channel, unsigned int first, unsigned int step)
    {
        EXPECT_EQ(channel.getLinkIndex(), first);
        EXPECT_EQ(channel.getFormatIndex(), first + step);
        EXPECT_EQ(channel.getArith(), first + 2 * step);
        EXPECT_EQ(channel.getFlavor(), first + 3 * step);
        EXPECT_EQ(channel.getWidth(), first + 4 * step);
        EXPECT_EQ(channel.getPosition(), first + 5 * step);
        EXPECT_EQ(channel.getParallel(), first + 6 * step);
        EXPECT_EQ(channel.getKernelRows(), first + 7 * step);
        EXPECT_EQ(channel.getKernelColumns(), first + 8 * step);
        EXPECT_EQ(channel.getMaxWidth(), first + 9 * step);
        EXPECT_EQ(channel.getMaxHeight(), first + 10 * step);
    }

    ZUL_channel_param empty() { return {&zul, false, nullptr, nullptr}; }
};

} // namespace

TEST_F(ChannelParam, NewOneHasZeros)
{
    ZUL_channel_param const channel(&zul, true, module, "image_in");
    EXPECT_TRUE(channel.getInputChannel());
    EXPECT_EQ(channel.getModule(), module);
    EXPECT_STREQ(channel.getName(), "image_in");
    expectNumbers(channel, 0, 0);
    EXPECT_EQ(channel.getTagId(), channelId);
    EXPECT_EQ(channel.getParent(), &zul);
    EXPECT_FALSE(empty().getInputChannel());
    EXPECT_EQ(empty().getName(), nullptr);
}

TEST_F(ChannelParam, SettersAreSeenByGetters)
{
    expectFull(full());
    ZUL_channel_param channel = full();
    channel.setInputChannel(false);
    channel.setModule(otherModule);
    EXPECT_FALSE(channel.getInputChannel());
    EXPECT_EQ(channel.getModule(), otherModule);
    EXPECT_EQ(channel.getModuleIndex(), 6U);
}

TEST_F(ChannelParam, ModuleIndexWithoutModuleIsAllOnes)
{
    EXPECT_EQ(empty().getModuleIndex(), 0xFFFFFFFFU);
}

TEST_F(ChannelParam, NameIsCutAt64Characters)
{
    std::string const name(70, 'n');
    ZUL_channel_param channel(&zul, true, module, name.c_str());
    EXPECT_EQ(channel.getName(), std::string(64, 'n'));
    channel.setName("");
    EXPECT_STREQ(channel.getName(), "");
    channel.setName(name.c_str());
    EXPECT_EQ(channel.getName(), std::string(64, 'n'));
    channel.setName(nullptr);
    EXPECT_EQ(channel.getName(), nullptr);
}

TEST_F(ChannelParam, SavesEveryByte)
{
    ZUL_channel_param channel = full();
    EXPECT_EQ(savedBytes(channel), channelBytes());
    EXPECT_EQ(savedBytes(channel, 0xA5), channelBytes());
}

TEST_F(ChannelParam, OutputChannelWithoutNameIsSavedAsZeros)
{
    ZUL_channel_param channel(nullptr, false, module, nullptr);
    EXPECT_EQ(savedBytes(channel, 0xA5), Bytes().u32(channelId).u32(124).u32(0).u32(5).zeros(108));
}

TEST_F(ChannelParam, NameThatFillsItsWidthIsSavedWithoutTerminatorAndLoadsBack)
{
    std::string const name(64, 'n');
    ZUL_channel_param channel = full();
    channel.setName(name.c_str());
    EXPECT_EQ(savedBytes(channel, 0xA5), channelBytes(5, 1, name));
    ZUL_channel_param back = empty();
    loadFrom(back, savedBytes(channel));
    EXPECT_EQ(back.getName(), name);
    EXPECT_EQ(back.getFormatIndex(), 22U);
}

TEST_F(ChannelParam, WithoutModuleIsNeitherMeasuredNorSaved)
{
    ZUL_channel_param channel = empty();
    Bytes buffer = Bytes().fill(0xA5, 124);
    EXPECT_TRUE(throws<std::runtime_error>([&] { channel.checkDependentFields(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { channel.getSaveLength(); }, noModule));
    EXPECT_TRUE(throws<std::runtime_error>([&] { channel.Save(buffer.data()); }, noModule));
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 124)) << "nothing is written";
    channel.setModule(module);
    EXPECT_NO_THROW(channel.checkDependentFields());
}

TEST_F(ChannelParam, Loads)
{
    ZUL_channel_param channel = empty();
    EXPECT_EQ(loadFrom(channel, channelBytes()), 124U);
    expectFull(channel);
}

TEST_F(ChannelParam, EveryInputWordButZeroIsAnInputAndIsSavedAsOne)
{
    for (std::uint32_t const word : {1U, 7U, 0x100U, 0x80000000U}) {
        ZUL_channel_param channel = empty();
        loadFrom(channel, channelBytes(5, word));
        EXPECT_TRUE(channel.getInputChannel()) << word;
        EXPECT_EQ(savedBytes(channel), channelBytes(5, 1)) << word;
    }
    ZUL_channel_param channel = full();
    channel.setParent(&zul);
    loadFrom(channel, channelBytes(5, 0));
    EXPECT_FALSE(channel.getInputChannel());
    EXPECT_EQ(savedBytes(channel), channelBytes(5, 0));
}

TEST_F(ChannelParam, NameOfNulIsTheEmptyText)
{
    ZUL_channel_param channel = empty();
    loadFrom(channel, channelBytes(5, 1, ""));
    EXPECT_STREQ(channel.getName(), "");
}

TEST_F(ChannelParam, LengthIsAlways124)
{
    expectFixedLength([&] { return empty(); }, channelBytes(), channelId);
}

TEST_F(ChannelParam, UnknownModuleIsADanglingReference)
{
    ZUL_channel_param channel(&zul, false, otherModule, "kept");
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(channel, channelBytes(nobody), channelId));
    EXPECT_EQ(channel.getModule(), otherModule);
    EXPECT_STREQ(channel.getName(), "kept");
    EXPECT_FALSE(channel.getInputChannel());
}

TEST_F(ChannelParam, WrongLengthIsRefusedBeforeTheModuleIsLookedUp)
{
    ZUL_channel_param channel = empty();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(channel, channelBytes(nobody).setU32(4, 123), channelId));
}

TEST_F(ChannelParam, WithoutContainerNoModuleIsFound)
{
    ZUL_channel_param channel(nullptr, false, nullptr, nullptr);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(channel, channelBytes(), channelId));
}

TEST_F(ChannelParam, CopiesShareTheModuleAndHaveNoContainer)
{
    ZUL_channel_param source = full();
    source.setParent(&zul);
    ZUL_channel_param const copy(source);
    ZUL_channel_param const copyOfPointer(&source);
    for (ZUL_channel_param const* const each : {&copy, &copyOfPointer}) {
        expectFull(*each);
        EXPECT_NE(each->getName(), source.getName()) << "the name is not shared";
        EXPECT_EQ(each->getParent(), nullptr);
    }
}

TEST_F(ChannelParam, AssignmentKeepsTheContainer)
{
    ZUL_channel_param target = empty();
    target = full();
    expectFull(target);
    EXPECT_EQ(target.getParent(), &zul);
    ZUL_channel_param const& same = target;
    target = same;
    expectFull(target);
}

TEST_F(ChannelParam, HasNoOrder)
{
    ZUL_channel_param const channel = full();
    ZUL_tag const& tag = channel;
    constexpr char const* noOrder = "this operator has no default implementation";
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag < tag); }, noOrder));
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag == tag); }, noOrder));
}

TEST_F(ChannelParam, VisitShowsEveryByteOnce)
{
    ZUL_channel_param channel(nullptr, false, nullptr, nullptr);
    Bytes const bytes = channelBytes(nobody, 7);
    VisitRecord const shown = visited(channel, bytes);
    EXPECT_TRUE(coversOnce(shown, 124));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).number(), 7U);
    EXPECT_EQ(shown.at(12).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(20).text(), "image_in");
    EXPECT_EQ(shown.at(120).number(), 31U);
    EXPECT_TRUE(channel.getInputChannel());
    expectCutsAreShown([] { return ZUL_channel_param(nullptr, false, nullptr, nullptr); }, bytes, 124);
}
