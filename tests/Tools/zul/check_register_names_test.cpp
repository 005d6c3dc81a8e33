#include "checking.h"
#include "sanitized.h"

#include <gtest/gtest.h>

namespace {

// The made-up older register and the link have access 1 and are writable; the link's tag is 204 bytes long.

TEST(CheckRegisterNames, Z0305SameNameInBothLayouts)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister("ctrl")).tag(sample::newRegister("ctrl"))),
              "Z0305 tag 2 at 304, name: a name of its own, not 'ctrl', which leads to tag 1\n");
}

TEST(CheckRegisterNames, Z0305NameThatIsAnEarlierAliasOfARegister)
{
    Bytes const bytes = identified()
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::registerLink("alias", "ctrl"))
                            .tag(sample::oldRegister("alias", 0x200))
                            .build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0305 tag 3 at 508, name: a name of its own, not 'alias', which leads to tag 1\n");
}

TEST(CheckRegisterNames, AliasMayBeALaterOrEarlierNameWhileItLeadsNowhere)
{
    Bytes const later = identified()
                            .tag(sample::registerLink("ctrl", "other"))
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::oldRegister("other", 0x200))
                            .build();
    EXPECT_EQ(findingsIn(later), "");
}

TEST(CheckRegisterNames, RegistersWithoutNameAreDifferent)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::newRegister("", 1)).tag(sample::newRegister("", 2))), "");
}

TEST(CheckRegisterNames, Z0305EmptyNamesOfTheOlderLayoutAreEqual)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister("", 1)).tag(sample::oldRegister("", 2))),
              "Z0305 tag 2 at 304, name: a name of its own, not '', which leads to tag 1\n");
}

TEST(CheckRegisterNames, Z0306LinkToAnEarlierAlias)
{
    Bytes const bytes = identified()
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::registerLink("a", "ctrl"))
                            .tag(sample::registerLink("b", "a"))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "Z0306 tag 3 at 486, target: a register or a later alias, not 'a'\n");
}

TEST(CheckRegisterNames, LinkToALaterAlias)
{
    Bytes const bytes = identified()
                            .tag(sample::oldRegister("ctrl"))
                            .tag(sample::registerLink("b", "a"))
                            .tag(sample::registerLink("a", "ctrl"))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "");
}

TEST(CheckRegisterNames, Z0307LinkToItself)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::registerLink("a", "a"))),
              "Z0307 tag 1 at 178, target: a name that leads to a register, not 'a'\n");
}

TEST(CheckRegisterNames, Z0307EveryLinkOfACircleButTheOneThatALoadRefuses)
{
    Bytes const bytes = identified()
                            .tag(sample::registerLink("a", "b"))
                            .tag(sample::registerLink("b", "c"))
                            .tag(sample::registerLink("c", "a"))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "Z0307 tag 1 at 178, target: a name that leads to a register, not 'b'\n"
                                 "Z0307 tag 2 at 382, target: a name that leads to a register, not 'c'\n"
                                 "Z0306 tag 3 at 586, target: a register or a later alias, not 'a'\n");
}

TEST(CheckRegisterNames, Z0308LinkIntoACircleIsNotInIt)
{
    Bytes const bytes =
        identified().tag(sample::registerLink("x", "a")).tag(sample::registerLink("a", "a")).build();
    EXPECT_EQ(findingsIn(bytes), "Z0308 tag 1 at 178, target: a name that leads to a register, not 'a'\n"
                                 "Z0307 tag 2 at 382, target: a name that leads to a register, not 'a'\n");
}

TEST(CheckRegisterNames, Z0308LinkToNothing)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::registerLink("a", "ctrl"))),
              "Z0308 tag 1 at 178, target: a name that leads to a register, not 'ctrl'\n");
}

TEST(CheckRegisterNames, Z0308LinkWithoutTarget)
{
    Bytes const bytes = identified().tag(sample::oldRegister("")).tag(sample::registerLink("a", "")).build();
    EXPECT_EQ(findingsIn(bytes), "Z0308 tag 2 at 282, target: a name that leads to a register, not none\n");
}

TEST(CheckRegisterNames, LinkWithoutTargetDoesNotLeadToARegisterWithAnEmptyName)
{
    Bytes const bytes = identified()
                            .tag(sample::oldRegister(""))
                            .tag(sample::registerLink("a", ""))
                            .tag(sample::event("end", "a"))
                            .build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0308 tag 2 at 282, target: a name that leads to a register, not none\n"
              "Z0201 tag 3 at 495, register name: the name of an earlier register, not 'a'\n");
}

TEST(CheckRegisterNames, Z0309AccessAndWritability)
{
    Bytes const link = sample::registerLink("a", "ctrl").setU8(8, 0).setU8(9, 2);
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister("ctrl")).tag(link)),
              "Z0309 tag 2 at 280, writable: 1, as tag 1 has it, not 0\n"
              "Z0309 tag 2 at 281, access: 1, as tag 1 has it, not 2\n");
}

TEST(CheckRegisterNames, Z0309IsAboutTheRegisterAtTheEndOfAChain)
{
    Bytes const bytes = identified()
                            .tag(sample::registerLink("b", "a").setU8(9, 2))
                            .tag(sample::registerLink("a", "ctrl"))
                            .tag(sample::oldRegister("ctrl"))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "Z0309 tag 1 at 177, access: 1, as tag 3 has it, not 2\n");
}

TEST(CheckRegisterNames, Z0310LinkWithoutAlias)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister("ctrl")).tag(sample::registerLink("", "ctrl"))),
              "Z0310 tag 2 at 346, alias: an alias, not none\n");
}

TEST(CheckRegisterNames, ChainOfHalfAMillionLinks)
{
    constexpr int links =
        isSanitized ? 100'000 : 500'000; // a sanitizer takes more of the stack for each call
    ContainerBytes chain = identified();
    for (int i = 0; i < links; ++i) {
        chain.tag(sample::registerLink("n" + std::to_string(i), "n" + std::to_string(i + 1)));
    }
    EXPECT_EQ(findingsIn(ContainerBytes(chain).tag(sample::oldRegister("n" + std::to_string(links)))), "");
    std::string const circle = findingsIn(chain.tag(sample::registerLink("n" + std::to_string(links), "n0")));
    EXPECT_EQ(std::count(circle.begin(), circle.end(), '\n'), links + 1);
    EXPECT_EQ(circle.substr(0, 11), "Z0307 tag 1");
}

} // namespace
