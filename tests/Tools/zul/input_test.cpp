#include "input.h"

#include "child_process.h"
#include "container_bytes.h"
#include "program_run.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The failure of opening @p path, and its message without the path.
std::pair<ExitCode, std::string> failureOf(std::string const& path)
{
    std::ostringstream out;
    std::ostringstream err;
    Session session{out, err};
    try {
        ContainerFile const container(session, path);
    } catch (Failure const& failure) {
        std::string const message = failure.what();
        EXPECT_EQ(message.substr(0, path.size() + 2), path + ": ");
        return {failure.code(), message.substr(path.size() + 2)};
    }
    return {ExitCode::Clean, err.str()};
}

using Expected = std::pair<ExitCode, std::string>;

/// A file of @p size bytes that are not on the disk, beginning with @p start.
void makeSparse(std::string const& path, Bytes const& start, off_t size)
{
    writeFile(path, start);
    ASSERT_EQ(truncate(path.c_str(), size), 0);
}

TEST(Input, MissingFile)
{
    TemporaryDirectory const directory;
    EXPECT_EQ(failureOf(directory / "none"), Expected(ExitCode::Unreadable, "No such file or directory"));
}

TEST(Input, Directory)
{
    TemporaryDirectory const directory;
    EXPECT_EQ(failureOf(directory.path()), Expected(ExitCode::Unreadable, "is a directory"));
}

TEST(Input, UnreadableFile)
{
    DesignFile const file(headBytes(0));
    ASSERT_EQ(chmod(file.path().c_str(), 0), 0);
    ASSERT_EQ(chmod(file.path().substr(0, file.path().rfind('/')).c_str(), 0755), 0);
    EXPECT_EQ(asOrdinaryUser([&file] {
                  return failureOf(file.path()) == Expected(ExitCode::Unreadable, "Permission denied") ? 0
                                                                                                       : 1;
              }),
              0);
}

TEST(Input, TooLargeFileIsRefusedUnread)
{
    TemporaryDirectory const directory;
    makeSparse(directory / "large", headBytes(0), (off_t{1} << 30) + 1);
    EXPECT_EQ(failureOf(directory / "large"),
              Expected(ExitCode::Unreadable, "too large: more than 1073741824 bytes"));
}

TEST(Input, EmptyFile)
{
    DesignFile const file{Bytes()};
    EXPECT_EQ(failureOf(file.path()), Expected(ExitCode::Damaged, "is empty"));
}

TEST(Input, FileTooShortForAHead)
{
    DesignFile const file(headBytes(0).cut(23));
    EXPECT_EQ(
        failureOf(file.path()),
        Expected(ExitCode::Damaged, "not a design file: 23 bytes, the head of a container alone has 24"));
}

TEST(Input, ForeignFile)
{
    DesignFile const file(Bytes().chars("PK\x03\x04").zeros(20));
    EXPECT_EQ(failureOf(file.path()),
              Expected(ExitCode::Damaged, "not a design file: begins with the bytes 50 4b 03 "
                                          "04, a container with 4d 56 4f 4b"));
}

TEST(Input, AllBytesAreRead)
{
    Bytes const bytes = headBytes(1).append(Bytes().fill(0xA5, 200'000));
    DesignFile const design(bytes);
    InputFile const file(design.path());
    EXPECT_EQ(file.name(), design.path());
    ASSERT_EQ(file.bytes().size(), bytes.size());
    EXPECT_TRUE(std::equal(file.bytes().begin(), file.bytes().end(), bytes.data()));
}

TEST(Input, FileWithoutStatedSizeIsReadToItsEnd)
{
    InputFile const file("/proc/self/maps"); // states 0 bytes
    EXPECT_GT(file.bytes().size(), 0U);
    EXPECT_EQ(std::to_integer<char>(file.bytes().back()), '\n');
}

TEST(Input, DescriptorsAreClosed)
{
    DesignFile const file(headBytes(0));
    int const before = dup(STDERR_FILENO);
    close(before);
    InputFile const input(file.path());
    EXPECT_EQ(failureOf("/none").first, ExitCode::Unreadable);
    EXPECT_EQ(failureOf("/").first, ExitCode::Unreadable);
    int const after = dup(STDERR_FILENO);
    close(after);
    EXPECT_EQ(after, before);
}

TEST(Input, SaysWhenALoadSeesOnlyAPart)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "long";
    makeSparse(path, headBytes(0), (off_t{1} << 27) + 100);
    EXPECT_EQ(failureOf(path),
              Expected(ExitCode::Clean,
                       "zul: " + path + ": a load sees only the first 100 of its 134217828 bytes\n"));
}

TEST(Input, SizeSeenByALoadIsTheLower27Bits)
{
    EXPECT_EQ(sizeSeenByLoad(0x7FFFFFF), 0x7FFFFFFU);
    EXPECT_EQ(sizeSeenByLoad(0x8000000), 0U);
    EXPECT_EQ(sizeSeenByLoad(0xC800000), 0x4800000U);
}

} // namespace
