#include "container_bytes.h"
#include "listing.h"
#include "program_run.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

/// The first design: a process, a module, an event at configuration 2.
ContainerBytes designA()
{
    return ContainerBytes()
        .tag(sample::author("A. Noether"))
        .tag(sample::process(3, "acquisition"))
        .tag(sample::module(7, 3, "acquisition"))
        .tag(sample::oldRegister("CameraControl"))
        .tag(sample::event("FrameEnd", "CameraControl"))
        .tag(sample::versionNumber(1, 2, 3))
        .tag(sample::library("camera"))
        .tag(sample::fpgaInfo())
        .tag(sample::userInfo("__ZUL_ID__", "of A"))
        .config(sample::config(2, "of A"));
}

/// The second design: two processes, a module, at configuration 1.
ContainerBytes designB()
{
    return ContainerBytes()
        .tag(sample::author("E. Artin"))
        .tag(sample::process(0, "output"))
        .tag(sample::process(1, "display"))
        .tag(sample::module(0, 1, "display"))
        .tag(sample::integerParam("width", 0))
        .tag(sample::newRegister("FrameCounter"))
        .tag(sample::event("Overflow", "FrameCounter"))
        .tag(sample::versionNumber(1, 8, 9))
        .tag(sample::versionNumber(2, 8, 9))
        .tag(sample::fpgaInfo())
        .tag(sample::userInfo("__ZUL_ID__", "of B"))
        .config(sample::config(1, "of B"));
}

Bytes merged()
{
    return ContainerBytes()
        .tag(sample::author("A. Noether"))
        .tag(sample::process(3, "acquisition"))
        .tag(sample::module(7, 3, "acquisition"))
        .tag(sample::oldRegister("CameraControl"))
        .tag(sample::event("FrameEnd", "CameraControl").setU8(8, 18))
        .tag(sample::versionNumber(1, 2, 3))
        .tag(sample::library("camera"))
        .tag(sample::process(4, "output"))
        .tag(sample::process(5, "display"))
        .tag(sample::module(8, 5, "display"))
        .tag(sample::integerParam("width", 8))
        .tag(sample::newRegister("FrameCounter"))
        .tag(sample::versionNumber(2, 8, 9))
        .tag(sample::event("Overflow", "FrameCounter"))
        .tag(sample::userInfo("__ZUL_ID__", "__INVALID_ZUL_ID__"))
        .config(sample::config(2, "of A"))
        .config(sample::config(1, "of B"))
        .build();
}

/// A directory with the files a.zul and b.zul.
class Merge : public testing::Test {
protected:
    void put(Bytes const& a, Bytes const& b)
    {
        writeFile(m_directory / "a.zul", a);
        writeFile(m_directory / "b.zul", b);
    }

    std::string in(std::string const& name) const { return m_directory / name; }

    /// Runs the verb on both; @p more are further arguments. The directory is cut out of what it writes.
    ProgramRun run(std::vector<std::string> const& more) const
    {
        std::vector<std::string> arguments{"merge", in("a.zul"), in("b.zul")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        ProgramRun result = runZul(arguments);
        for (std::string* const text : {&result.out, &result.err}) {
            for (std::size_t at; (at = text->find(in(""))) != std::string::npos;) {
                text->erase(at, in("").size());
            }
        }
        return result;
    }

    /// Runs the verb on two designs that cannot be merged, in every way, and checks that it writes nothing.
    /// @return the conflicts, a line each
    std::string refused(ContainerBytes const& a, ContainerBytes const& b)
    {
        put(a.build(), b.build());
        for (std::vector<std::string> const& how :
             {std::vector<std::string>{"--dry-run"}, {"-o", in("c.zul")}, {"--in-place"}}) {
            EXPECT_EQ(run(how).code, ExitCode::Refused);
        }
        EXPECT_EQ(entriesOf(in("")), (std::vector<std::string>{"a.zul", "b.zul"}));
        EXPECT_EQ(readFile(in("a.zul")), a.build());
        ProgramRun const dry = run({"--dry-run", "--json"});
        nlohmann::ordered_json const json = dry.json();
        EXPECT_EQ(dry.code, ExitCode::Refused);
        std::string conflicts;
        for (auto const& conflict : json["conflicts"]) {
            conflicts += conflict.get<std::string>() + "\n";
        }
        EXPECT_EQ(json["written"], false);
        EXPECT_NE(dry.err.find("the designs cannot be merged: "), std::string::npos);
        return conflicts;
    }

private:
    TemporaryDirectory m_directory;
};

TEST_F(Merge, WritesTheMergedDesignAndSaysWhatChanged)
{
    put(designA().build(), designB().tag(sample::library("camera", "other bytes")).build());
    ProgramRun const written = run({"-o", in("c.zul")});
    EXPECT_EQ(written.code, ExitCode::Clean);
    EXPECT_EQ(written.err, "");
    std::string const size = std::to_string(readFile(in("c.zul")).size());
    EXPECT_EQ(written.out, "process of B  id  becomes\n"
                           "output        0   4\n"
                           "display       1   5\n"
                           "\n"
                           "module of B  index  becomes\n"
                           "cam          0      8\n"
                           "\n"
                           "1 event of A: moved up by 16 interrupt queues\n"
                           "dropped from B: author 'E. Artin' (A has one)\n"
                           "dropped from A: id 'of A' (a merged design is a new one)\n"
                           "dropped from B: id 'of B' (a merged design is a new one)\n"
                           "dropped from B: design version number 1 (A has one)\n"
                           "dropped from B: library 'camera' (A has one, and a load skips the second)\n"
                           "dropped from A: 1 fixed FPGA info (a merged design demands no firmware)\n"
                           "dropped from B: 1 fixed FPGA info (a merged design demands no firmware)\n"
                           "wrote " +
                               size + " bytes to c.zul\n");
}

TEST_F(Merge, WritesTheseBytes)
{
    put(designA().build(), designB().build());
    EXPECT_EQ(run({"-o", in("c.zul")}).code, ExitCode::Clean);
    EXPECT_EQ(readFile(in("c.zul")), merged());
    EXPECT_EQ(readFile(in("a.zul")), designA().build());
    EXPECT_EQ(readFile(in("b.zul")), designB().build());
    EXPECT_EQ(entriesOf(in("")), (std::vector<std::string>{"a.zul", "b.zul", "c.zul"}));
}

TEST_F(Merge, Json)
{
    put(designA().build(), designB().build());
    ProgramRun const written = run({"-o", in("c.zul"), "--json"});
    EXPECT_EQ(written.code, ExitCode::Clean);
    EXPECT_EQ(written.json(), nlohmann::ordered_json::parse(R"({
        "schema": "zul-merge", "version": 1, "a": "a.zul", "b": "b.zul", "output": "c.zul", "written": true,
        "bytes": )" + std::to_string(merged().size()) + R"(, "conflicts": [],
        "processes": [{"name": "output", "from": 0, "to": 4}, {"name": "display", "from": 1, "to": 5}],
        "modules": [{"name": "cam", "from": 0, "to": 8}],
        "movedQueues": {"side": "A", "events": 1, "by": 16},
        "dropped": [{"side": "B", "what": "author 'E. Artin'", "why": "A has one"},
                    {"side": "A", "what": "id 'of A'", "why": "a merged design is a new one"},
                    {"side": "B", "what": "id 'of B'", "why": "a merged design is a new one"},
                    {"side": "B", "what": "design version number 1", "why": "A has one"},
                    {"side": "A", "what": "1 fixed FPGA info", "why": "a merged design demands no firmware"},
                    {"side": "B", "what": "1 fixed FPGA info", "why": "a merged design demands no firmware"}]})"));
}

TEST_F(Merge, DryRunWritesNothingAndNeedsNoOutput)
{
    put(designA().build(), designB().build());
    for (std::vector<std::string> const& how : {std::vector<std::string>{"--dry-run"},
                                                {"--dry-run", "-o", in("c.zul")},
                                                {"--dry-run", "--in-place"}}) {
        ProgramRun const dry = run(how);
        EXPECT_EQ(dry.code, ExitCode::Clean);
        EXPECT_NE(dry.out.find("would write " + std::to_string(merged().size()) + " bytes"),
                  std::string::npos);
        EXPECT_EQ(entriesOf(in("")), (std::vector<std::string>{"a.zul", "b.zul"}));
        EXPECT_EQ(readFile(in("a.zul")), designA().build());
    }
    EXPECT_EQ(run({"--dry-run", "--json"}).json()["output"], nullptr);
    EXPECT_EQ(run({"--dry-run", "--json"}).json()["written"], false);
}

TEST_F(Merge, OverwritesOnlyWhenForced)
{
    put(designA().build(), designB().build());
    writeFile(in("c.zul"), Bytes().chars("there before"));
    ProgramRun const unforced = run({"-o", in("c.zul")});
    EXPECT_EQ(unforced.code, ExitCode::Refused);
    EXPECT_EQ(unforced.out, "");
    EXPECT_NE(unforced.err.find("c.zul exists; --force overwrites it"), std::string::npos);
    EXPECT_EQ(readFile(in("c.zul")), Bytes().chars("there before"));
    EXPECT_EQ(run({"-o", in("c.zul"), "--force"}).code, ExitCode::Clean);
    EXPECT_EQ(readFile(in("c.zul")), merged());
}

TEST_F(Merge, InPlaceReplacesA)
{
    put(designA().build(), designB().build());
    ProgramRun const written = run({"--in-place", "--json"});
    EXPECT_EQ(written.code, ExitCode::Clean);
    EXPECT_EQ(written.json()["output"], "a.zul");
    EXPECT_EQ(readFile(in("a.zul")), merged());
    EXPECT_EQ(entriesOf(in("")), (std::vector<std::string>{"a.zul", "b.zul"}));
}

TEST_F(Merge, MayOverwriteWhatItReads)
{
    put(designA().build(), designB().build());
    EXPECT_EQ(run({"-o", in("b.zul"), "--force"}).code, ExitCode::Clean);
    EXPECT_EQ(readFile(in("b.zul")), merged());
}

TEST_F(Merge, SaysNothingOfNumbersThatStay)
{
    put(ContainerBytes().tag(sample::comment()).build(),
        ContainerBytes().tag(sample::process(0)).tag(sample::module(0, 0)).build());
    ProgramRun const written = run({"-o", in("c.zul")});
    EXPECT_EQ(written.out, "wrote " + std::to_string(readFile(in("c.zul")).size()) + " bytes to c.zul\n");
    EXPECT_EQ(run({"--dry-run", "--json"}).json()["movedQueues"], nullptr);
}

TEST_F(Merge, MovesTheEventsOfTheSideThatIsConfiguredLater)
{
    put(designA().build(), ContainerBytes()
                               .tag(sample::newRegister("r"))
                               .tag(sample::event("e", "r"))
                               .config(sample::config(3))
                               .build());
    EXPECT_EQ(run({"--dry-run", "--json"}).json()["movedQueues"],
              nlohmann::ordered_json::parse(R"({"side": "B", "events": 1, "by": 16})"));
}

TEST_F(Merge, IsRefusedForEventsThatCollide)
{
    ContainerBytes const a = ContainerBytes()
                                 .tag(sample::newRegister("ra"))
                                 .tag(sample::event("first", "ra"))
                                 .config(sample::config(1));
    EXPECT_EQ(refused(a, ContainerBytes()
                             .tag(sample::newRegister("rb"))
                             .tag(sample::event("harmless", "rb").setU8(9, 1))
                             .tag(sample::event("second", "rb"))
                             .config(sample::config(1))),
              "Tried to add a ZUL_event with already used UIQ and bit (B's event number 2, 'second', queue "
              "2, bit 9)\n");
    EXPECT_EQ(refused(a, ContainerBytes()
                             .tag(sample::newRegister("rb"))
                             .tag(sample::event("whole", "rb").setU8(9, 255))
                             .config(sample::config(1))),
              "Tried to add a ZUL_event using a UIQ exclusively when this UIQ was already used by another "
              "event (B's event "
              "number 1, 'whole', queue 2, bit 255)\n");
}

TEST_F(Merge, IsRefusedForRegistersOfOneName)
{
    EXPECT_EQ(refused(designA(), ContainerBytes().tag(sample::newRegister("CameraControl"))),
              "duplicate tag found: both designs have a register named 'CameraControl'\n");
}

TEST_F(Merge, IsRefusedForLinksOfAThatLeadNowhereOrElsewhere)
{
    EXPECT_EQ(refused(ContainerBytes()
                          .tag(sample::registerLink("lost", "none"))
                          .tag(sample::registerLink("too", "none")),
                      designB()),
              "A's register link 'lost' leads to 'none', which is not there or has another access\n"
              "A's register link 'too' leads to 'none', which is not there or has another access\n");
    EXPECT_EQ(
        refused(ContainerBytes().tag(sample::registerLink("Frames", "FrameCounter")), designB()),
        "A's register link 'Frames' leads to 'FrameCounter', which is not there or has another access\n")
        << "the link is writable, the register is not";
    put(ContainerBytes().tag(sample::registerLink("alias", "r")).build(),
        ContainerBytes().tag(sample::oldRegister("r")).build());
    EXPECT_EQ(run({"--dry-run"}).code, ExitCode::Clean) << "B has the register";
}

TEST_F(Merge, IsRefusedWhenTheResultWouldNotLoad)
{
    // An unknown tag takes everything behind it, which would be all of B.
    std::string const why = refused(ContainerBytes().tag(sample::unknown(0x4242)), designB());
    EXPECT_TRUE(why.starts_with("the merged design would not load: no: ")) << why;
}

TEST_F(Merge, IsRefusedWhenTheResultCannotBeSaved)
{
    std::string const why =
        refused(ContainerBytes().tag(sample::comment()),
                ContainerBytes().tag(sample::oldRegister("r")).tag(sample::event("", "r")));
    EXPECT_EQ(why,
              "the merged design cannot be saved: Cannot save ZUL_event without name and/or register.\n");
}

TEST_F(Merge, ShowsConflictsAsText)
{
    put(designA().build(), ContainerBytes().tag(sample::newRegister("CameraControl")).build());
    ProgramRun const refusedRun = run({"--dry-run"});
    EXPECT_EQ(refusedRun.out,
              "conflict: duplicate tag found: both designs have a register named 'CameraControl'\n");
}

TEST_F(Merge, AnswersForFilesThatCannotBeMerged)
{
    put(designA().build(), designB().build());
    EXPECT_EQ(runZul({"merge", in("a.zul"), in("missing.zul"), "--dry-run"}).code, ExitCode::Unreadable);
    writeFile(in("bad.zul"), designB().build().cut(100));
    ProgramRun const damaged = runZul({"merge", in("a.zul"), in("bad.zul"), "-o", in("c.zul"), "--json"});
    EXPECT_EQ(damaged.code, ExitCode::Damaged);
    EXPECT_EQ(damaged.json()["error"]["code"], 4);
    EXPECT_NE(damaged.err.find("bad.zul: loads: no: "), std::string::npos) << damaged.err;
    EXPECT_EQ(runZul({"merge", in("bad.zul"), in("a.zul"), "--dry-run"}).code, ExitCode::Damaged);
    EXPECT_EQ(runZul({"merge", in("a.zul"), in("b.zul"), "-o", in("no directory/c.zul")}).code,
              ExitCode::Unreadable);
}

TEST_F(Merge, NeedsToKnowWhereToWrite)
{
    put(designA().build(), designB().build());
    EXPECT_EQ(run({}).code, ExitCode::Usage);
    EXPECT_EQ(run({"--in-place", "-o", in("c.zul")}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"merge", in("a.zul")}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"merge", "-", "-", "--dry-run"}).code, ExitCode::Usage);
    EXPECT_EQ(runZul({"merge", "-", in("b.zul"), "--in-place"}).code, ExitCode::Usage);
    EXPECT_EQ(entriesOf(in("")), (std::vector<std::string>{"a.zul", "b.zul"}));
}

} // namespace
