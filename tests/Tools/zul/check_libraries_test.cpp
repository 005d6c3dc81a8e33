#include "checking.h"

#include "libraries.h"

#include <gtest/gtest.h>

#include <string>

namespace {

Bytes compressedLibrary(std::string_view name, Bytes const& stream)
{
    std::string const bytes(reinterpret_cast<char const*>(stream.data()), stream.size());
    return sample::library(name, bytes).setU32(24, 1);
}

TEST(CheckLibraries, Z0601SecondLibraryOfANameAndSystem)
{
    Bytes const bytes =
        identified().tag(sample::library("cam", "")).tag(sample::library("cam", "other")).build();
    EXPECT_EQ(findingsIn(bytes),
              "Z0601 tag 2 at 292, name: a name and system of its own, not 'cam' for system 516\n");
}

TEST(CheckLibraries, SameNameForAnotherSystemAndLibrariesWithoutName)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::library("cam")).tag(sample::library("cam", "", 517))), "");
    EXPECT_EQ(findingsIn(identified().tag(sample::library("")).tag(sample::library(""))), "");
}

TEST(CheckLibraries, Z0602NameThatLeadsOutOfItsDirectory)
{
    EXPECT_EQ(findingsIn(identified().tag(sample::library("../cam"))),
              "Z0602 tag 1 at 196, name: no '/' and no '..', not '../cam'\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::library("a/b"))),
              "Z0602 tag 1 at 196, name: no '/' and no '..', not 'a/b'\n");
    EXPECT_EQ(findingsIn(identified().tag(sample::library("a..b"))),
              "Z0602 tag 1 at 196, name: no '/' and no '..', not 'a..b'\n");
}

TEST(CheckLibraries, WholeStream)
{
    EXPECT_EQ(findingsIn(identified().tag(compressedLibrary("cam", deflated(noise(5000))))), "");
}

TEST(CheckLibraries, Z0603StreamThatIsCutShort)
{
    Bytes stream = deflated(noise(100));
    stream.cut(stream.size() - 1);
    EXPECT_EQ(findingsIn(identified().tag(compressedLibrary("cam", stream))),
              "Z0603 tag 1 at 264, library: a complete zlib stream, not " + std::to_string(stream.size()) +
                  " bytes that are none\n");
}

TEST(CheckLibraries, Z0603StreamWithAWrongChecksum)
{
    Bytes stream = deflated(Bytes().chars("library"));
    stream.data()[stream.size() - 1] ^= std::byte{1};
    EXPECT_EQ(findingsIn(identified().tag(compressedLibrary("cam", stream))).substr(0, 24),
              "Z0603 tag 1 at 264, libr");
}

TEST(CheckLibraries, Z0603CompressedLibraryOfNoBytes)
{
    EXPECT_EQ(findingsIn(identified().tag(compressedLibrary("cam", {}))),
              "Z0603 tag 1 at 192, compressed: a complete zlib stream, not 0 bytes that are none\n");
}

TEST(CheckLibraries, Z0604LibraryThatGrowsBeyondAllMeasure)
{
    Bytes const stream = deflated(Bytes().zeros(std::size_t{80} << 20));
    EXPECT_EQ(findingsIn(identified().tag(compressedLibrary("cam", stream))).substr(0, 85),
              "Z0604 tag 1 at 264, library: at most 64 times the file and 64 MiB, not more than that");
}

TEST(CheckLibraries, Z0604AllLibrariesOfAFileShareTheLimit)
{
    Bytes const stream = deflated(Bytes().zeros(std::size_t{40} << 20));
    ASSERT_LT(64 * 3 * stream.size(), std::size_t{16} << 20);
    Bytes const bytes = identified()
                            .tag(compressedLibrary("a", stream))
                            .tag(compressedLibrary("b", stream))
                            .tag(compressedLibrary("c", deflated(noise(100))))
                            .build();
    EXPECT_EQ(findingsIn(bytes).substr(0, 11), "Z0604 tag 2");
}

} // namespace
