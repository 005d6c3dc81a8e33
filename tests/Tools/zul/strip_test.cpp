#include "program_run.h"

#include "files.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace {

using testing::HasSubstr;

class Strip : public testing::Test {
protected:
    TemporaryDirectory const directory;
    std::string const design = directory / "design.zul";
    std::string const small = directory / "small.zul";

    void SetUp() override { std::filesystem::copy_file(ZUL_SAMPLE_DESIGN, design); }
    std::size_t filesHere() const
    {
        auto const here = std::filesystem::directory_iterator(directory.path());
        return static_cast<std::size_t>(std::distance(begin(here), end(here)));
    }
};

TEST_F(Strip, WritesACopyWithoutBitstreamsLibrariesAndVersionNumbers)
{
    ProgramRun const run = runZul({"strip", design, "-o", small});
    EXPECT_EQ(run.code, ExitCode::Clean) << run.err;
    EXPECT_THAT(run.out,
                HasSubstr("without 2 configurations, 2 destinations, 3 libraries and 2 version numbers\n"));
    ZUL zul;
    ASSERT_EQ(zul.Load(small.c_str()), 0);
    EXPECT_EQ(zul.getConfigCount(), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_destination::tag_id), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_dll::tag_id), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_design_version_nr::tag_id), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_module::tag_id), 12U);
    EXPECT_EQ(filesHere(), 2U) << "no temporary file is left";
}

TEST_F(Strip, TellsNumbersAsJson)
{
    auto const json = runZul({"strip", design, "-o", small, "--json"}).json();
    EXPECT_EQ(json["schema"], "zul-strip");
    EXPECT_EQ(json["output"], small);
    EXPECT_EQ(json["bytesBefore"], std::filesystem::file_size(design));
    EXPECT_EQ(json["bytesAfter"], std::filesystem::file_size(small));
    EXPECT_EQ(json["dropped"]["libraries"], 3);
}

TEST_F(Strip, RefusesToOverwriteUnlessForced)
{
    writeFile(small, Bytes().chars("mine"));
    ProgramRun const refused = runZul({"strip", design, "-o", small});
    EXPECT_EQ(refused.code, ExitCode::Refused);
    EXPECT_THAT(refused.err, HasSubstr(small + " exists; --force overwrites it"));
    EXPECT_EQ(readFile(small), Bytes().chars("mine"));
    EXPECT_EQ(runZul({"strip", design, "-o", small, "--force"}).code, ExitCode::Clean);
    EXPECT_GT(std::filesystem::file_size(small), 4U);
}

TEST_F(Strip, OverwritesTheDesignItselfWhenAskedTo)
{
    auto const before = std::filesystem::file_size(design);
    chmod(design.c_str(), 0640);
    EXPECT_EQ(runZul({"strip", design, "--in-place"}).code, ExitCode::Clean);
    EXPECT_LT(std::filesystem::file_size(design), before);
    struct stat status {};
    ASSERT_EQ(stat(design.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U) << "the mode stays";
}

TEST_F(Strip, NeedsToKnowWhereToWrite)
{
    EXPECT_EQ(runZul({"strip", design}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"strip", design, "-o", small, "--in-place"}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"strip", "-", "--in-place"}).code, ExitCode::Usage);
    EXPECT_EQ(filesHere(), 1U);
}

TEST_F(Strip, RefusesADamagedDesignAndWritesNothing)
{
    std::filesystem::resize_file(design, 5000);
    ProgramRun const run = runZul({"strip", design, "-o", small});
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_THAT(run.err, HasSubstr("loads: no: "));
    EXPECT_EQ(filesHere(), 1U);
}

TEST_F(Strip, SaysWhenItCannotWrite)
{
    ProgramRun const run = runZul({"strip", design, "-o", directory / "missing/small.zul"});
    EXPECT_EQ(run.code, ExitCode::Unreadable);
    EXPECT_THAT(run.err,
                HasSubstr("/missing/small.zul: cannot create a file beside it: No such file or directory"));
}

} // namespace
