#include "checking.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CheckTexts, Z0205TextThatFillsItsField)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::author(std::string(64, 'x')))),
              "Z0205 tag 1 at 176, author: fewer than 64 characters, not 64 characters\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::comment(std::string(256, 'x')))),
              "Z0205 tag 1 at 176, comment: fewer than 256 characters, not 256 characters\n");
}

TEST(CheckTexts, OneCharacterLessDoesNotFill)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::author(std::string(63, 'x')))), "");
}

TEST(CheckTexts, Z0205BothLayoutsOfRegistersAndUserInfos)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister(std::string(64, 'x')))),
              "Z0205 tag 1 at 200, name: fewer than 64 characters, not 64 characters\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::newRegister(std::string(64, 'x')))), "");
    EXPECT_EQ(findingsIn(identified().tag(sample::userInfo("x", std::string(64, 'x')))),
              "Z0205 tag 1 at 248, text value: fewer than 64 characters, not 64 characters\n");
}

TEST(CheckTexts, TextOfItsOwnLengthMayBeAsLongAsAField)
{
    Bytes const bytes = identified()
                            .tag(sample::process(0))
                            .tag(sample::module(0, 0))
                            .tag(sample::textParam("text", 0, std::string(64, 'x')))
                            .build();
    EXPECT_EQ(findingsIn(bytes), "");
}

TEST(CheckTexts, Z0206NameCutForCallers)
{
    ContainerBytes const modules = identified().tag(sample::process(0)).tag(sample::module(0, 0));
    std::string const name(64, 'x');

    EXPECT_EQ(findingsIn(ContainerBytes(modules).tag(sample::integerParam(name, 0))),
              "Z0206 tag 3 at 395, name: at most 63 characters, not 64 characters\n");
    EXPECT_EQ(findingsIn(ContainerBytes(modules).tag(sample::channel(name, 0))),
              "Z0206 tag 3 at 399, name: at most 63 characters, not 64 characters\n");
    EXPECT_EQ(findingsIn(ContainerBytes(modules).tag(sample::channel(name.substr(1), 0))), "");
}

TEST(CheckTexts, Z0207RegisterNameThatNoLinkCanName)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::newRegister(std::string(65, 'x')))),
              "Z0207 tag 1 at 200, name: at most 64 characters, not 65 characters\n");
}

TEST(CheckTexts, Z0208EventWithoutName)
{
    Bytes const bytes = identified().tag(sample::oldRegister("ctrl")).tag(sample::event("", "ctrl")).build();
    EXPECT_EQ(findingsIn(bytes), "Z0208 tag 2 at 283, name length: a name, not none\n");
}

TEST(CheckTexts, Z0208EventNameThatBeginsWithATerminator)
{
    std::string const name("\0x", 2);
    Bytes const bytes =
        identified().tag(sample::oldRegister("ctrl")).tag(sample::event(name, "ctrl")).build();
    EXPECT_EQ(findingsIn(bytes), "Z0208 tag 2 at 283, name length: a name, not none\n");
}

TEST(CheckTexts, Z0209EventNameOf256Characters)
{
    Bytes const event = sample::event(std::string(256, 'x'), "ctrl");
    ASSERT_EQ(event.data()[11], std::byte{0});
    Bytes const bytes = identified().tag(sample::oldRegister("xxxx")).tag(event).build();

    EXPECT_EQ(findingsIn(bytes), "Z0209 tag 2 at 283, name length: at most 255, not 256\n");
}

TEST(CheckTexts, LongestEventNameThatCanBeSaved)
{
    Bytes const event = sample::event(std::string(255, 'x'), "ctrl");
    EXPECT_EQ(findingsIn(identified().tag(sample::oldRegister("ctrl")).tag(event)), "");
}

TEST(CheckTexts, NamesOfFilesAreNotRepeatedWholeInFindings)
{
    Bytes const name = sample::newRegister(std::string(1000, 'x'));
    std::string const found = findingsIn(identified().tag(name).tag(name));
    EXPECT_NE(found.find("not '" + std::string(100, 'x') + "...', which leads to tag 1"), std::string::npos);
}

} // namespace
