#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "sanitized.h"
#include "small_stack.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class RegisterLookup : public testing::Test {
protected:
    ZUL_register* addOld(char const* name) { return add(name, true); }
    ZUL_register* addNew(char const* name) { return add(name, false); }
    ZUL_register_link* addLink(char const* alias, char const* target)
    {
        auto link = std::make_unique<ZUL_register_link>(&zul, alias, target);
        zul.AddLink(link.get());
        return link.release();
    }
    void expect(char const* name, unsigned number, ZUL_register* reg) const
    {
        EXPECT_EQ(zul.getRegisterByName(name), number) << name;
        EXPECT_EQ(zul.findRegister(name), reg) << name;
        EXPECT_EQ(zul.getRegisterAt(number), reg) << name;
    }

    ZUL zul;

private:
    ZUL_register* add(char const* name, bool old)
    {
        auto reg = std::make_unique<ZUL_register>(&zul, name, old);
        zul.AddRegister(reg.get());
        return reg.release();
    }
};

TEST_F(RegisterLookup, NumbersOlderRegistersBeforeNewer)
{
    ZUL_register* const newer = addNew("newer");
    ZUL_register* const first = addOld("first");
    ZUL_register* const second = addOld("second");
    ZUL_register* const last = addNew("last");
    expect("first", 1, first);
    expect("second", 2, second);
    expect("newer", 3, newer);
    expect("last", 4, last);
    expect("unknown", 0, nullptr);
    EXPECT_EQ(zul.getRegisterAt(5), nullptr);
    EXPECT_EQ(zul.getRegisterAt(0xFFFFFFFF), nullptr);
}

TEST_F(RegisterLookup, NumbersFollowRegistersThatAreAddedAfterwards)
{
    ZUL_register* const newer = addNew("newer");
    addLink("alias", "newer");
    expect("alias", 1, newer);
    addOld("older");
    expect("newer", 2, newer);
    expect("alias", 2, newer);
}

TEST_F(RegisterLookup, AliasOfANewerRegisterBehindTwoOlderOnesIsThree)
{
    addOld("a");
    addOld("b");
    ZUL_register* const newer = addNew("c");
    addLink("alias", "c");
    expect("alias", 3, newer);
}

TEST_F(RegisterLookup, ChainLeadsToItsEndInEveryOrder)
{
    addLink("two", "one"); // each link before the one that it points to
    addLink("one", "register");
    expect("two", 0, nullptr);
    ZUL_register* const reg = addOld("register");
    expect("one", 1, reg);
    expect("two", 1, reg);
}

TEST_F(RegisterLookup, NullAndEmptyNamesAreUnknownAndNeverDuplicates)
{
    addNew(nullptr);
    addNew("");
    addOld(nullptr);
    addLink(nullptr, nullptr);
    addLink(nullptr, nullptr);
    EXPECT_EQ(zul.getRegisterByName(nullptr), 0U);
    EXPECT_EQ(zul.findRegister(static_cast<char const*>(nullptr)), nullptr);
    EXPECT_EQ(zul.getRegisterByName(""), 0U);
    EXPECT_EQ(zul.getTotalTagCount(), 5U);
}

TEST_F(RegisterLookup, RegistersWithoutNameAreCounted)
{
    addOld(nullptr);
    expect("named", 0, nullptr);
    addNew(nullptr);
    ZUL_register* const named = addNew("named");
    expect("named", 3, named);
}

TEST_F(RegisterLookup, NamelessAliasLeadsNowhere)
{
    addOld("register");
    addLink(nullptr, "register");
    addLink("alias", nullptr);
    expect("alias", 0, nullptr);
    EXPECT_EQ(zul.getRegisterByName(nullptr), 0U);
}

TEST_F(RegisterLookup, SelfLinkAndCirclesAreUnknown)
{
    addLink("self", "self");
    addLink("a", "b"); // b -> a is refused, but names can be changed afterwards
    ZUL_register_link* const closing = addLink("c", "x");
    closing->setAlias("b");
    closing->setTarget("a");
    addLink("into", "elsewhere")->setTarget("a");
    for (char const* const name : {"self", "a", "b", "into"}) {
        expect(name, 0, nullptr);
    }
}

TEST_F(RegisterLookup, SelfLinkIsAcceptedOnceOnly)
{
    addLink("self", "self");
    EXPECT_THROW(addLink("self", "self"), ZUL_link_loop_detected) << "its target is an alias now";
}

TEST_F(RegisterLookup, FirstLinkOfAnAliasCountsEvenIfItLeadsNowhere)
{
    addOld("register");
    addLink("alias", "nothing");
    addLink("alias", "register");
    expect("alias", 0, nullptr);
}

TEST_F(RegisterLookup, RegisterComesBeforeALinkOfItsName)
{
    addOld("other");
    addLink("name", "nothing");
    ZUL_register* const reg = addOld("name"); // the alias leads nowhere, so the name is not known
    expect("name", 2, reg);
    addLink("other", "elsewhere"); // an alias that is a register's name is accepted
    expect("other", 1, zul.getRegisterAt(1));
}

TEST_F(RegisterLookup, KnownNameIsADuplicateInBothLayouts)
{
    addNew("register");
    addLink("alias", "register");
    for (char const* const name : {"register", "alias"}) {
        for (bool const old : {false, true}) {
            ZUL_register again(&zul, name, old);
            try {
                zul.AddRegister(&again);
                FAIL() << "added";
            } catch (ZUL_file_duplicate_tag const& error) {
                EXPECT_STREQ(error.what(), "duplicate tag found");
                EXPECT_EQ(error.getTagId(), 0x8151000U);
                EXPECT_EQ(error.asString(), name);
            }
            EXPECT_THROW(zul.AddTag(&again), ZUL_file_duplicate_tag);
        }
    }
    EXPECT_EQ(zul.getTotalTagCount(), 2U);
}

TEST_F(RegisterLookup, LinkToAnAliasIsRefusedByEveryWayOfAdding)
{
    addLink("a", "b");
    ZUL_register_link back(&zul, "b", "a");
    EXPECT_THROW(zul.AddTag(&back), ZUL_link_loop_detected);
    try {
        zul.AddLink(&back);
        FAIL() << "added";
    } catch (ZUL_link_loop_detected const& error) {
        EXPECT_STREQ(error.what(), "link loop detected");
        EXPECT_EQ(error.getTagId(), 0x8151001U);
        EXPECT_EQ(error.getSecondTagId(), 0x8151001U);
    }
    EXPECT_EQ(zul.getTagCount(ZUL_register_link::tag_id), 1U);
}

TEST_F(RegisterLookup, FollowsRenamedRegistersAndLinks)
{
    ZUL_register* const reg = addOld("old");
    ZUL_register_link* const link = addLink("alias", "old");
    expect("alias", 1, reg);
    reg->setName("new");
    expect("old", 0, nullptr);
    expect("alias", 0, nullptr);
    expect("new", 1, reg);
    link->setTarget("new");
    expect("alias", 1, reg);
    link->setAlias("other");
    expect("alias", 0, nullptr);
    expect("other", 1, reg);
    link->setTarget(reg);
    expect("other", 1, reg);
    zul.removeTag(link);
    expect("other", 0, nullptr);
}

TEST_F(RegisterLookup, OfTwoThatGotOneNameTheOlderLayoutThenTheFirstCounts)
{
    ZUL_register* const newer = addNew("a");
    ZUL_register* const secondNewer = addNew("b");
    ZUL_register* const older = addOld("c");
    secondNewer->setName("a");
    expect("a", 2, newer);
    older->setName("a");
    expect("a", 1, older);
    zul.removeTag(older);
    expect("a", 1, newer);
    zul.removeTag(newer);
    expect("a", 1, secondNewer);
}

TEST_F(RegisterLookup, LongNameMovesARegisterToTheNewerLayout)
{
    ZUL_register* const moving = addOld("moving");
    ZUL_register* const staying = addOld("staying");
    EXPECT_EQ(zul.getTagCount(ZUL_register::old_tag_id), 2U);
    expect("staying", 2, staying);
    std::string const longName(65, 'x');
    moving->setName(longName.c_str());
    EXPECT_EQ(zul.getTagCount(ZUL_register::old_tag_id), 1U);
    EXPECT_EQ(zul.getTagCount(ZUL_register::new_tag_id), 1U);
    expect("staying", 1, staying);
    expect(longName.c_str(), 2, moving);
}

TEST_F(RegisterLookup, AssignmentMovesARegisterToTheLayoutOfItsSource)
{
    ZUL_register* const reg = addNew("reg");
    EXPECT_EQ(zul.getTagCount(ZUL_register::new_tag_id), 1U);
    *reg = ZUL_register(nullptr, "other", true);
    EXPECT_EQ(zul.getTagCount(ZUL_register::new_tag_id), 0U);
    EXPECT_EQ(zul.getTagCount(ZUL_register::old_tag_id), 1U);
    expect("other", 1, reg);
    expect("reg", 0, nullptr);
}

TEST_F(RegisterLookup, FailedAdditionLeavesNoTrace)
{
    addLink("alias", "target");
    {
        ZUL_register_link const refused(&zul, "fresh name of a refused link", "alias");
        EXPECT_THROW(zul.AddLink(const_cast<ZUL_register_link*>(&refused)), ZUL_link_loop_detected);
    }
    expect("fresh name of a refused link", 0, nullptr);
    ZUL_register* const reg = addOld("fresh name of a refused link");
    expect("fresh name of a refused link", 1, reg);
}

TEST(RegisterChain, OfHalfAMillionLinksResolvesOnASmallStack)
{
    constexpr std::uint32_t links = isSanitized ? 100'000 : 500'000;
    Bytes bytes = headBytes(links + 1).append(sample::newRegister("0"));
    auto const name = [](std::uint32_t i) { return std::to_string(i); };
    for (std::uint32_t i = links; i > 0; --i) {
        bytes.append(sample::registerLink(name(i), name(i - 1))); // the longest way first
    }
    onSmallStack([&] {
        ZUL zul;
        ASSERT_EQ(zul.Load(bytes.data(), bytes.size()), 0);
        ZUL_register* const reg = zul.getRegisterAt(1);
        EXPECT_EQ(zul.getRegisterByName(name(links).c_str()), 1U);
        reg->setName("elsewhere");
        EXPECT_EQ(zul.getRegisterByName(name(links).c_str()), 0U);
        reg->setName("0");
        EXPECT_EQ(zul.findRegister(name(links).c_str()), reg);
        static_cast<ZUL_register_link*>(zul.getTagAt(ZUL_register_link::tag_id, links - 1))
            ->setTarget(name(links).c_str());
        EXPECT_EQ(zul.getRegisterByName(name(links).c_str()), 0U) << "the chain is a circle now";
    });
}

} // namespace
