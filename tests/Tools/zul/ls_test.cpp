#include "container_bytes.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

TEST(Ls, GoldenTable)
{
    ProgramRun const run =
        runOn(ContainerBytes().tag(sample::author()).config(sample::config(1)).build(5), "ls");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        run.out,
        "index       offset      length      id          kind                         summary\n"
        "head        0x0         24          0x4b4f564d  container head               announces 1 tag and 1 "
        "configuration, version 1\n"
        "0           0x18        72          0x8150070   author                       author 'A. Noether'\n"
        "1           0x60        97          0x8150120   configuration data           configuration 1: FPGA "
        "type 0x12345, 9 bytes\n"
        "-           0xc1        5           -           -                            not read by a load\n");
}

TEST(Ls, JsonHasEveryTag)
{
    ProgramRun const run = runOn(sample::everyKind(), "ls", {"--json"});
    auto const json = run.json();
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(json["schema"], "zul-ls");
    EXPECT_EQ(json["version"], 1);
    ASSERT_EQ(json["tags"].size(), 29U);
    EXPECT_EQ(json["tags"][1], nlohmann::ordered_json::parse(R"({"index": 1, "offset": 96, "length": 72,
        "statedLength": 72, "id": 135594096, "kind": "author", "summary": "author 'A. Noether'"})"));
    EXPECT_EQ(json["trailing"]["length"], 0);
}

TEST(Ls, ControlCharactersOfAFileAreShown)
{
    ProgramRun const run = runOn(ContainerBytes().tag(sample::author("\x1B]0;x\x07")).build(), "ls");
    EXPECT_NE(run.out.find("author '\\x1b]0;x\\x07'"), std::string::npos);
    EXPECT_EQ(run.out.find('\x1B'), std::string::npos);
}

TEST(Ls, DamagedFileIsShownAsFarAsItGoes)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).tag(sample::comment().setU32(4, 500)).build();
    ProgramRun const run = runOn(bytes, "ls");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_NE(run.out.find("author 'A. Noether'"), std::string::npos);
    EXPECT_NE(run.out.find("comment 'made by hand'"), std::string::npos);
    EXPECT_EQ(run.err,
              "zul: design.zul: offset 0x64, tag 1 (comment), field 'length': expected 268, found 500\n");
}

TEST(Ls, LengthOverTheEndIsToldWhereTheLayoutDoesNotTell)
{
    ProgramRun const run =
        runOn(ContainerBytes().tag(sample::library("l", "12345").setU32(4, 200)).build(), "ls");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(
        run.err,
        "zul: design.zul: offset 0x1c, tag 0 (library), field 'length': expected at most 101, found 200\n");
}

TEST(Ls, LengthBelowAHeaderEndsTheList)
{
    ProgramRun const run =
        runOn(ContainerBytes().tag(sample::unknown(5).setU32(4, 7)).tag(sample::author()).build(), "ls");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(
        run.err,
        "zul: design.zul: offset 0x1c, tag 0 (unknown tag), field 'length': expected at least 8, found 7\n");
}

TEST(Ls, ManyProblemsAreCounted)
{
    ContainerBytes container;
    for (int i = 0; i < 12; ++i) {
        container.tag(sample::fpgaInfo().setU8(11, 1));
    }
    ProgramRun const run = runOn(container.build(), "ls");
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 11);
    EXPECT_NE(run.err.find("zul: design.zul: 2 more of this; zul check tells all of it\n"),
              std::string::npos);
}

TEST(Ls, WrongVersionOfTheHeadIsTold)
{
    ProgramRun const run = runOn(headBytes(0, 0, 2), "ls");
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(run.err, "zul: design.zul: offset 0x10, head, field 'version': expected 1, found 2\n");
}

} // namespace
