#include "captured_output.h"
#include "design_answers.h"
#include "designs.h"
#include "files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

using designs::event;
using designs::Loaded;
using designs::mergeFrom;
using designs::module;

constexpr int refused = -113;

std::string strippedText(fpga_design const* design)
{
    unsigned long length = 0;
    ZulStripConfigs(design, nullptr, &length);
    std::string text(length, '\0');
    return ZulStripConfigs(design, text.data(), &length) == 0 ? text : "cannot be saved";
}

/// Expects that merging @p other into a design of @p own is refused with @p result and @p error, and that nothing of the
/// design is changed, neither what it answers nor what it would save.
void expectUnchanged(Bytes const& own, Bytes const& other, int result, int error)
{
    Loaded design(own);
    std::string const answers = answers::textOf(design.get());
    std::string const saved = strippedText(design.get());
    errno = 0;
    EXPECT_EQ(mergeFrom(design.get(), other), result);
    EXPECT_EQ(errno, error);
    EXPECT_EQ(answers::textOf(design.get()), answers);
    EXPECT_EQ(strippedText(design.get()), saved);
    Bytes const good = designs::addition();
    EXPECT_EQ(mergeFrom(design.get(), good), 0) << "and it can still be merged with";
}

TEST(RefusedMerge, OfALinkThatResolvesNowhere)
{
    Bytes const own = ContainerBytes()
                          .tag(sample::oldRegister("A"))
                          .tag(sample::fpgaInfo())
                          .tag(sample::registerLink("Alias", "OutputControl"))
                          .build();
    // The register is there once the other design has it, which the second merge shows.
    expectUnchanged(own, ContainerBytes().tag(sample::oldRegister("B")).build(), refused, EINVAL);
}

TEST(RefusedMerge, OfALinkThatDiffersFromTheOthersRegister)
{
    Bytes const own = ContainerBytes().tag(sample::registerLink("Alias", "OutputControl")).build();
    Bytes const readOnly = ContainerBytes().tag(sample::oldRegister("OutputControl").setU32(20, 0)).build();
    Bytes const buffered = ContainerBytes().tag(sample::oldRegister("OutputControl").setU32(8, 2)).build();
    expectUnchanged(own, readOnly, refused, EINVAL);
    expectUnchanged(own, buffered, refused, EINVAL);
}

TEST(RefusedMerge, OfARegisterThatIsThere)
{
    // The register comes behind tags that could be added.
    for (char const* const name : {"CameraControl", "FrameCounter", "Frames"}) {
        SCOPED_TRACE(name);
        expectUnchanged(designs::rich(),
                        ContainerBytes()
                            .tag(sample::process(0, "display"))
                            .tag(module(0, "m"))
                            .tag(sample::userInfo("__ZUL_ID__", "other"))
                            .tag(sample::userInfo("kept", "out"))
                            .tag(sample::integerParam("p", 0))
                            .tag(sample::oldRegister(name).setU32(8, 1))
                            .config(sample::config(7))
                            .build(),
                        refused, EINVAL);
    }
}

Bytes withEvent(unsigned queue, unsigned bit, std::uint32_t config)
{
    return ContainerBytes()
        .tag(sample::userInfo("__ZUL_ID__", "other"))
        .tag(sample::oldRegister("EventRegister"))
        .tag(event(queue, bit, "x\\y", "EventRegister"))
        .config(sample::config(config))
        .build();
}

TEST(RefusedMerge, OfEventsThatCollide)
{
    // rich() has the queue and bit 2/9 and all of queue 3, and 1 as its lowest configuration index.
    constexpr std::uint32_t equal = 1;
    expectUnchanged(designs::rich(), withEvent(2, 9, equal), refused, EINVAL);
    expectUnchanged(designs::rich(), withEvent(2, 255, equal), refused, EINVAL);
    expectUnchanged(designs::rich(), withEvent(3, 9, equal), refused, EINVAL);
    expectUnchanged(designs::rich(), withEvent(3, 255, equal), refused, EINVAL);
    constexpr std::uint32_t lower = 0; // moves the design's events up by 16, which has to be undone
    expectUnchanged(designs::rich(), withEvent(18, 9, lower), refused, EINVAL);
    expectUnchanged(designs::rich(), withEvent(19, 0, lower), refused, EINVAL);
    constexpr std::uint32_t higher = 2; // moves the other's
    expectUnchanged(designs::rich(), withEvent(242, 9, higher), refused, EINVAL);
}

TEST(RefusedMerge, OfEventsIntoADesignWithoutConfigurations)
{
    // Its events become firmware events, which has to be undone.
    Bytes const own = ContainerBytes().tag(sample::oldRegister("A")).tag(event(5, 1, "own", "A")).build();
    expectUnchanged(own, withEvent(5, 1, 0), refused, EINVAL);
}

TEST(RefusedMerge, KeepsTheFixedFirmware)
{
    Loaded design(designs::rich());
    EXPECT_EQ(mergeFrom(design.get(), withEvent(2, 9, 1)), refused);
    std::uint16_t version = 0;
    EXPECT_EQ(ZulGetRequiredFixedVersion(design.get(), &version, nullptr), 0);
    EXPECT_EQ(version, 2);
}

TEST(RefusedMerge, OfNoContainer)
{
    CapturedOutput const output;
    expectUnchanged(designs::rich(), Bytes().zeros(100), -1, EINVAL);
    expectUnchanged(designs::rich(), Bytes(), -1, EINVAL);
    expectUnchanged(designs::rich(), headBytes(3), -1, EINVAL);
    EXPECT_EQ(output.text(), "");
}

TEST(RefusedMerge, OfADamagedTagIsPrinted)
{
    CapturedOutput const output;
    expectUnchanged(designs::rich(),
                    ContainerBytes().tag(sample::author("A")).tag(sample::author("B")).build(), -1, EINVAL);
    EXPECT_NE(output.text().find("ZUL Exception: "), std::string::npos);
}

TEST(RefusedMerge, OfNothing)
{
    Loaded design(designs::rich());
    std::string const before = answers::textOf(design.get());
    errno = 0;
    EXPECT_EQ(MergeFpgaDesignWithMem(design.get(), nullptr, 100), -1);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(MergeFpgaDesign(design.get(), nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(design->merge(nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(answers::textOf(design.get()), before);
}

TEST(RefusedMerge, IntoNothing)
{
    Bytes const bytes = designs::addition();
    errno = 0;
    EXPECT_EQ(MergeFpgaDesignWithMem(nullptr, bytes.data(), bytes.size()), -1);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(MergeFpgaDesign(nullptr, "/none"), -1);
    EXPECT_EQ(errno, EINVAL) << "the file is not looked at";
    fpga_design empty;
    errno = 0;
    EXPECT_EQ(mergeFrom(&empty, bytes), -1);
    EXPECT_EQ(errno, EINVAL);
}

// Files.

class MergedFile : public testing::Test {
protected:
    int merge(Bytes const& bytes)
    {
        writeFile(m_path, bytes);
        errno = 0;
        int const result = MergeFpgaDesign(m_design.get(), m_path.c_str());
        m_error = errno;
        unlink(m_path.c_str());
        return result;
    }

    TemporaryDirectory m_directory;
    std::string m_path = m_directory / "other.zul";
    Loaded m_design{designs::rich()};
    int m_error = 0;
};

TEST_F(MergedFile, IsNotNeededAfterwards)
{
    ASSERT_EQ(merge(designs::addition()), 0);
    EXPECT_STREQ(ZulGetModuleFullName(m_design.get(), 3), "out\\screen");
    unsigned long length = 0;
    void const* const bits = ZulGetConfigData(m_design.get(), 1, 0xB00, &length);
    ASSERT_NE(bits, nullptr);
    EXPECT_EQ(std::string_view(static_cast<char const*>(bits), length), "third bitstream");
    EXPECT_STREQ(static_cast<char const*>(ZulGetUserInfoByName(m_design.get(), "maker")), "second");
}

TEST_F(MergedFile, IsRefusedAsABufferIs)
{
    std::string const before = answers::textOf(m_design.get());
    EXPECT_EQ(merge(withEvent(2, 9, 1)), refused);
    EXPECT_EQ(m_error, EINVAL);
    EXPECT_EQ(answers::textOf(m_design.get()), before);
}

TEST_F(MergedFile, SaysInErrnoWhyItDoesNotLoad)
{
    std::string const before = answers::textOf(m_design.get());
    errno = 0;
    EXPECT_EQ(MergeFpgaDesign(m_design.get(), (m_directory / "missing.zul").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(merge({}), -1);
    EXPECT_EQ(m_error, EINVAL);
    EXPECT_EQ(merge(Bytes().zeros(100)), -1);
    EXPECT_EQ(m_error, EINVAL);
    EXPECT_EQ(merge(headBytes(3)), -1);
    EXPECT_EQ(m_error, EINVAL);
    CapturedOutput const output;
    EXPECT_EQ(merge(ContainerBytes().tag(sample::author("A")).tag(sample::author("B")).build()), -1);
    EXPECT_EQ(m_error, EINVAL);
    EXPECT_NE(output.text().find("ZUL-Exception while parsing ZUL: "), std::string::npos);
    EXPECT_EQ(answers::textOf(m_design.get()), before);
}

} // namespace
