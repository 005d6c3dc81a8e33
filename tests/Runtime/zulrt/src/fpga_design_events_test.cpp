#include "designs.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

using designs::event;
using designs::Loaded;

template <class Number>
Number at(zul_event_record const* record, std::size_t offset)
{
    Number number;
    std::memcpy(&number, reinterpret_cast<std::byte const*>(record) + offset, sizeof number);
    return number;
}

ContainerBytes withRegisters()
{
    return ContainerBytes().tag(sample::newRegister("Newer")).tag(sample::oldRegister("Older"));
}

TEST(DesignEvents, AreRecordsWithTheseBytes)
{
    Loaded design(withRegisters().tag(event(2, 9, "FrameEnd", "Newer")));
    zul_event_record const* const record = ZulGetEvent(design.get(), 0);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(at<std::uint8_t>(record, 0), 2) << "queue";
    EXPECT_EQ(at<std::uint8_t>(record, 1), 9) << "bit";
    EXPECT_EQ(at<std::uint8_t>(record, 2), 4) << "data length";
    EXPECT_STREQ(at<char const*>(record, 8), "FrameEnd");
    EXPECT_EQ(at<std::uint32_t>(record, 16), 2U) << "registers of the newer layout come behind the older";
    EXPECT_EQ(at<std::int32_t>(record, 20), 0) << "no event of the firmware";
}

TEST(DesignEvents, Lie24BytesApartInTheirOrder)
{
    Loaded design(withRegisters()
                      .tag(event(255, 255, "last queue", "Older"))
                      .tag(event(0, 0, "first queue", "Newer"))
                      .tag(event(7, 1, "between", "Older")));
    auto const* const first = reinterpret_cast<std::byte const*>(ZulGetEvent(design.get(), 0));
    EXPECT_EQ(reinterpret_cast<std::byte const*>(ZulGetEvent(design.get(), 1)), first + 24);
    EXPECT_EQ(reinterpret_cast<std::byte const*>(ZulGetEvent(design.get(), 2)), first + 48);
    EXPECT_EQ(ZulGetEvent(design.get(), 3), nullptr);
    EXPECT_EQ(ZulGetEvent(design.get(), 0xFFFFFFFF), nullptr);
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->queue, 255);
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->bit, 255);
    EXPECT_EQ(ZulGetEvent(design.get(), 1)->queue, 0);
    EXPECT_STREQ(ZulGetEvent(design.get(), 2)->name, "between");
    EXPECT_EQ(ZulGetEvent(design.get(), 2)->register_index, 1U);
}

TEST(DesignEvents, HaveUnderscoresForBackslashes)
{
    Loaded design(withRegisters()
                      .tag(event(0, 0, "a\\b", "Older"))
                      .tag(event(0, 1, "\\\\acq\\cam\\", "Older"))
                      .tag(event(0, 2, "a/b c", "Older")));
    EXPECT_STREQ(ZulGetEvent(design.get(), 0)->name, "a_b");
    EXPECT_STREQ(ZulGetEvent(design.get(), 1)->name, "__acq_cam_");
    EXPECT_STREQ(ZulGetEvent(design.get(), 2)->name, "a/b c") << "nothing else is replaced";
}

TEST(DesignEvents, HaveThemInTheTagToo)
{
    Bytes const before = withRegisters().tag(event(0, 0, "a\\b", "Older")).build();
    Bytes const after = withRegisters().tag(event(0, 0, "a_b", "Older")).build();
    Loaded design(before);
    unsigned long length = 0;
    EXPECT_EQ(design->stripConfigs(nullptr, &length), -1);
    Bytes saved = Bytes().zeros(length);
    ASSERT_EQ(design->stripConfigs(saved.data(), &length), 0);
    std::string_view const text(reinterpret_cast<char const*>(saved.data()), saved.size());
    EXPECT_NE(text.find("a_b"), std::string_view::npos);
    EXPECT_EQ(text.find("a\\b"), std::string_view::npos);
    EXPECT_TRUE(std::memcmp(saved.data() + 24, after.data() + 24, after.size() - 24) == 0);
}

TEST(DesignEvents, AreThoseOfTheAliasedRegister)
{
    Loaded design(withRegisters()
                      .tag(sample::registerLink("Alias", "Newer"))
                      .tag(event(0, 0, "through an alias", "Alias")));
    EXPECT_EQ(ZulGetEvent(design.get(), 0)->register_index, 2U);
}

TEST(DesignEvents, AreNoneInADesignWithout)
{
    Loaded design(withRegisters());
    EXPECT_EQ(ZulGetEvent(design.get(), 0), nullptr);
}

TEST(DesignEvents, AreMadeAnewBesideTheFormerOnes)
{
    Loaded design(withRegisters().tag(event(2, 9, "FrameEnd", "Newer")));
    zul_event_record const* const former = ZulGetEvent(design.get(), 0);
    design->setupEvents();
    EXPECT_NE(ZulGetEvent(design.get(), 0), former);
    EXPECT_EQ(std::memcmp(&former->queue, &ZulGetEvent(design.get(), 0)->queue, 3), 0);
    EXPECT_STREQ(former->name, "FrameEnd") << "it stays readable";
    EXPECT_EQ(ZulGetEvent(design.get(), 1), nullptr);
}

TEST(RBS, ReplacesEveryBackslashInPlace)
{
    char text[] = "\\a\\\\b/c\\";
    EXPECT_EQ(RBS(text), text);
    EXPECT_STREQ(text, "_a__b/c_");
    char none[] = "";
    EXPECT_EQ(RBS(none), none);
    EXPECT_EQ(RBS(nullptr), nullptr);
}

} // namespace
