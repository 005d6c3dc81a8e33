#include "container_bytes.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

bool contains(std::string const& text, std::string const& part)
{
    return text.find(part) != std::string::npos;
}

TEST(Info, GoldenScreen)
{
    ProgramRun const run = runOn(sample::everyKind(), "info");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "design.zul\n"
                       "  name     'double rate'\n"
                       "  version  '2.7', number 0: 2.7\n"
                       "  author   'A. Noether'\n"
                       "  id       '4711'\n"
                       "  size     " +
                           std::to_string(sample::everyKind().size()) +
                           " bytes in 29 tags\n"
                           "  loads    yes\n"
                           "  configuration 1: FPGA 0x12345 (unknown part), board 2628 revision 1, 9 bytes\n"
                           "  library 'camera' for system 516: 13 bytes\n"
                           "  process 0 'acquisition', clock 62500000\n"
                           "  counts   1 module, 3 parameters, 1 parameter link, 1 channel,\n"
                           "           1 camera channel, 1 DMA channel, 2 registers, 1 register link,\n"
                           "           2 DMA registers, 2 interrupt register tags, 2 interrupt queues,\n"
                           "           1 event, 1 user info\n");
}

TEST(Info, PartNameAndIdentifierOfAConfiguration)
{
    Bytes const bytes = ContainerBytes()
                            .config(sample::config(12, "bits", 0xBBEA1))
                            .tag(sample::userInfo(":12UL_MULTI_DATA_ID__", "build 9"))
                            .build();
    EXPECT_TRUE(contains(runOn(bytes, "info").out,
                         "configuration 12: FPGA 0xbbea1 (3s1600efg400), no board, 4 bytes, id 'build 9'\n"));
}

TEST(Info, DestinationBehindItsConfigurationIsNotBound)
{
    Bytes const late = ContainerBytes().config(sample::config(1)).tag(sample::destination(1)).build();
    EXPECT_TRUE(contains(runOn(late, "info").out, "no board"));
    Bytes const twice = ContainerBytes()
                            .tag(sample::destination(1, 5, 6))
                            .tag(sample::destination(1, 7, 8))
                            .config(sample::config(1))
                            .build();
    EXPECT_TRUE(contains(runOn(twice, "info").out, "board 7 revision 8"));
}

TEST(Info, RepeatedTagsCountAsALoadTakesThem)
{
    Bytes const bytes = ContainerBytes()
                            .tag(sample::author("first"))
                            .tag(sample::author("second"))
                            .tag(sample::designVersion("1"))
                            .tag(sample::designVersion("2"))
                            .tag(sample::versionNumber(3, 1, 0))
                            .tag(sample::versionNumber(3, 1, 1))
                            .build();
    ProgramRun const run = runOn(bytes, "info");
    EXPECT_TRUE(contains(run.out, "author   'first'\n"));
    EXPECT_TRUE(contains(run.out, "version  '2', number 3: 1.1\n"));
}

TEST(Info, DesignThatDoesNotLoadIsShownAllTheSame)
{
    ProgramRun const run =
        runOn(ContainerBytes().tag(sample::designName()).tag(sample::event("e", "none")).build(), "info");
    std::string const why = "no: dangling reference (ZUL_file_bad_reference, tag id 0x8156576), result -22\n";
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_TRUE(contains(run.out, "name     'double rate'\n"));
    EXPECT_TRUE(contains(run.out, "loads    " + why));
    EXPECT_EQ(run.err, "zul: design.zul: loads: " + why);
}

TEST(Info, EmptyContainerHasNothing)
{
    ProgramRun const run = runOn(headBytes(0), "info");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_TRUE(contains(run.out, "counts   nothing\n"));
}

TEST(Info, LongListsAreCutSoThatADesignFitsOnAScreen)
{
    ContainerBytes container;
    for (std::uint32_t i = 0; i < 11; ++i) {
        container.tag(sample::process(i));
    }
    ProgramRun const run = runOn(container.build(), "info");
    EXPECT_TRUE(contains(run.out, "process 7 "));
    EXPECT_FALSE(contains(run.out, "process 8 "));
    EXPECT_TRUE(contains(run.out, "  and 3 more processes\n"));
    EXPECT_EQ(runOn(container.build(), "info", {"--json"}).json()["designs"][0]["processes"].size(), 11U);
}

TEST(Info, AFileThatCannotBeShownDoesNotHideTheOthers)
{
    DesignFile const good(sample::everyKind());
    DesignFile const empty{Bytes()};
    ProgramRun const run = runZul({"info", "/none", empty.path(), good.path()});
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_TRUE(contains(run.out, "name     'double rate'"));
    EXPECT_EQ(run.err, "zul: /none: No such file or directory\nzul: " + empty.path() + ": is empty\n");
    EXPECT_EQ(runZul({"info", "/none", good.path()}).code, ExitCode::Unreadable);
}

TEST(Info, Json)
{
    DesignFile const good(sample::everyKind());
    ProgramRun const run = runZul({"info", "--json", good.path(), "/none"});
    auto const json = run.json();
    EXPECT_EQ(json["schema"], "zul-info");
    auto const design = json["designs"][0];
    EXPECT_EQ(design["name"], "double rate");
    EXPECT_EQ(design["load"]["result"], 0);
    EXPECT_EQ(design["configurations"][0], nlohmann::ordered_json::parse(R"({"index": 1, "fpgaType": 74565,
        "part": null, "bytes": 9, "id": "", "board": 2628, "revision": 1})"));
    EXPECT_EQ(design["libraries"][0],
              nlohmann::ordered_json::parse(
                  R"({"name": "camera", "system": 516, "compressed": false, "bytes": 13})"));
    EXPECT_EQ(design["counts"]["registers"], 2);
    EXPECT_EQ(json["designs"][1], nlohmann::ordered_json::parse(R"({"file": "/none",
        "error": {"code": 3, "message": "/none: No such file or directory"}})"));
}

} // namespace
