#include "program_run.h"

#include "container_bytes.h"
#include "exported_queries.h"
#include "sample_tags.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace {

using testing::EndsWith;
using testing::HasSubstr;

ProgramRun api(std::vector<std::string> const& more = {})
{
    std::vector<std::string> arguments{"api", ZUL_SAMPLE_DESIGN};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runZul(arguments);
}

std::string contents(std::string const& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Api, AnswersForEveryElementAndThenAMiss)
{
    ProgramRun const run = api({"ZulGetProcessName", "ZulGetNrOfProcess"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.out, "ZulGetNrOfProcess() = 2\n"
                       "ZulGetProcessName(0) = 'Inspection'\n"
                       "ZulGetProcessName(1) = 'Overview'\n"
                       "ZulGetProcessName(2) = null   a miss\n")
        << "in the order of the interface";
}

TEST(Api, NumbersRegistersFromOne)
{
    ProgramRun const run = api({"ZulGetRegisterName"});
    EXPECT_THAT(run.out, testing::StartsWith("ZulGetRegisterName(1) = 'Camera0_Enable'\n"));
    EXPECT_THAT(run.out, EndsWith("ZulGetRegisterName(32) = null   a miss\n"));
}

TEST(Api, AsksForAliasesByName)
{
    ProgramRun const run = api({"ZulGetRegisterByName"});
    EXPECT_THAT(run.out, HasSubstr("ZulGetRegisterByName('Camera0_Enable') = 1\n"));
    EXPECT_THAT(run.out, EndsWith("ZulGetRegisterByName('no such name') = 0   a miss\n"));
    EXPECT_EQ(std::ranges::count(run.out, '\n'), 31 + 8 + 1) << "registers, links and a miss";
}

TEST(Api, GivesBitstreamsByLengthAndDigest)
{
    auto const json = api({"ZulGetConfigData", "--json"}).json();
    EXPECT_EQ(json["schema"], "zul-api");
    EXPECT_EQ(json["version"], 1);
    ASSERT_EQ(json["calls"].size(), 3U);
    EXPECT_EQ(json["calls"][0]["arguments"], (nlohmann::ordered_json{0, 2625}));
    EXPECT_EQ(json["calls"][0]["answer"]["bytes"], 301832);
    EXPECT_EQ(json["calls"][0]["answer"]["sha256"].get<std::string>().size(), 64U);
    EXPECT_FALSE(json["calls"][0]["miss"]);
    EXPECT_TRUE(json["calls"][2]["answer"].is_null());
    EXPECT_TRUE(json["calls"][2]["miss"]);
}

TEST(Api, ShowsTheSettingsBlock)
{
    auto const json = api({"ZulGetUserInfoByName", "--json"}).json();
    auto const& settings = json["calls"][0];
    EXPECT_EQ(settings["arguments"][0], "##_RZ3_DESIGN_SETTINGS");
    EXPECT_EQ(settings["answer"]["format"], 1);
    EXPECT_EQ(settings["answer"]["queue"].size(), 8U);
    EXPECT_EQ(json["calls"][1]["answer"], "DualAreaInspection");
}

TEST(Api, CoversEveryExportedQuery)
{
    std::string const map = contents(ZUL_SOURCE_DIRECTORY "/Runtime/zulrt/src/zulrt.map");
    std::set<std::string> listed{"ZulLoadZulFile",           "ZulLoadZulFileWithType",
                                 "ZulLoadZulFileWithTypeEx", "ZulLoadDesignFromBuffer",
                                 "ZulUnloadZulFile",         "ZulFirmwareTrampoline"};
    for (ExportedQuery const& query : exportedQueries()) {
        EXPECT_TRUE(listed.insert(query.function).second) << query.function;
    }
    std::set<std::string> exported;
    for (std::size_t at = map.find(" Zul"); at != std::string::npos; at = map.find(" Zul", at + 1)) {
        exported.insert(map.substr(at + 1, map.find(';', at) - at - 1));
    }
    EXPECT_EQ(listed, exported);
}

TEST(Api, AnswersOnEveryKindOfDesign)
{
    ProgramRun const run = runOn(sample::everyKind(), "api", {"--json"});
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_GT(run.json()["calls"].size(), exportedQueries().size());
}

TEST(Api, RefusesAnUnknownFunction)
{
    ProgramRun const run = api({"ZulGetNothing"});
    EXPECT_EQ(run.code, ExitCode::NotFound);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("there is no query ZulGetNothing"));
}

TEST(Api, SaysWhyADamagedDesignDoesNotLoad)
{
    Bytes bytes = sample::everyKind();
    bytes.cut(bytes.size() - 20);
    ProgramRun const run = runOn(bytes, "api", {"--json"});
    EXPECT_EQ(run.code, ExitCode::Damaged);
    EXPECT_EQ(run.json()["error"]["code"], 4);
    EXPECT_THAT(run.err, HasSubstr("design.zul: the design does not load, errno "));
    EXPECT_THAT(run.err, HasSubstr("loads: no: "));
}

} // namespace
