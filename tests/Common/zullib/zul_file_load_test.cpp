#include "captured_output.h"
#include "child_process.h"
#include "container_bytes.h"
#include "files.h"
#include "listing.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int refused = -22;
constexpr ZULLoadMode otherMode{2};

class FileLoad : public testing::Test {
protected:
    int load(Bytes const& bytes, char const* name = "design.zul")
    {
        writeFile(directory / name, bytes);
        return loadFile(name);
    }
    int loadFile(std::string const& name)
    {
        CapturedOutput const output;
        int const result = zul.Load((directory / name).c_str());
        printed = output.text();
        return result;
    }
    /// Whether the file @p name is mapped into this process.
    bool isMapped(std::string const& name) const
    {
        std::ifstream maps("/proc/self/maps");
        for (std::string line; std::getline(maps, line);) {
            if (line.find(directory / name) != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    TemporaryDirectory directory;
    std::string printed;
    ZUL zul;
};

TEST_F(FileLoad, GivesWhatTheBufferFormGives)
{
    EXPECT_EQ(load(sample::everyKind()), 0);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(savedContainer(zul), sample::everyKind());
}

TEST_F(FileLoad, KeepsTheMappingButNotTheDescriptor)
{
    std::size_t const before = openDescriptors();
    ASSERT_EQ(load(sample::everyKind()), 0);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_TRUE(isMapped("design.zul"));
    unlink((directory / "design.zul").c_str());
    EXPECT_EQ(savedContainer(zul), sample::everyKind()) << "payloads outlive the file's name";
}

TEST_F(FileLoad, MappingGoesWithTheContainer)
{
    for (Bytes const& bytes : {sample::everyKind(), headBytes(7)}) {
        writeFile(directory / "own.zul", bytes);
        {
            ZUL own;
            own.Load((directory / "own.zul").c_str());
            EXPECT_TRUE(isMapped("own.zul"));
        }
        EXPECT_FALSE(isMapped("own.zul"));
    }
}

TEST_F(FileLoad, FileThatCannotBeMappedIsItsErrno)
{
    EXPECT_EQ(loadFile("missing"), -ENOENT);
    EXPECT_EQ(loadFile(""), -EISDIR);
    EXPECT_EQ(load(Bytes(), "empty"), -EINVAL);
    ASSERT_EQ(mkfifo((directory / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(loadFile("pipe"), -EINVAL);
    EXPECT_EQ(printed, "");
    EXPECT_LT(zul.Load(static_cast<char const*>(nullptr)), 0);
    EXPECT_EQ(zul.getTotalTagCount(), 0U);
}

TEST_F(FileLoad, UnreadableFileIsRefused)
{
    writeFile(directory / "secret", sample::everyKind());
    chmod((directory / "secret").c_str(), 0);
    chmod(directory.path(), 0755);
    EXPECT_EQ(asOrdinaryUser([this] { return loadFile("secret"); }), -EACCES);
}

TEST_F(FileLoad, StructuralRefusalPrintsNothing)
{
    EXPECT_EQ(load(Bytes().chars("no container at all, surely")), refused);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(load(headBytes(0).cut(23)), refused);
    EXPECT_EQ(load(headBytes(5)), refused);
    EXPECT_EQ(printed, "");
}

TEST_F(FileLoad, TagErrorIsPrintedTwiceAndTheLastTimeWithoutLineFeed)
{
    EXPECT_EQ(load(ContainerBytes().tag(sample::author()).tag(sample::author()).build()), refused);
    EXPECT_EQ(printed, "ZUL Exception: duplicate tag found\n"
                       "  Details: \n"
                       "ZUL-Exception while parsing ZUL: duplicate tag found"
                       "  Additional Information: ");
}

TEST_F(FileLoad, DetailsStandBehindBothMessages)
{
    EXPECT_EQ(load(ContainerBytes().tag(sample::author().setU32(4, 70)).build()), refused);
    EXPECT_EQ(printed, "ZUL Exception: tag with invalid length information found\n"
                       "  Details: p\n"
                       "ZUL-Exception while parsing ZUL: tag with invalid length information found"
                       "  Additional Information: p");
}

TEST_F(FileLoad, ErrorOfTheHeadIsPrintedByTheFileFormAlone)
{
    EXPECT_EQ(load(headBytes(0, 0, 2)), refused);
    EXPECT_EQ(printed, "ZUL-Exception while parsing ZUL: malformed tag found  Additional Information: M");
}

TEST_F(FileLoad, OtherExceptionIsUnexpected)
{
    // A raw tag with the id of a process has no order, and sorting asks for one.
    zul.AddTag(new ZUL_binary_data(&zul, ZUL_process::tag_id));
    zul.setLoadMode(ZUL_LOAD_TOLERANT);
    EXPECT_EQ(load(ContainerBytes().tag(sample::process(1)).build()), -EFAULT);
    EXPECT_EQ(printed, "Exception while parsing ZUL: unexpected Exception");
}

TEST_F(FileLoad, TolerantModePrintsAndSucceeds)
{
    zul.setLoadMode(ZUL_LOAD_TOLERANT);
    EXPECT_EQ(load(ContainerBytes().tag(sample::author()).tag(sample::author()).build()), 0);
    EXPECT_EQ(printed, "ZUL Exception: duplicate tag found\n  Details: \n");
}

TEST_F(FileLoad, TagsOfAFailedLoadStayReadable)
{
    Bytes const bytes = ContainerBytes()
                            .tag(sample::process(0))
                            .tag(sample::module(0, 0))
                            .tag(sample::fieldParam("limits", 0))
                            .tag(sample::library("camera", "library bytes"))
                            .config(sample::config(1, "the bits"))
                            .tag(sample::author().setU32(4, 7))
                            .build();
    EXPECT_EQ(load(bytes), refused);
    auto const* const field = static_cast<ZUL_param*>(zul.getTagAt(ZUL_param::tag_id, 0));
    EXPECT_EQ(Bytes().chars({static_cast<char const*>(field->getField()), 24}), Bytes().u64(1).u64(2).u64(3));
    auto const* const lib = static_cast<ZUL_dll*>(zul.getTagAt(ZUL_dll::tag_id, 0));
    EXPECT_EQ(std::string_view(static_cast<char const*>(lib->getLib()), lib->getLibLength()),
              "library bytes");
    auto const* const config = zul.getConfigAt(0);
    EXPECT_EQ(std::string_view(static_cast<char const*>(config->getData()), config->getLength()), "the bits");
}

TEST_F(FileLoad, SecondOneKeepsTheFirstMapping)
{
    ASSERT_EQ(load(ContainerBytes().config(sample::config(1, "first")).build(), "first.zul"), 0);
    zul.setLoadMode(ZUL_LOAD_TOLERANT);
    ASSERT_EQ(load(ContainerBytes().config(sample::config(2, "second")).build(), "second.zul"), 0);
    EXPECT_EQ(load(Bytes().fill(7, 100), "third.zul"), refused);
    EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(0)->getData()), 5), "first");
    EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(1)->getData()), 6), "second");
    EXPECT_TRUE(isMapped("first.zul"));
}

TEST_F(FileLoad, ModeCountsForOneLoadOnly)
{
    writeFile(directory / "design.zul", headBytes(5).append(sample::author()).append(sample::author()));
    std::string const path = directory / "design.zul";
    CapturedOutput const quiet;
    zul.setLoadMode(otherMode);
    EXPECT_EQ(zul.Load(path.c_str(), ZUL_LOAD_TOLERANT), 0);
    EXPECT_EQ(zul.getLoadMode(), otherMode);
    EXPECT_EQ(zul.Load(path.c_str(), ZUL_LOAD_STRICT), refused);
    EXPECT_EQ(zul.getLoadMode(), otherMode) << "also after an error";
    EXPECT_EQ(zul.Load((directory / "missing").c_str(), ZUL_LOAD_STRICT), -ENOENT);
    EXPECT_EQ(zul.getLoadMode(), otherMode);
}

TEST_F(FileLoad, OnlyTheMaskedLengthOfALargeFileIsSeen)
{
    Bytes const bytes = ContainerBytes().tag(sample::comment()).build();
    writeFile(directory / "large.zul", bytes);
    constexpr off_t wrap = 0x8000000;
    ASSERT_EQ(truncate((directory / "large.zul").c_str(), wrap + static_cast<off_t>(bytes.size())), 0);
    EXPECT_EQ(loadFile("large.zul"), 0);
    EXPECT_EQ(zul.getTotalTagCount(), 1U);
    ASSERT_EQ(truncate((directory / "large.zul").c_str(), wrap), 0);
    EXPECT_EQ(loadFile("large.zul"), -EFBIG);
}

} // namespace
