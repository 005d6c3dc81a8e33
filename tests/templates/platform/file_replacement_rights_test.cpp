#include "child_process.h"
#include "files.h"
#include "kova/templates/platform/file_replacement.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using kova::templates::platform::FileContents;
using kova::templates::platform::replaceFile;

using Names = std::vector<std::string>;

constexpr std::size_t tooLargeForTheDisk = 2 << 20U;
constexpr std::size_t tooLarge = 8 << 20U; // for a limit of 4 MiB too

FileContents zeros(std::size_t length)
{
    FileContents contents;
    contents.length = length;
    contents.fill = [](std::byte*) { return true; };
    return contents;
}

FileContents contentsOf(std::string const& text)
{
    FileContents contents = zeros(text.size());
    contents.fill = [text](std::byte* to) {
        std::memcpy(to, text.data(), text.size());
        return true;
    };
    return contents;
}

ino_t inodeOf(std::string const& path)
{
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_ino;
}

/// A directory with a file that everybody may write.
class ReplacementRights : public testing::Test {
protected:
    ReplacementRights()
    {
        writeFile(old, Bytes().chars("old contents"));
        chmod(old.c_str(), 0666);
        chmod(directory.path(), 0777);
    }
    ~ReplacementRights() override { chmod(directory.path(), 0700); }

    int replaceAsOrdinaryUser(std::string const& path) const
    {
        return asOrdinaryUser([&path] { return replaceFile(path.c_str(), contentsOf("new")); });
    }
    void expectOld() const
    {
        EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
        EXPECT_EQ(entriesOf(directory.path()), Names{"old"});
    }

    TemporaryDirectory directory;
    std::string const old = directory / "old";
};

TEST_F(ReplacementRights, FileThatMayNotBeWrittenIsLeftAlone)
{
    chmod(old.c_str(), 0444);
    EXPECT_EQ(replaceAsOrdinaryUser(old), -EACCES) << "though its directory would let it be replaced";
    expectOld();
}

TEST_F(ReplacementRights, NewFileNeedsADirectoryThatCanBeWritten)
{
    chmod(directory.path(), 0555);
    EXPECT_EQ(replaceAsOrdinaryUser(directory / "new"), -EACCES);
    expectOld();
}

TEST_F(ReplacementRights, DirectoryThatCannotBeSearchedIsRefused)
{
    chmod(directory.path(), 0);
    EXPECT_EQ(replaceAsOrdinaryUser(old), -EACCES);
    EXPECT_EQ(replaceAsOrdinaryUser(directory / "new"), -EACCES);
    chmod(directory.path(), 0700);
    expectOld();
}

TEST_F(ReplacementRights, InADirectoryThatCannotBeWrittenTheFileIsWrittenInPlace)
{
    ino_t const inode = inodeOf(old);
    chmod(directory.path(), 0555);
    EXPECT_EQ(replaceAsOrdinaryUser(old), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("new"));
    EXPECT_EQ(inodeOf(old), inode);
}

TEST_F(ReplacementRights, DirectoryThatCannotBeReadIsEnough)
{
    ino_t const inode = inodeOf(old);
    chmod(directory.path(), 0333);
    EXPECT_EQ(replaceAsOrdinaryUser(old), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("new"));
    EXPECT_NE(inodeOf(old), inode);
    chmod(directory.path(), 0700);
    EXPECT_EQ(entriesOf(directory.path()), Names{"old"});
}

TEST_F(ReplacementRights, SomebodyElsesFileInAStickyDirectoryIsWrittenInPlace)
{
    ino_t const inode = inodeOf(old);
    chmod(directory.path(), 01777);
    EXPECT_EQ(replaceAsOrdinaryUser(old), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("new"));
    EXPECT_EQ(entriesOf(directory.path()), Names{"old"});
    EXPECT_TRUE(inodeOf(old) == inode || geteuid() != 0)
        << "of another user only where the test can make such a file";
}

TEST_F(ReplacementRights, FileThatIsMountedOnItsOwnIsWrittenInPlace)
{
    // Where nothing can be mounted the files are replaced, with the same contents.
    inPrivateTmp([] {
        writeFile("/tmp/old", Bytes().chars("old contents"));
        writeFile("/tmp/mounted", Bytes().chars("mounted contents"));
        bool const mounted = mount("/tmp/mounted", "/tmp/old", nullptr, MS_BIND, nullptr) == 0;
        EXPECT_EQ(replaceFile("/tmp/old", contentsOf("new")), 0);
        EXPECT_EQ(readFile("/tmp/old"), Bytes().chars("new"));
        EXPECT_EQ(readFile("/tmp/mounted"), Bytes().chars(mounted ? "new" : "mounted contents"));
    });
}

TEST_F(ReplacementRights, OnAReadOnlyFileSystemAFileThatCanBeWrittenIsWrittenInPlace)
{
    inPrivateTmp([] {
        writeFile("/tmp/old", Bytes().chars("old contents"));
        mount("/tmp/old", "/tmp/old", nullptr, MS_BIND, nullptr);
        mount(nullptr, "/tmp", nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr);
        EXPECT_EQ(replaceFile("/tmp/old", contentsOf("new")), 0);
        EXPECT_EQ(readFile("/tmp/old"), Bytes().chars("new"));
    });
}

TEST_F(ReplacementRights, OwnerIsKeptByWhoMayDoSo)
{
    if (geteuid() == 0) {
        ASSERT_EQ(chown(old.c_str(), 1234, 5678), 0);
    }
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(stat(old.c_str(), &before), 0);
    EXPECT_EQ(replaceFile(old.c_str(), contentsOf("new")), 0);
    ASSERT_EQ(stat(old.c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_NE(after.st_ino, before.st_ino);
}

TEST_F(ReplacementRights, FileThatWouldGrowTooLargeIsLeftAlone)
{
    auto const replace = [](std::string const& path) {
        return withFileSizeLimit(4096, [&path] { return replaceFile(path.c_str(), zeros(tooLarge)); });
    };
    EXPECT_EQ(replace(old), -EFBIG);
    EXPECT_EQ(replace(directory / "new"), -EFBIG);
    expectOld();
    ASSERT_EQ(link(old.c_str(), (directory / "other").c_str()), 0);
    EXPECT_EQ(replace(old), -EFBIG) << "in place: nothing is written before there is room for everything";
    EXPECT_EQ(readFile(old), Bytes().chars("old contents"));
}

/// A file system of 1 MiB in @p directory, for a child process alone. @return whether that is permitted here
bool mountSmallDisk(char const* directory)
{
    return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", directory, "tmpfs", 0, "size=1m") == 0;
}

TEST_F(ReplacementRights, FullDiskLeavesTheOldFileUntouched)
{
    // Where nothing can be mounted, the limit on the length of files stands for the full disk, with its own error.
    auto const onFullDisk = [this] {
        bool const mounted = mountSmallDisk(directory.path());
        writeFile(old, Bytes().chars("old contents"));
        bool good = true;
        auto const expectRefused = [&](std::string const& path) {
            int const result = replaceFile(path.c_str(), zeros(mounted ? tooLargeForTheDisk : tooLarge));
            good = good && result == (mounted ? -ENOSPC : -EFBIG) &&
                   readFile(old) == Bytes().chars("old contents");
        };
        expectRefused(old);
        expectRefused(directory / "new");
        good = good && entriesOf(directory.path()) == Names{"old"};
        good = good && link(old.c_str(), (directory / "other").c_str()) == 0;
        expectRefused(old);
        good = good && replaceFile(old.c_str(), contentsOf("fits")) == 0 &&
               readFile(old) == Bytes().chars("fits");
        return good ? 0 : 1;
    };
    EXPECT_EQ(withFileSizeLimit(4 << 20U, onFullDisk), 0);
}

} // namespace
