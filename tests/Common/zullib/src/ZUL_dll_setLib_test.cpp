#include "ZUL_dll.h"
#include "bytes.h"
#include "child_process.h"
#include "failing_call.h"
#include "files.h"
#include "libraries.h"
#include "zlib_failure.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr ZUL* noContainer = nullptr;
constexpr zul_opsys anySystem{7};

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

TEST_F(SetLib, FileWhoseLengthCannotBeToldIsRefused)
{
    ZUL_dll library = filledLibrary();
    writeFile(in("lib"), Bytes().fill('z', 10'000));
    auto const set = [&] {
        int const result = library.setLib(in("lib").c_str(), anySystem);
        expectUnchanged(library);
        return HasFailure() ? 1 : result;
    };
    EXPECT_EQ(withFailingCall(SYS_newfstatat, AT_FDCWD, EIO, set), -EIO);
}

bool isMapped(std::string const& path)
{
    std::ifstream maps("/proc/self/maps");
    std::string const all(std::istreambuf_iterator<char>(maps), {});
    return all.find(path) != std::string::npos;
}

TEST_F(SetLib, FailureToCompressIsThrownAndLeavesTheTag)
{
    writeFile(in("lib"), Bytes().zeros(1'000));
    ZUL_dll library = filledLibrary();
    for (int const result : {Z_MEM_ERROR, Z_BUF_ERROR, Z_STREAM_ERROR}) {
        ZlibFailure const failure(ZlibFailure::Of::Compress, result);
        EXPECT_THROW(library.setLib(in("lib").c_str(), anySystem), std::bad_alloc);
    }
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
    EXPECT_FALSE(isMapped(in("lib")));
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

} // namespace
