#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr ZUL* noContainer = nullptr;

/// Both ways to copy a container; the target of the assignment holds something else before.
void forBothCopies(ZUL const& source, std::function<void(ZUL&)> const& check)
{
    {
        SCOPED_TRACE("construction");
        ZUL copy(source);
        check(copy);
    }
    SCOPED_TRACE("assignment");
    ZUL copy;
    copy.setAuthor("somebody else");
    copy.AddTag(new ZUL_process(&copy, 99, "of the target"));
    copy.AddConfig(new ZUL_multi_data(&copy), "of the target");
    EXPECT_EQ(copy.getTagCount(ZUL_process::tag_id), 1U);
    EXPECT_EQ(copy.getRegisterByName("CameraControl"), 0U);
    copy = source;
    check(copy);
}

template <class Tag>
Tag* tagOf(ZUL const& zul, unsigned i = 0)
{
    return dynamic_cast<Tag*>(zul.getTagAt(Tag::tag_id, i));
}

TEST(ContainerCopy, SavesTheSameBytesAfterTheSourceIsGone)
{
    auto source = std::make_unique<LoadedContainer>(sample::everyKind());
    auto const copy = std::make_unique<ZUL>(source->zul);
    ZUL assigned;
    assigned = source->zul;
    source.reset(); // with the loaded buffer
    EXPECT_EQ(savedContainer(*copy), sample::everyKind());
    EXPECT_EQ(savedContainer(assigned), sample::everyKind());
}

TEST(ContainerCopy, TagsBelongToTheCopy)
{
    LoadedContainer const source(sample::everyKind());
    forBothCopies(source.zul, [](ZUL& copy) {
        EXPECT_EQ(copy.getTotalTagCount(), 28U);
        for (std::uint32_t const id : savedIds(sample::everyKind())) {
            for (unsigned i = 0; i < copy.getTagCount(id); ++i) {
                EXPECT_EQ(copy.getTagAt(id, i)->getParent(), &copy) << std::hex << id;
            }
        }
        EXPECT_EQ(copy.getConfigAt(0)->getParent(), &copy);
    });
}

TEST(ContainerCopy, ReferencesPointIntoTheCopy)
{
    LoadedContainer const source(sample::everyKind());
    forBothCopies(source.zul, [](ZUL& copy) {
        auto const* const module = tagOf<ZUL_module>(copy);
        EXPECT_EQ(module->getProcess(), tagOf<ZUL_process>(copy));
        EXPECT_EQ(tagOf<ZUL_param>(copy)->getModule(), module);
        EXPECT_EQ(tagOf<ZUL_channel_param>(copy)->getModule(), module);
        EXPECT_EQ(tagOf<ZUL_camparam>(copy)->getModule(), module);
        EXPECT_EQ(tagOf<ZUL_dma_param>(copy)->getModule(), module);
        EXPECT_EQ(tagOf<ZUL_param_link>(copy)->getSourceModule(), module);
        EXPECT_EQ(tagOf<ZUL_param_link>(copy)->getDestinationModule(), module);
        EXPECT_EQ(tagOf<ZUL_event>(copy)->getRegister(), copy.findRegister("FrameCounter"));
        EXPECT_EQ(copy.getConfigAt(0)->getDestination(), tagOf<ZUL_destination>(copy));
    });
}

TEST(ContainerCopy, ReferencesToTagsBehindTheirUserPointIntoTheCopy)
{
    ZUL source;
    auto* const module = new ZUL_module(&source, nullptr);
    source.AddTag(module);
    auto* const process = new ZUL_process(&source, 5, "later");
    source.AddTag(process);
    module->setProcess(process);
    forBothCopies(source, [](ZUL& copy) {
        EXPECT_EQ(tagOf<ZUL_module>(copy)->getProcess(), tagOf<ZUL_process>(copy));
    });
}

TEST(ContainerCopy, ReferencesToNothingAndToOutsideStay)
{
    ZUL_process const outside(nullptr, 3, "outside");
    ZUL_destination destination(nullptr, 9, 1, 1);
    ZUL source;
    for (ZUL_process const* const process : {static_cast<ZUL_process const*>(nullptr), &outside}) {
        source.AddTag(new ZUL_module(&source, process));
    }
    source.AddTag(new ZUL_param(&source, QL_ParamType{1}, nullptr));
    source.AddTag(new ZUL_event(&source, 1, 2, 3));
    source.AddConfig(new ZUL_multi_data(&source), nullptr);
    source.AddConfig(new ZUL_multi_data(&source), nullptr);
    source.getConfigAt(1)->setDestination(&destination);
    source.getConfigAt(1)->setIndex(4);
    forBothCopies(source, [&](ZUL& copy) {
        EXPECT_EQ(tagOf<ZUL_module>(copy, 0)->getProcess(), nullptr);
        EXPECT_EQ(tagOf<ZUL_module>(copy, 1)->getProcess(), &outside);
        EXPECT_EQ(tagOf<ZUL_param>(copy)->getModule(), nullptr);
        EXPECT_EQ(tagOf<ZUL_event>(copy)->getRegister(), nullptr);
        EXPECT_EQ(copy.getConfigAt(0)->getDestination(), nullptr);
        EXPECT_EQ(copy.getConfigAt(1)->getDestination(), &destination);
        EXPECT_EQ(copy.getConfigAt(1)->getIndex(), 4U) << "not taken from the destination";
    });
}

TEST(ContainerCopy, EventWhoseRegisterHasNoNameKeepsIt)
{
    ZUL source;
    auto* const reg = new ZUL_register(&source, nullptr, false);
    auto* const event = new ZUL_event(&source, 0, 0, 0);
    source.AddTag(reg);
    source.AddTag(event);
    event->setRegister(reg);
    forBothCopies(source,
                  [](ZUL& copy) { EXPECT_EQ(tagOf<ZUL_event>(copy)->getRegister(), copy.getRegisterAt(1)); });
}

TEST(ContainerCopy, EventWithAnEmptyNameKeepsIt)
{
    // A name that begins with NUL is "", and can be saved; no name cannot.
    Bytes const bytes = ContainerBytes()
                            .tag(sample::newRegister("done"))
                            .tag(sample::event(std::string_view("\0x", 2), "done"))
                            .build(8);
    ZUL source;
    ASSERT_EQ(source.Load(bytes.data(), bytes.size()), 0);
    ASSERT_STREQ(tagOf<ZUL_event>(source)->getName(), "");
    forBothCopies(source, [](ZUL& copy) { EXPECT_STREQ(tagOf<ZUL_event>(copy)->getName(), ""); });
}

TEST(ContainerCopy, PayloadsAreTheCopysOwn)
{
    LoadedContainer const source(sample::everyKind());
    forBothCopies(source.zul, [&source](ZUL& copy) {
        EXPECT_NE(copy.getConfigAt(0)->getData(), source.zul.getConfigAt(0)->getData());
        EXPECT_NE(tagOf<ZUL_dll>(copy)->getLib(), tagOf<ZUL_dll>(source.zul)->getLib());
        EXPECT_NE(tagOf<ZUL_param>(copy, 1)->getField(), tagOf<ZUL_param>(source.zul, 1)->getField());
    });
}

TEST(ContainerCopy, TakesPolicyModeAndDestinationWordOver)
{
    LoadedContainer source(headBytes(0, 0, 1, 0xCAFE));
    source.zul.setRegisterPolicy(ZULRegisterPolicy{3});
    source.zul.setLoadMode(ZUL_LOAD_TOLERANT);
    forBothCopies(source.zul, [](ZUL& copy) {
        EXPECT_EQ(copy.getRegisterPolicy(), ZULRegisterPolicy{3});
        EXPECT_EQ(copy.getLoadMode(), ZUL_LOAD_TOLERANT);
        EXPECT_EQ(copy.getHeadDestination(), 0xCAFEU);
        EXPECT_EQ(copy.getTotalTagCount(), 0U);
        EXPECT_EQ(copy.getAuthor(), nullptr);
    });
}

TEST(ContainerCopy, FirmwareMarksAreNotCopied)
{
    LoadedContainer const source(sample::everyKind());
    tagOf<ZUL_event>(source.zul)->flagAsFirmwareEvent();
    forBothCopies(source.zul, [](ZUL& copy) { EXPECT_FALSE(tagOf<ZUL_event>(copy)->isFirmwareEvent()); });
}

TEST(ContainerCopy, CountsStatedByTheFileStayWithTheLoadedModule)
{
    LoadedContainer const source(ContainerBytes()
                                     .tag(sample::process(0))
                                     .tag(sample::module(0, 0).setU32(24, 7).setU32(28, 8))
                                     .build());
    EXPECT_EQ(tagOf<ZUL_module>(source.zul)->getParamCount(), 7U);
    forBothCopies(source.zul, [](ZUL& copy) {
        EXPECT_EQ(tagOf<ZUL_module>(copy)->getParamCount(), 0U);
        EXPECT_EQ(tagOf<ZUL_module>(copy)->getChanCount(), 0U);
    });
}

TEST(ContainerCopy, KeepsDuplicatesThatRenamingMade)
{
    ZUL source;
    for (char const* const name : {"a", "b"}) {
        source.AddTag(new ZUL_register(&source, name, false));
    }
    source.getRegisterAt(2)->setName("a");
    source.AddTag(new ZUL_register_link(&source, "x", "a"));
    forBothCopies(source, [](ZUL& copy) {
        EXPECT_EQ(copy.getTagCount(ZUL_register::new_tag_id), 2U);
        EXPECT_EQ(copy.findRegister("x"), copy.getRegisterAt(1));
    });
}

TEST(ContainerCopy, IsIndependent)
{
    LoadedContainer source(sample::everyKind());
    forBothCopies(source.zul, [&source](ZUL& copy) {
        copy.removeTags(ZUL_register::new_tag_id);
        copy.removeTags(ZUL_multi_data::tag_id);
        copy.setAuthor(nullptr);
        tagOf<ZUL_process>(copy)->setId(77);
        EXPECT_EQ(savedContainer(source.zul), sample::everyKind());
    });
}

TEST(ContainerAssignment, ToItselfChangesNothing)
{
    LoadedContainer loaded(sample::everyKind());
    ZUL const& same = loaded.zul;
    ZUL_tag const* const first = loaded.zul.getTagAt(ZUL_process::tag_id, 0);
    loaded.zul = same;
    EXPECT_EQ(loaded.zul.getTagAt(ZUL_process::tag_id, 0), first);
    EXPECT_EQ(savedContainer(loaded.zul), sample::everyKind());
}

TEST(ContainerAssignment, AnswersFromTheNewTags)
{
    LoadedContainer const source(sample::everyKind());
    ZUL copy;
    copy.AddTag(new ZUL_register(&copy, "before", true));
    EXPECT_EQ(copy.getRegisterByName("before"), 1U);
    EXPECT_EQ(copy.getTagCount(ZUL_register::old_tag_id), 1U);
    copy = source.zul;
    EXPECT_EQ(copy.getRegisterByName("before"), 0U);
    EXPECT_EQ(copy.getRegisterByName("Frames"), 2U);
    EXPECT_EQ(copy.getTagAt(ZUL_register::old_tag_id, 0), copy.getRegisterAt(1));
}

TEST(ContainerAssignment, ThatFailsLeavesTheTargetAsItWas)
{
    ZUL source;
    source.AddTag(new ZUL_comment(noContainer));
    source.AddTag(new ZUL_param(nullptr, QL_ParamType{9}, nullptr));
    LoadedContainer target(sample::everyKind());
    EXPECT_THROW(target.zul = source, std::runtime_error);
    EXPECT_THROW(ZUL{source}, std::runtime_error);
    EXPECT_EQ(savedContainer(target.zul), sample::everyKind());
}

/// A tag of somebody's own: a header and a value.
class OwnTag : public ZUL_tag {
public:
    OwnTag(std::uint32_t id, unsigned long length) : m_id(id), m_length(length) {}
    unsigned long Load(void const*, unsigned long avail) override { return avail; }
    unsigned long getSaveLength() override { return m_length; }
    void Save(void* dst) override
    {
        Bytes const bytes = Bytes().u32(m_id).u32(m_length).fill(0x77, m_length);
        std::memcpy(dst, bytes.data(), m_length);
    }
    std::uint32_t getTagId() const override { return m_id; }

private:
    std::uint32_t m_id;
    unsigned long m_length;
};

TEST(ContainerCopy, TagsOfOtherClassesAreCopiedByTheirBytes)
{
    ZUL source;
    source.setId("id");
    source.AddTag(new OwnTag(0x4242, 12));
    source.AddTag(new OwnTag(0x8150010, 16)); // the id of a kind of the format
    source.AddTag(new OwnTag(0x4243, 0));     // not written at all
    source.AddTag(new ZUL_usrintqueue(&source));
    Bytes const saved = savedContainer(source);
    forBothCopies(source, [&saved](ZUL& copy) {
        EXPECT_EQ(copy.getTagCount(0x4242), 1U);
        EXPECT_EQ(copy.getTagCount(0x8150010), 1U);
        EXPECT_EQ(copy.getTagCount(0x4243), 1U);
        EXPECT_EQ(copy.getTagCount(ZUL_usrintqueue::tag_id), 1U);
        EXPECT_EQ(savedContainer(copy), saved);
    });
}

TEST(ContainerCopy, RawTagsKeepIdAndBytes)
{
    Bytes const bytes = ContainerBytes()
                            .tag(sample::userInfo("__ZUL_ID__", "id"))
                            .tag(sample::unknown(0x8150015, "kept as it is"))
                            .build();
    LoadedContainer const source(bytes);
    forBothCopies(source.zul, [&bytes](ZUL& copy) {
        ASSERT_EQ(copy.getTagCount(0x8150015), 1U);
        EXPECT_EQ(copy.getTagAt(0x8150015, 0)->getParent(), &copy);
        EXPECT_EQ(savedContainer(copy), bytes);
    });
}

/// A module of somebody's own, with an id of its own.
class OwnModule : public ZUL_module {
public:
    using ZUL_module::ZUL_module;
    std::uint32_t getTagId() const override { return 0x4242; }
};

TEST(ContainerCopy, NothingInTheCopyRefersToATagOfTheSource)
{
    ZUL source;
    auto* const process = new ZUL_process(&source, 0, nullptr);
    auto* const module = new OwnModule(&source, process);
    source.AddTag(process);
    source.AddTag(module);
    source.AddTag(new ZUL_camparam(&source, 0, module));
    forBothCopies(source, [](ZUL& copy) {
        EXPECT_EQ(tagOf<ZUL_camparam>(copy)->getModule(), nullptr) << "its module is known by its bytes only";
    });
}

} // namespace
