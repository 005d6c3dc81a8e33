#include "files.h"
#include "outcome.h"
#include "zullib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

Outcome run(std::string const& command)
{
    return outcomeOf(EXAMPLE_PROGRAMS "/" + command);
}

TEST(ReadDesign, PrintsModulesWithTheirParameters)
{
    Outcome const read = run("read_design " SAMPLE_DESIGN);
    EXPECT_EQ(read.status, 0);
    EXPECT_THAT(read.output, testing::HasSubstr("Inspection\\Fir0 (ImageOperators)\n"
                                                "    Width = 2048\n"
                                                "    Gain = 1.25\n"
                                                "    Coefficients = -1 4 10 4 -1\n"
                                                "    Description = \"sharpens along the line\"\n"));
    EXPECT_THAT(read.output, testing::HasSubstr("    Table = 0 0 0 0 1 1 2 3 ... (256 elements)\n"));
    EXPECT_THAT(read.output, testing::EndsWith("    PulseClocks = 6250\n    Currents = 0.35 0.7 1.05 1.4\n"));
}

TEST(ReadDesign, SaysHowItIsUsedWhenThereIsNoDesign)
{
    Outcome const read = run("read_design /nonexistent");
    EXPECT_EQ(read.status, 1);
    EXPECT_THAT(read.output, testing::HasSubstr("Usage: read_design FILE"));
}

/// An installation with the sample design for board 2625.
class LoadDesign : public testing::Test {
protected:
    LoadDesign()
    {
        std::filesystem::path const designs = directory / "Hardware Applets/kova-2625";
        std::filesystem::create_directories(designs);
        std::filesystem::copy_file(SAMPLE_DESIGN, designs / "sample.zul");
    }

    /// Loads leave the libraries for the next ones.
    ~LoadDesign() override
    {
        ZUL design;
        if (design.Load(SAMPLE_DESIGN) == 0) {
            std::filesystem::remove_all("/tmp/zulcache_" + std::string(design.getId()));
        }
    }

    Outcome load(std::string const& arguments) const
    {
        // The address sanitizer takes it for a mistake that a path is released with free().
        return outcomeOf("ASAN_OPTIONS=alloc_dealloc_mismatch=0 KOVADIR5_64=" +
                         std::string(directory.path()) + " " EXAMPLE_PROGRAMS "/load_design " + arguments);
    }

    TemporaryDirectory directory;
};

TEST_F(LoadDesign, FindsTheDesignByBoardAndCallsEveryFactory)
{
    Outcome const loaded = load("sample.zul 2625");
    EXPECT_EQ(loaded.status, 0) << loaded.output;
    EXPECT_THAT(loaded.output, testing::HasSubstr("DualAreaInspection from " +
                                                  (directory / "Hardware Applets/kova-2625/sample.zul") +
                                                  ", version 2.3.01\n12 modules\n"));
    EXPECT_THAT(loaded.output, testing::HasSubstr("  Inspection\\Fir0 of type ImageOperators in process 0\n"
                                                  "    Width = 2048\n"
                                                  "    Gain = 1.25\n"
                                                  "    Coefficients = 5 elements\n"));
    std::string const made = "    operator made by ";
    std::size_t count = 0;
    for (auto at = loaded.output.find(made); at != std::string::npos; at = loaded.output.find(made, at + 1)) {
        ++count;
    }
    EXPECT_EQ(count, 12U);
    EXPECT_THAT(loaded.output, testing::HasSubstr("31 registers\n"));
}

TEST_F(LoadDesign, SaysWhyThereIsNoDesign)
{
    Outcome const missing = load("sample.zul 1872");
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.output, testing::HasSubstr("load_design: sample.zul: No such file or directory\n"));
    EXPECT_EQ(load("sample.zul").status, 2);
}

TEST(MakeSampleDesign, WritesTheSameBytesEachTime)
{
    TemporaryDirectory const directory;
    ASSERT_EQ(run("make_sample_design " + (directory / "first.zul")).status, 0);
    ASSERT_EQ(run("make_sample_design " + (directory / "second.zul")).status, 0);
    Bytes const first = readFile(directory / "first.zul");
    Bytes const second = readFile(directory / "second.zul");
    ASSERT_NE(first.size(), 0U);
    EXPECT_TRUE(first == second);
}

TEST(MakeSampleDesign, ReportsALibraryThatItCannotRead)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "unwritten.zul";
    Outcome const made = run("make_sample_design " + path + " /nonexistent/libX.so");
    EXPECT_EQ(made.status, 1);
    EXPECT_EQ(made.output, "make_sample_design: /nonexistent/libX.so: No such file or directory\n");
    EXPECT_FALSE(exists(path));
}

TEST(MakeSampleDesign, ReportsAFileThatItCannotWrite)
{
    Outcome const made = run("make_sample_design /nonexistent/sample.zul");
    EXPECT_EQ(made.status, 3);
    EXPECT_EQ(made.output, "make_sample_design: cannot write /nonexistent/sample.zul (-2)\n");
    EXPECT_EQ(run("make_sample_design").status, 2);
}

} // namespace
