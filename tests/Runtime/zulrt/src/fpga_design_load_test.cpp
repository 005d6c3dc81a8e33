#include "captured_output.h"
#include "designs.h"
#include "environment.h"
#include "files.h"
#include "listing.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using designs::damaged;
using designs::withCountsThatDiffer;

constexpr int noLibraries = 0;
constexpr int noBoard = 0;

constexpr char printedForDamaged[] = "ZUL Exception: ";

std::size_t occurrences(std::string const& text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

/// Puts a design into a directory and loads it.
class DesignFile : public testing::Test {
protected:
    std::string put(Bytes const& bytes, char const* name = "design.zul") const
    {
        writeFile(m_directory / name, bytes);
        return m_directory / name;
    }
    int load(fpga_design& design, std::string const& path, int opsys = noLibraries)
    {
        char* found = &m_untouched;
        int const result = design.LoadDesignWithType(path.c_str(), &found, noBoard, opsys);
        m_found.reset(found == &m_untouched ? nullptr : found);
        EXPECT_NE(found, &m_untouched) << "the path is always set";
        return result;
    }
    std::string found() const { return m_found ? m_found.get() : "(null)"; }

    TemporaryDirectory m_directory;
    std::unique_ptr<char[]> m_found;
    char m_untouched = 'x';
};

// The design object.

TEST(EmptyDesign, AnswersEverythingWithTheMiss)
{
    fpga_design const design;
    EXPECT_EQ(design.GetNrOfModules(), 0U);
    EXPECT_EQ(design.getParamCount(), 0U);
    EXPECT_EQ(design.getRegisterCount(), 0U);
    EXPECT_EQ(design.getRegisterByName("CameraControl"), 0U);
    EXPECT_EQ(design.getDesignVersionString(), nullptr);
    EXPECT_EQ(design.getMaxConfigIndex(), -1);
    EXPECT_EQ(design.GetFpgaConfig(0, 0, nullptr), nullptr);
    EXPECT_EQ(design.GetUserInfoByName("##_RZ3_DESIGN_SETTINGS"), nullptr);
    EXPECT_EQ(design.GetUserInfoByName("DESIGN_NAME"), nullptr);
    EXPECT_EQ(design.GetUserInfoByName("maker"), nullptr);
    EXPECT_EQ(design.GetUserInfoTypByName("maker"), 0);
    EXPECT_EQ(design.GetBoardType(), 22);
    EXPECT_EQ(design.getEvent(0), nullptr);
    EXPECT_EQ(design.GetModuleDllDir(), nullptr);
    EXPECT_EQ(design.getOperatorDir(), nullptr);
    EXPECT_EQ(design.supportsOs(516), 1);
}

TEST(DesignFromBuffer, Loads)
{
    Bytes const bytes = designs::rich();
    fpga_design design;
    EXPECT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), 0);
    EXPECT_EQ(design.GetNrOfModules(), 3U);
    EXPECT_EQ(design.GetModuleDllDir(), nullptr) << "libraries are not unpacked";
}

TEST(DesignFromBuffer, IsNotCopied)
{
    Bytes const bytes = designs::rich();
    fpga_design design;
    ASSERT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), 0);
    auto const* const bits = static_cast<std::byte const*>(design.GetFpgaConfig(1, 0, nullptr));
    EXPECT_GE(bits, bytes.data());
    EXPECT_LT(bits, bytes.data() + bytes.size());
}

TEST(DesignFromBuffer, ThatIsNoContainerIs22)
{
    fpga_design design;
    Bytes const noHead = Bytes().zeros(100);
    Bytes const head = headBytes(0);
    EXPECT_EQ(design.LoadDesignFromBuffer(nullptr, 100), -22);
    EXPECT_EQ(design.LoadDesignFromBuffer(noHead.data(), noHead.size()), -22);
    EXPECT_EQ(design.LoadDesignFromBuffer(head.data(), 23), -22);
    EXPECT_EQ(design.LoadDesignFromBuffer(head.data(), 0), -22);
    EXPECT_EQ(design.LoadDesignFromBuffer(head.data(), 24), 0) << "a container without tags is one";
}

TEST(DesignFromBuffer, WhoseCountsDifferIs22AndPrintsNothing)
{
    Bytes const bytes = withCountsThatDiffer();
    CapturedOutput const output;
    fpga_design design;
    EXPECT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), -22);
    EXPECT_EQ(output.text(), "");
}

TEST(DesignFromBuffer, WithADamagedTagIs14AndIsPrintedOnce)
{
    Bytes const bytes = damaged();
    CapturedOutput const output;
    fpga_design design;
    EXPECT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), -14);
    EXPECT_EQ(occurrences(output.text(), printedForDamaged), 1U) << output.text();
    EXPECT_EQ(occurrences(output.text(), "while parsing"), 0U) << "that is said of files";
}

TEST(DesignFromBuffer, ThatFailsLeavesADesignThatCanBeAskedAndLoadedAgain)
{
    Bytes const bad = damaged();
    Bytes const good = designs::rich();
    CapturedOutput const output;
    fpga_design design;
    ASSERT_EQ(design.LoadDesignFromBuffer(good.data(), good.size()), 0);
    ASSERT_EQ(design.LoadDesignFromBuffer(bad.data(), bad.size()), -14);
    EXPECT_EQ(design.GetNrOfModules(), 0U);
    EXPECT_EQ(design.GetModuleByNumber(0), nullptr);
    EXPECT_EQ(design.getEvent(0), nullptr);
    EXPECT_EQ(design.GetRelativeParamIndex(0, 0), -1);
    EXPECT_EQ(design.LoadDesignFromBuffer(good.data(), good.size()), 0);
    EXPECT_EQ(design.GetNrOfModules(), 3U);
}

TEST(DesignFromBuffer, ReplacesTheFormerDesign)
{
    fpga_design design;
    {
        Bytes const first = designs::rich();
        std::vector<std::byte> const buffer(first.data(), first.data() + first.size());
        ASSERT_EQ(design.LoadDesignFromBuffer(buffer.data(), buffer.size()), 0);
        ASSERT_NE(design.GetUserInfoByName("##_RZ3_DESIGN_SETTINGS"), nullptr);
        Bytes const empty = headBytes(0);
        ASSERT_EQ(design.LoadDesignFromBuffer(empty.data(), empty.size()), 0);
    }
    EXPECT_EQ(design.GetNrOfModules(), 0U);
    EXPECT_EQ(design.getParamCount(), 0U);
    EXPECT_EQ(design.getEvent(0), nullptr);
    EXPECT_EQ(design.GetUserInfoByName("BuildNumber"), nullptr);
    auto const* const settings =
        static_cast<rz3_design_settings const*>(design.GetUserInfoByName("##_RZ3_DESIGN_SETTINGS"));
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->dma_count_address[2], 0U) << "the settings are the new design's";
}

// From a file.

TEST_F(DesignFile, EndsWithItsLastByte)
{
    fpga_design design;
    for (std::size_t const padding : {0U, 1U, 8U}) {
        std::string const path = put(Bytes(designs::rich()).zeros(padding));
        EXPECT_EQ(load(design, path), 0) << "up to 8 bytes at the end begin no tag";
    }
    std::string const path = put(Bytes(designs::rich()).zeros(9));
    CapturedOutput const quiet;
    EXPECT_EQ(load(design, path), -14) << "a tag of no length";
}

TEST_F(DesignFile, LoadsAndTellsItsPath)
{
    std::string const path = put(designs::rich());
    fpga_design design;
    EXPECT_EQ(load(design, path), 0);
    EXPECT_EQ(found(), path);
    EXPECT_EQ(design.GetNrOfModules(), 3U);
    EXPECT_EQ(design.GetModuleDllDir(), nullptr) << "opsys 0 makes no directory";
}

TEST_F(DesignFile, NeedsNobodyToAskForThePath)
{
    std::string const path = put(designs::rich());
    fpga_design design;
    EXPECT_EQ(design.LoadDesignWithType(path.c_str(), nullptr, noBoard, noLibraries), 0);
}

TEST_F(DesignFile, StaysReadableWhenItIsRemoved)
{
    std::string const path = put(designs::rich());
    fpga_design design;
    ASSERT_EQ(load(design, path), 0);
    std::filesystem::remove(path);
    unsigned long length = 0;
    void const* const bits = design.GetFpgaConfig(1, 0, &length);
    ASSERT_NE(bits, nullptr);
    EXPECT_EQ(std::string_view(static_cast<char const*>(bits), length), "first bitstream");
}

TEST_F(DesignFile, OfTheBoardIsFoundWithoutASlash)
{
    std::filesystem::create_directories(m_directory / "Hardware Applets/kova_2624");
    std::string const path = put(designs::rich(), "Hardware Applets/kova_2624/design.zul");
    EnvironmentVariable const installation("KOVADIR5_64", m_directory.path());
    CapturedOutput const output;
    fpga_design design;
    char* found = nullptr;
    EXPECT_EQ(design.LoadDesignWithType("design.zul", &found, 2624, noLibraries), 0);
    std::unique_ptr<char[]> const owned(found);
    EXPECT_STREQ(found, path.c_str());
}

TEST_F(DesignFile, ThatIsNotThereIs2)
{
    fpga_design design;
    CapturedOutput const output;
    EXPECT_EQ(load(design, m_directory / "none.zul"), -2);
    EXPECT_EQ(found(), "(null)");
    EXPECT_EQ(load(design, "surely no file of any installation.zul"), -2);
    EXPECT_EQ(found(), "(null)");
}

TEST_F(DesignFile, WithoutNameIs22)
{
    fpga_design design;
    char* path = &m_untouched;
    EXPECT_EQ(design.LoadDesignWithType(nullptr, &path, noBoard, noLibraries), -22);
    EXPECT_EQ(path, nullptr);
    EXPECT_EQ(design.LoadDesignWithType(nullptr, nullptr, noBoard, noLibraries), -22);
}

TEST_F(DesignFile, ThatCannotBeMappedGivesItsErrnoAndStillThePath)
{
    std::string const empty = put({}, "empty.zul");
    fpga_design design;
    EXPECT_EQ(load(design, empty), -EINVAL);
    EXPECT_EQ(found(), empty);
    // A size whose lower half is 0 is one that mapping refuses. The file has a hole for contents.
    std::string const large = put({}, "large.zul");
    ASSERT_EQ(truncate(large.c_str(), off_t{1} << 32), 0);
    EXPECT_EQ(load(design, large), -EFBIG);
    EXPECT_EQ(found(), large);
}

TEST_F(DesignFile, ThatCannotBeReadGivesTheResultAndStillThePath)
{
    CapturedOutput const output;
    fpga_design design;
    std::string const noContainer = put(Bytes().zeros(100), "none.zul");
    EXPECT_EQ(load(design, noContainer), -22);
    EXPECT_EQ(found(), noContainer);
    EXPECT_EQ(output.text(), "");
    std::string const bad = put(damaged(), "damaged.zul");
    EXPECT_EQ(load(design, bad), -14);
    EXPECT_EQ(found(), bad);
    EXPECT_EQ(occurrences(output.text(), printedForDamaged), 1U) << output.text();
    EXPECT_EQ(occurrences(output.text(), "while parsing"), 0U) << output.text();
}

TEST_F(DesignFile, ReplacesTheFormerOne)
{
    std::string const first = put(designs::rich(), "first.zul");
    std::string const second = put(designs::addition(), "second.zul");
    fpga_design design;
    ASSERT_EQ(load(design, first), 0);
    std::size_t const descriptors = openDescriptors();
    ASSERT_EQ(load(design, second), 0);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_EQ(design.GetNrOfModules(), 1U);
    EXPECT_STREQ(design.GetModuleFullName(0), "out\\screen");
    Bytes const bytes = designs::rich();
    EXPECT_EQ(design.LoadDesignFromBuffer(bytes.data(), bytes.size()), 0);
    EXPECT_EQ(design.GetNrOfModules(), 3U);
}

TEST_F(DesignFile, ThatIsNotFoundLeavesTheFormerOne)
{
    fpga_design design;
    ASSERT_EQ(load(design, put(designs::rich())), 0);
    EXPECT_EQ(load(design, m_directory / "none.zul"), -2);
    EXPECT_EQ(design.GetNrOfModules(), 3U);
    EXPECT_STREQ(design.GetModuleFullName(0), "acq\\cam");
}

TEST(GetLastError, IsErrno)
{
    errno = EDOM;
    EXPECT_EQ(GetLastError(), EDOM);
    errno = 0;
    EXPECT_EQ(GetLastError(), 0);
}

} // namespace
