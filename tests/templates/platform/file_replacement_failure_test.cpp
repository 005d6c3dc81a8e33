#include "failing_call.h"
#include "files.h"
#include "kova/templates/platform/file_replacement.h"
#include "listing.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

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

/// A directory with a file that is replaced while a system call fails.
class FailingReplacement : public testing::Test {
protected:
    FailingReplacement() { writeFile(old, Bytes().chars("old contents")); }

    int replace(long call, int error, std::string const& text = "new") const
    {
        return withFailingCall(call, error, [&] { return replaceFile(old.c_str(), contentsOf(text)); });
    }
    /// With a second name the file is written in place.
    void giveASecondName() const { ASSERT_EQ(link(old.c_str(), (directory / "second").c_str()), 0); }
    void expectOld() const { EXPECT_EQ(readFile(old), Bytes().chars("old contents")); }

    TemporaryDirectory directory;
    std::string const old = directory / "old";
};

TEST_F(FailingReplacement, ByAnotherFileLeavesTheOldOneAlone)
{
    for (long const call :
         {SYS_newfstatat, SYS_fallocate, SYS_mmap, SYS_fchown, SYS_fchmod, SYS_fsync, SYS_rename}) {
        EXPECT_EQ(replace(call, EIO), -EIO) << call;
        expectOld();
        EXPECT_EQ(entriesOf(directory.path()), Names{"old"}) << call;
    }
}

TEST_F(FailingReplacement, OwnerThatMayNotBeKeptIsNoFailure)
{
    EXPECT_EQ(replace(SYS_fchown, EPERM), 0);
    EXPECT_EQ(readFile(old), Bytes().chars("new"));
}

TEST_F(FailingReplacement, OfANewFileLeavesNone)
{
    for (long const call : {SYS_fallocate, SYS_mmap, SYS_fsync, SYS_rename}) {
        std::string const path = directory / "new";
        EXPECT_EQ(withFailingCall(call, EIO, [&] { return replaceFile(path.c_str(), contentsOf("new")); }),
                  -EIO);
        EXPECT_EQ(entriesOf(directory.path()), Names{"old"}) << call;
    }
}

TEST_F(FailingReplacement, LinkThatCannotBeFollowedIsNotReplaced)
{
    std::string const link = directory / "link";
    ASSERT_EQ(symlink("old", link.c_str()), 0);
    auto const replaceLink = [&link] { return replaceFile(link.c_str(), contentsOf("new")); };
    EXPECT_EQ(withFailingCall(SYS_readlink, EIO, replaceLink), -EIO);
    expectOld();
    ASSERT_EQ(unlink(old.c_str()), 0);
    for (long const call : {SYS_readlink, SYS_newfstatat}) {
        EXPECT_EQ(withFailingCall(call, EIO, replaceLink), -EIO) << call;
        EXPECT_EQ(entriesOf(directory.path()), Names{"link"});
    }
}

TEST_F(FailingReplacement, InPlaceLeavesTheOldContentsUnlessTheyAreBeingWritten)
{
    giveASecondName();
    for (long const call : {SYS_newfstatat, SYS_fallocate, SYS_write}) {
        EXPECT_EQ(replace(call, EIO), -EIO) << call;
        expectOld();
    }
    EXPECT_EQ(replace(SYS_ftruncate, EIO), -EIO) << "longer than it should be";
    EXPECT_EQ(readFile(old), Bytes().chars("new contents"));
    EXPECT_EQ(replace(SYS_fsync, EIO), -EIO);
    EXPECT_EQ(readFile(old), Bytes().chars("new"));
}

TEST_F(FailingReplacement, InPlaceWritesThatDoNothingAreNotTriedForEver)
{
    giveASecondName();
    for (std::string const text : {"new", "contents that are longer than the old ones"}) {
        EXPECT_EQ(replace(SYS_write, 0, text), -EIO);
        expectOld();
    }
}

TEST_F(FailingReplacement, InPlaceTellsWhenNotEvenItsLengthCanBeRestored)
{
    giveASecondName();
    for (long const call : {SYS_fallocate, SYS_write}) {
        auto const fail = [this, call] { return replace(call, ENOSPC); };
        EXPECT_EQ(withFailingCall(SYS_ftruncate, EIO, fail), -EIO) << call;
        expectOld();
    }
}

} // namespace
