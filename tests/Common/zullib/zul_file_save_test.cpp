#include "child_process.h"
#include "container_bytes.h"
#include "failing_call.h"
#include "files.h"
#include "listing.h"
#include "loaded_container.h"
#include "sample_tags.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

constexpr int unexpectedException = -14;

class FileSave : public testing::Test {
protected:
    FileSave() { writeFile(path, sample::everyKind()); }
    ~FileSave() override { EXPECT_EQ(openDescriptors(), m_descriptors) << "a descriptor is left open"; }

    void expectUntouched() const
    {
        EXPECT_EQ(readFile(path), sample::everyKind());
        EXPECT_EQ(entriesOf(directory.path()), Names{"design.zul"});
    }

    TemporaryDirectory directory;
    std::string const path = directory / "design.zul";

private:
    std::size_t m_descriptors = openDescriptors();
};

TEST_F(FileSave, WritesWhatTheBufferFormWrites)
{
    LoadedContainer loaded(sample::everyKind());
    EXPECT_EQ(loaded.zul.Save((directory / "new.zul").c_str()), 0);
    EXPECT_EQ(readFile(directory / "new.zul"), sample::everyKind());
    EXPECT_EQ(entriesOf(directory.path()), (Names{"design.zul", "new.zul"}));
}

TEST_F(FileSave, BytesThatNoTagWritesAreZero)
{
    // Reserved bytes of a module, a configuration and an older register come from the file with rubbish in them.
    Bytes const module = sample::module(0, 0);
    Bytes dirty = module;
    dirty.setU8(20, 0xA5).setU8(110, 0xA5);
    LoadedContainer loaded(
        ContainerBytes().tag(sample::userInfo("__ZUL_ID__", "x")).tag(sample::process(0)).tag(dirty).build());
    EXPECT_EQ(loaded.zul.Save(path.c_str()), 0);
    EXPECT_EQ(readFile(path), ContainerBytes()
                                  .tag(sample::userInfo("__ZUL_ID__", "x"))
                                  .tag(sample::process(0))
                                  .tag(module)
                                  .build());
}

TEST_F(FileSave, WhatIsSavedIsLoaded)
{
    ZUL zul;
    zul.AddTag(new ZUL_design_version_nr(&zul)); // not written
    zul.setAuthor("author");
    ASSERT_EQ(zul.Save(path.c_str()), 0);
    ZUL again;
    EXPECT_EQ(again.Load(path.c_str()), 0);
    EXPECT_STREQ(again.getAuthor(), "author");
    EXPECT_STREQ(again.getId(), "__INVALID_ZUL_ID__");
}

TEST_F(FileSave, TagThatCannotBeMeasuredTouchesNothing)
{
    ZUL zul;
    zul.AddTag(new ZUL_module(&zul, nullptr));
    EXPECT_EQ(zul.Save(path.c_str()), unexpectedException);
    EXPECT_EQ(zul.Save((directory / "new.zul").c_str()), unexpectedException);
    EXPECT_EQ(zul.Save(static_cast<char const*>(nullptr)), unexpectedException)
        << "measured before anything else";
    expectUntouched();
}

/// A tag of somebody's own that does what a test wants when it is measured or saved.
class OddTag : public ZUL_tag {
public:
    unsigned long Load(void const*, unsigned long avail) override { return avail; }
    unsigned long getSaveLength() override { return length(); }
    void Save(void* dst) override { save(dst); }
    std::uint32_t getTagId() const override { return 0x4242; }

    std::function<unsigned long()> length = [] { return 8UL; };
    std::function<void(void*)> save = [](void*) {};
};

TEST_F(FileSave, NoExceptionLeavesIt)
{
    struct Strange {};
    ZUL zul;
    auto* const tag = new OddTag;
    zul.AddTag(tag);
    tag->length = []() -> unsigned long { throw Strange{}; };
    EXPECT_EQ(zul.Save(path.c_str()), unexpectedException);
    tag->length = [] { return 8UL; };
    tag->save = [](void*) { throw Strange{}; };
    EXPECT_EQ(zul.Save(path.c_str()), unexpectedException);
    tag->save = [](void*) { throw std::runtime_error("in the middle"); };
    EXPECT_EQ(zul.Save(path.c_str()), unexpectedException);
    EXPECT_EQ(zul.Save((directory / "new.zul").c_str()), unexpectedException);
    tag->save = [](void*) { throw std::bad_alloc(); };
    EXPECT_EQ(zul.Save(path.c_str()), -ENOMEM);
    expectUntouched();
}

TEST_F(FileSave, ResultOfTheBufferFormDoesNotCountButItsFileDoes)
{
    ZUL zul;
    auto* const tag = new OddTag;
    zul.AddTag(tag);
    tag->length = [calls = 0UL]() mutable { return 8 + 8 * ++calls; }; // never the same twice
    EXPECT_EQ(zul.Save(path.c_str()), 0);
    expectUntouched();
}

TEST_F(FileSave, FileThatCannotBeOpenedIsItsErrno)
{
    ZUL zul;
    EXPECT_EQ(zul.Save(directory.path()), -EISDIR);
    EXPECT_EQ(zul.Save((directory / "missing/design.zul").c_str()), -ENOENT);
    EXPECT_EQ(zul.Save(""), -ENOENT);
    EXPECT_EQ(zul.Save((path + "/below").c_str()), -ENOTDIR);
    EXPECT_EQ(zul.Save(static_cast<char const*>(nullptr)), -EINVAL);
    expectUntouched();
    chmod(path.c_str(), 0444);
    chmod(directory.path(), 0755);
    EXPECT_EQ(asOrdinaryUser([&] { return zul.Save(path.c_str()); }), -EACCES);
    EXPECT_EQ(asOrdinaryUser([&] { return zul.Save((directory / "new.zul").c_str()); }),
              geteuid() == 0 ? -EACCES : 0);
    EXPECT_EQ(readFile(path), sample::everyKind());
}

TEST_F(FileSave, DevicesTakeEverythingOrSayThatTheyAreFull)
{
    ZUL zul;
    EXPECT_EQ(zul.Save("/dev/null"), 0);
    EXPECT_EQ(zul.Save("/dev/full"), -ENOSPC);
}

TEST_F(FileSave, TooLargeAFileLeavesTheOldOneUntouched)
{
    LoadedContainer loaded(sample::everyKind());
    std::vector<char> const bits(1 << 20U);
    loaded.zul.getConfigAt(0)->setData(bits.data(), bits.size());
    EXPECT_EQ(withFileSizeLimit(1 << 16U, [&] { return loaded.zul.Save(path.c_str()); }), -EFBIG);
    expectUntouched();
}

/// The ways to name the file that a container was loaded from.
class SaveOverLoadedFile : public FileSave {
protected:
    void saveAndCompare(std::string const& as)
    {
        ZUL zul;
        ASSERT_EQ(zul.Load(path.c_str()), 0);
        zul.AddTag(new ZUL_comment(&zul)); // everything behind it moves
        zul.setAuthor("another author");
        Bytes const expected = savedContainer(zul);
        ASSERT_EQ(zul.Save(as.c_str()), 0);
        EXPECT_EQ(readFile(as), expected);
        EXPECT_EQ(savedContainer(zul), expected) << "payloads are what they were";
        ASSERT_EQ(zul.Save(as.c_str()), 0);
        EXPECT_EQ(readFile(as), expected) << "and can be saved again";
        zul.removeTags(ZUL_comment::tag_id);
        ASSERT_EQ(zul.Save(as.c_str()), 0);
        EXPECT_EQ(zul.getConfigAt(0)->getLength(), 9U);
        EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(0)->getData()), 9), "bitstream");
        auto const* const lib = static_cast<ZUL_dll*>(zul.getTagAt(ZUL_dll::tag_id, 0));
        EXPECT_EQ(std::string_view(static_cast<char const*>(lib->getLib()), lib->getLibLength()),
                  "library bytes");
    }
};

TEST_F(SaveOverLoadedFile, ByItsName)
{
    saveAndCompare(path);
    EXPECT_EQ(entriesOf(directory.path()), Names{"design.zul"});
}

TEST_F(SaveOverLoadedFile, ByASymbolicLink)
{
    fs::create_symlink("design.zul", directory / "link.zul");
    saveAndCompare(directory / "link.zul");
    EXPECT_TRUE(fs::is_symlink(directory / "link.zul"));
}

TEST_F(SaveOverLoadedFile, ByAnotherNameOfTheSameFile)
{
    ASSERT_EQ(link(path.c_str(), (directory / "second.zul").c_str()), 0);
    saveAndCompare(directory / "second.zul");
    EXPECT_EQ(readFile(path), readFile(directory / "second.zul"));
    EXPECT_TRUE(fs::equivalent(path, directory / "second.zul"));
}

TEST_F(SaveOverLoadedFile, InADirectoryThatCannotBeWritten)
{
    chmod(path.c_str(), 0666);
    chmod(directory.path(), 0555);
    EXPECT_EQ(asOrdinaryUser([this] {
                  saveAndCompare(path);
                  return HasFailure() ? 1 : 0;
              }),
              0);
    chmod(directory.path(), 0700);
}

TEST_F(SaveOverLoadedFile, ThatIsLargerThanAPage)
{
    // Several pages of payload, so that a detached mapping has more than one.
    std::string bits(50'000, '\0');
    for (std::size_t i = 0; i < bits.size(); ++i) {
        bits[i] = static_cast<char>(i * 7 / 3);
    }
    writeFile(path, ContainerBytes()
                        .tag(sample::userInfo("__ZUL_ID__", "x"))
                        .config(sample::config(1, bits))
                        .config(sample::config(2, "tail"))
                        .build());
    ASSERT_EQ(link(path.c_str(), (directory / "second.zul").c_str()), 0);
    ZUL zul;
    ASSERT_EQ(zul.Load(path.c_str()), 0);
    zul.AddTag(new ZUL_comment(&zul));
    ASSERT_EQ(zul.Save(path.c_str()), 0);
    EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(0)->getData()), bits.size()), bits);
    EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(1)->getData()), 4), "tail");
}

TEST_F(SaveOverLoadedFile, IsRefusedWhenItsBytesCannotBeKept)
{
    Bytes const before = readFile(path);
    ASSERT_EQ(link(path.c_str(), (directory / "second.zul").c_str()), 0);
    ZUL zul;
    ASSERT_EQ(zul.Load(path.c_str()), 0);
    zul.AddTag(new ZUL_comment(&zul));
    Bytes const expected = savedContainer(zul);
    auto const save = [&] {
        int const result = zul.Save(path.c_str());
        return savedContainer(zul) == expected ? result : 1;
    };
    EXPECT_EQ(withFailingCall(SYS_mremap, ENOMEM, save), -ENOMEM);
    EXPECT_EQ(readFile(path), before);
}

TEST_F(SaveOverLoadedFile, WhenASecondFileWasLoadedToo)
{
    std::string const second = directory / "second.zul";
    writeFile(second, ContainerBytes().config(sample::config(7, "second bits")).build());
    ASSERT_EQ(link(second.c_str(), (directory / "other name.zul").c_str()), 0);
    ZUL zul;
    ASSERT_EQ(zul.Load(path.c_str()), 0);
    ASSERT_EQ(zul.Load(second.c_str(), ZUL_LOAD_TOLERANT), 0);
    ASSERT_EQ(zul.Save(second.c_str()), 0);
    EXPECT_EQ(std::string_view(static_cast<char const*>(zul.getConfigAt(1)->getData()), 11), "second bits");
    EXPECT_EQ(readFile(second), savedContainer(zul));
}

} // namespace
