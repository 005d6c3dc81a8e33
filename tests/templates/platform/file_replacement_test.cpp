#include "kova/templates/platform/file_replacement.h"

#include "child_process.h"
#include "files.h"
#include "listing.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using kova::templates::platform::FileContents;
using kova::templates::platform::replaceFile;

using Names = std::vector<std::string>;

FileContents contentsOf(std::string const& text)
{
    FileContents contents;
    contents.length = text.size();
    contents.fill = [text](std::byte* to) {
        std::memcpy(to, text.data(), text.size());
        return true;
    };
    return contents;
}

struct stat statusOf(std::string const& path)
{
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t modeOf(std::string const& path)
{
    return statusOf(path).st_mode & 07777U;
}

class FileReplacement : public testing::Test {
protected:
    FileReplacement() { writeFile(old, Bytes().chars("old contents")); }
    ~FileReplacement() override
    {
        EXPECT_EQ(openDescriptors(), m_descriptors) << "a descriptor is left open";
    }

    void expectUntouched() const
    {
        EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
        EXPECT_EQ(entriesOf(directory.path()), Names{"old"});
    }

    TemporaryDirectory directory;
    std::string const old = directory / "old";

private:
    std::size_t m_descriptors = openDescriptors();
};

TEST_F(FileReplacement, NewFileHasTheContents)
{
    EXPECT_EQ(replaceFile((directory / "new").c_str(), contentsOf("contents")), 0);
    EXPECT_EQ(readFile(directory / "new"), Bytes().chars("contents"));
    EXPECT_EQ(entriesOf(directory.path()), (Names{"new", "old"}));
}

TEST_F(FileReplacement, NewFilesModeIs0644LessTheUmask)
{
    for (mode_t const mask : {0U, 022U, 077U, 0777U}) {
        mode_t const before = umask(mask);
        std::string const path = directory / std::to_string(mask);
        EXPECT_EQ(replaceFile(path.c_str(), contentsOf("contents")), 0);
        umask(before);
        EXPECT_EQ(modeOf(path), 0644U & ~mask);
    }
}

TEST_F(FileReplacement, OldFilesModeIsKept)
{
    for (mode_t const mode : {0600U, 0640U, 0755U, 0666U}) {
        chmod(old.c_str(), mode);
        EXPECT_EQ(replaceFile(old.c_str(), contentsOf("contents")), 0);
        EXPECT_EQ(modeOf(old), mode);
    }
    EXPECT_EQ(readFile(old), Bytes().chars("contents"));
}

TEST_F(FileReplacement, OldFileIsReplacedByAnotherNotOverwritten)
{
    fs::copy_file(old, directory / "copy");
    int const before = open(old.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(replaceFile(old.c_str(), contentsOf("contents, and longer ones")), 0);
    std::string seen(64, '\0');
    ssize_t const count = read(before, seen.data(), seen.size());
    close(before);
    EXPECT_EQ(seen.substr(0, static_cast<std::size_t>(count)), "old contents")
        << "whoever has it open keeps it";
    EXPECT_EQ(readFile(old), Bytes().chars("contents, and longer ones"));
}

TEST_F(FileReplacement, ShorterContentsLeaveNothingOfTheOldOnes)
{
    EXPECT_EQ(replaceFile(old.c_str(), contentsOf("x")), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("x"));
}

TEST_F(FileReplacement, RoomIsFilledWithZero)
{
    FileContents contents = contentsOf("");
    contents.length = 5000;
    contents.fill = [](std::byte* to) {
        to[1] = std::byte{1};
        return true;
    };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(readFile(old), Bytes().u8(0).u8(1).zeros(4998));
    ASSERT_EQ(link(old.c_str(), (directory / "second name").c_str()), 0);
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(readFile(old), Bytes().u8(0).u8(1).zeros(4998)) << "also in place";
}

TEST_F(FileReplacement, UnfinishedReplacementOfAPrivateFileIsPrivate)
{
    chmod(old.c_str(), 0600);
    FileContents contents = contentsOf("secret");
    contents.fill = [this](std::byte*) {
        Names const names = entriesOf(directory.path());
        EXPECT_EQ(names.size(), 2U);
        for (std::string const& name : names) {
            EXPECT_EQ(modeOf(directory / name) & 0077U, 0U) << name;
        }
        return true;
    };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
}

TEST_F(FileReplacement, FillThatThrowsLeavesEverythingAsItWas)
{
    FileContents contents = contentsOf("x");
    contents.fill = [](std::byte*) -> bool { throw std::out_of_range("thrown"); };
    EXPECT_THROW(replaceFile(old.c_str(), contents), std::out_of_range);
    EXPECT_THROW(replaceFile((directory / "new").c_str(), contents), std::out_of_range);
    expectUntouched();
}

TEST_F(FileReplacement, FillThatDeclinesLeavesEverythingAsItWas)
{
    FileContents contents = contentsOf("x");
    contents.fill = [](std::byte*) { return false; };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(replaceFile((directory / "new").c_str(), contents), 0);
    expectUntouched();
}

TEST_F(FileReplacement, RefusesWhatCannotBeOpened)
{
    FileContents const contents = contentsOf("x");
    EXPECT_EQ(replaceFile(nullptr, contents), -EINVAL);
    EXPECT_EQ(replaceFile("", contents), -ENOENT);
    EXPECT_EQ(replaceFile(directory.path(), contents), -EISDIR);
    EXPECT_EQ(replaceFile((directory / "new/").c_str(), contents), -EISDIR);
    EXPECT_EQ(replaceFile((directory / "old/").c_str(), contents), -ENOTDIR);
    EXPECT_EQ(replaceFile((directory / "missing/file").c_str(), contents), -ENOENT);
    EXPECT_EQ(replaceFile((directory / "old/file").c_str(), contents), -ENOTDIR);
    EXPECT_EQ(replaceFile((directory / std::string(256, 'x')).c_str(), contents), -ENAMETOOLONG);
    expectUntouched();
}

TEST_F(FileReplacement, RelativePathIsTheCurrentDirectorys)
{
    fs::path const before = fs::current_path();
    fs::current_path(directory.path());
    EXPECT_EQ(replaceFile("new", contentsOf("contents")), 0);
    EXPECT_EQ(replaceFile("old", contentsOf("contents")), 0);
    fs::current_path(before);
    EXPECT_EQ(readFile(directory / "new"), Bytes().chars("contents"));
    EXPECT_EQ(readFile(old), Bytes().chars("contents"));
    EXPECT_EQ(entriesOf(directory.path()), (Names{"new", "old"}));
}

TEST_F(FileReplacement, SymbolicLinksStayAndTheirTargetIsReplaced)
{
    fs::create_directory(directory / "below");
    fs::create_symlink("../old", directory / "below/relative");
    fs::create_symlink(directory / "below/relative", directory / "absolute");
    EXPECT_EQ(replaceFile((directory / "absolute").c_str(), contentsOf("contents")), 0);
    EXPECT_TRUE(fs::is_symlink(directory / "absolute"));
    EXPECT_TRUE(fs::is_symlink(directory / "below/relative"));
    EXPECT_FALSE(fs::is_symlink(old));
    EXPECT_EQ(readFile(old), Bytes().chars("contents"));
    EXPECT_EQ(entriesOf(directory / "below"), Names{"relative"});
}

TEST_F(FileReplacement, SymbolicLinkToNothingGetsItsTarget)
{
    fs::create_symlink("target", directory / "link");
    EXPECT_EQ(replaceFile((directory / "link").c_str(), contentsOf("contents")), 0);
    EXPECT_TRUE(fs::is_symlink(directory / "link"));
    EXPECT_EQ(readFile(directory / "target"), Bytes().chars("contents"));
    fs::create_symlink("missing/target", directory / "nowhere");
    EXPECT_EQ(replaceFile((directory / "nowhere").c_str(), contentsOf("contents")), -ENOENT);
}

TEST_F(FileReplacement, LinksAreFollowedAsFarAsTheKernelDoes)
{
    constexpr int mostLinks = 40;
    fs::create_symlink("old", directory / "link1");
    for (int i = 1; i <= mostLinks; ++i) {
        fs::create_symlink("link" + std::to_string(i), directory / ("link" + std::to_string(i + 1)));
    }
    std::string const last = directory / ("link" + std::to_string(mostLinks));
    EXPECT_EQ(replaceFile(last.c_str(), contentsOf("contents")), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("contents"));
    EXPECT_TRUE(fs::is_symlink(last));
    std::string const beyond = directory / ("link" + std::to_string(mostLinks + 1));
    EXPECT_EQ(replaceFile(beyond.c_str(), contentsOf("other")), -ELOOP);
}

TEST_F(FileReplacement, CircleOfSymbolicLinksIsRefused)
{
    fs::create_symlink("b", directory / "a");
    fs::create_symlink("a", directory / "b");
    EXPECT_EQ(replaceFile((directory / "a").c_str(), contentsOf("contents")), -ELOOP);
}

TEST_F(FileReplacement, ErrnoOfAnEarlierFailureChangesNothing)
{
    for (int const earlier : {EEXIST, EINTR, EIO}) {
        errno = earlier;
        EXPECT_EQ(replaceFile(old.c_str(), contentsOf("replaced")), 0) << earlier;
        EXPECT_EQ(readFile(old), Bytes().chars("replaced"));
    }
    ASSERT_EQ(link(old.c_str(), (directory / "other").c_str()), 0);
    for (int const earlier : {EEXIST, EINTR, EIO}) {
        for (std::string const text : {"in place", "1"}) {
            errno = earlier;
            EXPECT_EQ(replaceFile(old.c_str(), contentsOf(text)), 0) << earlier;
            EXPECT_EQ(readFile(old), Bytes().chars(text));
        }
    }
    EXPECT_EQ(entriesOf(directory.path()), (Names{"old", "other"}));
}

TEST_F(FileReplacement, FileWithSeveralNamesIsWrittenInPlace)
{
    std::string const other = directory / "other";
    ASSERT_EQ(link(old.c_str(), other.c_str()), 0);
    ino_t const inode = statusOf(old).st_ino;
    for (std::string const text : {"much longer than the old contents", "short"}) {
        EXPECT_EQ(replaceFile(old.c_str(), contentsOf(text)), 0);
        EXPECT_EQ(readFile(old), Bytes().chars(text));
        EXPECT_EQ(readFile(other), Bytes().chars(text));
    }
    EXPECT_EQ(statusOf(old).st_ino, inode);
    EXPECT_EQ(entriesOf(directory.path()), (Names{"old", "other"}));
}

TEST_F(FileReplacement, InPlaceTheOwnerIsToldWhenEverythingIsFilled)
{
    ASSERT_EQ(link(old.c_str(), (directory / "other").c_str()), 0);
    std::string steps;
    FileContents contents = contentsOf("contents");
    contents.fill = [&steps](std::byte*) {
        steps += "filled, ";
        return true;
    };
    contents.beforeOverwriting = [&] {
        steps +=
            readFile(old) == Bytes().chars("old contents") ? "about to overwrite" : "overwritten already";
        return 0;
    };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(steps, "filled, about to overwrite");
}

TEST_F(FileReplacement, InPlaceTheOwnerCanStopIt)
{
    ASSERT_EQ(link(old.c_str(), (directory / "other").c_str()), 0);
    FileContents contents = contentsOf("contents");
    contents.beforeOverwriting = [] { return -ENOMEM; };
    EXPECT_EQ(replaceFile(old.c_str(), contents), -ENOMEM);
    EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
    contents.fill = [](std::byte*) { return false; };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
}

TEST_F(FileReplacement, OwnerIsNotAskedWhenAnotherFileTakesThePlace)
{
    FileContents contents = contentsOf("contents");
    contents.beforeOverwriting = [] { return -ENOMEM; };
    EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
    EXPECT_EQ(replaceFile((directory / "new").c_str(), contents), 0);
}

TEST_F(FileReplacement, DeviceIsWrittenTo)
{
    EXPECT_EQ(replaceFile("/dev/null", contentsOf("contents")), 0);
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(replaceFile("/dev/full", contentsOf("contents")), -ENOSPC);
}

class TakenTemporaryName : public FileReplacement {
protected:
    /// Makes a symbolic link where the next temporary file would be. The number in the name counts up.
    std::string takeNextName() const
    {
        std::string last;
        FileContents contents = contentsOf("contents");
        contents.fill = [&](std::byte*) {
            for (std::string const& name : entriesOf(directory.path())) {
                last = name != "old" ? name : last;
            }
            return false;
        };
        EXPECT_EQ(replaceFile(old.c_str(), contents), 0);
        std::size_t const number = last.rfind('-') + 1;
        std::string const next =
            directory / (last.substr(0, number) + std::to_string(std::stoul(last.substr(number)) + 1));
        fs::create_symlink(old, next);
        return next;
    }
};

TEST_F(TakenTemporaryName, IsLeftAloneWhoeverTookIt)
{
    std::string const taken = takeNextName();
    EXPECT_EQ(replaceFile((directory / "new").c_str(), contentsOf("contents")), 0);
    EXPECT_TRUE(fs::is_symlink(taken));
    EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
    EXPECT_EQ(readFile(directory / "new"), Bytes().chars("contents"));
}

TEST_F(TakenTemporaryName, OneFileIsMadeInsteadAlsoWithoutStandardInput)
{
    EXPECT_EQ(inChildProcess([this] {
                  std::string const taken = takeNextName();
                  close(STDIN_FILENO);
                  int const result = replaceFile((directory / "new").c_str(), contentsOf("contents"));
                  fs::remove(taken);
                  return result;
              }),
              0);
    EXPECT_EQ(entriesOf(directory.path()), (Names{"new", "old"}));
    EXPECT_EQ(readFile(directory / "new"), Bytes().chars("contents"));
}

} // namespace
