#include "ZUL_param_link.h"

#include "coverage.h"
#include "huge_text.h"
#include "loading.h"
#include "modules.h"
#include "throwing.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

constexpr std::uint32_t linkId = 0x0815E000;
constexpr char const* noModule =
    "Tried to save a ZUL_param_link without a destination or source module, not allowed.";

/// From parameter -2 of module 5 to parameter 3 of module 6.
/// @param fill stands in the bytes that loading ignores
Bytes linkBytes(std::uint32_t flag = 1, unsigned fill = 0)
{
    return Bytes()
        .u32(0x0815E000)
        .u32(52 + 6 + 4 + 5)
        .u32(5)          // source module index
        .u32(6)          // destination module index
        .u32(0xFFFFFFFE) // source parameter index
        .u32(3)          // destination parameter index
        .fill(fill, 12)
        .u32(6) // source name length
        .u32(4) // destination name length
        .u32(5) // destination module name length
        .u32(flag)
        .charsZ("width")
        .charsZ("out")
        .charsZ("buf1");
}

Bytes bareLinkBytes(std::uint32_t length = 52)
{
    return Bytes().u32(0x0815E000).u32(length).u32(5).u32(6).u32(0xFFFFFFFF).u32(0xFFFFFFFF).zeros(24).u32(1);
}

class ParamLink : public Modules {
protected:
    ZUL_param_link empty() { return {&zul, nullptr, nullptr}; }

    ZUL_param_link full() const
    {
        ZUL_param_link link(nullptr, module, otherModule);
        link.setSourceParamIndex(-2);
        link.setDestinationParamIndex(3);
        link.setSourceName("width");
        link.setDestinationName("out");
        link.setDestinationModuleName("buf1");
        return link;
    }

    void expectFull(ZUL_param_link const& link) const
    {
        EXPECT_EQ(link.getSourceModule(), module);
        EXPECT_EQ(link.getDestinationModule(), otherModule);
        EXPECT_EQ(link.getSourceParamIndex(), -2);
        EXPECT_EQ(link.getDestinationParamIndex(), 3);
        EXPECT_STREQ(link.getSourceName(), "width");
        EXPECT_STREQ(link.getDestinationName(), "out");
        EXPECT_STREQ(link.getDestinationModuleName(), "buf1");
        EXPECT_TRUE(link.getFlag());
    }

    static void expectNeitherMeasuredNorSaved(ZUL_param_link& link, char const* message)
    {
        Bytes buffer = Bytes().fill(0xA5, 200);
        EXPECT_TRUE(throws<std::runtime_error>([&] { link.getSaveLength(); }, message));
        EXPECT_TRUE(throws<std::runtime_error>([&] { link.Save(buffer.data()); }, message));
        EXPECT_EQ(buffer, Bytes().fill(0xA5, 200)) << "nothing is written";
    }
};

} // namespace

TEST_F(ParamLink, NewOneHasIndicesMinusOneAndNoTextsAndTheFlag)
{
    ZUL_param_link const link(&zul, module, otherModule);
    EXPECT_EQ(link.getSourceModule(), module);
    EXPECT_EQ(link.getSourceModuleIndex(), 5);
    EXPECT_EQ(link.getDestinationModule(), otherModule);
    EXPECT_EQ(link.getDestinationModuleIndex(), 6);
    EXPECT_EQ(link.getSourceParamIndex(), -1);
    EXPECT_EQ(link.getDestinationParamIndex(), -1);
    EXPECT_EQ(link.getSourceName(), nullptr);
    EXPECT_EQ(link.getDestinationName(), nullptr);
    EXPECT_EQ(link.getDestinationModuleName(), nullptr);
    EXPECT_TRUE(link.getFlag());
    EXPECT_EQ(link.getTagId(), linkId);
    EXPECT_EQ(link.getParent(), &zul);
}

TEST_F(ParamLink, SettersAreSeenByGetters)
{
    expectFull(full());
    ZUL_param_link link = full();
    link.setSourceModule(otherModule);
    link.setDestinationModule(module);
    link.setFlag(false);
    EXPECT_EQ(link.getSourceModuleIndex(), 6);
    EXPECT_EQ(link.getDestinationModuleIndex(), 5);
    EXPECT_FALSE(link.getFlag());
}

TEST_F(ParamLink, ModuleIndexWithoutModuleIsMinusOne)
{
    EXPECT_EQ(empty().getSourceModuleIndex(), -1);
    EXPECT_EQ(empty().getDestinationModuleIndex(), -1);
}

TEST_F(ParamLink, TextsAreKeptWhole)
{
    std::string const text(100'000, 't');
    ZUL_param_link link = empty();
    link.setSourceName(text.c_str());
    link.setDestinationName(text.c_str());
    link.setDestinationModuleName(text.c_str());
    EXPECT_EQ(link.getSourceName(), text);
    EXPECT_EQ(link.getDestinationName(), text);
    EXPECT_EQ(link.getDestinationModuleName(), text);
}

TEST_F(ParamLink, NullAndEmptyTextsAreAbsent)
{
    for (char const* const nothing : {static_cast<char const*>(nullptr), ""}) {
        ZUL_param_link link = full();
        link.setSourceName(nothing);
        link.setDestinationName(nothing);
        link.setDestinationModuleName(nothing);
        EXPECT_EQ(link.getSourceName(), nullptr);
        EXPECT_EQ(link.getDestinationName(), nullptr);
        EXPECT_EQ(link.getDestinationModuleName(), nullptr);
    }
}

TEST_F(ParamLink, SavesEveryByte)
{
    ZUL_param_link link = full();
    EXPECT_EQ(savedBytes(link), linkBytes());
    EXPECT_EQ(savedBytes(link, 0xA5), linkBytes());
    link.setFlag(false);
    EXPECT_EQ(savedBytes(link, 0xA5), linkBytes(0));
}

TEST_F(ParamLink, WithoutTextsIs52BytesAndLoadsBackWithoutTexts)
{
    ZUL_param_link link(nullptr, module, otherModule);
    EXPECT_EQ(savedBytes(link, 0xA5), bareLinkBytes());
    ZUL_param_link back = empty();
    EXPECT_EQ(loadFrom(back, bareLinkBytes()), 52U);
    EXPECT_EQ(back.getSourceName(), nullptr);
    EXPECT_EQ(back.getDestinationName(), nullptr);
    EXPECT_EQ(back.getDestinationModuleName(), nullptr);
}

TEST_F(ParamLink, WithoutBothModulesIsNeitherMeasuredNorSaved)
{
    ZUL_param_link none = empty();
    ZUL_param_link sourceOnly(&zul, module, nullptr);
    ZUL_param_link destinationOnly(&zul, nullptr, module);
    for (ZUL_param_link* const link : {&none, &sourceOnly, &destinationOnly}) {
        EXPECT_TRUE(throws<std::runtime_error>([&] { link->checkDependentFields(); }, noModule));
        expectNeitherMeasuredNorSaved(*link, noModule);
    }
    ZUL_param_link both = full();
    EXPECT_NO_THROW(both.checkDependentFields());
}

TEST_F(ParamLink, Loads)
{
    ZUL_param_link link = empty();
    EXPECT_EQ(loadFrom(link, linkBytes()), 67U);
    expectFull(link);
}

TEST_F(ParamLink, OnlyFlagOneIsTrue)
{
    for (std::uint32_t const flag : {0U, 2U, 0x101U, 0x80000001U, 0xFFFFFFFFU}) {
        ZUL_param_link link = empty();
        loadFrom(link, linkBytes(flag));
        EXPECT_FALSE(link.getFlag()) << flag;
        EXPECT_EQ(savedBytes(link), linkBytes(0)) << flag;
    }
}

TEST_F(ParamLink, ReservedBytesAreIgnoredAndSavedAsZero)
{
    ZUL_param_link link = empty();
    loadFrom(link, linkBytes(1, 0xFF));
    expectFull(link);
    EXPECT_EQ(savedBytes(link, 0xA5), linkBytes());
}

TEST_F(ParamLink, LoadsTwoNamesOfThreeCharacters)
{
    Bytes const bytes = bareLinkBytes(60).setU32(36, 4).setU32(40, 4).charsZ("abc").charsZ("def");
    ZUL_param_link link = empty();
    EXPECT_EQ(loadFrom(link, bytes), 60U);
    EXPECT_STREQ(link.getSourceName(), "abc");
    EXPECT_STREQ(link.getDestinationName(), "def");
    EXPECT_EQ(link.getDestinationModuleName(), nullptr);
}

TEST_F(ParamLink, LoadedTextsEndAtTheirFirstNul)
{
    ZUL_param_link link = empty();
    loadFrom(link, linkBytes().setU8(52 + 2, 0).setU8(58, 0));
    EXPECT_STREQ(link.getSourceName(), "wi");
    EXPECT_STREQ(link.getDestinationName(), "") << "a stored text of no characters is empty, not absent";
    EXPECT_STREQ(link.getDestinationModuleName(), "buf1");
}

TEST_F(ParamLink, EveryShorterBufferIsABadLength)
{
    for (Bytes const& bytes : {linkBytes(), bareLinkBytes()}) {
        for (std::size_t avail = 0; avail < bytes.size(); ++avail) {
            ZUL_param_link link = empty();
            EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, Bytes(bytes).cut(avail), linkId)) << avail;
        }
    }
}

TEST_F(ParamLink, LengthFieldHasToBeTheSumOfTheLengths)
{
    for (std::uint32_t const stated : {0U, 8U, 52U, 66U, 68U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_param_link link = empty();
        Bytes const bytes = linkBytes().setU32(4, stated).zeros(16);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, bytes, linkId)) << stated;
    }
    for (std::size_t const offset : {36U, 40U, 44U}) {
        for (std::uint32_t const length : {0U, 7U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            ZUL_param_link link = empty();
            Bytes const bytes = linkBytes().setU32(offset, length).zeros(16);
            EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, bytes, linkId)) << offset << ", " << length;
        }
    }
}

TEST_F(ParamLink, SumThatDoesNotFit32BitsIsABadLength)
{
    ZUL_param_link link = empty();
    Bytes const bytes = bareLinkBytes(52 + 15).setU32(36, 0xFFFFFFFF).setU32(40, 16).zeros(15); // 15 when cut
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, bytes, linkId));
}

TEST_F(ParamLink, BytesBehindTheTagAreNotItsOwn)
{
    ZUL_param_link link = empty();
    EXPECT_EQ(loadFrom(link, linkBytes().fill(0xA5, 50)), 67U);
    expectFull(link);
}

TEST_F(ParamLink, UnknownModulesMakeItMalformed)
{
    ZUL_param_link noSource = empty();
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(noSource, linkBytes().setU32(8, nobody), linkId));
    EXPECT_EQ(noSource.getSourceModule(), nullptr);
    ZUL_param_link noDestination = empty();
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(noDestination, linkBytes().setU32(12, nobody), linkId));
    EXPECT_EQ(noDestination.getSourceModule(), module) << "the source is looked up first and kept";
    EXPECT_EQ(noDestination.getDestinationModule(), nullptr);
    EXPECT_EQ(noDestination.getSourceName(), nullptr);
}

TEST_F(ParamLink, WrongLengthIsRefusedBeforeModulesAreLookedUp)
{
    ZUL_param_link link = empty();
    Bytes const bytes = linkBytes().setU32(8, nobody).setU32(4, 66);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(link, bytes, linkId));
}

TEST_F(ParamLink, WithoutContainerIsMalformed)
{
    ZUL_param_link link(nullptr, nullptr, nullptr);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(link, linkBytes(), linkId));
}

TEST_F(ParamLink, CopiesShareTheModulesAndHaveNoContainer)
{
    ZUL_param_link source = full();
    source.setParent(&zul);
    ZUL_param_link const copy(source);
    ZUL_param_link const copyOfPointer(&source);
    for (ZUL_param_link const* const each : {&copy, &copyOfPointer}) {
        expectFull(*each);
        EXPECT_NE(each->getSourceName(), source.getSourceName()) << "texts are not shared";
        EXPECT_EQ(each->getParent(), nullptr);
    }
    source.setFlag(false);
    EXPECT_FALSE(ZUL_param_link(source).getFlag());
}

TEST_F(ParamLink, AssignmentKeepsTheContainer)
{
    ZUL_param_link target = empty();
    target.setSourceName("old");
    target = full();
    expectFull(target);
    EXPECT_EQ(target.getParent(), &zul);
    ZUL_param_link const& same = target;
    target = same;
    expectFull(target);
}

TEST_F(ParamLink, HasNoOrder)
{
    ZUL_param_link const link = full();
    ZUL_tag const& tag = link;
    constexpr char const* noOrder = "this operator has no default implementation";
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag < tag); }, noOrder));
    EXPECT_TRUE(throws<std::runtime_error>([&] { static_cast<void>(tag == tag); }, noOrder));
}

TEST_F(ParamLink, VisitShowsEveryByteOnce)
{
    ZUL_param_link link(nullptr, nullptr, nullptr);
    Bytes const bytes = linkBytes().setU32(8, nobody);
    VisitRecord const shown = visited(link, bytes);
    EXPECT_TRUE(coversOnce(shown, bytes.size()));
    EXPECT_TRUE(shown.problems.empty());
    EXPECT_EQ(shown.at(8).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(8).number(), nobody);
    EXPECT_EQ(shown.at(12).kind, FieldKind::ModuleReference);
    EXPECT_EQ(shown.at(16).signedNumber(), -2);
    EXPECT_EQ(shown.at(24).kind, FieldKind::Zero);
    EXPECT_EQ(shown.at(52).text(), "width");
    EXPECT_EQ(shown.at(58).text(), "out");
    EXPECT_EQ(shown.at(62).text(), "buf1");
    expectCutsAreShown([] { return ZUL_param_link(nullptr, nullptr, nullptr); }, bytes, 52);
}

TEST_F(ParamLink, VisitSurvivesAnyLengths)
{
    ZUL_param_link link(nullptr, nullptr, nullptr);
    Bytes const bytes = linkBytes().setU32(36, 0xFFFFFFFF).setU32(40, 0xFFFFFFFF).setU32(44, 0xFFFFFFFF);
    VisitRecord const shown = visited(link, bytes);
    ASSERT_EQ(shown.problems.size(), 1U);
    EXPECT_EQ(shown.problems[0].expected, std::to_string(52 + 3 * 0xFFFFFFFFULL));
    EXPECT_EQ(shown.at(52).bytes.size(), 15U) << "a text that is longer than the bytes ends with them";
}

#if HUGE_TEXTS_ARE_CHEAP
TEST_F(ParamLink, LongTextsAreRefusedTheDestinationModuleNameFirst)
{
    HugeText const tooLong(0x7FFFFFFF); // with its terminator one byte too long
    ZUL_param_link link = full();
    link.setSourceName(tooLong.get());
    expectNeitherMeasuredNorSaved(link, "Module link source name is too long");
    link.setDestinationName(tooLong.get());
    expectNeitherMeasuredNorSaved(link, "Module link destination name is too long");
    link.setDestinationModuleName(tooLong.get());
    expectNeitherMeasuredNorSaved(link, "Module link destination module name is too long");
    link.setSourceModule(nullptr);
    expectNeitherMeasuredNorSaved(link, noModule);
}

TEST_F(ParamLink, LongestTextsFitAloneButNotTogether)
{
    HugeText const longest(0x7FFFFFFE);
    ZUL_param_link link(nullptr, module, otherModule);
    link.setSourceName(longest.get());
    EXPECT_EQ(link.getSaveLength(), 52U + 0x7FFFFFFFU);
    link.setDestinationName(HugeText(0xFFFFFFFF - 52 - 0x7FFFFFFF - 1).get());
    EXPECT_EQ(link.getSaveLength(), 0xFFFFFFFFU);
    link.setDestinationModuleName("x");
    expectNeitherMeasuredNorSaved(link, "The size of a parameter link description grew to big to save it!");
}
#endif
