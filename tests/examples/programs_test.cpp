#include "files.h"
#include "outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
