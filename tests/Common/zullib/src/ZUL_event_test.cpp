#include "ZUL_event.h"

#include "ZUL_register.h"
#include "ZUL_register_link.h"
#include "bytes.h"
#include "coverage.h"
#include "loading.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::uint32_t eventId = 0x08156576;

ZUL* const noContainer = nullptr;

Bytes eventBytes(std::string const& name = "overflow", std::string const& registerName = "ev_status")
{
    return Bytes()
        .u32(0x08156576)
        .u32(static_cast<std::uint32_t>(16 + name.size() + registerName.size()))
        .u8(3)  // uiq
        .u8(17) // bit
        .u8(4)  // data length
        .u8(name.size())
        .u32(registerName.size())
        .chars(name)
        .chars(registerName);
}

ZUL_register* addRegister(ZUL& zul, char const* name)
{
    auto* const reg = new ZUL_register(&zul, name, false);
    zul.AddTag(reg);
    return reg;
}

/// A container with the register that eventBytes() names.
class EventTag : public testing::Test {
protected:
    ZUL_event emptyEvent() { return {&m_zul, 0, 0, 0}; }
    ZUL_event loaded(Bytes const& bytes)
    {
        ZUL_event event(&m_zul, 0, 0, 0);
        EXPECT_EQ(loadFrom(event, bytes), bytes.size());
        return event;
    }

    ZUL m_zul;
    ZUL_register* m_register = addRegister(m_zul, "ev_status");
};

template <class Error>
std::string thrown(std::function<void()> const& action)
{
    try {
        action();
    } catch (Error const& error) {
        return error.what();
    }
    return "nothing thrown";
}

} // namespace

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

TEST_F(EventTag, LoadsEveryFieldAndFindsItsRegister)
{
    ZUL_event const event = loaded(eventBytes());
    EXPECT_EQ(event.getUiq(), 3);
    EXPECT_EQ(event.getBit(), 17);
    EXPECT_EQ(event.getDataLen(), 4);
    EXPECT_STREQ(event.getName(), "overflow");
    EXPECT_EQ(event.getRegister(), m_register);
    EXPECT_STREQ(event.getRegisterName(), "ev_status");
}

TEST_F(EventTag, SavesEveryByte)
{
    ZUL_event event(&m_zul, 3, 17, 4);
    event.setName("overflow");
    event.setRegister(m_register);
    EXPECT_EQ(savedBytes(event, 0xA5), eventBytes());
    EXPECT_EQ(savedBytes(event, 0x00), eventBytes());
}

TEST_F(EventTag, NeedsAnHonestNumberOfBytes)
{
    for (std::size_t avail = 0; avail < eventBytes().size(); ++avail) {
        ZUL_event event = emptyEvent();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(event, eventBytes().cut(avail), eventId)) << avail;
    }
    ZUL_event event = emptyEvent();
    EXPECT_EQ(loadFrom(event, eventBytes().fill(0xFF, 32)), eventBytes().size());
}

TEST_F(EventTag, LengthBeyondTheBytesIsABadLength)
{
    for (std::uint32_t const length : {34U, 35U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_event event = emptyEvent();
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(event, eventBytes().setU32(4, length), eventId))
            << length;
    }
}

TEST_F(EventTag, LengthsThatDoNotAddUpAreMalformed)
{
    for (std::uint32_t const length : {0U, 8U, 15U, 16U, 32U, 34U}) {
        ZUL_event event = emptyEvent();
        Bytes const bytes = eventBytes().setU32(4, length).fill(0, 8);
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, bytes, eventId)) << length;
    }
    for (unsigned const nameLength : {0U, 7U, 9U, 255U}) {
        ZUL_event event = emptyEvent();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, eventBytes().setU8(11, nameLength), eventId))
            << nameLength;
    }
    for (std::uint32_t const registerNameLength : {0U, 8U, 10U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL_event event = emptyEvent();
        Bytes const bytes = eventBytes().setU32(12, registerNameLength);
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, bytes, eventId)) << registerNameLength;
    }
}

TEST_F(EventTag, LengthsThatMeetOnlyIn32BitsAreMalformed)
{
    // 16 + 8 + 0xFFFFFFF9 is 17 in 32 bits.
    ZUL_event event = emptyEvent();
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, eventBytes().setU32(4, 17).setU32(12, 0xFFFFFFF9),
                                                   eventId));
}

TEST_F(EventTag, UnknownRegisterIsABadReference)
{
    ZUL_event event = emptyEvent();
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(event, eventBytes("overflow", "ev_statu"), eventId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(event, eventBytes("overflow", "ev_status2"), eventId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(event, eventBytes("overflow", ""), eventId));
    ZUL_event free(noContainer, 0, 0, 0);
    EXPECT_TRUE(loadThrows<ZUL_file_bad_reference>(free, eventBytes(), eventId));
}

TEST_F(EventTag, LengthsAreCheckedBeforeTheRegisterIsLookedUp)
{
    ZUL_event event = emptyEvent();
    Bytes const unknown = eventBytes("overflow", "unknown");
    EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(event, Bytes(unknown).setU32(4, 30), eventId));
    EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(event, Bytes(unknown).setU32(4, 32), eventId));
}

TEST_F(EventTag, RegisterMayBeNamedByAnAlias)
{
    m_zul.AddTag(new ZUL_register_link(&m_zul, "alias", "ev_status"));
    ZUL_event event = loaded(eventBytes("overflow", "alias"));
    EXPECT_EQ(event.getRegister(), m_register);
    EXPECT_EQ(savedBytes(event), eventBytes()) << "the register's own name is saved";
}

TEST_F(EventTag, RegisterNameEndsAtItsFirstNul)
{
    ZUL_event event = loaded(eventBytes("overflow", std::string("ev_status\0rest", 14)));
    EXPECT_EQ(event.getRegister(), m_register);
}

TEST_F(EventTag, RegisterNameMayBeLong)
{
    std::string const name(5000, 'r');
    ZUL_register const* const reg = addRegister(m_zul, name.c_str());
    ZUL_event event = loaded(eventBytes("overflow", name));
    EXPECT_EQ(event.getRegister(), reg);
    EXPECT_EQ(savedBytes(event), eventBytes("overflow", name));
}

TEST_F(EventTag, NameOf255CharactersComesBack)
{
    std::string const name(255, 'n');
    ZUL_event event = loaded(eventBytes(name));
    EXPECT_EQ(event.getName(), name);
    EXPECT_EQ(savedBytes(event), eventBytes(name));
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

TEST_F(EventTag, LoadedNameOfLengthZeroIsNone)
{
    ZUL_event event = emptyEvent();
    event.setName("before");
    loadFrom(event, eventBytes(""));
    EXPECT_EQ(event.getName(), nullptr);
}

TEST_F(EventTag, NameEndsAtItsFirstNul)
{
    ZUL_event event = loaded(eventBytes().setU8(16 + 4, 0));
    EXPECT_STREQ(event.getName(), "over");
    EXPECT_EQ(savedBytes(event), eventBytes("over"));
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

TEST_F(EventTag, FirmwareFlagLastsUntilLoadOrCopy)
{
    ZUL_event event = loaded(eventBytes());
    event.flagAsFirmwareEvent();
    EXPECT_TRUE(event.isFirmwareEvent());
    EXPECT_EQ(savedBytes(event), eventBytes()) << "it is not saved";
    EXPECT_TRUE(event.isFirmwareEvent());
    EXPECT_FALSE(ZUL_event(event).isFirmwareEvent());
    EXPECT_FALSE(ZUL_event(&event).isFirmwareEvent());

    ZUL_event assigned = emptyEvent();
    assigned = event;
    EXPECT_FALSE(assigned.isFirmwareEvent());
    assigned.flagAsFirmwareEvent();
    assigned = event;
    EXPECT_FALSE(assigned.isFirmwareEvent());
    loadFrom(event, eventBytes());
    EXPECT_FALSE(event.isFirmwareEvent());
}

TEST_F(EventTag, CopyStartsInTheSourcesContainer)
{
    ZUL_event const source = loaded(eventBytes());
    ZUL_event copy(source);
    EXPECT_EQ(copy.getParent(), &m_zul);
    EXPECT_EQ(copy.getRegister(), m_register);
    EXPECT_EQ(savedBytes(copy), eventBytes());
    EXPECT_NE(copy.getName(), source.getName()) << "the text is its own";
    ZUL_event fromPointer(&source);
    EXPECT_EQ(fromPointer.getParent(), &m_zul);
    EXPECT_EQ(savedBytes(fromPointer), eventBytes());
}

TEST_F(EventTag, CopyLooksTheRegisterUpByName)
{
    ZUL_event source = loaded(eventBytes());
    ZUL_register const twin(noContainer, "ev_status", false);
    source.setRegister(&twin);
    EXPECT_EQ(ZUL_event(source).getRegister(), m_register);
    ZUL_register const stranger(noContainer, "stranger", false);
    source.setRegister(&stranger);
    EXPECT_THROW(ZUL_event{source}, ZUL_file_bad_reference);
    EXPECT_THROW(ZUL_event{&source}, ZUL_file_bad_reference);
    ZUL_register const nameless(noContainer, nullptr, false);
    source.setRegister(&nameless);
    EXPECT_THROW(ZUL_event{source}, ZUL_file_bad_reference);
}

TEST_F(EventTag, CopyOfAFreeEventHasNeitherContainerNorRegister)
{
    ZUL_event free(noContainer, 1, 2, 3);
    free.setName("free");
    ZUL_event const copy(free);
    EXPECT_EQ(copy.getParent(), nullptr);
    EXPECT_EQ(copy.getRegister(), nullptr);
    EXPECT_STREQ(copy.getName(), "free");
    free.setRegister(m_register);
    EXPECT_THROW(ZUL_event{free}, ZUL_file_bad_reference);
}

TEST_F(EventTag, AssignmentTakesTheRegisterOfItsOwnContainer)
{
    ZUL other;
    ZUL_register const* const own = addRegister(other, "ev_status");
    ZUL_event target(&other, 0, 0, 0);
    target = loaded(eventBytes());
    EXPECT_EQ(target.getParent(), &other);
    EXPECT_EQ(target.getRegister(), own);
    EXPECT_EQ(savedBytes(target), eventBytes());
}

TEST_F(EventTag, AssignmentWithoutThatRegisterIsRefusedAndChangesNothing)
{
    ZUL other;
    ZUL_register const* const own = addRegister(other, "own");
    ZUL_event target(&other, 1, 2, 3);
    target.setName("target");
    target.setRegister(own);
    target.flagAsFirmwareEvent();
    Bytes const before = savedBytes(target);
    try {
        target = loaded(eventBytes());
        FAIL() << "taken";
    } catch (ZUL_file_bad_reference const& error) {
        EXPECT_EQ(error.getTagId(), eventId);
    }
    EXPECT_EQ(savedBytes(target), before);
    EXPECT_TRUE(target.isFirmwareEvent());
}

TEST_F(EventTag, AssignmentFromAnEventWithoutRegisterTakesTheRegisterAway)
{
    ZUL_event target = loaded(eventBytes());
    ZUL_event source(noContainer, 1, 2, 3);
    target = source;
    EXPECT_EQ(target.getRegister(), nullptr);
    EXPECT_EQ(target.getName(), nullptr);
    EXPECT_EQ(target.getUiq(), 1);
    EXPECT_EQ(target.getBit(), 2);
    EXPECT_EQ(target.getDataLen(), 3);
    EXPECT_EQ(target.getParent(), &m_zul);
}

TEST_F(EventTag, AssigningItselfChangesNothing)
{
    ZUL_event event = loaded(eventBytes());
    event.flagAsFirmwareEvent();
    ZUL_register const stranger(noContainer, "stranger", false);
    event.setRegister(&stranger); // a look-up would be refused
    event = std::as_const(event);
    EXPECT_EQ(event.getRegister(), &stranger);
    EXPECT_TRUE(event.isFirmwareEvent());
    EXPECT_STREQ(event.getName(), "overflow");
}

TEST_F(EventTag, HasNoOrder)
{
    ZUL_event const event = emptyEvent();
    EXPECT_THROW(static_cast<void>(event < event), std::runtime_error);
    EXPECT_THROW(static_cast<void>(event == event), std::runtime_error);
}

TEST_F(EventTag, VisitCoversItOnceAndNamesEveryBrokenRule)
{
    ZUL_event event(noContainer, 0, 0, 0);
    VisitRecord const honest = visited(event, eventBytes());
    EXPECT_TRUE(coversOnce(honest, 33));
    EXPECT_TRUE(honest.problems.empty());
    EXPECT_EQ(honest.at(11).kind, FieldKind::TailLength);
    EXPECT_EQ(honest.at(16).text(), "overflow");
    EXPECT_EQ(honest.at(24).kind, FieldKind::RegisterReference);
    EXPECT_EQ(honest.at(24).text(), "ev_status");
    VisitRecord const damaged = visited(event, eventBytes().setU8(11, 9));
    ASSERT_EQ(damaged.problems.size(), 1U);
    EXPECT_EQ(damaged.problems[0].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(damaged.problems[0].expected, "34");
    EXPECT_EQ(damaged.problems[0].found, "33");
    auto const free = [] { return ZUL_event(noContainer, 0, 0, 0); };
    expectCutsAreShown(free, eventBytes(), 16);
    expectCutsAreShown(free, eventBytes().setU32(12, 0xFFFFFFFF), 16);
}
