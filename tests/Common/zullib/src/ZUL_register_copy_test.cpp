#include "ZUL_register.h"

#include "registers.h"
#include "zul_class.h"

#include <stdexcept>
#include <string>
#include <utility>

using namespace registers;

TEST(RegisterTag, CopyTakesEverythingAndTheSourcesLayout)
{
    for (bool const flag : {false, true}) {
        for (Bytes const& bytes : {oldRegister(), newRegister()}) {
            ZUL_register const source = loaded(bytes);
            ZUL_register const copy(source, flag);
            EXPECT_EQ(values(copy), values(source));
            EXPECT_STREQ(copy.getName(), "dma_ctrl");
            EXPECT_NE(copy.getName(), source.getName()) << "the text is its own";
            EXPECT_EQ(values(ZUL_register(&source, flag)), values(source));
            EXPECT_STREQ(ZUL_register(&source, flag).getName(), "dma_ctrl");
        }
    }
}

TEST(RegisterTag, CopyStartsWithoutContainer)
{
    ZUL zul;
    ZUL_register const source(&zul, "r", false);
    EXPECT_EQ(ZUL_register(source).getParent(), nullptr);
    EXPECT_EQ(ZUL_register(&source).getParent(), nullptr);
}

TEST(RegisterTag, CopyOfAnEmptyNameHasNone)
{
    ZUL_register const source = loaded(oldRegister().cut(32).zeros(72));
    ASSERT_STREQ(source.getName(), "");
    EXPECT_EQ(ZUL_register(source).getName(), nullptr);
}

TEST(RegisterTag, AssignmentTakesEverythingButTheContainer)
{
    ZUL zul;
    for (Bytes const& bytes : {oldRegister(), newRegister()}) {
        ZUL_register const source = loaded(bytes);
        ZUL_register target(&zul, std::string(65, 't').c_str(), false);
        target = source;
        EXPECT_EQ(values(target), values(source));
        EXPECT_STREQ(target.getName(), "dma_ctrl");
        EXPECT_EQ(target.getParent(), &zul);
    }
}

TEST(RegisterTag, AssignmentSetsTheNameThroughSetName)
{
    class Listening : public ZUL_register {
    public:
        using ZUL_register::operator=;
        Listening() : ZUL_register(noContainer, nullptr, false) {}
        void setName(char const* name) override
        {
            ++calls;
            ZUL_register::setName(name);
        }
        int calls = 0;
    };
    Listening target;
    target = ZUL_register(noContainer, "r", true);
    EXPECT_EQ(target.calls, 1);
    EXPECT_STREQ(target.getName(), "r");
}

TEST(RegisterTag, AssigningItselfChangesNothing)
{
    for (Bytes const& bytes : {oldRegister(), newRegister(), oldRegister().cut(32).zeros(72)}) {
        ZUL_register reg = loaded(bytes);
        reg = std::as_const(reg);
        EXPECT_EQ(savedBytes(reg), bytes);
        EXPECT_NE(reg.getName(), nullptr);
    }
}

TEST(RegisterTag, HasNoOrder)
{
    ZUL_register const a(noContainer, "a", false);
    ZUL_register const b(noContainer, "b", false);
    EXPECT_THROW(static_cast<void>(a < b), std::runtime_error);
    EXPECT_THROW(static_cast<void>(a == b), std::runtime_error);
}

TEST(RegisterTag, ContainerFindsARenamedRegister)
{
    ZUL zul;
    auto* const reg = new ZUL_register(&zul, "before", false);
    zul.AddTag(reg);
    ASSERT_EQ(zul.findRegister("before"), reg);
    reg->setName("after");
    EXPECT_EQ(zul.findRegister("before"), nullptr);
    EXPECT_EQ(zul.findRegister("after"), reg);
    *reg = ZUL_register(noContainer, "assigned", false);
    EXPECT_EQ(zul.findRegister("after"), nullptr);
    EXPECT_EQ(zul.findRegister("assigned"), reg);
    loadFrom(*reg, newRegister());
    EXPECT_EQ(zul.findRegister("dma_ctrl"), reg);
}

TEST(RegisterTag, ContainerCountsARegisterThatChangedItsLayout)
{
    ZUL zul;
    auto* const reg = new ZUL_register(&zul, "r", true);
    zul.AddTag(reg);
    ASSERT_EQ(zul.getTagCount(oldId), 1U);
    ASSERT_EQ(zul.getTagCount(newId), 0U);
    reg->setName(std::string(65, 'n').c_str());
    EXPECT_EQ(zul.getTagCount(oldId), 0U);
    EXPECT_EQ(zul.getTagCount(newId), 1U);
    EXPECT_EQ(zul.getTagAt(newId, 0), reg);
    *reg = ZUL_register(noContainer, "back", true);
    EXPECT_EQ(zul.getTagCount(oldId), 1U);
    EXPECT_EQ(zul.getTagCount(newId), 0U);
}

TEST(RegisterTag, ContainerThatIsAskedWhileARegisterIsAssignedIsNotLeftBehind)
{
    class Asking : public ZUL_register {
    public:
        using ZUL_register::operator=;
        explicit Asking(ZUL& zul) : ZUL_register(&zul, "r", false), m_zul(zul) {}
        void setName(char const* name) override
        {
            ZUL_register::setName(name);
            static_cast<void>(m_zul.getTagCount(oldId));
        }

    private:
        ZUL& m_zul;
    };
    ZUL zul;
    auto* const reg = new Asking(zul);
    zul.AddTag(reg);
    *reg = ZUL_register(noContainer, "old", true);
    EXPECT_EQ(zul.getTagCount(oldId), 1U);
    EXPECT_EQ(zul.getTagCount(newId), 0U);
}
