#include "ZUL_multi_data.h"
#include "bytes.h"
#include "configurations.h"
#include "coverage.h"
#include "loading.h"
#include "throwing.h"
#include "zul_class.h"

#include <gtest/gtest.h>

#include <string>

// The bitstream of a configuration, for lengths that would need gigabytes of memory.
using BitstreamMember = TagBytes ZUL_multi_data::*;
BitstreamMember bitstreamMember();
template <BitstreamMember member>
struct BitstreamAccess {
    friend BitstreamMember bitstreamMember() { return member; }
};
template struct BitstreamAccess<&ZUL_multi_data::m_bitstream>;

namespace {

constexpr std::uint32_t id = 0x8150120;

TEST(ConfigurationTag, NewOneIsEmpty)
{
    ZUL zul;
    ZUL_multi_data const config(&zul);
    EXPECT_EQ(config.getTagId(), id);
    EXPECT_EQ(ZUL_multi_data::tag_id, id);
    EXPECT_EQ(config.getParent(), &zul);
    EXPECT_EQ(config.getFpgaType(), 0xFFFFFFFFU);
    EXPECT_EQ(config.getSpeedgrade(), 0U);
    EXPECT_EQ(config.getPackage(), 0U);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(config.getClock(i), 0U);
    }
    EXPECT_EQ(config.getIndex(), 0U);
    EXPECT_EQ(config.getDestination(), nullptr);
    EXPECT_EQ(config.getData(), nullptr);
    EXPECT_EQ(config.getLength(), 0U);
    EXPECT_EQ(config.getId(), nullptr);
}

TEST(ConfigurationTag, LoadsItsFieldsAndBorrowsTheBitstream)
{
    ZUL_multi_data config = freeConfig();
    Bytes const bytes = configBytes("\xAA\x99\x55\x66 stream", 0xEE);
    EXPECT_EQ(config.Load(bytes.data(), bytes.size()), 99U);
    EXPECT_EQ(config.getFpgaType(), 0x00012345U);
    EXPECT_EQ(config.getSpeedgrade(), 2U);
    EXPECT_EQ(config.getPackage(), 676U);
    EXPECT_EQ(config.getClock(0), 100U);
    EXPECT_EQ(config.getClock(1), 200U);
    EXPECT_EQ(config.getClock(2), 300U);
    EXPECT_EQ(config.getIndex(), 0x01020304U);
    EXPECT_EQ(config.getData(), bytes.data() + 88);
    EXPECT_EQ(config.getLength(), 11U);
    EXPECT_EQ(config.getDestination(), nullptr);
}

TEST(ConfigurationTag, SavesEveryByteButTheReservedOnes)
{
    ZUL_multi_data config = freeConfig();
    Bytes const bytes = configBytes("stream");
    config.Load(bytes.data(), bytes.size());
    EXPECT_EQ(config.getSaveLength(), 94U);
    EXPECT_EQ(savedBytes(config), bytes);
    EXPECT_EQ(savedBytes(config, 0xA5), configBytes("stream", 0xA5));
}

TEST(ConfigurationTag, EmptyBitstreamLoadsAndSaves)
{
    ZUL_multi_data config = freeConfig();
    Bytes const bytes = configBytes("");
    EXPECT_EQ(config.Load(bytes.data(), bytes.size()), 88U);
    EXPECT_EQ(config.getLength(), 0U);
    EXPECT_EQ(savedBytes(config), bytes);
}

TEST(ConfigurationTag, BytesBehindTheTagAreNotItsOwn)
{
    ZUL_multi_data config = freeConfig();
    Bytes const bytes = configBytes("stream").chars("next tag");
    EXPECT_EQ(config.Load(bytes.data(), bytes.size()), 94U);
    EXPECT_EQ(bitstreamOf(config), "stream");
}

TEST(ConfigurationTag, WrongLengthsAreRefusedBeforeAnyFieldIsTaken)
{
    Bytes const honest = configBytes("stream");
    ZUL_multi_data config = freeConfig();
    config.setData("kept", 4);
    for (std::size_t avail = 0; avail < honest.size(); ++avail) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(config, Bytes(honest).cut(avail), id))
            << avail << " bytes";
    }
    for (std::uint32_t const stated : {0U, 8U, 87U, 95U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        EXPECT_TRUE(loadThrows<ZUL_file_bad_tag_length>(config, Bytes(honest).setU32(4, stated), id))
            << stated;
    }
    EXPECT_EQ(config.getFpgaType(), 0xFFFFFFFFU);
    EXPECT_EQ(config.getIndex(), 0U);
    EXPECT_EQ(bitstreamOf(config), "kept");
}

TEST(ConfigurationTag, SetDataCopiesAndReplaces)
{
    ZUL_multi_data config = freeConfig();
    std::string source = "first";
    config.setData(source.data(), source.size());
    source = "xxxxx";
    EXPECT_EQ(bitstreamOf(config), "first");
    config.setData(static_cast<char const*>(config.getData()) + 2, 3); // of its own bytes
    EXPECT_EQ(bitstreamOf(config), "rst");
    config.setData("", 0);
    EXPECT_EQ(config.getLength(), 0U);
    EXPECT_EQ(config.getSaveLength(), 88U);
    config.setData("owned", 5);
    Bytes const bytes = configBytes("loaded");
    config.Load(bytes.data(), bytes.size()); // releases the owned bytes
    EXPECT_EQ(config.getData(), bytes.data() + 88);
    config.setData(nullptr, 0);
    EXPECT_EQ(config.getLength(), 0U);
}

TEST(ConfigurationTag, ClocksHaveThreeIndexes)
{
    ZUL_multi_data config = freeConfig();
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(config.setClock(i, 1000 + i), 1000 + i);
    }
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(config.getClock(i), 1000 + i);
    }
    for (unsigned const i : {3U, 4U, 0xFFFFFFFFU}) {
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { config.setClock(i, 5); }, "invalid clock index"));
        EXPECT_TRUE(throws<ZUL_invalid_data>([&] { config.getClock(i); }, "invalid clock index"));
    }
    Bytes saved = savedBytes(config);
    EXPECT_EQ(saved,
              Bytes().u32(id).u32(88).u32(0xFFFFFFFF).u32(0).u32(0).u32(1000).u32(1001).u32(1002).zeros(56));
}

TEST(ConfigurationTag, LengthBeyondU32IsMeasuredAndRefusedBeforeSaving)
{
    ZUL zul;
    ZUL_multi_data* const config = fileConfig(zul, 1);
    TagBytes& bitstream = config->*bitstreamMember();
    std::byte const one{};
    bitstream.borrow(&one, 0xFFFFFFFFUL - 88);
    EXPECT_NO_THROW(config->checkDependentFields());
    EXPECT_EQ(config->getSaveLength(), 0xFFFFFFFFU);
    EXPECT_NO_THROW(zul.getSaveLength());
    bitstream.borrow(&one, 0xFFFFFFFFUL - 87);
    EXPECT_EQ(config->getSaveLength(), 0x100000000U);
    char const* const message = "The size of a multi_data grew to big to save it!";
    EXPECT_TRUE(throws<std::runtime_error>([&] { config->checkDependentFields(); }, message));
    EXPECT_TRUE(throws<std::runtime_error>([&] { zul.getSaveLength(); }, message));
    bitstream.clear();
}

TEST(ConfigurationTag, VisitShowsEveryByteOnce)
{
    ZUL_multi_data config = freeConfig();
    Bytes const bytes = configBytes("stream");
    VisitRecord const record = visited(config, bytes);
    EXPECT_TRUE(coversOnce(record, bytes.size()));
    EXPECT_TRUE(record.problems.empty());
    EXPECT_STREQ(record.at(8).name, "fpga type");
    EXPECT_STREQ(record.at(12).name, "speed grade");
    EXPECT_STREQ(record.at(16).name, "package");
    EXPECT_STREQ(record.at(20).name, "clock 0");
    EXPECT_STREQ(record.at(24).name, "clock 1");
    EXPECT_STREQ(record.at(28).name, "clock 2");
    EXPECT_EQ(record.at(32).kind, FieldKind::Reserved);
    EXPECT_STREQ(record.at(80).name, "config index");
    EXPECT_EQ(record.at(80).number(), 0x01020304U);
    EXPECT_EQ(record.at(84).kind, FieldKind::Reserved);
    EXPECT_STREQ(record.at(88).name, "bitstream");
    EXPECT_EQ(record.at(88).kind, FieldKind::Bytes);
    EXPECT_EQ(record.at(88).width, 6U);
    expectCutsAreShown(freeConfig, bytes, 88);
    Bytes const broken = configBytes("").setU32(4, 87);
    VisitRecord const damaged = visited(config, broken);
    ASSERT_EQ(damaged.problems.size(), 1U);
    EXPECT_EQ(damaged.problems[0].kind, TagProblem::Kind::BadLength);
    EXPECT_TRUE(coversOnce(damaged, 88));
}

} // namespace
