#include "ZUL_user_info.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "throwing.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr auto noType = static_cast<ZUL_user_info::type>(250);

Bytes infoBytes(std::string_view info, unsigned type, std::uint32_t value, std::string_view text)
{
    return Bytes().u32(0x8159000).u32(144).text(info, 64).u16(type).zeros(2).u32(value).text(text, 64);
}

/// An info that a failed load has left with a type that is none.
ZUL_user_info& spoil(ZUL_user_info& info)
{
    EXPECT_THROW(loadFrom(info, infoBytes("spoilt", 250, 7, "text")), ZUL_file_malformed_tag);
    return info;
}

void expectInteger(ZUL_user_info const& info, unsigned value)
{
    EXPECT_EQ(info.getType(), ZUL_user_info::integer);
    EXPECT_EQ(info.getInfoValue(), value);
    ASSERT_NE(info.getInfoValuePtr(), nullptr);
    EXPECT_EQ(*info.getInfoValuePtr(), value);
    EXPECT_EQ(info.getInfoString(), nullptr);
}

void expectText(ZUL_user_info const& info, char const* value)
{
    EXPECT_EQ(info.getType(), ZUL_user_info::text);
    EXPECT_EQ(info.getInfoValue(), 0U);
    EXPECT_EQ(info.getInfoValuePtr(), nullptr);
    EXPECT_STREQ(info.getInfoString(), value);
}

TEST(UserInfoTag, ConstructorTakesANumberOrAText)
{
    ZUL zul;
    ZUL_user_info const number(&zul, "lanes", 4U);
    EXPECT_EQ(number.getTagId(), 0x8159000U);
    EXPECT_EQ(ZUL_user_info::tag_id, 0x8159000U);
    EXPECT_EQ(number.getParent(), &zul);
    EXPECT_STREQ(number.getInfo(), "lanes");
    expectInteger(number, 4);
    ZUL_user_info const text(&zul, "mode", "fast");
    EXPECT_EQ(text.getParent(), &zul);
    EXPECT_STREQ(text.getInfo(), "mode");
    expectText(text, "fast");
}

TEST(UserInfoTag, TypesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<unsigned>(ZUL_user_info::integer), 200U);
    EXPECT_EQ(static_cast<unsigned>(ZUL_user_info::text), 300U);
}

TEST(UserInfoTag, SavesANumberWithZerosWhereATextWouldBe)
{
    ZUL_user_info info(noContainer, "lanes", 0xFFFFFFFFU);
    Bytes expected = infoBytes("lanes", 200, 0xFFFFFFFF, "");
    EXPECT_EQ(savedBytes(info), expected);
    expected.setU8(74, 0xA5).setU8(75, 0xA5); // two bytes are left as they are
    EXPECT_EQ(savedBytes(info, 0xA5), expected);
}

TEST(UserInfoTag, SavesATextWithZeroWhereANumberWouldBe)
{
    ZUL_user_info info(noContainer, "mode", "fast");
    EXPECT_EQ(savedBytes(info, 0xA5), infoBytes("mode", 300, 0, "fast").setU8(74, 0xA5).setU8(75, 0xA5));
}

TEST(UserInfoTag, SavesNulsWithoutNameAndText)
{
    ZUL_user_info info(noContainer, nullptr, nullptr);
    EXPECT_EQ(info.getInfo(), nullptr);
    expectText(info, nullptr);
    EXPECT_EQ(savedBytes(info, 0xA5), infoBytes("", 300, 0, "").setU8(74, 0xA5).setU8(75, 0xA5));
}

TEST(UserInfoTag, NameAndTextOfFullWidthAreSavedWithoutTerminatorAndLoadBack)
{
    std::string const name(64, 'n');
    std::string const value(64, 'v');
    ZUL_user_info info(noContainer, name.c_str(), value.c_str());
    Bytes const saved = savedBytes(info);
    EXPECT_EQ(saved, infoBytes(name, 300, 0, value));
    ZUL_user_info loaded(noContainer, nullptr, 0U);
    loadFrom(loaded, saved);
    EXPECT_EQ(loaded.getInfo(), name);
    expectText(loaded, value.c_str());
}

TEST(UserInfoTag, SettersCutAt64Characters)
{
    ZUL_user_info info(noContainer, nullptr, 0U);
    info.setInfo(std::string(70, 'n').c_str());
    info.setValue(std::string(70, 'v').c_str());
    EXPECT_EQ(info.getInfo(), std::string(64, 'n'));
    EXPECT_EQ(info.getInfoString(), std::string(64, 'v'));
    EXPECT_EQ(savedBytes(info), infoBytes(std::string(64, 'n'), 300, 0, std::string(64, 'v')));
}

TEST(UserInfoTag, SettersKnowNullAndEmptyTexts)
{
    ZUL_user_info info(noContainer, "name", "value");
    info.setInfo("");
    info.setValue("");
    EXPECT_STREQ(info.getInfo(), "");
    expectText(info, "");
    info.setInfo(nullptr);
    info.setValue(nullptr);
    EXPECT_EQ(info.getInfo(), nullptr);
    expectText(info, nullptr);
}

TEST(UserInfoTag, SetValueMakesTheType)
{
    ZUL_user_info info(noContainer, "name", 5U);
    info.setValue("text");
    expectText(info, "text");
    info.setValue(6U);
    expectInteger(info, 6);
    info.set("first", "one");
    EXPECT_STREQ(info.getInfo(), "first");
    expectText(info, "one");
    info.set("second", 2U);
    EXPECT_STREQ(info.getInfo(), "second");
    expectInteger(info, 2);
}

TEST(UserInfoTag, ChangeOfTypeLosesTheValue)
{
    ZUL_user_info info(noContainer, "name", 5U);
    info.setType(ZUL_user_info::text);
    expectText(info, nullptr);
    info.setType(ZUL_user_info::integer);
    expectInteger(info, 0);
    info.setValue("text");
    info.setType(ZUL_user_info::integer);
    expectInteger(info, 0);
    info.setType(ZUL_user_info::text);
    expectText(info, nullptr);
}

TEST(UserInfoTag, SettingTheSameOrNoTypeChangesNothing)
{
    ZUL_user_info number(noContainer, "name", 5U);
    ZUL_user_info text(noContainer, "name", "value");
    for (auto const type :
         {noType, static_cast<ZUL_user_info::type>(0), static_cast<ZUL_user_info::type>(200 + 65536)}) {
        number.setType(type);
        text.setType(type);
        expectInteger(number, 5);
        expectText(text, "value");
    }
    number.setType(ZUL_user_info::integer);
    text.setType(ZUL_user_info::text);
    expectInteger(number, 5);
    expectText(text, "value");
}

TEST(UserInfoTag, LoadsANumberAndIgnoresTheText)
{
    ZUL_user_info info(noContainer, "old", "old");
    EXPECT_EQ(loadFrom(info, infoBytes("lanes", 200, 0x12345678, "ignored").setU8(74, 1).setU8(75, 2)), 144U);
    EXPECT_STREQ(info.getInfo(), "lanes");
    expectInteger(info, 0x12345678);
    EXPECT_EQ(savedBytes(info), infoBytes("lanes", 200, 0x12345678, ""));
}

TEST(UserInfoTag, LoadsATextAndIgnoresTheNumber)
{
    ZUL_user_info info(noContainer, "old", 99U);
    EXPECT_EQ(loadFrom(info, infoBytes("mode", 300, 0x12345678, "slow")), 144U);
    EXPECT_STREQ(info.getInfo(), "mode");
    expectText(info, "slow");
    EXPECT_EQ(savedBytes(info), infoBytes("mode", 300, 0, "slow"));
    info.setType(ZUL_user_info::integer);
    expectInteger(info, 0);
}

TEST(UserInfoTag, LoadOfNulsGivesEmptyTexts)
{
    ZUL_user_info info(noContainer, "old", "old");
    loadFrom(info, infoBytes("", 300, 0, ""));
    EXPECT_STREQ(info.getInfo(), "");
    expectText(info, "");
}

TEST(UserInfoTag, EveryOtherLengthIsRefused)
{
    auto const make = [] { return ZUL_user_info(noContainer, nullptr, 0U); };
    expectFixedLength(make, infoBytes("name", 200, 1, ""), 0x8159000);
    expectFixedLength(make, infoBytes("name", 300, 0, "text"), 0x8159000);
}

TEST(UserInfoTag, EveryOtherTypeIsRefusedAfterTypeAndNameAreStored)
{
    for (unsigned const type : {0U, 199U, 201U, 250U, 299U, 301U, 0xFFFFU}) {
        ZUL_user_info info(noContainer, "old", 5U);
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(info, infoBytes("new", type, 1, "text"), 0x8159000))
            << type;
        EXPECT_STREQ(info.getInfo(), "new");
        EXPECT_EQ(static_cast<unsigned>(info.getType()), type);
        EXPECT_EQ(info.getInfoValue(), 0U);
        EXPECT_EQ(info.getInfoValuePtr(), nullptr);
        EXPECT_EQ(info.getInfoString(), nullptr);
    }
}

TEST(UserInfoTag, WrongLengthIsFoundBeforeTheType)
{
    ZUL_user_info info(noContainer, "old", 5U);
    Bytes const bytes = infoBytes("new", 250, 1, "").setU32(4, 145).u8(0);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(info, bytes, 0x8159000));
    EXPECT_STREQ(info.getInfo(), "old");
    expectInteger(info, 5);
}

TEST(UserInfoTag, InvalidTypeIsMeasuredButNotSaved)
{
    ZUL_user_info info(noContainer, "name", 5U);
    spoil(info);
    EXPECT_EQ(info.getSaveLength(), 144U);
    Bytes buffer = Bytes().fill(0xA5, 144);
    EXPECT_TRUE(throws<std::runtime_error>([&] { info.Save(buffer.data()); },
                                           "Tried to save a zul_user_info with an invalid type"));
    Bytes const written = Bytes().u32(0x8159000).u32(144).text("spoilt", 64).u16(250).fill(0xA5, 70);
    EXPECT_EQ(buffer, written) << "header, name and type are written by then";
}

TEST(UserInfoTag, InvalidTypeIsNotCopiedButCanBeRepaired)
{
    ZUL_user_info source(noContainer, "name", 5U);
    spoil(source);
    ZUL_user_info target(noContainer, "target", "text");
    EXPECT_TRUE(throws<std::runtime_error>([&] { target = source; }, "Invalid type in ZUL_user_info"));
    EXPECT_THROW(ZUL_user_info{source}, std::runtime_error);
    EXPECT_THROW(ZUL_user_info{&std::as_const(source)}, std::runtime_error);
    auto const& alias = source;
    EXPECT_NO_THROW(source = alias) << "assigning to itself changes nothing";
    source.setType(ZUL_user_info::text);
    expectText(source, nullptr);
    spoil(source).setType(ZUL_user_info::integer);
    expectInteger(source, 0);
}

TEST(UserInfoTag, CopiesAreDeepAndFree)
{
    ZUL zul;
    ZUL_user_info text(&zul, "mode", "fast");
    ZUL_user_info const copy(text);
    ZUL_user_info const copyOfPointer(&std::as_const(text));
    text.set("changed", "slow");
    for (ZUL_user_info const* const each : {&copy, &copyOfPointer}) {
        EXPECT_EQ(each->getParent(), nullptr);
        EXPECT_STREQ(each->getInfo(), "mode");
        expectText(*each, "fast");
    }
    ZUL_user_info const number(noContainer, "lanes", 4U);
    expectInteger(ZUL_user_info(number), 4);
}

TEST(UserInfoTag, AssignmentTakesNameTypeAndValueAndKeepsTheContainer)
{
    ZUL zul;
    ZUL_user_info target(&zul, "mode", "fast");
    target = ZUL_user_info(noContainer, "lanes", 4U);
    EXPECT_EQ(target.getParent(), &zul);
    EXPECT_STREQ(target.getInfo(), "lanes");
    expectInteger(target, 4);
    target = ZUL_user_info(noContainer, nullptr, "text");
    EXPECT_EQ(target.getInfo(), nullptr);
    expectText(target, "text");
    target.setType(ZUL_user_info::integer);
    expectInteger(target, 0);
}

TEST(UserInfoTag, SelfAssignmentChangesNothing)
{
    ZUL_user_info info(noContainer, "mode", "fast");
    auto const& alias = info;
    info = alias;
    EXPECT_STREQ(info.getInfo(), "mode");
    expectText(info, "fast");
}

TEST(UserInfoTag, ContainerFindsItByAChangedName)
{
    ZUL zul;
    auto* const info = new ZUL_user_info(&zul, "first", 1U);
    zul.AddTag(info);
    ASSERT_EQ(zul.findUserInfo("first"), info);
    info->setInfo("second");
    EXPECT_EQ(zul.findUserInfo("second"), info);
    EXPECT_EQ(zul.findUserInfo("first"), nullptr);
    info->set("third", 3U);
    EXPECT_EQ(zul.findUserInfo("third"), info);
    info->set("fourth", "4");
    EXPECT_EQ(zul.findUserInfo("fourth"), info);
    *info = ZUL_user_info(noContainer, "fifth", 5U);
    EXPECT_EQ(zul.findUserInfo("fifth"), info);
    loadFrom(*info, infoBytes("sixth", 200, 6, ""));
    EXPECT_EQ(zul.findUserInfo("sixth"), info);
    info->setInfo(nullptr);
    EXPECT_EQ(zul.findUserInfo("sixth"), nullptr);
}

TEST(UserInfoTag, ContainerFindsItByTheNameThatAFailedChangeLeft)
{
    ZUL zul;
    auto* const info = new ZUL_user_info(&zul, "first", 1U);
    zul.AddTag(info);
    ASSERT_EQ(zul.findUserInfo("first"), info);
    spoil(*info);
    EXPECT_EQ(zul.findUserInfo("spoilt"), info);
    EXPECT_EQ(zul.findUserInfo("first"), nullptr);
    ZUL_user_info other(noContainer, "name", 1U);
    spoil(other).setInfo("assigned");
    EXPECT_THROW(*info = other, std::runtime_error);
    EXPECT_EQ(zul.findUserInfo("assigned"), info);
}

TEST(UserInfoTag, VisitShowsEveryByteOnceForBothTypes)
{
    auto const make = [] { return ZUL_user_info(noContainer, nullptr, 0U); };
    for (Bytes const& bytes : {infoBytes("lanes", 200, 4, ""), infoBytes("mode", 300, 0, "fast")}) {
        ZUL_user_info info = make();
        VisitRecord const record = visited(info, bytes);
        EXPECT_TRUE(coversOnce(record, 144));
        EXPECT_TRUE(record.problems.empty());
        EXPECT_STREQ(record.at(8).name, "info");
        EXPECT_STREQ(record.at(72).name, "type");
        EXPECT_EQ(record.at(74).kind, FieldKind::Reserved);
        expectCutsAreShown(make, bytes, 144);
    }
    Bytes const number = infoBytes("lanes", 200, 4, "");
    ZUL_user_info info = make();
    EXPECT_EQ(visited(info, number).at(76).number(), 4U);
    EXPECT_EQ(visited(info, number).at(80).kind, FieldKind::Zero);
    Bytes const text = infoBytes("mode", 300, 0, "fast");
    EXPECT_EQ(visited(info, text).at(76).kind, FieldKind::Zero);
    EXPECT_EQ(visited(info, text).at(80).text(), "fast");
}

TEST(UserInfoTag, VisitShowsAnInvalidTypeAndGoesOn)
{
    ZUL_user_info info(noContainer, nullptr, 0U);
    Bytes const bytes = infoBytes("name", 250, 1, "text");
    VisitRecord const record = visited(info, bytes);
    EXPECT_TRUE(coversOnce(record, 144));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(record.problems[0].offset, 72U);
    EXPECT_STREQ(record.problems[0].field, "type");
    EXPECT_EQ(record.problems[0].expected, "200 or 300");
    EXPECT_EQ(record.problems[0].found, "250");
}

} // namespace
