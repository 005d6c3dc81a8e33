#include "ZUL_event.h"

#include "ZUL_register_link.h"
#include "coverage.h"
#include "events.h"

#include <string>

using namespace events;

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
