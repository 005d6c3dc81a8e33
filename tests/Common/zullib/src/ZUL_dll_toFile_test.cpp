#include "ZUL_dll.h"
#include "bytes.h"
#include "child_process.h"
#include "files.h"
#include "libraries.h"
#include "throwing.h"
#include "zlib_failure.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cerrno>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr ZUL* noContainer = nullptr;

/// A library tag that was read from a container.
class Library {
public:
    Library(std::string_view name, bool compressed, Bytes const& stored)
        : m_bytes(Bytes()
                      .u32(0x8154000)
                      .u32(96 + stored.size())
                      .zeros(8)
                      .u32(516)
                      .u32(0)
                      .u32(compressed ? 1 : 0)
                      .text(name, 64)
                      .u32(0)
                      .append(stored)),
          m_tag(noContainer)
    {
        m_tag.Load(m_bytes.data(), m_bytes.size());
    }

    ZUL_dll const* operator->() const { return &m_tag; }

private:
    Bytes m_bytes;
    ZUL_dll m_tag;
};

Library rawLibrary(Bytes const& contents, std::string_view name = "x")
{
    return {name, false, contents};
}

Library compressedLibrary(Bytes const& contents, std::string_view name = "x")
{
    return {name, true, deflated(contents)};
}

using ToFile = LibraryFiles;

TEST_F(ToFile, WritesRawBytesUnderTheLibrarysName)
{
    EXPECT_EQ(rawLibrary(noise(300'000), "filter")->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_TRUE(readFile(in("libfilter.dylib")) == noise(300'000));
    struct stat status {};
    ASSERT_EQ(stat(in("libfilter.dylib").c_str(), &status), 0);
    mode_t const mask = umask(0);
    umask(mask);
    EXPECT_EQ(status.st_mode & 0777U, 0644U & ~mask);
}

TEST_F(ToFile, WritesNoBytes)
{
    EXPECT_EQ(rawLibrary(Bytes())->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes());
    EXPECT_TRUE(exists(in("libx.dylib")));
}

TEST_F(ToFile, WritesCompressedBytesInflated)
{
    EXPECT_EQ(compressedLibrary(Bytes().chars("contents"))->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("contents"));
}

TEST_F(ToFile, InflatesWhateverTheRatio)
{
    Bytes const contents = Bytes().fill('z', 20'000'000); // some thousand times its stored size
    EXPECT_EQ(compressedLibrary(contents)->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_TRUE(readFile(in("libx.dylib")) == contents);
}

TEST_F(ToFile, BytesBehindTheStreamAreIgnored)
{
    Library const library("x", true, deflated(Bytes().chars("contents")).chars("trailing"));
    EXPECT_EQ(library->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("contents"));
}

TEST_F(ToFile, LibraryWithoutNameHasAnEmptyOne)
{
    EXPECT_EQ(rawLibrary(Bytes().chars("contents"), "")->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("lib.dylib")), Bytes().chars("contents"));
}

TEST_F(ToFile, NameWithSlashIsRefusedBeforeAnythingIsTouched)
{
    ASSERT_TRUE(std::filesystem::create_directory(in("liba")));
    writeFile(in("liba/b.dylib"), Bytes().chars("old"));
    for (char const* const name : {"a/b", "/", "a/", "/../../x"}) {
        for (auto const policy : {ZUL_dll::keep, ZUL_dll::overwrite, ZUL_dll::replace}) {
            EXPECT_EQ(rawLibrary(Bytes().chars("new"), name)->toFile(dir(), policy), -ENOENT) << name;
        }
    }
    EXPECT_EQ(readFile(in("liba/b.dylib")), Bytes().chars("old"));
}

TEST_F(ToFile, DotsInTheNameStayInTheDirectory)
{
    EXPECT_EQ(rawLibrary(Bytes().chars("contents"), "..")->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("lib...dylib")), Bytes().chars("contents"));
}

TEST_F(ToFile, MissingDirectoryIsReported)
{
    EXPECT_EQ(rawLibrary(noise(1))->toFile(in("missing").c_str(), ZUL_dll::keep), -ENOENT);
    EXPECT_EQ(rawLibrary(noise(1))->toFile(nullptr, ZUL_dll::keep), -EINVAL);
}

TEST_F(ToFile, FailureToLookForTheFileIsReported)
{
    writeFile(in("file"), Bytes());
    for (auto const policy : {ZUL_dll::keep, ZUL_dll::overwrite, ZUL_dll::replace}) {
        EXPECT_EQ(rawLibrary(noise(1))->toFile(in("file").c_str(), policy), -ENOTDIR);
        EXPECT_EQ(rawLibrary(noise(1))->toFile(in(std::string(300, 'd')).c_str(), policy), -ENAMETOOLONG);
    }
}

TEST_F(ToFile, LongPathIsCutAt1023Bytes)
{
    std::string longDir = dir();
    while (longDir.size() + 2 <= 1015) {
        longDir += "/.";
    }
    std::size_t const room = 1023 - longDir.size() - 4; // behind "/lib"
    ASSERT_LT(room, 8U);
    EXPECT_EQ(rawLibrary(Bytes().chars("contents"), "abcdefgh")->toFile(longDir.c_str(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("lib" + std::string("abcdefgh").substr(0, room))), Bytes().chars("contents"));
}

TEST_F(ToFile, KeepLeavesAFileAsItIs)
{
    writeFile(in("libx.dylib"), Bytes().chars("old"));
    EXPECT_EQ(rawLibrary(Bytes().chars("new"))->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(Library("x", true, Bytes().chars("corrupt"))->toFile(dir(), ZUL_dll::keep), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("old"));
    std::filesystem::create_directory(in("liby.dylib"));
    EXPECT_EQ(rawLibrary(Bytes().chars("new"), "y")->toFile(dir(), ZUL_dll::keep), 0);
}

TEST_F(ToFile, OverwriteWritesIntoTheFile)
{
    writeFile(in("libx.dylib"), Bytes().chars("a long old text"));
    ASSERT_EQ(link(in("libx.dylib").c_str(), in("other name").c_str()), 0);
    EXPECT_EQ(rawLibrary(Bytes().chars("new"))->toFile(dir(), ZUL_dll::overwrite), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("new"));
    EXPECT_EQ(readFile(in("other name")), Bytes().chars("new"));
}

TEST_F(ToFile, OverwriteMakesAMissingFile)
{
    EXPECT_EQ(rawLibrary(Bytes().chars("new"))->toFile(dir(), ZUL_dll::overwrite), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("new"));
}

TEST_F(ToFile, ReplaceMakesANewFile)
{
    writeFile(in("libx.dylib"), Bytes().chars("old"));
    ASSERT_EQ(link(in("libx.dylib").c_str(), in("other name").c_str()), 0);
    EXPECT_EQ(rawLibrary(Bytes().chars("new"))->toFile(dir(), ZUL_dll::replace), 0);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("new"));
    EXPECT_EQ(readFile(in("other name")), Bytes().chars("old"));
    EXPECT_EQ(rawLibrary(Bytes().chars("y"), "y")->toFile(dir(), ZUL_dll::replace), 0);
    EXPECT_EQ(readFile(in("liby.dylib")), Bytes().chars("y"));
}

TEST_F(ToFile, AnyOtherPolicyWritesIntoTheFile)
{
    writeFile(in("libx.dylib"), Bytes().chars("a long old text"));
    ASSERT_EQ(link(in("libx.dylib").c_str(), in("other name").c_str()), 0);
    EXPECT_EQ(rawLibrary(Bytes().chars("new"))->toFile(dir(), static_cast<ZUL_dll::savepolicy>(3)), 0);
    EXPECT_EQ(readFile(in("other name")), Bytes().chars("new"));
}

TEST_F(ToFile, DirectoryUnderTheNameCannotBeWritten)
{
    std::filesystem::create_directory(in("libx.dylib"));
    EXPECT_EQ(rawLibrary(noise(1))->toFile(dir(), ZUL_dll::overwrite), -EISDIR);
    EXPECT_EQ(rawLibrary(noise(1))->toFile(dir(), ZUL_dll::replace), -EISDIR);
    EXPECT_TRUE(std::filesystem::is_directory(in("libx.dylib")));
}

TEST_F(ToFile, FileThatMayNotBeWrittenSatisfiesOverwriteOnly)
{
    writeFile(in("libx.dylib"), Bytes().chars("old"));
    ASSERT_EQ(chmod(in("libx.dylib").c_str(), 0444), 0);
    ASSERT_EQ(chmod(dir(), 0555), 0);
    auto const result = [this](unsigned policy) {
        return asOrdinaryUser([this, policy] {
            return rawLibrary(Bytes().chars("new"))->toFile(dir(), static_cast<ZUL_dll::savepolicy>(policy));
        });
    };
    EXPECT_EQ(result(ZUL_dll::keep), 0);
    EXPECT_EQ(result(ZUL_dll::overwrite), 0);
    EXPECT_EQ(result(ZUL_dll::replace), -EACCES) << "removing it failed, which alone is no error";
    EXPECT_EQ(result(3), -EACCES);
    EXPECT_EQ(readFile(in("libx.dylib")), Bytes().chars("old"));
    ASSERT_EQ(chmod(dir(), 0755), 0);
}

TEST_F(ToFile, DirectoryThatMayNotBeWrittenSatisfiesOverwriteOnly)
{
    ASSERT_EQ(chmod(dir(), 0555), 0);
    auto const result = [this](ZUL_dll::savepolicy policy) {
        return asOrdinaryUser([this, policy] { return rawLibrary(noise(1))->toFile(dir(), policy); });
    };
    EXPECT_EQ(result(ZUL_dll::keep), -EACCES);
    EXPECT_EQ(result(ZUL_dll::overwrite), 0);
    EXPECT_EQ(result(ZUL_dll::replace), -EACCES);
    ASSERT_EQ(chmod(dir(), 0755), 0);
    EXPECT_TRUE(isEmpty());
}

TEST_F(ToFile, DirectoryThatMayNotBeSearchedSatisfiesNone)
{
    ASSERT_EQ(chmod(dir(), 0), 0);
    for (auto const policy : {ZUL_dll::keep, ZUL_dll::overwrite, ZUL_dll::replace}) {
        EXPECT_EQ(asOrdinaryUser([this, policy] { return rawLibrary(noise(1))->toFile(dir(), policy); }),
                  -EACCES);
    }
    ASSERT_EQ(chmod(dir(), 0755), 0);
}

TEST_F(ToFile, CorruptStreamLeavesNoFile)
{
    Bytes const stream = deflated(noise(200'000));
    Bytes const damaged = Bytes(stream).setU8(150'000, stream.data()[150'000] == std::byte{0} ? 1 : 0);
    Bytes const broken[] = {
        Bytes(),                                     // no bytes at all
        Bytes().chars("no stream"),                  //
        Bytes(stream).cut(stream.size() - 1),        // cut in the checksum, with everything written
        Bytes(stream).cut(stream.size() / 2),        //
        damaged,                                     //
        Bytes().u8(0x78).u8(0x20).u32(1).u8(3).u8(0) // needs a dictionary
    };
    for (Bytes const& each : broken) {
        for (auto const policy : {ZUL_dll::keep, ZUL_dll::overwrite, ZUL_dll::replace}) {
            EXPECT_EQ(Library("x", true, each)->toFile(dir(), policy), -5) << each.size() << " bytes";
            EXPECT_TRUE(isEmpty());
        }
    }
}

TEST_F(ToFile, CorruptStreamRemovesTheFileThatItOverwrote)
{
    writeFile(in("libx.dylib"), Bytes().chars("old"));
    EXPECT_EQ(Library("x", true, Bytes().chars("no stream"))->toFile(dir(), ZUL_dll::overwrite), -5);
    EXPECT_TRUE(isEmpty());
}

TEST_F(ToFile, FullDeviceLeavesNoFile)
{
    for (Library const& library : {rawLibrary(noise(100)), compressedLibrary(noise(100))}) {
        ASSERT_EQ(symlink("/dev/full", in("libx.dylib").c_str()), 0);
        EXPECT_EQ(library->toFile(dir(), ZUL_dll::overwrite), -ENOSPC);
        EXPECT_TRUE(isEmpty());
    }
}

TEST_F(ToFile, WriteThatCannotBeFinishedLeavesNoFile)
{
    for (Library const& library : {rawLibrary(noise(300'000)), compressedLibrary(noise(300'000))}) {
        EXPECT_EQ(withFileSizeLimit(200'000, [&] { return library->toFile(dir(), ZUL_dll::keep); }), -EFBIG);
        EXPECT_TRUE(isEmpty());
        EXPECT_EQ(withFileSizeLimit(300'000, [&] { return library->toFile(dir(), ZUL_dll::keep); }), 0);
        EXPECT_TRUE(readFile(in("libx.dylib")) == noise(300'000));
        std::filesystem::remove(in("libx.dylib"));
    }
}

TEST_F(ToFile, MissingMemoryIsThrownAndLeavesNoFile)
{
    Library const library = compressedLibrary(noise(100));
    {
        ZlibFailure const failure(ZlibFailure::Of::InflateInit, Z_MEM_ERROR);
        EXPECT_THROW(library->toFile(dir(), ZUL_dll::keep), std::bad_alloc);
        EXPECT_TRUE(isEmpty());
    }
    ZlibFailure const failure(ZlibFailure::Of::Inflate, Z_MEM_ERROR);
    EXPECT_THROW(library->toFile(dir(), ZUL_dll::keep), std::bad_alloc);
    EXPECT_TRUE(isEmpty());
}

TEST_F(ToFile, OtherFailureOfZlibIsThrownAndLeavesNoFile)
{
    Library const library = compressedLibrary(noise(100));
    ZlibFailure const failure(ZlibFailure::Of::Inflate, Z_STREAM_ERROR);
    EXPECT_TRUE(throws<std::runtime_error>([&] { library->toFile(dir(), ZUL_dll::keep); },
                                           "Unknown error while decompressing"));
    EXPECT_TRUE(isEmpty());
}

TEST_F(ToFile, NothingStaysOpen)
{
    int const next = dup(0);
    close(next);
    EXPECT_EQ(rawLibrary(noise(10))->toFile(dir(), ZUL_dll::replace), 0);
    EXPECT_EQ(Library("x", true, Bytes())->toFile(dir(), ZUL_dll::replace), -5);
    EXPECT_EQ(rawLibrary(noise(10))->toFile(in("missing").c_str(), ZUL_dll::replace), -ENOENT);
    int const now = dup(0);
    EXPECT_EQ(now, next);
    close(now);
}

} // namespace
