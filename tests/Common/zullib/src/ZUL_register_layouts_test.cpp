#include "ZUL_register.h"

#include "coverage.h"
#include "registers.h"
#include "zul_class.h"

using namespace registers;

namespace {

constexpr ZULRegisterPolicy newPolicy{1};

} // namespace

TEST(RegisterTag, AnotherIdIsMalformed)
{
    for (std::uint32_t const id : {0x08151001U, 0x08151003U, 0U, 0xFFFFFFFFU}) {
        ZUL_register reg = emptyRegister();
        EXPECT_TRUE(loadThrows<ZUL_file_malformed_tag>(reg, oldRegister().setU32(0, id), id))
            << std::hex << id;
        EXPECT_EQ(reg.getTagId(), newId);
    }
}

TEST(RegisterTag, FewerBytesThanAHeaderAreABadLengthOfTheIdItHas)
{
    for (bool const old : {false, true}) {
        ZUL_register reg(noContainer, nullptr, old);
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, oldRegister().cut(7), old ? oldId : newId));
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, newRegister().cut(7), old ? oldId : newId));
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(reg, Bytes(), old ? oldId : newId));
    }
}

TEST(RegisterTag, LoadingTakesTheLayoutOfTheBytes)
{
    ZUL_register young(noContainer, "r", false);
    loadFrom(young, oldRegister());
    EXPECT_EQ(young.getTagId(), oldId);
    ZUL_register old(noContainer, "r", true);
    loadFrom(old, newRegister());
    EXPECT_EQ(old.getTagId(), newId);
}

TEST(RegisterTag, IsNewByItsIdOrByTheContainersPolicy)
{
    ZUL zul;
    ZUL_register old(&zul, "r", true);
    EXPECT_FALSE(old.iAmANewRegister());
    zul.setRegisterPolicy(newPolicy);
    EXPECT_TRUE(old.iAmANewRegister());
    zul.setRegisterPolicy(ZULRegisterPolicy{0xFFFFFFFF});
    EXPECT_TRUE(old.iAmANewRegister());
    zul.setRegisterPolicy(ZULRegisterPolicy{0});
    EXPECT_FALSE(old.iAmANewRegister());
    EXPECT_TRUE(ZUL_register(&zul, "r", false).iAmANewRegister());
    EXPECT_FALSE(ZUL_register(noContainer, "r", true).iAmANewRegister());
    EXPECT_TRUE(ZUL_register(noContainer, "r", false).iAmANewRegister());
}

TEST(RegisterTag, PolicySavesTheNewerLayoutButKeepsTheId)
{
    ZUL zul;
    ZUL_register reg(&zul, nullptr, true);
    loadFrom(reg, oldRegister());
    EXPECT_EQ(savedBytes(reg), oldRegister());
    zul.setRegisterPolicy(newPolicy);
    EXPECT_EQ(savedBytes(reg, 0xA5), newRegister().setU8(11, 32).setU32(16, 0x89ABCDEF).setU32(20, 0));
    EXPECT_EQ(reg.getTagId(), oldId);
    zul.setRegisterPolicy(ZULRegisterPolicy{0});
    EXPECT_EQ(savedBytes(reg), oldRegister());
}

TEST(RegisterTag, VisitCoversBothLayoutsOnce)
{
    ZUL_register reg = emptyRegister();
    VisitRecord const old = visited(reg, oldRegister());
    EXPECT_TRUE(coversOnce(old, 104));
    EXPECT_TRUE(old.problems.empty());
    EXPECT_EQ(old.at(32).text(), "dma_ctrl");
    EXPECT_EQ(old.at(96).kind, FieldKind::Reserved);
    VisitRecord const young = visited(reg, newRegister());
    EXPECT_TRUE(coversOnce(young, 40));
    EXPECT_TRUE(young.problems.empty());
    EXPECT_EQ(young.at(16).number(), 0x0123456789ABCDEFU);
    EXPECT_EQ(young.at(28).kind, FieldKind::Zero);
    EXPECT_EQ(young.at(32).text(), "dma_ctrl");
    EXPECT_TRUE(coversOnce(visited(reg, newRegister().cut(32).setU32(4, 32).setU32(24, 0)), 32));
}

TEST(RegisterTag, VisitNamesEveryBrokenRule)
{
    ZUL_register reg = emptyRegister();
    Bytes const damaged = newRegister().setU32(4, 41).setU8(8, 3).setU8(9, 2);
    VisitRecord const record = visited(reg, damaged);
    ASSERT_EQ(record.problems.size(), 3U);
    EXPECT_STREQ(record.problems[0].field, "length");
    EXPECT_EQ(record.problems[0].offset, 4U);
    EXPECT_EQ(record.problems[0].width, 4U);
    EXPECT_EQ(record.problems[0].expected, "40");
    EXPECT_EQ(record.problems[1].offset, 8U);
    EXPECT_EQ(record.problems[1].expected, "1 or 2");
    EXPECT_EQ(record.problems[1].found, "3");
    EXPECT_EQ(record.problems[2].offset, 9U);
    EXPECT_EQ(record.problems[2].expected, "0 or 1");
    EXPECT_EQ(record.problems[2].kind, TagProblem::Kind::Malformed);
    EXPECT_EQ(visited(reg, oldRegister().setU32(8, 0x101).setU32(20, 0x100)).problems.size(), 2U);
}

TEST(RegisterTag, VisitShowsCutTags)
{
    expectCutsAreShown(emptyRegister, oldRegister(), 104);
    expectCutsAreShown(emptyRegister, newRegister(), 32);
    expectCutsAreShown(emptyRegister, newRegister().setU32(4, 0xFFFFFFFF).setU32(24, 0xFFFFFFFF), 32);
}

TEST(RegisterTag, VisitKnowsTheLayoutByTheIdAlone)
{
    ZUL_register reg = emptyRegister();
    EXPECT_STREQ(visited(reg, oldRegister().cut(4)).at(20).name, "writable");
    EXPECT_STREQ(visited(reg, newRegister().cut(4)).at(9).name, "writable");
    EXPECT_STREQ(visited(reg, oldRegister().cut(3)).at(9).name, "writable") << "anything but the older one";
}
