#include "ZUL_event.h"

#include "events.h"

#include <utility>

using namespace events;

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
