#include "captured_output.h"
#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr int refused = -22;
constexpr ZULLoadMode otherMode{2};
constexpr char const* badLength = "ZUL Exception: tag with invalid length information found\n  Details: ";

/// One load in one mode: what it returned and printed. The bytes outlive the container.
struct Loading {
    Loading(ZULLoadMode mode, Bytes const& from) : bytes(from)
    {
        zul.setLoadMode(mode);
        CapturedOutput const output;
        result = zul.Load(bytes.data(), bytes.size());
        printed = output.text();
    }

    Bytes bytes;
    ZUL zul;
    int result = 1;
    std::string printed;
};

TEST(ZulLoadMode, IsStrictAtFirstAndStaysAsSet)
{
    ZUL zul;
    EXPECT_EQ(zul.getLoadMode(), ZUL_LOAD_STRICT);
    zul.setLoadMode(otherMode);
    EXPECT_EQ(zul.getLoadMode(), otherMode);
    EXPECT_EQ(zul.Load(headBytes(0).data(), 24), 0);
    EXPECT_EQ(zul.getLoadMode(), otherMode);
}

TEST(ZulLoadMode, OnlyStrictLoadsCompareTheCounts)
{
    Bytes const tooMany = headBytes(3).append(sample::comment()).append(sample::comment());
    Bytes const tooFew = headBytes(1).append(sample::comment()).append(sample::comment());
    Bytes const missingConfig = headBytes(1, 1).append(sample::comment());
    Bytes const hiddenConfig = headBytes(1, 0).append(sample::comment()).append(sample::config(1));
    Bytes const secondConfig = headBytes(0, 1).append(sample::config(1)).append(sample::config(2));
    for (Bytes const& bytes : {tooMany, tooFew, missingConfig, hiddenConfig, secondConfig}) {
        EXPECT_EQ(Loading(ZUL_LOAD_STRICT, bytes).result, refused);
        EXPECT_EQ(Loading(ZUL_LOAD_TOLERANT, bytes).result, 0);
        EXPECT_EQ(Loading(otherMode, bytes).result, 0);
        EXPECT_EQ(Loading(ZUL_LOAD_STRICT, bytes).printed, "");
    }
}

TEST(ZulLoadMode, RefusedCountsLeaveTheTagsInTheContainerUnsorted)
{
    Loading const loading(ZUL_LOAD_STRICT,
                          headBytes(9).append(sample::process(2)).append(sample::process(1)));
    EXPECT_EQ(loading.result, refused);
    ASSERT_EQ(loading.zul.getTagCount(0x8158000), 2U);
    EXPECT_EQ(static_cast<ZUL_process*>(loading.zul.getTagAt(0x8158000, 0))->getId(), 2U);
}

TEST(ZulLoadMode, SkippedLibraryIsTakenOffTheAnnouncedCount)
{
    Bytes const bytes = ContainerBytes().tag(sample::library("a")).tag(sample::library("a")).build();
    EXPECT_EQ(Loading(ZUL_LOAD_STRICT, bytes).result, 0);
    EXPECT_EQ(Loading(ZUL_LOAD_STRICT, Bytes(bytes).setU32(8, 1)).result, refused);
}

TEST(ZulLoadMode, AnnouncedCountBelowTheSkippedLibrariesIsRefused)
{
    Bytes const bytes =
        headBytes(0).append(sample::library("a")).append(sample::library("a")).append(sample::library("a"));
    EXPECT_EQ(Loading(ZUL_LOAD_STRICT, bytes).result, refused);
}

TEST(ZulLoadMode, EveryModeButTheTolerantOneThrows)
{
    Bytes const bytes = ContainerBytes().tag(sample::author()).tag(sample::author()).build();
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, otherMode, ZULLoadMode{0xFFFFFFFF}}) {
        ZUL zul;
        zul.setLoadMode(mode);
        CapturedOutput const output;
        EXPECT_THROW(zul.Load(bytes.data(), bytes.size()), ZUL_file_duplicate_tag);
        EXPECT_EQ(output.text(), "ZUL Exception: duplicate tag found\n  Details: \n");
    }
}

TEST(TolerantLoad, GoesOnBehindATagThatCouldNotBeFiled)
{
    Loading const loading(ZUL_LOAD_TOLERANT, ContainerBytes()
                                                 .tag(sample::author("first"))
                                                 .tag(sample::author("second"))
                                                 .tag(sample::designName())
                                                 .build());
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.printed, "ZUL Exception: duplicate tag found\n  Details: \n");
    EXPECT_STREQ(loading.zul.getAuthor(), "first");
    EXPECT_STREQ(loading.zul.getDesignName(), "double rate");
}

TEST(TolerantLoad, TagThatReadItselfButWasNotFiledGivesTheStep)
{
    // The register (104 bytes) is a duplicate; what follows it fails and is stepped over with its length, not with
    // that of the 80 byte process filed before.
    Bytes const broken = sample::process(9).setU32(4, 1).zeros(104 - 80);
    Loading const loading(ZUL_LOAD_TOLERANT, headBytes(0)
                                                 .append(sample::oldRegister("r"))
                                                 .append(sample::process(1))
                                                 .append(sample::oldRegister("r"))
                                                 .append(broken)
                                                 .append(sample::designName()));
    EXPECT_EQ(loading.result, 0);
    EXPECT_STREQ(loading.zul.getDesignName(), "double rate");
    EXPECT_EQ(loading.printed,
              "ZUL Exception: duplicate tag found\n  Details: r\n" + std::string(badLength) + "\n");
}

TEST(TolerantLoad, StepIsTheLengthOfTheLastTagThatReadItself)
{
    // The failing tag is 268 bytes long. The step is 80, which leads into its NUL bytes: id 0 with length 0, once
    // after the other, until a step of 80 leads behind the end.
    Loading const loading(ZUL_LOAD_TOLERANT,
                          headBytes(0).append(sample::process(1)).append(sample::comment("").setU32(4, 267)));
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.zul.getTotalTagCount(), 1U);
    std::string const nothing = badLength + std::string(1, '\n');
    EXPECT_EQ(loading.printed, badLength + std::string("\x10\n") + nothing + nothing + nothing);
}

TEST(TolerantLoad, StepBeyondTheEndEndsTheWalk)
{
    Loading const loading(ZUL_LOAD_TOLERANT,
                          headBytes(0).append(sample::comment()).append(sample::process(1).setU32(4, 7)));
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.printed, std::string(badLength) + "\n");
}

TEST(TolerantLoad, FirstTagThatFailsIsReadTwiceAndEndsTheLoad)
{
    Loading const loading(ZUL_LOAD_TOLERANT, headBytes(0).append(sample::comment().setU32(4, 1)));
    EXPECT_EQ(loading.result, refused);
    EXPECT_EQ(loading.printed, std::string(badLength) + "\x10\n" + badLength + "\x10\n");
    EXPECT_EQ(loading.zul.getTotalTagCount(), 0U);
}

TEST(TolerantLoad, SecondHeadIsSteppedOver)
{
    Loading const loading(ZUL_LOAD_TOLERANT,
                          headBytes(0).append(headBytes(5, 0, 1, 9)).append(sample::comment()));
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.zul.getTagCount(0x8150010), 1U);
    EXPECT_EQ(loading.zul.getHeadDestination(), 0U);
}

TEST(TolerantLoad, LoopIsPrintedAndTheLinkDropped)
{
    Loading const loading(ZUL_LOAD_TOLERANT, headBytes(0)
                                                 .append(sample::registerLink("a", "b"))
                                                 .append(sample::registerLink("b", "a"))
                                                 .append(sample::comment()));
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.printed, "ZUL Exception: link loop detected\n  Details: \x01\n");
    EXPECT_EQ(loading.zul.getTagCount(0x8151001), 1U);
    EXPECT_EQ(loading.zul.getTagCount(0x8150010), 1U);
}

TEST(TolerantLoad, UnknownTagInTheMiddleTakesTheRest)
{
    Loading const loading(ZUL_LOAD_TOLERANT, ContainerBytes()
                                                 .tag(sample::process(1))
                                                 .tag(sample::unknown(0x42))
                                                 .tag(sample::comment())
                                                 .config(sample::config(1))
                                                 .build());
    EXPECT_EQ(loading.result, 0);
    EXPECT_EQ(loading.zul.getTotalTagCount(), 2U);
    EXPECT_EQ(loading.zul.getConfigCount(), 0U);
}

TEST(SortingAfterLoad, OrdersProcessesCamerasAndDmaRegistersAmongThemselves)
{
    Loading loading(ZUL_LOAD_STRICT, ContainerBytes()
                                         .tag(sample::process(3, "three"))
                                         .tag(sample::module(0, 3))
                                         .tag(sample::cameraParam(2, 0))
                                         .tag(sample::dmaCountRegister(8))
                                         .tag(sample::process(1, "one"))
                                         .tag(sample::cameraParam(1, 0))
                                         .tag(sample::dmaCountRegister(7))
                                         .tag(sample::process(2, "two"))
                                         .build());
    ASSERT_EQ(loading.result, 0);
    std::vector<unsigned> numbers;
    for (unsigned i = 0; i < 3; ++i) {
        numbers.push_back(static_cast<ZUL_process*>(loading.zul.getTagAt(0x8158000, i))->getId());
    }
    for (unsigned i = 0; i < 2; ++i) {
        numbers.push_back(static_cast<ZUL_camparam*>(loading.zul.getTagAt(0x815D000, i))->getChannel());
        numbers.push_back(
            static_cast<ZUL_dmacnt_register*>(loading.zul.getTagAt(0x8151020, i))->getChannel());
    }
    EXPECT_EQ(numbers, (std::vector<unsigned>{1, 2, 3, 1, 7, 2, 8}));
    EXPECT_EQ(savedIds(savedContainer(loading.zul)),
              (std::vector<std::uint32_t>{0x8158000, 0x8157000, 0x815D000, 0x8151020, 0x8158000, 0x815D000,
                                          0x8151020, 0x8158000, 0x8159000}));
}

TEST(SortingAfterLoad, OtherKindsWithNumbersKeepTheirOrder)
{
    Loading const loading(ZUL_LOAD_STRICT, ContainerBytes()
                                               .tag(sample::process(0))
                                               .tag(sample::module(9, 0))
                                               .tag(sample::module(1, 0))
                                               .tag(sample::dmaParam(5, 1))
                                               .tag(sample::dmaParam(2, 1))
                                               .build());
    ASSERT_EQ(loading.result, 0);
    EXPECT_EQ(static_cast<ZUL_module*>(loading.zul.getTagAt(0x8157000, 0))->getIndex(), 9);
    EXPECT_EQ(static_cast<ZUL_dma_param*>(loading.zul.getTagAt(0x815C000, 0))->getDmaChannel(), 5);
}

TEST(SortingAfterLoad, FirstOfEqualProcessesIsTheOneThatStandsFirstAfterwards)
{
    // From the last position down, the greatest is swapped in: 2 changes places with the second 1.
    Loading const loading(ZUL_LOAD_STRICT, ContainerBytes()
                                               .tag(sample::process(2))
                                               .tag(sample::process(1, "upper"))
                                               .tag(sample::process(1, "lower"))
                                               .build());
    ASSERT_EQ(loading.result, 0);
    EXPECT_STREQ(static_cast<ZUL_process*>(loading.zul.getTagAt(0x8158000, 0))->getName(), "lower");
    EXPECT_STREQ(loading.zul.getProcessAt(1)->getName(), "lower");
}

TEST(SortingAfterLoad, HappensInTheOtherModesToo)
{
    Bytes const bytes = ContainerBytes().tag(sample::process(2)).tag(sample::process(1)).build();
    for (ZULLoadMode const mode : {ZUL_LOAD_TOLERANT, otherMode}) {
        Loading const loading(mode, bytes);
        EXPECT_EQ(static_cast<ZUL_process*>(loading.zul.getTagAt(0x8158000, 0))->getId(), 1U);
    }
}

class FilledContainer : public testing::Test {
protected:
    int load(Bytes const& bytes)
    {
        m_kept.push_back(std::make_unique<Bytes>(bytes));
        CapturedOutput const quiet;
        return zul.Load(m_kept.back()->data(), m_kept.back()->size());
    }

private:
    std::vector<std::unique_ptr<Bytes>> m_kept;

protected:
    ZUL zul; // after the bytes: it goes first
};

TEST_F(FilledContainer, IsAddedTo)
{
    zul.setLoadMode(ZUL_LOAD_TOLERANT);
    ASSERT_EQ(load(ContainerBytes().tag(sample::process(2)).config(sample::config(1)).build()), 0);
    EXPECT_EQ(zul.getTagCount(0x8158000), 1U);
    ASSERT_EQ(load(ContainerBytes().tag(sample::process(1)).config(sample::config(2)).build()), 0);
    ASSERT_EQ(zul.getTagCount(0x8158000), 2U);
    EXPECT_EQ(static_cast<ZUL_process*>(zul.getTagAt(0x8158000, 0))->getId(), 1U) << "all are sorted again";
    EXPECT_EQ(zul.getConfigCount(), 2U);
}

TEST_F(FilledContainer, IsSortedEvenByALoadThatAddsNothing)
{
    zul.AddTag(new ZUL_process(&zul, 2, nullptr));
    zul.AddTag(new ZUL_process(&zul, 1, nullptr));
    zul.setLoadMode(ZUL_LOAD_TOLERANT);
    ASSERT_EQ(load(headBytes(0)), 0);
    EXPECT_EQ(static_cast<ZUL_process*>(zul.getTagAt(0x8158000, 0))->getId(), 1U);
}

TEST_F(FilledContainer, RefusesASecondAuthor)
{
    zul.setAuthor("first");
    EXPECT_THROW(load(ContainerBytes().tag(sample::author("second")).build()), ZUL_file_duplicate_tag);
    EXPECT_STREQ(zul.getAuthor(), "first");
}

TEST_F(FilledContainer, CountsWhatItHeldAlready)
{
    zul.AddTag(new ZUL_comment(&zul));
    EXPECT_EQ(load(ContainerBytes().tag(sample::process(1)).build()), refused);
    ZUL_comment* const comment = static_cast<ZUL_comment*>(zul.getTagAt(0x8150010, 0));
    EXPECT_EQ(comment->getComment(), nullptr) << "what was there is not lost";
    EXPECT_EQ(load(headBytes(3).append(sample::process(2))), 0);
}

TEST_F(FilledContainer, IsFiledIntoBehindAlreadyKnownNamesAndLibraries)
{
    ASSERT_EQ(load(ContainerBytes().tag(sample::oldRegister("r")).tag(sample::library("l")).build()), 0);
    EXPECT_THROW(load(ContainerBytes().tag(sample::oldRegister("r")).build()), ZUL_file_duplicate_tag);
    EXPECT_EQ(load(headBytes(3).append(sample::library("l"))), 0) << "2 held, 3 announced, 1 skipped";
}

} // namespace
