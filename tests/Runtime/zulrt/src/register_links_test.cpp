#include "register_links.h"

#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned readOnly = 1;
constexpr unsigned writable = 0;

/// A link of the kind that the arguments say.
Bytes link(std::string_view target, unsigned isReadOnly, unsigned access, std::string_view alias = "Alias")
{
    Bytes bytes = sample::registerLink(alias, target);
    return bytes.setU8(8, 1 - isReadOnly).setU8(9, access);
}

Bytes reg(std::string_view name, unsigned isReadOnly, unsigned access)
{
    return sample::oldRegister(name).setU32(8, access).setU32(20, 1 - isReadOnly);
}

ContainerBytes empty()
{
    return {};
}

int check(ContainerBytes const& other, ContainerBytes const& own)
{
    LoadedContainer const otherContainer(other.build());
    LoadedContainer const ownContainer(own.build());
    return checkRegisterLinks(&otherContainer.zul, &ownContainer.zul);
}

TEST(RegisterLinks, PassWhereThereAreNone)
{
    EXPECT_EQ(check(empty(), empty()), 1);
    EXPECT_EQ(check(empty(), empty().tag(reg("A", writable, 1))), 1);
}

TEST(RegisterLinks, ResolveInTheOwnContainer)
{
    EXPECT_EQ(check(empty(), empty().tag(reg("A", readOnly, 1)).tag(link("A", readOnly, 1))), 1);
}

TEST(RegisterLinks, ResolveInTheOtherContainer)
{
    EXPECT_EQ(check(empty().tag(reg("A", writable, 2)), empty().tag(link("A", writable, 2))), 1);
}

TEST(RegisterLinks, OfTheOtherContainerAreNotLookedAt)
{
    EXPECT_EQ(check(empty().tag(link("none", readOnly, 1)), empty()), 1);
    EXPECT_EQ(check(empty().tag(reg("A", readOnly, 1)).tag(link("A", writable, 2)), empty()), 1);
}

TEST(RegisterLinks, FailWhenNeitherContainerKnowsTheTarget)
{
    EXPECT_EQ(check(empty().tag(reg("B", readOnly, 1)),
                    empty().tag(reg("a", readOnly, 1)).tag(link("A", readOnly, 1))),
              0);
    EXPECT_EQ(check(empty(), empty().tag(link("", readOnly, 1))), 0) << "without target";
}

TEST(RegisterLinks, FailWhenTheAccessDiffers)
{
    EXPECT_EQ(check(empty(), empty().tag(reg("A", readOnly, 1)).tag(link("A", writable, 1))), 0);
    EXPECT_EQ(check(empty(), empty().tag(reg("A", writable, 1)).tag(link("A", readOnly, 1))), 0);
}

TEST(RegisterLinks, FailWhenTheTypeDiffers)
{
    EXPECT_EQ(check(empty(), empty().tag(reg("A", readOnly, 1)).tag(link("A", readOnly, 2))), 0);
    EXPECT_EQ(check(empty(), empty().tag(reg("A", readOnly, 2)).tag(link("A", readOnly, 1))), 0);
}

TEST(RegisterLinks, PreferTheOtherContainersRegister)
{
    ContainerBytes const own = empty().tag(reg("A", readOnly, 1)).tag(link("A", readOnly, 1));
    EXPECT_EQ(check(empty().tag(reg("A", readOnly, 1)), own), 1);
    EXPECT_EQ(check(empty().tag(reg("A", writable, 1)), own), 0) << "the own register would do";
    EXPECT_EQ(check(empty().tag(reg("A", readOnly, 2)), own), 0);
    ContainerBytes const wrong = empty().tag(reg("A", readOnly, 1)).tag(link("A", writable, 2));
    EXPECT_EQ(check(empty().tag(reg("A", writable, 2)), wrong), 1) << "the own one would not";
}

TEST(RegisterLinks, FollowAliases)
{
    ContainerBytes const aliased = empty().tag(reg("A", readOnly, 1)).tag(link("A", readOnly, 1, "B"));
    EXPECT_EQ(check(aliased, empty().tag(link("B", readOnly, 1))), 1);
    ContainerBytes const chain =
        empty().tag(reg("A", readOnly, 1)).tag(link("B", readOnly, 1, "C")).tag(link("A", readOnly, 1, "B"));
    EXPECT_EQ(check(empty(), chain), 1);
}

TEST(RegisterLinks, AreAllLookedAt)
{
    ContainerBytes const own = empty()
                                   .tag(reg("A", readOnly, 1))
                                   .tag(link("A", readOnly, 1, "first"))
                                   .tag(link("none", readOnly, 1, "second"))
                                   .tag(link("A", readOnly, 1, "third"));
    EXPECT_EQ(check(empty(), own), 0);
    EXPECT_EQ(check(empty().tag(reg("none", readOnly, 1)), own), 1);
}

TEST(RegisterLinks, MayBeCheckedAgainstTheContainerItself)
{
    LoadedContainer const container(empty().tag(reg("A", readOnly, 1)).tag(link("A", readOnly, 1)).build());
    EXPECT_EQ(checkRegisterLinks(&container.zul, &container.zul), 1);
}

} // namespace
