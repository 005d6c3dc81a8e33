#include "checking.h"

#include <gtest/gtest.h>

namespace {

TEST(CheckReferences, Z0201ModuleOfAMissingProcess)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::module(0, 7))),
              "Z0201 tag 1 at 200, process id: an earlier process, not 7\n");
}

TEST(CheckReferences, Z0201EveryKindOfTagThatNamesAModule)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::integerParam("width", 7))),
              "Z0201 tag 1 at 176, module index: an earlier module, not 7\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::channel("link", 7))),
              "Z0201 tag 1 at 180, module index: an earlier module, not 7\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::dmaParam(0, 7))),
              "Z0201 tag 1 at 180, module index: an earlier module, not 7\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::cameraParam(0, 7))),
              "Z0201 tag 1 at 180, module index: an earlier module, not 7\n");
}

TEST(CheckReferences, Z0201BothEndsOfAParameterLink)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::paramLink(7, 8))),
              "Z0201 tag 1 at 176, source module index: an earlier module, not 7\n"
              "Z0201 tag 1 at 180, destination module index: an earlier module, not 8\n");
}

TEST(CheckReferences, Z0201EventOfAnUnknownRegister)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::event("end", "ctrl"))),
              "Z0201 tag 1 at 187, register name: the name of an earlier register, not 'ctrl'\n");
}

TEST(CheckReferences, Z0201EventWithoutRegister)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::event("end", ""))),
              "Z0201 tag 1 at 180, register name length: the name of an earlier register, not ''\n");
}

TEST(CheckReferences, Z0201EventOfAnAliasThatLeadsNowhere)
{
    Bytes const bytes =
        identified().tag(sample::registerLink("a", "b")).tag(sample::event("end", "a")).build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0308 tag 1 at 178, target: a name that leads to a register, not 'b'\n"
              "Z0201 tag 2 at 391, register name: the name of an earlier register, not 'a'\n");
}

TEST(CheckReferences, EventOfAnAliasOfAnEarlierRegister)
{
    Bytes const bytes = identified()
                            .tag(sample::registerLink("a", "b"))
                            .tag(sample::registerLink("b", "ctrl"))
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::event("end", "a"))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "");
}

TEST(CheckReferences, Z0202ModuleBeforeItsProcess)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::module(0, 7)).tag(sample::process(7))),
              "Z0202 tag 1 at 200, process id: an earlier process, not 7, which is tag 2\n");
}

TEST(CheckReferences, Z0202ParameterBeforeItsModule)
{
    Bytes const bytes = identified()
                            .tag(sample::process(7))
                            .tag(sample::integerParam("width", 0))
                            .tag(sample::module(0, 7))
                            .build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0202 tag 2 at 256, module index: an earlier module, not 0, which is tag 3\n");
}

TEST(CheckReferences, Z0202EventBeforeItsRegister)
{
    EXPECT_EQ(
        findingsIn(identified().tag(sample::event("end", "ctrl")).tag(sample::oldRegister("ctrl"))),
        "Z0202 tag 1 at 187, register name: the name of an earlier register, not 'ctrl', which is tag 2\n");
}

TEST(CheckReferences, Z0202EventBeforeTheLinkToItsRegister)
{
    Bytes const bytes = identified()
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::event("end", "alias"))
                            .tag(sample::registerLink("alias", "ctrl"))
                            .build();
    EXPECT_EQ(
        findingsIn(bytes),
        "Z0202 tag 2 at 291, register name: the name of an earlier register, not 'alias', which is tag 1\n");
}

TEST(CheckReferences, Z0203ModuleIndexTwice)
{
    Bytes const bytes =
        identified().tag(sample::process(0)).tag(sample::module(5, 0)).tag(sample::module(5, 0)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0203 tag 3 at 387, module index: a number of its own, not 5\n");
}

TEST(CheckReferences, Z0204ProcessIdTwice)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::process(5)).tag(sample::process(5))),
              "Z0204 tag 2 at 256, process id: a number of its own, not 5\n");
}

TEST(CheckReferences, TagThatEndsTheWalkIsNotReadForItsContents)
{
    Bytes const bytes = identified().tag(sample::module(0, 7).cut(40)).build();
    EXPECT_EQ(findingsIn(bytes), "Z0105 tag 1 at 172, length: at most 40, not 131\n");
}

} // namespace
