#include "captured_output.h"
#include "designs.h"
#include "environment.h"
#include "files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

using designs::damaged;
using designs::withCountsThatDiffer;

constexpr int noLibraries = 0;

constexpr char printedForDamaged[] = "ZUL Exception: ";

std::size_t occurrences(std::string const& text, std::string_view part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

class LoadFunctions : public testing::Test {
protected:
    std::string put(Bytes const& bytes, char const* name = "design.zul") const
    {
        writeFile(m_directory / name, bytes);
        return m_directory / name;
    }
    /// What a failed load leaves in errno; the handle has to be null.
    static int errnoOf(fpga_design* loaded)
    {
        int const error = errno;
        EXPECT_EQ(loaded, nullptr);
        ZulUnloadZulFile(loaded);
        errno = 0;
        return error;
    }

    TemporaryDirectory m_directory;
    char m_untouched = 'x';
};

TEST_F(LoadFunctions, GiveAHandleThatUnloads)
{
    std::string const path = put(designs::rich());
    Bytes const bytes = designs::rich();
    for (fpga_design* const design :
         {ZulLoadZulFile(path.c_str(), noLibraries), ZulLoadZulFileWithType(path.c_str(), 2624, noLibraries),
          ZulLoadZulFileWithTypeEx(path.c_str(), nullptr, 2624, noLibraries),
          ZulLoadDesignFromBuffer(bytes.data(), bytes.size(), noLibraries)}) {
        ASSERT_NE(design, nullptr);
        EXPECT_EQ(ZulGetNrOfModules(design), 3);
        EXPECT_EQ(ZulUnloadZulFile(design), 0);
    }
    EXPECT_EQ(ZulUnloadZulFile(nullptr), -1);
}

TEST_F(LoadFunctions, WithoutTypeLookOnlyWhereTypeZeroDoes)
{
    std::filesystem::create_directories(m_directory / "Hardware Applets/kova_2624");
    put(designs::rich(), "Hardware Applets/kova_2624/design.zul");
    EnvironmentVariable const installation("KOVADIR5_64", m_directory.path());
    CapturedOutput const output;
    EXPECT_EQ(errnoOf(ZulLoadZulFile("design.zul", noLibraries)), ENOENT);
    fpga_design* const design = ZulLoadZulFileWithType("design.zul", 2624, noLibraries);
    EXPECT_NE(design, nullptr);
    ZulUnloadZulFile(design);
}

TEST_F(LoadFunctions, SayInErrnoWhyAFileFails)
{
    std::string const empty = put({}, "empty.zul");
    std::string const noContainer = put(Bytes().zeros(100), "none.zul");
    std::string const counts = put(withCountsThatDiffer(), "counts.zul");
    std::string const bad = put(damaged(), "damaged.zul");
    std::string const large = put({}, "large.zul");
    ASSERT_EQ(truncate(large.c_str(), off_t{1} << 32), 0);
    std::string const missing = m_directory / "missing.zul";
    struct {
        char const* path;
        int error;
    } const cases[] = {{nullptr, EINVAL},      {missing.c_str(), ENOENT},     {empty.c_str(), EINVAL},
                       {large.c_str(), EFBIG}, {noContainer.c_str(), EINVAL}, {counts.c_str(), EINVAL},
                       {bad.c_str(), EFAULT}};
    CapturedOutput const output;
    for (auto const& [path, error] : cases) {
        SCOPED_TRACE(path == nullptr ? "null" : path);
        errno = 0;
        EXPECT_EQ(errnoOf(ZulLoadZulFile(path, noLibraries)), error);
        EXPECT_EQ(errnoOf(ZulLoadZulFileWithType(path, 2624, noLibraries)), error);
        char* used = &m_untouched;
        EXPECT_EQ(errnoOf(ZulLoadZulFileWithTypeEx(path, &used, 2624, noLibraries)), error);
        EXPECT_EQ(used, nullptr) << "no path after a failure";
        EXPECT_EQ(errnoOf(ZulLoadZulFileWithTypeEx(path, nullptr, 2624, noLibraries)), error);
    }
    EXPECT_EQ(occurrences(output.text(), printedForDamaged), 4U) << "once for each load";
}

TEST_F(LoadFunctions, SayInErrnoWhyABufferFails)
{
    Bytes const bad = damaged();
    Bytes const counts = withCountsThatDiffer();
    Bytes const noContainer = Bytes().zeros(100);
    CapturedOutput const output;
    EXPECT_EQ(errnoOf(ZulLoadDesignFromBuffer(nullptr, 100, noLibraries)), EINVAL);
    EXPECT_EQ(errnoOf(ZulLoadDesignFromBuffer(noContainer.data(), noContainer.size(), noLibraries)), EINVAL);
    EXPECT_EQ(errnoOf(ZulLoadDesignFromBuffer(noContainer.data(), 0, noLibraries)), EINVAL);
    EXPECT_EQ(errnoOf(ZulLoadDesignFromBuffer(counts.data(), counts.size(), noLibraries)), EINVAL);
    EXPECT_EQ(output.text(), "");
    EXPECT_EQ(errnoOf(ZulLoadDesignFromBuffer(bad.data(), bad.size(), noLibraries)), EFAULT);
    EXPECT_EQ(occurrences(output.text(), printedForDamaged), 1U);
}

TEST_F(LoadFunctions, HandOutAPathThatBothWaysOfReleasingTake)
{
    std::string const file = put(designs::rich());
    char* path = nullptr;
    fpga_design* design = ZulLoadZulFileWithTypeEx(file.c_str(), &path, 0, noLibraries);
    ASSERT_NE(design, nullptr);
    EXPECT_EQ(ZulUnloadZulFile(design), 0);
    EXPECT_STREQ(path, file.c_str()) << "it is the caller's, and outlives the design";
    delete[] path;
}

} // namespace
