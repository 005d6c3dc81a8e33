#include "designs.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace {

using designs::Loaded;

std::string textOf(void const* data)
{
    return data == nullptr ? "(null)" : static_cast<char const*>(data);
}

Loaded withInfos()
{
    return Loaded(ContainerBytes()
                      .tag(sample::designName("double rate"))
                      .tag(sample::userInfo("number", 1482U))
                      .tag(sample::userInfo("text", "first"))
                      .tag(sample::userInfo("text", "second"))
                      .tag(sample::userInfo("DESIGN_NAME", "not this one")));
}

// User infos.

TEST(UserInfoQueries, AnswerByTheInfosType)
{
    auto design = withInfos();
    EXPECT_EQ(design->GetNrOfUserInfos(), 4U);
    auto const* const number = static_cast<std::uint32_t const*>(design->GetUserInfoByNumber(0));
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(*number, 1482U);
    EXPECT_EQ(design->GetUserInfoTypByNumber(0), 200);
    EXPECT_EQ(textOf(design->GetUserInfoByNumber(1)), "first");
    EXPECT_EQ(design->GetUserInfoTypByNumber(1), 300);
    EXPECT_EQ(textOf(design->GetUserInfoByNumber(2)), "second");
}

TEST(UserInfoQueries, MissWhatIsNotThere)
{
    auto design = withInfos();
    for (unsigned const i : {4U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(design->GetUserInfoByNumber(i), nullptr);
        EXPECT_EQ(design->GetUserInfoTypByNumber(i), 0);
    }
    for (char const* const name : {"", "Text", "tex", "texts"}) {
        EXPECT_EQ(design->GetUserInfoByName(name), nullptr) << name;
        EXPECT_EQ(design->GetUserInfoTypByName(name), 0) << name;
    }
    EXPECT_EQ(design->GetUserInfoByName(nullptr), nullptr);
    EXPECT_EQ(design->GetUserInfoTypByName(nullptr), 0);
}

TEST(UserInfoQueries, FindTheFirstOfAName)
{
    auto design = withInfos();
    EXPECT_EQ(textOf(design->GetUserInfoByName("text")), "first");
    EXPECT_EQ(design->GetUserInfoTypByName("text"), 300);
    EXPECT_EQ(design->GetUserInfoByName("number"), design->GetUserInfoByNumber(0));
    EXPECT_EQ(design->GetUserInfoTypByName("number"), 200);
}

TEST(UserInfoQueries, AnswerTheDesignsNameWhateverAnInfoSays)
{
    auto design = withInfos();
    EXPECT_EQ(textOf(design->GetUserInfoByName("DESIGN_NAME")), "double rate");
    EXPECT_EQ(design->GetUserInfoTypByName("DESIGN_NAME"), 300) << "its type is the info's";
    Loaded nameless(ContainerBytes().tag(sample::userInfo("DESIGN_NAME", "not this one")));
    EXPECT_EQ(nameless->GetUserInfoByName("DESIGN_NAME"), nullptr);
    Loaded without(ContainerBytes().tag(sample::designName("double rate")));
    EXPECT_EQ(textOf(without->GetUserInfoByName("DESIGN_NAME")), "double rate");
    EXPECT_EQ(without->GetUserInfoTypByName("DESIGN_NAME"), 0) << "the name is not known here";
}

// Versions.

TEST(VersionQueries, AnswerTheText)
{
    Loaded design(ContainerBytes().tag(sample::designVersion("2.7")));
    EXPECT_STREQ(design->getDesignVersionString(), "2.7");
    EXPECT_EQ(
        Loaded { ContainerBytes() } -> getDesignVersionString(), nullptr);
}

TEST(VersionQueries, AnswerTheFirstNumber)
{
    Loaded design(
        ContainerBytes().tag(sample::versionNumber(1, 0xFFFF, 9)).tag(sample::versionNumber(0, 2, 7)));
    int version = -5;
    int revision = -6;
    EXPECT_EQ(design->getDesignVersionNumber(&version, &revision), 0);
    EXPECT_EQ(version, 0xFFFF) << "the first in the file";
    EXPECT_EQ(revision, 9);
}

TEST(VersionQueries, StoreNoNumberWhenOneArgumentIsNull)
{
    Loaded design(ContainerBytes().tag(sample::versionNumber(0, 2, 7)));
    int kept = -5;
    EXPECT_EQ(design->getDesignVersionNumber(&kept, nullptr), -1);
    EXPECT_EQ(design->getDesignVersionNumber(nullptr, &kept), -1);
    EXPECT_EQ(design->getDesignVersionNumber(nullptr, nullptr), -1);
    EXPECT_EQ(kept, -5);
    int other = -6;
    EXPECT_EQ(
        Loaded { ContainerBytes() } -> getDesignVersionNumber(&kept, &other), -1)
        << "there is none";
    EXPECT_EQ(kept, -5);
    EXPECT_EQ(other, -6);
}

TEST(VersionQueries, AnswerTheFirmwareThatIsNeeded)
{
    Bytes const first = Bytes().u32(0x8150084).u32(12).u8(1).u8(2).u8(3).u8(0);
    Bytes const second = Bytes().u32(0x8150084).u32(12).u8(0).u8(255).u8(254).u8(0);
    Loaded design(ContainerBytes().tag(first).tag(second));
    std::uint16_t version = 0;
    std::uint16_t revision = 0;
    EXPECT_EQ(design->getRequiredFixedVersion(&version, &revision), 0);
    EXPECT_EQ(version, 2) << "of the first tag";
    EXPECT_EQ(revision, 3);
    Loaded other(ContainerBytes().tag(second).tag(first));
    EXPECT_EQ(other->getRequiredFixedVersion(&version, nullptr), 0);
    EXPECT_EQ(version, 255);
    EXPECT_EQ(revision, 3) << "nobody asked for it";
    EXPECT_EQ(other->getRequiredFixedVersion(nullptr, &revision), 0);
    EXPECT_EQ(revision, 254);
    EXPECT_EQ(other->getRequiredFixedVersion(nullptr, nullptr), 0);
}

TEST(VersionQueries, LeaveEverythingAloneWhenNoFirmwareIsNeeded)
{
    Loaded design{ContainerBytes()};
    std::uint16_t version = 5;
    std::uint16_t revision = 6;
    EXPECT_EQ(design->getRequiredFixedVersion(&version, &revision), -1);
    EXPECT_EQ(design->getRequiredFixedVersion(nullptr, nullptr), -1);
    EXPECT_EQ(version, 5);
    EXPECT_EQ(revision, 6);
}

int boardOf(std::string_view version)
{
    Loaded design(ContainerBytes().tag(sample::designVersion(version)));
    return design->GetBoardType();
}

TEST(BoardType, IsNamedByTwoDigitsOfTheVersion)
{
    EXPECT_EQ(boardOf("1.0.00"), 2624);
    EXPECT_EQ(boardOf("1.0.01"), 2625);
    EXPECT_EQ(boardOf("1.0.02"), 2624);
    EXPECT_EQ(boardOf("1.0.04"), 2628);
    EXPECT_EQ(boardOf("abcd02 and more"), 2624) << "what stands around them does not matter";
}

TEST(BoardType, IsNoneForNumbersWithoutBoard)
{
    for (char const* const version :
         {"1.0.03", "1.0.05", "1.0.0a", "1.0.0f", "1.0.10", "1.0.20", "1.0.ff", "1.0.40"}) {
        EXPECT_EQ(boardOf(version), 65535) << version;
    }
}

TEST(BoardType, Is22ForEverythingElse)
{
    for (char const* const version :
         {"", "1.0.0", "1.0.0A", "1.0.A0", "1.0.0g", "1.0. 0", "1.0.-1", "1.0.:0", "1.0.0/", "1.0.`0"}) {
        EXPECT_EQ(boardOf(version), 22) << version;
    }
    EXPECT_EQ(
        Loaded { ContainerBytes() } -> GetBoardType(), 22)
        << "without version";
}

TEST(BoardType, OfANumber)
{
    EXPECT_EQ(fpga_design::GetBoardType(0), 2624);
    EXPECT_EQ(fpga_design::GetBoardType(1), 2625);
    EXPECT_EQ(fpga_design::GetBoardType(2), 2624);
    EXPECT_EQ(fpga_design::GetBoardType(3), 65535);
    EXPECT_EQ(fpga_design::GetBoardType(4), 2628);
    EXPECT_EQ(fpga_design::GetBoardType(5), 65535);
    EXPECT_EQ(fpga_design::GetBoardType(0xFFFFFFFF), 65535);
}

// Configurations.

std::string bitsOf(Loaded& design, unsigned index, unsigned board)
{
    unsigned long length = 77;
    void const* const bits = design->GetFpgaConfig(index, board, &length);
    if (bits == nullptr) {
        EXPECT_EQ(length, 77U) << "a miss stores nothing";
        return "(null)";
    }
    EXPECT_EQ(design->GetFpgaConfig(index, board, nullptr), bits) << "nobody has to ask for the length";
    return {static_cast<char const*>(bits), length};
}

TEST(ConfigQueries, FindABitstreamByIndexAndBoard)
{
    Loaded design(ContainerBytes()
                      .tag(sample::destination(1, 0xA44, 1))
                      .tag(sample::destination(2, 0xA45, 2))
                      .config(sample::config(1, "of board a44"))
                      .config(sample::config(2, "of board a45"))
                      .config(sample::config(2, "the second of its index"))
                      .config(sample::config(3, "of no board")));
    EXPECT_EQ(bitsOf(design, 1, 0), "of board a44");
    EXPECT_EQ(bitsOf(design, 2, 0), "of board a45");
    EXPECT_EQ(bitsOf(design, 3, 0), "of no board");
    EXPECT_EQ(bitsOf(design, 0, 0), "(null)");
    EXPECT_EQ(bitsOf(design, 4, 0), "(null)");
    EXPECT_EQ(bitsOf(design, 0xFFFFFFFF, 0), "(null)");
    EXPECT_EQ(bitsOf(design, 2, 0xA45), "of board a45");
    EXPECT_EQ(bitsOf(design, 2, 0xA44), "(null)");
    EXPECT_EQ(bitsOf(design, 2, 0xA452), "of board a45") << "with its revision";
    EXPECT_EQ(bitsOf(design, 2, 0xA451), "(null)");
    EXPECT_EQ(design->getMaxConfigIndex(), 3);
}

TEST(ConfigQueries, KnowNoHighestIndexWithoutConfigurations)
{
    EXPECT_EQ(
        Loaded { ContainerBytes() } -> getMaxConfigIndex(), -1);
    Loaded negative(ContainerBytes().config(sample::config(0x80000000)));
    EXPECT_EQ(negative->getMaxConfigIndex(), -1);
    Loaded zero(ContainerBytes().config(sample::config(0)));
    EXPECT_EQ(zero->getMaxConfigIndex(), 0);
}

// Libraries.

TEST(SystemQueries, AnswerWhetherThereIsALibraryForASystem)
{
    Loaded design(ContainerBytes()
                      .tag(sample::library("a", "bytes", 516))
                      .tag(sample::library("b", "bytes", 0x80000001)));
    EXPECT_EQ(design->supportsOs(516), 1);
    EXPECT_EQ(design->supportsOs(0x80000001), 1);
    EXPECT_EQ(design->supportsOs(517), 0);
    EXPECT_EQ(design->supportsOs(0), 0);
}

TEST(SystemQueries, SupportEverySystemWithoutLibraries)
{
    Loaded design{ContainerBytes()};
    for (unsigned const system : {0U, 516U, 517U, 0xFFFFFFFFU}) {
        EXPECT_EQ(design->supportsOs(system), 1);
    }
}

} // namespace
