#include "ZUL_event.h"

#include "events.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace events;

TEST_F(EventTag, BeginsWithoutNameAndRegister)
{
    ZUL_event const event(noContainer, 1, 2, 3);
    EXPECT_EQ(event.getUiq(), 1);
    EXPECT_EQ(event.getBit(), 2);
    EXPECT_EQ(event.getDataLen(), 3);
    EXPECT_EQ(event.getName(), nullptr);
    EXPECT_EQ(event.getRegister(), nullptr);
    EXPECT_EQ(event.getRegisterName(), nullptr);
    EXPECT_FALSE(event.isFirmwareEvent());
    EXPECT_EQ(event.getTagId(), eventId);
}

TEST_F(EventTag, StoresItsNumbers)
{
    ZUL_event event(noContainer, 0, 0, 0);
    event.setUiq(255);
    event.setBit(254);
    event.setDataLen(253);
    EXPECT_EQ(event.getUiq(), 255);
    EXPECT_EQ(event.getBit(), 254);
    EXPECT_EQ(event.getDataLen(), 253);
}

TEST_F(EventTag, NameOf256CharactersSavesATagThatIsRefused)
{
    std::string const name(256, 'n');
    ZUL_event event = loaded(eventBytes());
    event.setName(name.c_str());
    EXPECT_EQ(event.getName(), name);
    Bytes const expected =
        Bytes().u32(eventId).u32(16 + 256 + 9).u8(3).u8(17).u8(4).u8(0).u32(9).chars(name).chars("ev_status");
    EXPECT_EQ(savedBytes(event, 0xA5), expected);
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, expected, eventId));
}

TEST_F(EventTag, NameOf257CharactersIsRefused)
{
    ZUL_event event = loaded(eventBytes());
    for (std::size_t const length : {257U, 100'000U}) {
        EXPECT_EQ(thrown<std::invalid_argument>([&] { event.setName(std::string(length, 'n').c_str()); }),
                  "Name is too long for ZUL_event tag.");
    }
    EXPECT_STREQ(event.getName(), "overflow");
}

TEST_F(EventTag, NullAndEmptyNamesAreNone)
{
    ZUL_event event = loaded(eventBytes());
    event.setName(nullptr);
    EXPECT_EQ(event.getName(), nullptr);
    event.setName("again");
    event.setName("");
    EXPECT_EQ(event.getName(), nullptr);
}

TEST_F(EventTag, WithoutNameOrRegisterIsNotSaved)
{
    ZUL_event complete = loaded(eventBytes());
    ZUL_event nameless(complete);
    nameless.setName(nullptr);
    ZUL_event registerless(complete);
    registerless.setRegister(nullptr);
    ZUL_event neither = emptyEvent();
    for (ZUL_event* const event : {&nameless, &registerless, &neither}) {
        std::vector<std::byte> room(64, std::byte{0xA5});
        EXPECT_EQ(thrown<std::runtime_error>([&] { static_cast<void>(event->getSaveLength()); }),
                  "Cannot save ZUL_event without name and/or register.");
        EXPECT_EQ(thrown<std::runtime_error>([&] { event->Save(room.data()); }),
                  "Cannot save ZUL_event without name and/or register.");
        EXPECT_EQ(std::count(room.begin(), room.end(), std::byte{0xA5}), 64) << "nothing is written";
    }
}

TEST_F(EventTag, RegisterWithoutNameIsSavedWithLengthZero)
{
    ZUL_register const nameless(noContainer, nullptr, false);
    ZUL_event event = loaded(eventBytes());
    event.setRegister(&nameless);
    EXPECT_EQ(event.getRegisterName(), nullptr);
    EXPECT_EQ(savedBytes(event, 0xA5), eventBytes("overflow", ""));
}

TEST_F(EventTag, RenamedRegisterIsSavedUnderItsNewName)
{
    ZUL_event event = loaded(eventBytes());
    m_register->setName("renamed");
    EXPECT_STREQ(event.getRegisterName(), "renamed");
    EXPECT_EQ(savedBytes(event), eventBytes("overflow", "renamed"));
}

TEST_F(EventTag, FindsItsRegisterByName)
{
    ZUL_event event = emptyEvent();
    event.findMyRegister("ev_status");
    EXPECT_EQ(event.getRegister(), m_register);
    for (char const* const name : {static_cast<char const*>("unknown"), static_cast<char const*>(""),
                                   static_cast<char const*>(nullptr)}) {
        EXPECT_EQ(thrown<ZUL_file_bad_reference>([&] { event.findMyRegister(name); }), "dangling reference");
        EXPECT_EQ(event.getRegister(), m_register) << "nothing changes";
    }
    ZUL_event free(noContainer, 0, 0, 0);
    EXPECT_THROW(free.findMyRegister("ev_status"), ZUL_file_bad_reference);
}

TEST_F(EventTag, HasNoOrder)
{
    ZUL_event const event = emptyEvent();
    EXPECT_THROW(static_cast<void>(event < event), std::runtime_error);
    EXPECT_THROW(static_cast<void>(event == event), std::runtime_error);
}
