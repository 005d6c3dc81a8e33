// A configuration's destination and identifier, which are tags of its container, and what copies make of them.
#include "ZUL_destination.h"
#include "ZUL_multi_data.h"
#include "ZUL_user_info.h"
#include "bytes.h"
#include "configurations.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

constexpr ZUL* noContainer = nullptr;

unsigned destinations(ZUL const& zul)
{
    return zul.getTagCount(ZUL_destination::tag_id);
}

unsigned userInfos(ZUL const& zul)
{
    return zul.getTagCount(ZUL_user_info::tag_id);
}

TEST(ConfigurationTag, SetDestinationTakesItsIndex)
{
    ZUL_multi_data config = freeConfig();
    ZUL_destination destination(noContainer, 9, 0x123, 4);
    config.setDestination(&destination);
    EXPECT_EQ(config.getDestination(), &destination);
    EXPECT_EQ(config.getIndex(), 9U);
    config.setDestination(nullptr);
    EXPECT_EQ(config.getDestination(), nullptr);
    EXPECT_EQ(config.getIndex(), 9U);
}

TEST(ConfigurationTag, BoardIsTheDestinationsElseTheLowHalfOfTheFpgaType)
{
    ZUL_multi_data config = freeConfig();
    config.setFpgaType(0x00012345);
    EXPECT_EQ(config.getBoardType(), 0x2345U);
    EXPECT_EQ(config.getBoardRevision(), 0U);
    ZUL_destination destination(noContainer, 1, 0x123, 4);
    config.setDestination(&destination);
    EXPECT_EQ(config.getBoardType(), 0x123U);
    EXPECT_EQ(config.getBoardRevision(), 4U);
    EXPECT_EQ(config.getFpgaType(), 0x00012345U);
}

TEST(ConfigurationTag, SetBoardChangesTheDestinationThatIsThere)
{
    ZUL_multi_data config = freeConfig();
    ZUL_destination destination(noContainer, 5, 1, 2);
    config.setDestination(&destination);
    config.setIndex(6);
    config.setBoard(0x321, 7);
    EXPECT_EQ(destination.getBoard(), 0x321U);
    EXPECT_EQ(destination.getRevision(), 7U);
    EXPECT_EQ(destination.getIndex(), 5U);
    EXPECT_EQ(config.getIndex(), 6U);
}

TEST(ConfigurationTag, SetBoardFindsTheContainersDestination)
{
    ZUL zul;
    fileDestination(zul, 2, 0x123, 4);
    fileDestination(zul, 1, 0x124, 4);
    fileDestination(zul, 1, 0x123, 5);
    ZUL_destination* const right = fileDestination(zul, 1, 0x123, 4);
    ZUL_multi_data* const config = fileConfig(zul, 0x101); // looked for by its low 8 bits
    config->setBoard(0x123, 4);
    EXPECT_EQ(config->getDestination(), right);
    EXPECT_EQ(config->getIndex(), 0x101U) << "the own index stays";
    EXPECT_EQ(destinations(zul), 4U);
}

TEST(ConfigurationTag, SetBoardAddsTheDestinationThatIsMissing)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 0x203);
    config->setBoard(0x123, 4);
    ASSERT_EQ(destinations(zul), 1U);
    ZUL_destination const* const added = config->getDestination();
    ASSERT_EQ(added, zul.getTagAt(ZUL_destination::tag_id, 0));
    EXPECT_EQ(added->getParent(), &zul);
    EXPECT_EQ(added->getIndex(), 3U);
    EXPECT_EQ(added->getBoard(), 0x123U);
    EXPECT_EQ(added->getRevision(), 4U);
    EXPECT_EQ(config->getIndex(), 0x203U);
}

TEST(ConfigurationTag, SetBoardNeedsDestinationOrContainer)
{
    ZUL_multi_data config = freeConfig();
    EXPECT_THROW(config.setBoard(1, 2), ZUL_invalid_data);
    EXPECT_EQ(config.getDestination(), nullptr);
}

TEST(ConfigurationTag, RemovedDestinationIsForgotten)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    config->setBoard(0x123, 4);
    zul.removeTag(config->getDestination());
    EXPECT_EQ(config->getDestination(), nullptr);
    EXPECT_EQ(config->getIndex(), 3U);
}

/// The name under which a configuration with @p index keeps its identifier.
std::string nameOfIdentifier(unsigned index)
{
    ZUL zul;
    fileConfig(zul, index)->setId("x");
    return static_cast<ZUL_user_info*>(zul.getTagAt(ZUL_user_info::tag_id, 0))->getInfo();
}

TEST(ConfigurationTag, IndexOverwritesTheBeginningOfTheIdentifiersName)
{
    EXPECT_EQ(nameOfIdentifier(0), ":0ZUL_MULTI_DATA_ID__");
    EXPECT_EQ(nameOfIdentifier(3), ":3ZUL_MULTI_DATA_ID__");
    EXPECT_EQ(nameOfIdentifier(12), ":12UL_MULTI_DATA_ID__");
    EXPECT_EQ(nameOfIdentifier(4294967295), ":4294967295_DATA_ID__");
}

TEST(ConfigurationTag, IdentifierIsStoredChangedAndRemovedInTheContainer)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    ZUL_multi_data* const other = fileConfig(zul, 4);
    EXPECT_EQ(config->getId(), nullptr);
    config->setId("first");
    EXPECT_STREQ(config->getId(), "first");
    EXPECT_EQ(other->getId(), nullptr);
    EXPECT_STREQ(zul.findUserInfo(":3ZUL_MULTI_DATA_ID__")->getInfoString(), "first");
    config->setId("second");
    EXPECT_STREQ(config->getId(), "second");
    EXPECT_EQ(userInfos(zul), 1U);
    config->setId("");
    EXPECT_STREQ(config->getId(), "");
    config->setId(nullptr);
    EXPECT_EQ(config->getId(), nullptr);
    EXPECT_EQ(userInfos(zul), 0U);
    config->setId(nullptr);
    EXPECT_EQ(userInfos(zul), 0U);
}

TEST(ConfigurationTag, IdentifierFollowsTheIndex)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    config->setId("of three");
    config->setIndex(4);
    EXPECT_EQ(config->getId(), nullptr);
    Bytes const bytes = configBytes("", 0, 3);
    config->Load(bytes.data(), bytes.size());
    EXPECT_STREQ(config->getId(), "of three");
    ZUL_destination destination(noContainer, 5, 0, 0);
    config->setDestination(&destination);
    EXPECT_EQ(config->getId(), nullptr);
    config->setDestination(nullptr);
}

TEST(ConfigurationTag, FirstUserInfoOfTheNameCounts)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    zul.AddTag(new ZUL_user_info(&zul, ":3ZUL_MULTI_DATA_ID__", "one"));
    zul.AddTag(new ZUL_user_info(&zul, ":3ZUL_MULTI_DATA_ID__", "two"));
    EXPECT_STREQ(config->getId(), "one");
    config->setId(nullptr);
    EXPECT_STREQ(config->getId(), "two") << "only the first one is removed";
}

TEST(ConfigurationTag, NumberUnderTheIdentifiersNameIsNoText)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    zul.AddTag(new ZUL_user_info(&zul, ":3ZUL_MULTI_DATA_ID__", 17U));
    EXPECT_EQ(config->getId(), nullptr);
    EXPECT_EQ(config->generateId(true), nullptr);
    EXPECT_EQ(userInfos(zul), 1U);
    config->setId("text");
    EXPECT_STREQ(config->getId(), "text");
    EXPECT_EQ(userInfos(zul), 1U);
}

TEST(ConfigurationTag, GenerateIdMakesOneOnceAndKeepsOneThatIsThere)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    EXPECT_STREQ(config->generateId(false), "__INVALID_ZUL_MULTI_DATA_ID__");
    EXPECT_STREQ(config->generateId(true), "__INVALID_ZUL_MULTI_DATA_ID__");
    EXPECT_EQ(userInfos(zul), 1U);
    EXPECT_STREQ(config->getId(), "__INVALID_ZUL_MULTI_DATA_ID__");
    config->setId("valid");
    EXPECT_STREQ(config->generateId(true), "valid");
    EXPECT_STREQ(config->generateId(false), "valid");
}

TEST(ConfigurationTag, IdentifierNeedsAContainer)
{
    ZUL_multi_data config = freeConfig();
    EXPECT_EQ(config.getId(), nullptr);
    EXPECT_NO_THROW(config.setId(nullptr));
    EXPECT_THROW(config.setId("id"), ZUL_invalid_data);
    EXPECT_THROW(config.generateId(true), ZUL_invalid_data);
}

void expectFieldsOfConfigBytes(ZUL_multi_data& config)
{
    EXPECT_EQ(savedBytes(config), configBytes("stream"));
}

TEST(ConfigurationTag, CopyOwnsItsBitstreamAndStartsWithTheSourcesContainer)
{
    ZUL zul;
    Bytes bytes = configBytes("stream");
    ZUL_multi_data source(&zul);
    source.Load(bytes.data(), bytes.size());
    ZUL_multi_data copy(source);
    ZUL_multi_data copyOfPointer(&std::as_const(source));
    bytes.setU32(88, 0);
    for (ZUL_multi_data* const each : {&copy, &copyOfPointer}) {
        EXPECT_EQ(each->getParent(), &zul);
        EXPECT_EQ(each->getDestination(), nullptr);
        expectFieldsOfConfigBytes(*each);
    }
}

TEST(ConfigurationTag, CopyFindsTheSourcesDestination)
{
    ZUL zul;
    ZUL_destination* const destination = fileDestination(zul, 3, 0x123, 4);
    ZUL_multi_data* const source = fileConfig(zul, 0);
    source->setDestination(destination);
    ZUL_multi_data const copy(*source);
    EXPECT_EQ(copy.getDestination(), destination);
    EXPECT_EQ(copy.getIndex(), 3U);
    EXPECT_EQ(destinations(zul), 1U);
}

TEST(ConfigurationTag, CopyAfterAChangeOfIndexGetsADestinationOfThatIndex)
{
    ZUL zul;
    ZUL_multi_data* const source = fileConfig(zul, 0);
    source->setDestination(fileDestination(zul, 3, 0x123, 4));
    source->setIndex(8);
    ZUL_multi_data const copy(*source);
    ASSERT_EQ(destinations(zul), 2U);
    EXPECT_EQ(copy.getDestination()->getIndex(), 8U);
    EXPECT_EQ(copy.getIndex(), 8U);
}

TEST(ConfigurationTag, AssignmentMakesTheDestinationInTheTargetsContainer)
{
    ZUL from;
    ZUL_multi_data* const source = fileConfig(from, 3);
    source->setBoard(0x123, 4);
    ZUL to;
    ZUL_multi_data* const target = fileConfig(to, 9);
    *target = *source;
    EXPECT_EQ(target->getParent(), &to);
    ASSERT_NE(target->getDestination(), nullptr);
    EXPECT_NE(target->getDestination(), source->getDestination());
    EXPECT_EQ(target->getDestination()->getParent(), &to);
    EXPECT_EQ(target->getDestination()->getIndex(), 3U);
    EXPECT_EQ(target->getBoardType(), 0x123U);
    EXPECT_EQ(target->getBoardRevision(), 4U);
    EXPECT_EQ(target->getIndex(), 3U);
    EXPECT_EQ(destinations(from), 1U);
    EXPECT_EQ(destinations(to), 1U);
}

TEST(ConfigurationTag, AssignmentChangesTheDestinationThatTheTargetHas)
{
    ZUL zul;
    ZUL_multi_data* const source = fileConfig(zul, 3);
    source->setBoard(0x123, 4);
    ZUL_multi_data* const target = fileConfig(zul, 9);
    target->setBoard(0x456, 7);
    ZUL_destination* const own = target->getDestination();
    *target = *source;
    EXPECT_EQ(target->getDestination(), own);
    EXPECT_EQ(own->getBoard(), 0x123U);
    EXPECT_EQ(own->getRevision(), 4U);
    EXPECT_EQ(own->getIndex(), 9U) << "its index is its own";
    EXPECT_EQ(target->getIndex(), 3U);
}

TEST(ConfigurationTag, AssignmentFromOneWithoutDestinationDeletesTheTargetsDestination)
{
    ZUL zul;
    ZUL_multi_data* const target = fileConfig(zul, 3);
    target->setBoard(0x123, 4);
    ZUL_multi_data* const sharer = fileConfig(zul, 3);
    sharer->setBoard(0x123, 4);
    ASSERT_EQ(target->getDestination(), sharer->getDestination());
    *target = freeConfig();
    EXPECT_EQ(target->getDestination(), nullptr);
    EXPECT_EQ(sharer->getDestination(), nullptr) << "nothing dangles";
    EXPECT_EQ(destinations(zul), 0U);
    EXPECT_EQ(target->getIndex(), 0U);
}

TEST(ConfigurationTag, AssignmentDropsADestinationThatHasNoContainer)
{
    ZUL_multi_data target = freeConfig();
    ZUL_destination destination(noContainer, 1, 2, 3);
    target.setDestination(&destination);
    target = freeConfig();
    EXPECT_EQ(target.getDestination(), nullptr);
    EXPECT_EQ(destination.getBoard(), 2U);
}

TEST(ConfigurationTag, FreeTargetStaysWithoutDestination)
{
    ZUL zul;
    ZUL_multi_data* const source = fileConfig(zul, 3);
    source->setBoard(0x123, 4);
    ZUL_multi_data target = freeConfig();
    target = *source;
    EXPECT_EQ(target.getDestination(), nullptr);
    EXPECT_EQ(target.getParent(), nullptr);
    EXPECT_EQ(target.getIndex(), 3U);
    EXPECT_EQ(destinations(zul), 1U);
    ZUL_multi_data freeSource = freeConfig();
    ZUL_destination destination(noContainer, 1, 2, 3);
    freeSource.setDestination(&destination);
    EXPECT_EQ(ZUL_multi_data(freeSource).getDestination(), nullptr);
}

TEST(ConfigurationTag, SelfAssignmentChangesNothing)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 3);
    Bytes const bytes = configBytes("stream");
    config->Load(bytes.data(), bytes.size());
    config->setBoard(0x123, 4);
    ZUL_destination const* const destination = config->getDestination();
    auto const& alias = *config;
    *config = alias;
    EXPECT_EQ(config->getData(), bytes.data() + 88) << "not even the loaded bytes are copied";
    EXPECT_EQ(config->getDestination(), destination);
    expectFieldsOfConfigBytes(*config);
}

TEST(ConfigurationTag, FieldsCanBeCopiedWithoutContainerAndDestination)
{
    ZUL from;
    ZUL_multi_data* const source = fileConfig(from, 0);
    Bytes const bytes = configBytes("stream");
    source->Load(bytes.data(), bytes.size());
    source->setBoard(0x123, 4);
    ZUL to;
    ZUL_multi_data* const target = fileConfig(to, 9);
    target->setBoard(0x456, 7);
    ZUL_destination const* const own = target->getDestination();
    target->copyFieldsFrom(*source);
    expectFieldsOfConfigBytes(*target);
    EXPECT_NE(target->getData(), source->getData());
    EXPECT_EQ(target->getParent(), &to);
    EXPECT_EQ(target->getDestination(), own);
    EXPECT_EQ(own->getBoard(), 0x456U);
    target->copyFieldsFrom(*target);
    expectFieldsOfConfigBytes(*target);
}

} // namespace
