#include "cached_libraries.h"

#include "failing_call.h"
#include "library_designs.h"
#include "private_tmp.h"
#include "zlib_failure.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// A directory with the two files of a design's libraries, to be spoilt in one way. One of them is larger than what is
/// read at a time.
class CachedLibraries : public testing::Test {
protected:
    CachedLibraries()
    {
        writeFile(marker, Bytes().chars("the marker"));
        writeFile(filter, noise(200'000));
    }

    bool holds(ZUL const& zul) const { return holdsLibrariesOf(zul, directory.path()); }
    bool holds() const { return holds(design.zul); }

    TemporaryDirectory directory;
    std::string const marker = directory / "libqel.dylib";
    std::string const filter = directory / "libfilter.dylib";
    LibraryDesign const design{nullptr,
                               {sample::library("qel", "the marker"),
                                compressedLibraryTag("filter", deflated(noise(200'000))),
                                sample::library("filter", "for another system", 517)}};
};

/// Somebody's own class under the id of libraries.
class OwnLibrary : public ZUL_comment {
public:
    using ZUL_comment::ZUL_comment;
    std::uint32_t getTagId() const override { return ZUL_dll::tag_id; }
};

TEST_F(CachedLibraries, AreHeldByteForByte)
{
    EXPECT_TRUE(holds());
}

TEST_F(CachedLibraries, AreHeldWhateverFailedBefore)
{
    errno = EINTR;
    EXPECT_TRUE(holds());
}

TEST_F(CachedLibraries, AreNotHeldWithOneByteMoreLessOrDifferent)
{
    for (std::string const& path : {marker, filter}) {
        Bytes const right = readFile(path);
        writeFile(path, Bytes().append(right).u8(0));
        EXPECT_FALSE(holds()) << "one byte more in " << path;
        std::filesystem::resize_file(path, right.size() - 1);
        EXPECT_FALSE(holds()) << "one byte less in " << path;
        for (std::size_t const place : {std::size_t{0}, right.size() / 2, right.size() - 1}) {
            Bytes wrong = right;
            wrong.data()[place] ^= std::byte{1};
            writeFile(path, wrong);
            EXPECT_FALSE(holds()) << "byte " << place << " of " << path;
        }
        writeFile(path, right);
        EXPECT_TRUE(holds());
    }
}

TEST_F(CachedLibraries, AreNotHeldWhenAFileIsMissing)
{
    std::filesystem::remove(filter);
    EXPECT_FALSE(holds());
}

TEST_F(CachedLibraries, AreNotHeldBesideAnythingElse)
{
    writeFile(directory / "other", Bytes());
    EXPECT_FALSE(holds());
}

TEST_F(CachedLibraries, AreNotHeldWhereThereIsNoDirectory)
{
    EXPECT_FALSE(holdsLibrariesOf(design.zul, (directory / "missing").c_str()));
    EXPECT_FALSE(holdsLibrariesOf(design.zul, marker.c_str()));
    std::string const link = directory / "link";
    ASSERT_EQ(symlink(".", link.c_str()), 0);
    EXPECT_FALSE(holdsLibrariesOf(design.zul, link.c_str()));
}

TEST_F(CachedLibraries, AreNotHeldByLinksOrFifos)
{
    std::filesystem::rename(marker, directory / "elsewhere");
    ASSERT_EQ(symlink("elsewhere", marker.c_str()), 0);
    EXPECT_FALSE(holds());
    std::filesystem::remove(marker);
    ASSERT_EQ(mkfifo(marker.c_str(), 0600), 0);
    EXPECT_FALSE(holds());
}

TEST_F(CachedLibraries, AreNotHeldByFilesOfAnotherUser)
{
    inPrivateTmp([this] {
        ASSERT_EQ(mkdir("/tmp/held", 0700), 0);
        for (char const* const path : {"/tmp/held/libqel.dylib", "/tmp/held/libfilter.dylib"}) {
            writeFile(path, path[13] == 'q' ? Bytes().chars("the marker") : noise(200'000));
        }
        EXPECT_TRUE(holdsLibrariesOf(design.zul, "/tmp/held"));
        giveAway("/tmp/held/libqel.dylib");
        EXPECT_FALSE(holdsLibrariesOf(design.zul, "/tmp/held"));
    });
}

TEST_F(CachedLibraries, AreNotHeldByWhatCannotBeRead)
{
    for (long const call : {SYS_newfstatat, SYS_read, SYS_openat}) {
        EXPECT_EQ(withFailingCall(call, EIO, [this] { return holds() ? 1 : 0; }), 0) << call;
    }
}

TEST_F(CachedLibraries, ThatCannotBeInflatedAreInNoFile)
{
    Bytes stream = deflated(noise(200'000));
    stream.data()[stream.size() / 2] ^= std::byte{1};
    LibraryDesign const damaged(
        nullptr, {sample::library("qel", "the marker"), compressedLibraryTag("filter", stream)});
    EXPECT_FALSE(holds(damaged.zul));
    LibraryDesign const noStream(nullptr, {sample::library("qel", "the marker"),
                                           compressedLibraryTag("filter", Bytes().chars("no stream"))});
    EXPECT_FALSE(holds(noStream.zul));
}

TEST_F(CachedLibraries, AreNotHeldWhenInflatingFails)
{
    ZlibFailure const failure(ZlibFailure::Of::Inflate, Z_STREAM_ERROR);
    EXPECT_FALSE(holds());
}

TEST_F(CachedLibraries, OfAnotherSystemAreInNoDirectory)
{
    LibraryDesign const other(nullptr, {sample::library("filter", "for another system", 517)});
    std::filesystem::remove(marker);
    std::filesystem::remove(filter);
    EXPECT_FALSE(holds(other.zul));
    EXPECT_FALSE(holds(ZUL()));
}

TEST_F(CachedLibraries, WithoutNameHaveAFileToo)
{
    LibraryDesign const nameless(nullptr, {sample::library("", "contents")});
    std::filesystem::remove(marker);
    std::filesystem::remove(filter);
    writeFile(directory / "lib.dylib", Bytes().chars("contents"));
    EXPECT_TRUE(holds(nameless.zul));
}

TEST_F(CachedLibraries, DoNotCountWhatIsNoLibraryUnderTheirId)
{
    LibraryDesign own(nullptr, {sample::library("qel", "the marker")});
    own.zul.AddTag(new OwnLibrary(&own.zul));
    std::filesystem::remove(filter);
    EXPECT_TRUE(holds(own.zul));
}

} // namespace
