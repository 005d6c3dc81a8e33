#include "container_bytes.h"
#include "program_run.h"
#include "register_map.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

using End = MappedLink::End;

/// The map of a container with @p tags, whose bytes live as long as this does.
struct MapOf {
    explicit MapOf(ContainerBytes const& container)
        : bytes(container.build()), walk(walkContainer({bytes.data(), bytes.size()})), map(walk)
    {
    }

    Bytes bytes;
    Walk walk;
    RegisterMap map;
};

TEST(RegisterMap, LinksLeadOverLinksToARegister)
{
    MapOf const made(ContainerBytes()
                         .tag(sample::registerLink("c", "b"))
                         .tag(sample::registerLink("b", "a"))
                         .tag(sample::registerLink("a", "reg"))
                         .tag(sample::oldRegister("reg")));
    for (MappedLink const& link : made.map.links) {
        EXPECT_EQ(link.end, End::Register) << link.alias;
        EXPECT_EQ(link.reg, 0U);
    }
    EXPECT_EQ(made.map.registers[0].aliases, (std::vector<std::string_view>{"c", "b", "a"}));
}

TEST(RegisterMap, LinksToNothingAndRoundInCirclesEnd)
{
    MapOf const made(ContainerBytes()
                         .tag(sample::registerLink("a", "b"))
                         .tag(sample::registerLink("b", "a"))
                         .tag(sample::registerLink("into", "a"))
                         .tag(sample::registerLink("self", "self"))
                         .tag(sample::registerLink("lost", "none"))
                         .tag(sample::registerLink("lost too", "lost")));
    End const ends[] = {End::Circle, End::Circle, End::Circle, End::Circle, End::Nothing, End::Nothing};
    for (std::size_t i = 0; i < made.map.links.size(); ++i) {
        EXPECT_EQ(made.map.links[i].end, ends[i]) << made.map.links[i].alias;
    }
}

TEST(RegisterMap, RegistersOfTheOlderLayoutComeFirstAndRegistersBeforeLinks)
{
    MapOf const made(ContainerBytes()
                         .tag(sample::newRegister("twice"))
                         .tag(sample::oldRegister("twice"))
                         .tag(sample::registerLink("twice", "none"))
                         .tag(sample::registerLink("alias", "twice")));
    EXPECT_EQ(made.map.links[1].end, End::Register);
    EXPECT_EQ(made.map.links[1].reg, 1U);
}

TEST(RegisterMap, LongChainsAreFollowed)
{
    ContainerBytes container;
    for (int i = 20'000; i > 0; --i) {
        container.tag(sample::registerLink(std::to_string(i), std::to_string(i - 1)));
    }
    container.tag(sample::newRegister("0"));
    EXPECT_EQ(MapOf(container).map.registers[0].aliases.size(), 20'000U);
}

TEST(Regs, GoldenTable)
{
    ProgramRun const run = runOn(ContainerBytes()
                                     .tag(sample::oldRegister("CameraControl"))
                                     .tag(sample::newRegister("FrameCounter"))
                                     .tag(sample::registerLink("Frames", "FrameCounter"))
                                     .tag(sample::registerLink("F", "Frames"))
                                     .build(),
                                 "regs");
    EXPECT_EQ(run.code, ExitCode::Clean);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "name           address  bits  access  writable  value              layout  aliases\n"
              "CameraControl  0x100    32:1  1       yes       0x5                older\n"
              "FrameCounter   0x200    63:1  2       no        0x123456789abcdef  newer   Frames, F\n");
}

TEST(Regs, LinksThatLeadNowhereAreListed)
{
    ProgramRun const run = runOn(
        ContainerBytes().tag(sample::registerLink("a", "b")).tag(sample::registerLink("x", "x")).build(),
        "regs");
    EXPECT_EQ(run.out, "name  address  bits  access  writable  value  layout  aliases\n\n"
                       "link  target  leads to\n"
                       "a     b       nothing\n"
                       "x     x       circle\n");
}

TEST(Regs, OnlyTheLowByteOfABitCounts)
{
    ProgramRun const run = runOn(
        ContainerBytes().tag(sample::oldRegister("r").setU32(24, 0x103).setU32(28, 0x11F)).build(), "regs");
    EXPECT_NE(run.out.find("31:3"), std::string::npos);
}

TEST(Regs, Json)
{
    ProgramRun const run = runOn(ContainerBytes()
                                     .tag(sample::newRegister("FrameCounter"))
                                     .tag(sample::registerLink("Frames", "FrameCounter"))
                                     .tag(sample::registerLink("lost", "none"))
                                     .build(),
                                 "regs", {"--json"});
    EXPECT_EQ(run.json(), nlohmann::ordered_json::parse(R"({
        "schema": "zul-regs", "version": 1, "file": "design.zul",
        "registers": [{"tag": 0, "name": "FrameCounter", "address": 512, "msb": 63, "lsb": 1, "access": 2,
                       "writable": false, "value": 81985529216486895, "layout": "newer", "aliases": ["Frames"]}],
        "links": [{"tag": 1, "alias": "Frames", "target": "FrameCounter", "leadsTo": "register",
                   "register": "FrameCounter"},
                  {"tag": 2, "alias": "lost", "target": "none", "leadsTo": "nothing"}]})"));
}

} // namespace
