#include "container_bytes.h"
#include "param_bytes.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

Bytes design()
{
    return ContainerBytes()
        .tag(sample::process(0))
        .tag(sample::module(0, 0))
        .tag(sample::integerParam("width", 0))
        .tag(sample::fieldParam("limits", 0))
        .tag(sample::textParam("label", 0, "left"))
        .tag(sample::channel("link0", 0))
        .tag(sample::dmaParam(1, 0))
        .tag(sample::cameraParam(2, 0))
        .tag(sample::paramLink(0, 0))
        .build();
}

TEST(Tree, GoldenOutput)
{
    ProgramRun const run = runOn(design(), "tree");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "process 0 'acquisition', clock 62500000\n"
                       "  module 0 '', instance 'cam' of type 'Camera'\n"
                       "    parameter 'width' = 42\n"
                       "      -> 'limit' of ''\n"
                       "    parameter 'limits' = [1, 2, 3]\n"
                       "    parameter 'label' = 'left'\n"
                       "    input channel 'link0', link 2, format 3, 8 bits, parallel 16, up to 1024 x 1024\n"
                       "    DMA channel 1 of module 0\n"
                       "    camera channel 2 of module 0\n");
}

TEST(Tree, NumbersLeadToTheFirstTagThatHasThem)
{
    ProgramRun const run = runOn(ContainerBytes()
                                     .tag(sample::process(0, "first"))
                                     .tag(sample::process(0, "second"))
                                     .tag(sample::module(4, 0))
                                     .tag(sample::module(4, 0))
                                     .tag(sample::integerParam("p", 4))
                                     .build(),
                                 "tree");
    EXPECT_EQ(run.out, "process 0 'first', clock 62500000\n"
                       "  module 4 '', instance 'cam' of type 'Camera'\n"
                       "    parameter 'p' = 42\n"
                       "  module 4 '', instance 'cam' of type 'Camera'\n"
                       "process 0 'second', clock 62500000\n");
}

TEST(Tree, WhatBelongsToNothingIsShownAtTheEnd)
{
    ProgramRun const run = runOn(ContainerBytes()
                                     .tag(sample::module(1, 9))
                                     .tag(sample::integerParam("p", 5))
                                     .tag(sample::paramLink(6, 1))
                                     .build(),
                                 "tree");
    EXPECT_EQ(run.out, "modules of no process\n"
                       "  module 1 '', instance 'cam' of type 'Camera'\n"
                       "of no module\n"
                       "  parameter 'p' = 42\n"
                       "  link 'width' -> 'limit' of ''\n");
}

TEST(Tree, LinkWithoutParameterStaysWithItsModule)
{
    ProgramRun const run = runOn(ContainerBytes()
                                     .tag(sample::process(0))
                                     .tag(sample::module(0, 0))
                                     .tag(sample::paramLink(0, 0))
                                     .build(),
                                 "tree");
    EXPECT_NE(run.out.find("'Camera'\n    link 'width' -> 'limit' of ''\n"), std::string::npos);
}

TEST(Tree, ValuesOfEveryStorage)
{
    auto const valueOf = [](Bytes const& param) {
        std::string const out = runOn(ContainerBytes().tag(param).build(), "tree").out;
        std::size_t const at = out.find(" = ") + 3;
        return out.substr(at, out.find('\n', at) - at);
    };
    EXPECT_EQ(valueOf(integerParam(4)), "18364758544493064720");
    EXPECT_EQ(valueOf(doubleParam()), "-0.125");
    EXPECT_EQ(valueOf(paramBytes({.type = 5, .real = std::numeric_limits<double>::infinity()})), "inf");
    EXPECT_EQ(valueOf(fieldParam(6)), "[-1, 0, 81985529216486895]");
    EXPECT_EQ(valueOf(fieldParam(7)), "[18446744073709551615, 0, 81985529216486895]");
    EXPECT_EQ(valueOf(paramBytes({.type = 8, .elements = 1}, Bytes().real(2.5))), "[2.5]");
    EXPECT_EQ(valueOf(paramBytes({.type = 7, .elements = 7}, Bytes().zeros(56))),
              "[0, 0, 0, 0, 0, 0, ...] 7 elements");
    EXPECT_EQ(valueOf(textParam(16, "rising\n")), "'rising\\x0a'");
    EXPECT_EQ(valueOf(paramBytes({.type = 14})), "''");
    EXPECT_EQ(valueOf(paramBytes({.type = 9})), "no value");
}

TEST(Tree, JsonHasTheSameHierarchy)
{
    auto const json = runOn(design(), "tree", {"--json"}).json();
    EXPECT_EQ(json["schema"], "zul-tree");
    auto const process = json["processes"][0];
    EXPECT_EQ(process["name"], "acquisition");
    EXPECT_EQ(process["clock"], 62500000);
    auto const module = process["modules"][0];
    EXPECT_EQ(module["type"], "Camera");
    EXPECT_EQ(module["parameters"][0], nlohmann::ordered_json::parse(R"({"tag": 2, "kind": "parameter",
        "name": "width", "type": 2, "flags": 7, "value": 42})"));
    EXPECT_EQ(module["parameters"][1]["value"], nlohmann::ordered_json::parse("[1, 2, 3]"));
    EXPECT_EQ(module["parameters"][2]["value"], "left");
    EXPECT_EQ(module["links"][0]["destination name"], "limit");
    EXPECT_EQ(module["channels"].size(), 3U);
    EXPECT_EQ(module["channels"][1]["max height"], 768);
}

} // namespace
