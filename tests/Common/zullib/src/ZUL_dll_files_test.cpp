// Libraries taken from files and written to files.
#include "ZUL_dll.h"
#include "bytes.h"
#include "child_process.h"
#include "files.h"
#include "throwing.h"
#include "zlib_failure.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr zul_opsys anySystem{7};

/// Bytes that do not compress.
Bytes noise(std::size_t count, std::uint32_t state = 1)
{
    Bytes bytes;
    for (std::size_t i = 0; i < count; ++i) {
        state = state * 1664525 + 1013904223;
        bytes.u8(state >> 24);
    }
    return bytes;
}

Bytes deflated(Bytes const& bytes)
{
    uLongf length = compressBound(bytes.size());
    std::vector<Bytef> stream(length);
    compress(stream.data(), &length, reinterpret_cast<Bytef const*>(bytes.data()), bytes.size());
    return Bytes().chars({reinterpret_cast<char const*>(stream.data()), length});
}

Bytes storedIn(ZUL_dll const& library)
{
    return Bytes().chars({static_cast<char const*>(library.getLib()), library.getLibLength()});
}

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

class LibraryFiles : public testing::Test {
protected:
    char const* dir() const { return m_directory.path(); }
    std::string in(std::string const& name) const { return m_directory / name; }
    bool isEmpty() const { return std::filesystem::is_empty(dir()); }

private:
    TemporaryDirectory m_directory;
};

using SetLib = LibraryFiles;

TEST_F(SetLib, CompressesWhatGetsMuchSmaller)
{
    Bytes const contents = Bytes().fill('z', 10'000);
    writeFile(in("lib"), contents);
    ZUL_dll library(noContainer);
    library.setName("kept");
    EXPECT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
    EXPECT_TRUE(library.isCompressed());
    EXPECT_EQ(storedIn(library), deflated(contents));
    EXPECT_EQ(library.getSystem(), anySystem);
    EXPECT_STREQ(library.getName(), "kept");
}

TEST_F(SetLib, StoresWhatHardlyGetsSmaller)
{
    Bytes const contents = noise(9'945).zeros(55);
    ASSERT_LT(deflated(contents).size(), 10'000U);
    ASSERT_GT(deflated(contents).size(), 9'950U);
    writeFile(in("lib"), contents);
    ZUL_dll library(noContainer);
    EXPECT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
    EXPECT_FALSE(library.isCompressed());
    EXPECT_EQ(storedIn(library), contents);
}

TEST_F(SetLib, SavingExactly100BytesIsNotEnough)
{
    // Every further repeated byte saves about one byte: somewhere on the way it is 100, and then 101.
    ZUL_dll library(noContainer);
    bool seen100 = false;
    bool seen101 = false;
    for (std::size_t repeated = 90; repeated < 260; ++repeated) {
        Bytes const contents = noise(1'000).zeros(repeated);
        std::size_t const saved = contents.size() - std::min(contents.size(), deflated(contents).size());
        writeFile(in("lib"), contents);
        ASSERT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
        EXPECT_EQ(library.isCompressed(), saved > 100) << saved;
        seen100 = seen100 || saved == 100;
        seen101 = seen101 || saved == 101;
    }
    EXPECT_TRUE(seen100);
    EXPECT_TRUE(seen101);
}

TEST_F(SetLib, FewerThan100BytesAreAlwaysCompressed)
{
    for (std::size_t const size : {1U, 50U, 99U}) {
        Bytes const contents = noise(size);
        writeFile(in("lib"), contents);
        ZUL_dll library(noContainer);
        EXPECT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
        EXPECT_TRUE(library.isCompressed()) << size;
        EXPECT_GT(library.getLibLength(), size) << "although that is longer";
        EXPECT_EQ(storedIn(library), deflated(contents));
    }
    for (std::size_t const size : {100U, 101U}) {
        writeFile(in("lib"), Bytes().zeros(size));
        ZUL_dll library(noContainer);
        EXPECT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
        EXPECT_FALSE(library.isCompressed()) << size;
        EXPECT_EQ(storedIn(library), Bytes().zeros(size));
    }
}

TEST_F(SetLib, RawReplacesCompressedAndBack)
{
    writeFile(in("raw"), noise(1'000));
    writeFile(in("zeros"), Bytes().zeros(1'000));
    ZUL_dll library(noContainer);
    EXPECT_EQ(library.setLib(in("zeros").c_str(), anySystem), 0);
    EXPECT_TRUE(library.isCompressed());
    EXPECT_EQ(library.setLib(in("raw").c_str(), zul_opsys{8}), 0);
    EXPECT_FALSE(library.isCompressed());
    EXPECT_EQ(storedIn(library), noise(1'000));
    EXPECT_EQ(library.getSystem(), zul_opsys{8});
    EXPECT_EQ(library.setLib(in("zeros").c_str(), anySystem), 0);
    EXPECT_TRUE(library.isCompressed());
}

/// A library with contents of its own, to see that a failure leaves them.
ZUL_dll filledLibrary()
{
    ZUL_dll library(noContainer);
    library.setName("kept");
    library.setSystem(zul_opsys{3});
    library.setData("contents", 8);
    return library;
}

void expectUnchanged(ZUL_dll const& library)
{
    EXPECT_STREQ(library.getName(), "kept");
    EXPECT_EQ(library.getSystem(), zul_opsys{3});
    EXPECT_FALSE(library.isCompressed());
    EXPECT_EQ(storedIn(library), Bytes().chars("contents"));
}

TEST_F(SetLib, FileThatCannotBeMappedGivesItsErrno)
{
    ZUL_dll library = filledLibrary();
    EXPECT_EQ(library.setLib(in("missing").c_str(), anySystem), -ENOENT);
    EXPECT_EQ(library.setLib(dir(), anySystem), -EISDIR);
    writeFile(in("empty"), Bytes());
    EXPECT_EQ(library.setLib(in("empty").c_str(), anySystem), -EINVAL);
    EXPECT_EQ(library.setLib(nullptr, anySystem), -EINVAL);
    expectUnchanged(library);
}

TEST_F(SetLib, UnreadableFileIsRefused)
{
    writeFile(in("secret"), Bytes().chars("secret"));
    ASSERT_EQ(chmod(in("secret").c_str(), 0), 0);
    ASSERT_EQ(chmod(dir(), 0755), 0);
    EXPECT_EQ(asOrdinaryUser([this] { return filledLibrary().setLib(in("secret").c_str(), anySystem); }),
              -EACCES);
}

TEST_F(SetLib, FileThatAMappingWouldCutIsRefused)
{
    constexpr off_t mappable = 0x7FFFFFF;
    ZUL_dll library = filledLibrary();
    std::ofstream(in("sparse")).put('x');
    for (off_t const size :
         {mappable + 1, mappable + 2, off_t{200} << 20, off_t{0x7FFFFFFF}, off_t{0x80000001}}) {
        ASSERT_EQ(truncate(in("sparse").c_str(), size), 0);
        EXPECT_EQ(library.setLib(in("sparse").c_str(), anySystem), -EFBIG) << size;
    }
    expectUnchanged(library);
    ASSERT_EQ(truncate(in("sparse").c_str(), mappable), 0);
    EXPECT_EQ(library.setLib(in("sparse").c_str(), anySystem), 0);
    EXPECT_TRUE(library.isCompressed());
}

TEST_F(SetLib, MissingMemoryIsThrownAndLeavesTheTag)
{
    writeFile(in("lib"), Bytes().zeros(1'000));
    ZUL_dll library = filledLibrary();
    for (int const result : {Z_MEM_ERROR, Z_BUF_ERROR, Z_STREAM_ERROR}) {
        ZlibFailure const failure(ZlibFailure::Of::Compress, result);
        EXPECT_THROW(library.setLib(in("lib").c_str(), anySystem), std::bad_alloc);
    }
    ZlibFailure const failure(ZlibFailure::Of::CompressBound);
    EXPECT_THROW(library.setLib(in("lib").c_str(), anySystem), std::bad_alloc);
    expectUnchanged(library);
}

TEST_F(SetLib, NothingStaysMapped)
{
    writeFile(in("lib"), noise(5'000));
    ZUL_dll library(noContainer);
    ASSERT_EQ(library.setLib(in("lib").c_str(), anySystem), 0);
    {
        ZlibFailure const failure(ZlibFailure::Of::Compress, Z_MEM_ERROR);
        EXPECT_THROW(library.setLib(in("lib").c_str(), anySystem), std::bad_alloc);
    }
    std::ifstream maps("/proc/self/maps");
    std::string const all(std::istreambuf_iterator<char>(maps), {});
    EXPECT_EQ(all.find(in("lib")), std::string::npos);
}

TEST_F(SetLib, ComesBackThroughToFile)
{
    for (Bytes const& contents :
         {noise(50), noise(5'000), Bytes().zeros(500'000), noise(100'000).zeros(300'000)}) {
        writeFile(in("source"), contents);
        ZUL_dll library(noContainer);
        library.setName("copy");
        ASSERT_EQ(library.setLib(in("source").c_str(), anySystem), 0);
        ASSERT_EQ(library.toFile(dir(), ZUL_dll::replace), 0);
        EXPECT_TRUE(readFile(in("libcopy.dylib")) == contents);
    }
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
