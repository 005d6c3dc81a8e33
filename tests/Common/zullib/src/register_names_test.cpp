#include "register_names.h"

#include "ZUL_register.h"
#include "ZUL_register_link.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace {

class RegisterNamesTest : public testing::Test {
protected:
    unsigned number(char const* name) { return names.find(name).number; }

    RegisterNames names;
    ZUL_register older{nullptr, "older", true};
    ZUL_register newer{nullptr, "newer", false};
};

TEST_F(RegisterNamesTest, EmptyKnowsNothing)
{
    EXPECT_EQ(names.find("older").tag, nullptr);
    EXPECT_EQ(names.find("").number, 0U);
}

TEST_F(RegisterNamesTest, AnswersWithRegisterAndNumber)
{
    names.add(newer);
    names.add(older);
    EXPECT_EQ(names.find("older").tag, &older);
    EXPECT_EQ(names.find("older").number, 1U);
    EXPECT_EQ(names.find("newer").tag, &newer);
    EXPECT_EQ(names.find("newer").number, 2U);
}

TEST_F(RegisterNamesTest, FirstOfALayoutAndTheOlderLayoutCount)
{
    ZUL_register sameNewer(nullptr, "newer", false);
    ZUL_register sameOlder(nullptr, "newer", true);
    names.add(newer);
    names.add(sameNewer);
    EXPECT_EQ(names.find("newer").tag, &newer);
    names.add(sameOlder);
    EXPECT_EQ(names.find("newer").tag, &sameOlder);
    EXPECT_EQ(names.find("newer").number, 1U);
}

TEST_F(RegisterNamesTest, AliasLeadsToTheRegisterThatCounts)
{
    ZUL_register_link link(nullptr, "alias", "newer");
    ZUL_register sameOlder(nullptr, "newer", true);
    names.add(newer);
    names.add(sameOlder);
    names.add(link);
    EXPECT_EQ(names.find("alias").tag, &sameOlder);
    EXPECT_EQ(number("alias"), 1U);
}

TEST_F(RegisterNamesTest, AliasHasTheNumberOfItsRegisterHoweverManyCome)
{
    ZUL_register_link link(nullptr, "alias", "newer");
    names.add(newer);
    names.add(link);
    EXPECT_EQ(number("alias"), 1U);
    EXPECT_TRUE(names.addNew(older));
    EXPECT_EQ(number("alias"), 2U);
}

TEST_F(RegisterNamesTest, OfEqualAliasesTheFirstCounts)
{
    ZUL_register_link first(nullptr, "alias", "newer");
    ZUL_register_link second(nullptr, "alias", "older");
    names.add(newer);
    names.add(older);
    names.add(first);
    names.add(second);
    EXPECT_EQ(names.find("alias").tag, &newer);
}

TEST_F(RegisterNamesTest, RegisterWhoseNameIsAnAliasKeepsIt)
{
    ZUL_register_link link(nullptr, "older", "newer");
    ZUL_register_link behind(nullptr, "behind", "older");
    names.add(older);
    names.add(newer);
    EXPECT_TRUE(names.addNew(link));
    EXPECT_EQ(names.find("older").tag, &older);
    EXPECT_FALSE(names.addNew(behind)) << "older is an alias now";
    names.add(behind);
    EXPECT_EQ(names.find("behind").tag, &older);
}

TEST_F(RegisterNamesTest, NamesBehindAnAliasFollowTheRegisterThatTakesItsName)
{
    // "older" waits for "newer" as an alias; a register takes that name first, and "newer" comes later.
    ZUL_register_link waiting(nullptr, "older", "newer");
    ZUL_register_link behind(nullptr, "behind", "older");
    names.add(waiting);
    names.add(behind);
    EXPECT_EQ(names.find("behind").tag, nullptr);
    EXPECT_TRUE(names.addNew(older));
    EXPECT_EQ(names.find("behind").tag, &older);
    EXPECT_TRUE(names.addNew(newer));
    EXPECT_EQ(names.find("older").tag, &older);
    EXPECT_EQ(names.find("behind").tag, &older);
}

TEST_F(RegisterNamesTest, ChainResolvesInEveryOrderOfItsLinks)
{
    std::array<ZUL_register_link, 4> links{
        ZUL_register_link(nullptr, "a", "older"), ZUL_register_link(nullptr, "b", "a"),
        ZUL_register_link(nullptr, "c", "b"), ZUL_register_link(nullptr, "d", "b")};
    std::array<std::size_t, 5> order{0, 1, 2, 3, 4}; // 4: the register
    do {
        RegisterNames inOrder;
        for (std::size_t const i : order) {
            if (i == links.size()) {
                ASSERT_TRUE(inOrder.addNew(older));
            } else {
                inOrder.add(links[i]);
            }
        }
        for (char const* const name : {"older", "a", "b", "c", "d"}) {
            ASSERT_EQ(inOrder.find(name).tag, &older) << name;
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(RegisterNamesTest, CircleStaysUnresolvedUntilARegisterTakesOneOfItsNames)
{
    ZUL_register_link toB(nullptr, "older", "b");
    ZUL_register_link toItself(nullptr, "c", "c");
    ZUL_register_link back(nullptr, "b", "older");
    for (ZUL_register_link* const link : {&toB, &toItself, &back}) {
        names.add(*link);
    }
    for (char const* const name : {"older", "b", "c"}) {
        EXPECT_EQ(names.find(name).tag, nullptr) << name;
    }
    EXPECT_TRUE(names.addNew(older));
    EXPECT_EQ(names.find("older").tag, &older);
    EXPECT_EQ(names.find("b").tag, &older);
    EXPECT_EQ(names.find("c").tag, nullptr);
}

TEST_F(RegisterNamesTest, AddNewRefusesAKnownNameAndChangesNothing)
{
    ZUL_register_link link(nullptr, "alias", "older");
    EXPECT_TRUE(names.addNew(older));
    EXPECT_TRUE(names.addNew(link));
    ZUL_register same(nullptr, "older", false);
    ZUL_register sameAsAlias(nullptr, "alias", false);
    EXPECT_FALSE(names.addNew(same));
    EXPECT_FALSE(names.addNew(sameAsAlias));
    EXPECT_TRUE(names.addNew(newer));
    EXPECT_EQ(number("newer"), 2U) << "refused registers are not counted";
}

TEST_F(RegisterNamesTest, AddNewTakesRegistersWithoutName)
{
    ZUL_register nameless(nullptr, nullptr, true);
    EXPECT_TRUE(names.addNew(nameless));
    EXPECT_TRUE(names.addNew(nameless));
    EXPECT_TRUE(names.addNew(newer));
    EXPECT_EQ(number("newer"), 3U);
}

TEST_F(RegisterNamesTest, AddNewRefusesALinkToAnAlias)
{
    ZUL_register_link first(nullptr, "a", "b");
    ZUL_register_link back(nullptr, "b", "a");
    ZUL_register_link withoutTarget(nullptr, "b", nullptr);
    ZUL_register_link withoutAlias(nullptr, nullptr, "b");
    EXPECT_TRUE(names.addNew(first));
    EXPECT_FALSE(names.addNew(back));
    EXPECT_TRUE(names.addNew(withoutAlias));
    EXPECT_TRUE(names.addNew(withoutTarget));
    EXPECT_FALSE(names.addNew(withoutAlias)) << "b is an alias now";
}

TEST_F(RegisterNamesTest, ClearForgetsAll)
{
    names.add(older);
    names.clear();
    EXPECT_EQ(number("older"), 0U);
    names.add(newer);
    EXPECT_EQ(number("newer"), 1U);
}

} // namespace
