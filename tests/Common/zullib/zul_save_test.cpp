#include "container_bytes.h"
#include "files.h"
#include "listing.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "throwing.h"
#include "zullib.h"

#include <gtest/gtest.h>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr int refused = -22;

TEST(ZulSave, EmptyContainerIsAHeadAndAnId)
{
    ZUL zul;
    EXPECT_EQ(zul.getSaveLength(), 168U);
    EXPECT_EQ(savedContainer(zul), Bytes()
                                       .u32(0x4B4F564D)
                                       .u32(24)
                                       .u32(1) // tags
                                       .u32(0) // configurations
                                       .u32(1) // version
                                       .u32(0) // destination
                                       .u32(0x8159000)
                                       .u32(144)
                                       .text("__ZUL_ID__", 64)
                                       .u16(300)
                                       .zeros(2)
                                       .u32(0)
                                       .text("__INVALID_ZUL_ID__", 64));
}

TEST(ZulSave, WritesVersionAuthorNameTagsConfigurations)
{
    ZUL zul;
    auto* const config = new ZUL_multi_data(&zul); // the reverse of the order in which they are written
    config->setIndex(3);
    config->setFpgaType(0xF00D);
    config->setData("bits", 4);
    zul.AddConfig(config, nullptr);
    zul.setId("4711");
    zul.AddTag(new ZUL_process(&zul, 2, "second"));
    zul.AddTag(new ZUL_process(&zul, 1, "first"));
    zul.setDesignName("name");
    zul.setAuthor("author");
    zul.setDesignVersion("version");
    auto const process = [](std::uint32_t id, char const* name) {
        return Bytes().u32(0x8158000).u32(80).u32(id).text(name, 64).u32(0);
    };
    EXPECT_EQ(savedContainer(zul), headBytes(6, 1)
                                       .append(sample::designVersion("version"))
                                       .append(sample::author("author"))
                                       .append(sample::designName("name"))
                                       .append(sample::userInfo("__ZUL_ID__", "4711"))
                                       .append(process(2, "second"))
                                       .append(process(1, "first"))
                                       .u32(0x8150120)
                                       .u32(92)
                                       .u32(0xF00D)
                                       .zeros(5 * 4)
                                       .zeros(48)
                                       .u32(3)
                                       .zeros(4)
                                       .chars("bits"));
}

TEST(ZulSave, LoadedContainerIsWrittenBackByteForByte)
{
    LoadedContainer loaded(sample::everyKind());
    EXPECT_EQ(savedContainer(loaded.zul), sample::everyKind());
}

TEST(ZulSave, HeadsDestinationWordIsWrittenBack)
{
    LoadedContainer loaded(headBytes(1, 0, 1, 0xDEADBEEF).append(sample::userInfo("__ZUL_ID__", "x")));
    EXPECT_EQ(savedContainer(loaded.zul),
              headBytes(1, 0, 1, 0xDEADBEEF).append(sample::userInfo("__ZUL_ID__", "x")));
}

TEST(ZulSave, WrongSizeOrNullBufferWritesNothing)
{
    ZUL zul;
    zul.setId("x");
    for (unsigned long const size : {0UL, 24UL, 167UL, 169UL, 0xFFFFFFFFFFFFFFFFUL}) {
        Bytes buffer = Bytes().fill(0xA5, 169);
        EXPECT_EQ(zul.Save(buffer.data(), size), refused) << size;
        EXPECT_EQ(buffer, Bytes().fill(0xA5, 169));
    }
    EXPECT_EQ(zul.Save(nullptr, 168), refused);
    EXPECT_EQ(zul.Save(nullptr, 0), refused);
}

TEST(ZulSave, WritesNotOneByteMoreThanItsLength)
{
    ZUL zul;
    Bytes buffer = Bytes().fill(0xA5, zul.getSaveLength() + 16);
    ASSERT_EQ(zul.Save(buffer.data(), buffer.size() - 16), 0);
    EXPECT_EQ(Bytes(buffer).cut(buffer.size() - 16).fill(0xA5, 16), buffer);
}

TEST(ZulSave, MeasuringMakesAnIdOnce)
{
    ZUL zul;
    zul.AddConfig(new ZUL_multi_data(noContainer), nullptr);
    EXPECT_EQ(zul.getSaveLength(), 24U + 144U + 88U);
    EXPECT_EQ(zul.getSaveLength(), 24U + 144U + 88U);
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
    EXPECT_STREQ(zul.getId(), "__INVALID_ZUL_ID__");
    EXPECT_EQ(zul.getConfigAt(0)->getId(), nullptr) << "configurations get none";
    zul.setId("real");
    zul.getSaveLength();
    EXPECT_STREQ(zul.getId(), "real");
}

TEST(ZulSave, VersionNumberOfNothingIsNeitherWrittenNorCounted)
{
    ZUL zul;
    zul.setId("x");
    for (unsigned char const index : std::initializer_list<unsigned char>{1, 2}) {
        auto* const number = new ZUL_design_version_nr(&zul);
        number->setIndex(index);
        number->setRevision(index == 1 ? 0 : 9);
        zul.AddTag(number);
    }
    EXPECT_EQ(zul.getTotalTagCount(), 3U);
    Bytes const saved = savedContainer(zul);
    EXPECT_EQ(
        saved,
        headBytes(2).append(sample::userInfo("__ZUL_ID__", "x")).append(sample::versionNumber(2, 0, 9)));
    LoadedContainer const again(saved);
    EXPECT_EQ(again.zul.getTotalTagCount(), 2U);
}

TEST(ZulSave, TagThatCannotBeSavedIsRefusedWithItsReason)
{
    ZUL zul;
    zul.AddTag(new ZUL_module(&zul, nullptr));
    constexpr char const* reason = "Tried to save a ZUL_module that has no ZUL_process assigned to";
    Bytes buffer = Bytes().fill(0xA5, 288);
    EXPECT_TRUE(throws<std::runtime_error>([&] { zul.getSaveLength(); }, reason));
    EXPECT_TRUE(throws<std::runtime_error>([&] { zul.Save(buffer.data(), buffer.size()); }, reason));
    EXPECT_EQ(buffer, Bytes().fill(0xA5, 288));
}

TEST(ZulSave, ParameterTypeWithoutValueIsAnInvalidArgument)
{
    ZUL zul;
    auto* const module = new ZUL_module(&zul, nullptr);
    zul.AddTag(module);
    zul.AddTag(new ZUL_param(&zul, QL_ParamType{9}, module));
    zul.AddTag(new ZUL_process(&zul, 0, nullptr));
    module->setProcess(zul.getProcessAt(0));
    EXPECT_TRUE(throws<std::invalid_argument>([&] { zul.getSaveLength(); },
                                              "Save Zul Param: Tried to write an unimplemented type"));
}

TEST(ZulSave, ConfigurationIsAskedBeforeItIsSaved)
{
    class Refusing : public ZUL_multi_data {
    public:
        using ZUL_multi_data::ZUL_multi_data;
        void checkDependentFields() override { throw std::runtime_error("asked"); }
    };
    ZUL zul;
    zul.AddConfig(new Refusing(&zul), nullptr);
    EXPECT_TRUE(throws<std::runtime_error>([&] { zul.getSaveLength(); }, "asked"));
}

TEST(ZulSave, RemovedReferenceIsMissedAtTheNextSave)
{
    LoadedContainer loaded(ContainerBytes().tag(sample::process(0)).tag(sample::module(0, 0)).build());
    loaded.zul.removeTags(ZUL_process::tag_id);
    EXPECT_THROW(loaded.zul.getSaveLength(), std::runtime_error);
}

TEST(ZulSave, PaddedContainerLosesItsPadding)
{
    Bytes const honest = ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "x")).build();
    LoadedContainer loaded(Bytes(honest).fill(0xFF, 8));
    EXPECT_EQ(savedContainer(loaded.zul), honest);
}

class SaveLibs : public testing::Test {
protected:
    int save(std::uint32_t system, ZUL_dll::savepolicy policy = ZUL_dll::keep)
    {
        return zul.saveLibs(directory.path(), zul_opsys{system}, policy);
    }
    ZUL_dll* add(char const* name, std::uint32_t system, char const* bytes = "bytes")
    {
        auto* const lib = new ZUL_dll(&zul);
        lib->setName(name);
        lib->setSystem(zul_opsys{system});
        lib->setData(bytes, std::strlen(bytes));
        zul.AddLib(lib);
        return lib;
    }

    TemporaryDirectory directory;
    ZUL zul;
};

TEST_F(SaveLibs, WritesThoseOfTheSystem)
{
    add("a", 516);
    add("b", 517);
    add("c", 516, "other");
    EXPECT_EQ(save(516), 0);
    EXPECT_EQ(entriesOf(directory.path()), (std::vector<std::string>{"liba.dylib", "libc.dylib"}));
    EXPECT_EQ(readFile(directory / "libc.dylib"), Bytes().chars("other"));
}

TEST_F(SaveLibs, NoLibraryOfTheSystemIsNotFound)
{
    EXPECT_EQ(save(516), -2);
    add("a", 516);
    EXPECT_EQ(save(517), -2);
    EXPECT_TRUE(entriesOf(directory.path()).empty());
}

TEST_F(SaveLibs, StopsAtTheFirstThatFails)
{
    add("a", 516);
    add("in/another/directory", 516);
    add("c", 516);
    EXPECT_EQ(save(516), -2);
    EXPECT_EQ(entriesOf(directory.path()), std::vector<std::string>{"liba.dylib"});
}

TEST_F(SaveLibs, HandsThePolicyOn)
{
    writeFile(directory / "liba.dylib", Bytes().chars("old"));
    add("a", 516);
    EXPECT_EQ(save(516, ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(directory / "liba.dylib"), Bytes().chars("old"));
    EXPECT_EQ(save(516, ZUL_dll::replace), 0);
    EXPECT_EQ(readFile(directory / "liba.dylib"), Bytes().chars("bytes"));
}

} // namespace
