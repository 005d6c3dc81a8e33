#include "ZUL_binary_data.h"
#include "captured_output.h"
#include "container_bytes.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace {

constexpr int refused = -22;

/// What a load returns, from a buffer that ends exactly where the bytes end; only for tags that keep nothing of it.
int load(ZUL& zul, Bytes const& bytes)
{
    CapturedOutput const quiet;
    std::vector<std::byte> const exact(bytes.data(), bytes.data() + bytes.size());
    return zul.Load(exact.data(), exact.size());
}

/// Whether a strict load throws an Error of exactly this class with that id and details, and prints the two lines.
template <class Error>
testing::AssertionResult refuses(ZUL& zul, Bytes const& bytes, std::uint32_t id, std::string const& details)
{
    CapturedOutput const output;
    try {
        zul.Load(bytes.data(), bytes.size());
        return testing::AssertionFailure() << "loaded";
    } catch (ZUL_file_error const& error) {
        std::string const expected =
            std::string("ZUL Exception: ") + error.what() + "\n  Details: " + details + '\n';
        if (typeid(error) != typeid(Error) || error.getTagId() != id || error.asString() != details) {
            return testing::AssertionFailure()
                   << error.what() << " (" << error.asString() << ") " << std::hex << error.getTagId();
        }
        return output.text() == expected ? testing::AssertionSuccess()
                                         : testing::AssertionFailure() << "printed " << output.text();
    }
}

TEST(ZulLoad, NullBufferIsRefused)
{
    ZUL zul;
    EXPECT_EQ(zul.Load(nullptr, 24), refused);
    EXPECT_EQ(zul.Load(nullptr, 0), refused);
}

TEST(ZulLoad, BufferShorterThanAHeadIsRefused)
{
    for (std::size_t size = 0; size < 24; ++size) {
        ZUL zul;
        EXPECT_EQ(load(zul, headBytes(0).cut(size)), refused) << size;
    }
}

TEST(ZulLoad, BufferThatDoesNotBeginWithAHeadIsRefused)
{
    for (std::size_t const byte : {0U, 1U, 2U, 3U}) {
        ZUL zul;
        EXPECT_EQ(load(zul, headBytes(0).setU8(byte, 0)), refused);
    }
}

TEST(ZulLoad, HeadAloneIsAnEmptyContainer)
{
    ZUL zul;
    EXPECT_EQ(load(zul, headBytes(0)), 0);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
    EXPECT_EQ(zul.getConfigCount(), 0U);
}

TEST(ZulLoad, ErrorOfTheHeadIsThrownAndNotPrinted)
{
    for (ZULLoadMode const mode : {ZUL_LOAD_STRICT, ZUL_LOAD_TOLERANT}) {
        ZUL zul;
        zul.setLoadMode(mode);
        CapturedOutput const output;
        Bytes const wrongLength = headBytes(0).setU32(4, 25).zeros(9);
        Bytes const wrongVersion = headBytes(0, 0, 2);
        EXPECT_THROW(zul.Load(wrongLength.data(), wrongLength.size()), ZUL_file_bad_tag_length);
        EXPECT_THROW(zul.Load(wrongVersion.data(), wrongVersion.size()), ZUL_file_malformed_tag);
        EXPECT_EQ(output.text(), "");
    }
}

TEST(ZulLoad, EveryKindIsFiledWithTheContainerAsParent)
{
    LoadedContainer loaded(sample::everyKind());
    ZUL const& zul = loaded.zul;
    EXPECT_EQ(zul.getTotalTagCount(), 28U);
    EXPECT_STREQ(zul.getAuthor(), "A. Noether");
    EXPECT_STREQ(zul.getDesignName(), "double rate");
    EXPECT_STREQ(zul.getDesignVersion(), "2.7");
    for (std::uint32_t const id :
         {0x8150010U, 0x8150084U, 0x8150099U, 0x8151000U, 0x8151001U, 0x8151002U, 0x8151020U, 0x8151030U,
          0x8151040U, 0x8151050U, 0x8151060U, 0x8151070U, 0x8154000U, 0x8156001U, 0x8156576U, 0x8157000U,
          0x8158000U, 0x8159000U, 0x815B000U, 0x815C000U, 0x815D000U, 0x815E000U}) {
        ASSERT_EQ(zul.getTagCount(id), 1U) << std::hex << id;
        EXPECT_EQ(zul.getTagAt(id, 0)->getParent(), &zul) << std::hex << id;
        EXPECT_EQ(dynamic_cast<ZUL_binary_data*>(zul.getTagAt(id, 0)), nullptr) << std::hex << id;
    }
    EXPECT_EQ(zul.getTagCount(0x815A000), 3U);
    ASSERT_EQ(zul.getConfigCount(), 1U);
    EXPECT_EQ(zul.getConfigAt(0)->getParent(), &zul);
}

TEST(ZulLoad, TagsKeepTheOrderOfTheFile)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::userInfo("first", 1))
                               .tag(sample::comment("between"))
                               .tag(sample::userInfo("second", 2))
                               .build());
    EXPECT_STREQ(static_cast<ZUL_user_info*>(loaded.zul.getTagAt(0x8159000, 0))->getInfo(), "first");
    EXPECT_STREQ(static_cast<ZUL_user_info*>(loaded.zul.getTagAt(0x8159000, 1))->getInfo(), "second");
    EXPECT_EQ(savedIds(savedContainer(loaded.zul)),
              (std::vector<std::uint32_t>{0x8159000, 0x8150010, 0x8159000, 0x8159000}));
}

TEST(ZulLoad, UpToEightTrailingBytesAreIgnored)
{
    for (std::size_t trailing = 0; trailing <= 8; ++trailing) {
        ZUL zul;
        Bytes const bytes = ContainerBytes().tag(sample::comment()).build().fill(0xFF, trailing);
        EXPECT_EQ(load(zul, bytes), 0) << trailing;
        EXPECT_EQ(zul.getTotalTagCount(), 1U) << trailing;
    }
}

TEST(ZulLoad, NineTrailingBytesAreATag)
{
    ZUL zul;
    EXPECT_TRUE(refuses<ZUL_file_bad_tag_length>(
        zul, ContainerBytes().tag(sample::comment()).build().u32(0x12345678).u32(7).u8(0), 0x12345678, "x"));
}

TEST(ZulLoad, LastTagOfExactlyEightBytesIsIgnored)
{
    ZUL zul;
    Bytes const bytes = headBytes(0).append(sample::unknown(0x12345678, ""));
    EXPECT_EQ(load(zul, bytes), 0);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
    ZUL announced;
    EXPECT_EQ(load(announced, Bytes(bytes).setU32(8, 1)), refused);
}

TEST(ZulLoad, SecondAuthorIsADuplicateWithoutName)
{
    ZUL zul;
    EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(
        zul, ContainerBytes().tag(sample::author("first")).tag(sample::author("second")).build(), 0x8150070,
        ""));
    EXPECT_STREQ(zul.getAuthor(), "first");
}

TEST(ZulLoad, SecondDesignNameIsADuplicateWithoutName)
{
    ZUL zul;
    EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(
        zul, ContainerBytes().tag(sample::designName("first")).tag(sample::designName("second")).build(),
        0x8155000, ""));
    EXPECT_STREQ(zul.getDesignName(), "first");
}

TEST(ZulLoad, LaterDesignVersionReplacesTheEarlierOne)
{
    // The head would have to announce 1 tag for strict mode: the container holds one.
    ZUL zul;
    Bytes const bytes =
        headBytes(1).append(sample::designVersion("1.0")).append(sample::designVersion("1.1"));
    EXPECT_EQ(load(zul, bytes), 0);
    EXPECT_STREQ(zul.getDesignVersion(), "1.1");
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
}

TEST(ZulLoad, VersionNumberReplacesTheOneWithItsIndex)
{
    ZUL zul;
    Bytes const bytes = headBytes(2)
                            .append(sample::versionNumber(3, 1, 0))
                            .append(sample::versionNumber(4, 5, 5))
                            .append(sample::versionNumber(3, 2, 7));
    EXPECT_EQ(load(zul, bytes), 0);
    ASSERT_EQ(zul.getTagCount(0x8156001), 2U);
    auto const* const number = static_cast<ZUL_design_version_nr*>(zul.getTagAt(0x8156001, 0));
    EXPECT_EQ(number->getIndex(), 3);
    EXPECT_EQ(number->getVersion(), 2);
    EXPECT_EQ(number->getRevision(), 7);
    EXPECT_EQ(number->getParent(), &zul);
}

TEST(ZulLoad, SecondHeadIsADuplicateWithoutName)
{
    ZUL zul;
    EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(zul, headBytes(1).append(headBytes(0)), 0x4B4F564D, ""));
}

TEST(ZulLoad, SecondHeadIsReadBeforeItIsRefused)
{
    ZUL zul;
    EXPECT_TRUE(
        refuses<ZUL_file_malformed_tag>(zul, headBytes(1).append(headBytes(0, 0, 2)), 0x4B4F564D, "M"));
    ZUL shortZul;
    EXPECT_TRUE(refuses<ZUL_file_bad_tag_length>(shortZul, headBytes(1).append(headBytes(0)).cut(47),
                                                 0x4B4F564D, "M"));
}

TEST(ZulLoad, SecondRegisterOfANameIsADuplicateWithTheOlderLayoutsId)
{
    for (Bytes const& second : {sample::oldRegister("Gain"), sample::newRegister("Gain")}) {
        ZUL zul;
        EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(
            zul, ContainerBytes().tag(sample::newRegister("Gain")).tag(second).build(), 0x8151000, "Gain"));
        EXPECT_EQ(zul.getTotalTagCount(), 1U);
    }
}

TEST(ZulLoad, RegisterWithTheNameOfAResolvedAliasIsADuplicate)
{
    ZUL zul;
    EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(zul,
                                                ContainerBytes()
                                                    .tag(sample::oldRegister("Gain"))
                                                    .tag(sample::registerLink("Alias", "Gain"))
                                                    .tag(sample::oldRegister("Alias"))
                                                    .build(),
                                                0x8151000, "Alias"));
}

TEST(ZulLoad, RegistersWithoutNameAreNoDuplicatesButEmptyNamesAre)
{
    ZUL zul;
    EXPECT_EQ(load(zul, ContainerBytes().tag(sample::newRegister("")).tag(sample::newRegister("")).build()),
              0);
    EXPECT_EQ(static_cast<ZUL_register*>(zul.getTagAt(0x8151002, 1))->getName(), nullptr);
    ZUL old;
    EXPECT_TRUE(refuses<ZUL_file_duplicate_tag>(
        old, ContainerBytes().tag(sample::oldRegister("")).tag(sample::oldRegister("")).build(), 0x8151000,
        ""));
}

TEST(ZulLoad, LinkToAnAliasIsALoop)
{
    ZUL zul;
    CapturedOutput const output;
    Bytes const bytes =
        ContainerBytes().tag(sample::registerLink("a", "b")).tag(sample::registerLink("b", "a")).build();
    try {
        zul.Load(bytes.data(), bytes.size());
        FAIL() << "loaded";
    } catch (ZUL_link_loop_detected const& error) {
        EXPECT_STREQ(error.what(), "link loop detected");
        EXPECT_EQ(error.getTagId(), 0x8151001U);
        EXPECT_EQ(error.getSecondTagId(), 0x8151001U);
        EXPECT_EQ(error.asString(), "\x01");
    }
    EXPECT_EQ(output.text(), "ZUL Exception: link loop detected\n  Details: \x01\n");
}

TEST(ZulLoad, ReferenceHasToComeAfterItsTarget)
{
    ZUL zul;
    Bytes const bytes = ContainerBytes().tag(sample::module(0, 3)).tag(sample::process(3)).build();
    CapturedOutput const output;
    EXPECT_THROW(zul.Load(bytes.data(), bytes.size()), ZUL_file_bad_reference);
    // The low byte of the id is 0: the details are that one character, and nothing is seen of it.
    EXPECT_EQ(output.text(), "ZUL Exception: dangling reference\n  Details: \n");
}

TEST(ZulLoad, EventFindsItsRegisterByAlias)
{
    LoadedContainer loaded(ContainerBytes()
                               .tag(sample::newRegister("FrameCounter"))
                               .tag(sample::registerLink("Frames", "FrameCounter"))
                               .tag(sample::event("FrameEnd", "Frames"))
                               .build());
    auto const* const event = static_cast<ZUL_event*>(loaded.zul.getTagAt(0x8156576, 0));
    EXPECT_EQ(event->getRegister(), loaded.zul.getTagAt(0x8151002, 0));
}

TEST(ZulLoad, UnknownTagTakesAllThatFollows)
{
    Bytes const rest = sample::unknown(0x8150015).append(sample::comment());
    LoadedContainer loaded(headBytes(2).append(sample::process(1)).append(rest));
    ASSERT_EQ(loaded.zul.getTagCount(0x8150015), 1U);
    EXPECT_EQ(loaded.zul.getTagCount(0x8150010), 0U);
    auto* const raw = dynamic_cast<ZUL_binary_data*>(loaded.zul.getTagAt(0x8150015, 0));
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(raw->getParent(), &loaded.zul);
    EXPECT_EQ(savedBytes(*raw), rest);
}

TEST(ZulLoad, TagAnnouncedAfterAnUnknownOneIsMissing)
{
    ZUL zul;
    Bytes const bytes = ContainerBytes().tag(sample::unknown(0x8150015)).tag(sample::comment()).build();
    EXPECT_EQ(load(zul, bytes), refused);
    EXPECT_EQ(zul.getTagCount(0x8150015), 1U);
}

TEST(ZulLoad, UnknownTagsLengthIsCheckedFirst)
{
    Bytes const bytes = ContainerBytes().tag(sample::process(1)).tag(sample::unknown(0x99)).build();
    auto const offset = 24U + 80U + 4U;
    for (std::uint32_t const length : {0U, 7U, 17U, 120U, 121U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        ZUL zul;
        EXPECT_TRUE(refuses<ZUL_file_bad_tag_length>(zul, Bytes(bytes).setU32(offset, length), 0x99,
                                                     std::string(1, '\x99')))
            << length;
        EXPECT_EQ(zul.getTotalTagCount(), 1U);
    }
    for (std::uint32_t const length : {8U, 15U, 16U}) {
        ZUL zul;
        EXPECT_EQ(load(zul, Bytes(bytes).setU32(offset, length)), 0) << length;
    }
}

TEST(ZulLoad, TagsFiledBeforeAnErrorStayAndAreFound)
{
    ZUL zul;
    Bytes const bytes =
        ContainerBytes().tag(sample::process(3, "kept")).tag(sample::comment().setU32(4, 1)).build();
    EXPECT_EQ(zul.getTagCount(0x8158000), 0U) << "asked before, so that the answer is remembered";
    EXPECT_TRUE(refuses<ZUL_file_bad_tag_length>(zul, bytes, 0x8150010, "\x10"));
    ASSERT_EQ(zul.getTagCount(0x8158000), 1U);
    EXPECT_STREQ(zul.getProcessAt(3)->getName(), "kept");
    EXPECT_EQ(savedIds(savedContainer(zul)), (std::vector<std::uint32_t>{0x8158000, 0x8159000}));
}

TEST(ZulLoad, HeadsDestinationWordIsKept)
{
    LoadedContainer loaded(headBytes(0, 0, 1, 0xCAFE));
    EXPECT_EQ(loaded.zul.getHeadDestination(), 0xCAFEU);
    EXPECT_EQ(ZUL().getHeadDestination(), 0U);
}

TEST(ZulLoad, TagReadWithoutContainerIsALogicError)
{
    ZUL_module module(nullptr, nullptr);
    Bytes const bytes = sample::module(0, 0);
    EXPECT_THROW(module.Load(bytes.data(), bytes.size()), std::logic_error);
}

} // namespace

TEST(Load, LoadedTagThatReadsItselfAgainKeepsTheLaterText)
{
    LoadedContainer loaded(sample::everyKind());
    ZUL_tag* const process = loaded.zul.getTagAt(ZUL_process::tag_id, 0);
    Bytes const other = Bytes().u32(0x8158000).u32(80).u32(9).text("another name", 64).u32(1);
    for (int i = 0; i < 3; ++i) {
        process->Load(other.data(), other.size());
        EXPECT_STREQ(static_cast<ZUL_process*>(process)->getName(), "another name");
    }
}
