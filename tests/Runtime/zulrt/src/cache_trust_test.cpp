#include "cache_trust.h"
#include "child_process.h"
#include "failing_call.h"
#include "files.h"
#include "library_designs.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// A directory that is trusted, to be spoilt in one way.
class CacheTrustTest : public testing::Test {
protected:
    CacheTrustTest()
    {
        std::filesystem::create_directory(cache);
        chmod(cache.c_str(), 0700);
        writeFile(marker, Bytes().chars("marker"));
    }
    CacheTrust trust() const { return trustOfCacheDirectory(cache.c_str()); }

    TemporaryDirectory directory;
    std::string const cache = directory / "cache";
    std::string const marker = cache + '/' + markerFile;
};

TEST_F(CacheTrustTest, OwnDirectoryWithOwnMarkerIsTrusted)
{
    EXPECT_EQ(trust(), CacheTrust::Trusted);
    ASSERT_EQ(chmod(cache.c_str(), 0755), 0);
    EXPECT_EQ(trust(), CacheTrust::Trusted) << "others may look at it";
    writeFile(marker, Bytes());
    EXPECT_EQ(trust(), CacheTrust::Trusted) << "an empty marker is one too";
}

TEST_F(CacheTrustTest, NothingThereIsMissing)
{
    EXPECT_EQ(trustOfCacheDirectory((directory / "other").c_str()), CacheTrust::Missing);
    EXPECT_EQ(trustOfCacheDirectory(""), CacheTrust::Missing);
}

TEST_F(CacheTrustTest, WhatCannotBeLookedAtIsUnreachable)
{
    EXPECT_EQ(trustOfCacheDirectory(nullptr), CacheTrust::Unreachable);
    EXPECT_EQ(trustOfCacheDirectory((directory / std::string(300, 'x')).c_str()), CacheTrust::Unreachable);
    EXPECT_EQ(trustOfCacheDirectory((directory / std::string(5000, 'x')).c_str()), CacheTrust::Unreachable);
}

TEST_F(CacheTrustTest, WithoutDescriptorsNothingIsTrusted)
{
    auto const look = [path = cache.c_str()] {
        useUpDescriptors();
        return static_cast<int>(trustOfCacheDirectory(path));
    };
    EXPECT_EQ(inChildProcess(look), static_cast<int>(CacheTrust::Unreachable));
}

TEST_F(CacheTrustTest, WithoutAnswersOfTheSystemNothingIsTrusted)
{
    auto const look = [this] { return static_cast<int>(trust()); };
    EXPECT_EQ(withFailingCall(SYS_newfstatat, EIO, look), static_cast<int>(CacheTrust::Unreachable));
}

TEST_F(CacheTrustTest, FileIsNoDirectory)
{
    EXPECT_EQ(trustOfCacheDirectory(marker.c_str()), CacheTrust::NotADirectory);
}

TEST_F(CacheTrustTest, SymbolicLinkToATrustedDirectoryIsNoDirectory)
{
    std::string const link = directory / "link";
    ASSERT_EQ(symlink(cache.c_str(), link.c_str()), 0);
    EXPECT_EQ(trustOfCacheDirectory(link.c_str()), CacheTrust::NotADirectory);
    std::string const dangling = directory / "dangling";
    ASSERT_EQ(symlink("nowhere", dangling.c_str()), 0);
    EXPECT_EQ(trustOfCacheDirectory(dangling.c_str()), CacheTrust::NotADirectory);
}

TEST_F(CacheTrustTest, LinksInACircleLeadToNoDirectory)
{
    std::string const link = directory / "link";
    ASSERT_EQ(symlink("link", link.c_str()), 0);
    EXPECT_EQ(trustOfCacheDirectory((link + "/cache").c_str()), CacheTrust::NotADirectory);
}

TEST_F(CacheTrustTest, FifoIsNoDirectoryAndDoesNotBlock)
{
    std::string const fifo = directory / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(trustOfCacheDirectory(fifo.c_str()), CacheTrust::NotADirectory);
}

TEST_F(CacheTrustTest, DirectoryThatGroupOrEverybodyMayWriteIsRefused)
{
    for (mode_t const mode : {0720U, 0702U, 0770U, 0777U, 01777U}) {
        ASSERT_EQ(chmod(cache.c_str(), mode), 0);
        EXPECT_EQ(trust(), CacheTrust::WritableByOthers) << std::oct << mode;
    }
}

TEST_F(CacheTrustTest, DirectoryOfAnotherUserIsRefused)
{
    inPrivateTmp([] {
        std::filesystem::create_directory("/tmp/cache");
        writeFile(std::string("/tmp/cache/") + markerFile, Bytes().chars("marker"));
        ASSERT_EQ(trustOfCacheDirectory("/tmp/cache"), CacheTrust::Trusted);
        giveAway("/tmp/cache");
        EXPECT_EQ(trustOfCacheDirectory("/tmp/cache"), CacheTrust::ForeignOwner);
    });
}

TEST_F(CacheTrustTest, DirectoryOfAnotherUserThatCannotBeReadSaysSo)
{
    inPrivateTmp([] {
        std::filesystem::create_directory("/tmp/cache");
        chmod("/tmp/cache", 0700);
        giveAway("/tmp/cache");
        EXPECT_EQ(asOrdinaryUser([] { return static_cast<int>(trustOfCacheDirectory("/tmp/cache")); }),
                  static_cast<int>(CacheTrust::ForeignOwner));
    });
}

TEST_F(CacheTrustTest, MissingMarkerIsRefused)
{
    ASSERT_EQ(unlink(marker.c_str()), 0);
    EXPECT_EQ(trust(), CacheTrust::NoMarker);
    writeFile(cache + "/libother.dylib", Bytes());
    EXPECT_EQ(trust(), CacheTrust::NoMarker);
}

TEST_F(CacheTrustTest, MarkerThatIsNoRegularFileIsRefused)
{
    ASSERT_EQ(rename(marker.c_str(), (cache + "/real").c_str()), 0);
    ASSERT_EQ(symlink("real", marker.c_str()), 0);
    EXPECT_EQ(trust(), CacheTrust::MarkerNotAFile);
    ASSERT_EQ(unlink(marker.c_str()), 0);
    ASSERT_EQ(symlink("nowhere", marker.c_str()), 0);
    EXPECT_EQ(trust(), CacheTrust::MarkerNotAFile);
    ASSERT_EQ(unlink(marker.c_str()), 0);
    ASSERT_EQ(mkfifo(marker.c_str(), 0600), 0);
    EXPECT_EQ(trust(), CacheTrust::MarkerNotAFile);
    ASSERT_EQ(unlink(marker.c_str()), 0);
    ASSERT_EQ(mkdir(marker.c_str(), 0700), 0);
    EXPECT_EQ(trust(), CacheTrust::MarkerNotAFile);
}

TEST_F(CacheTrustTest, MarkerOfAnotherUserIsRefused)
{
    inPrivateTmp([] {
        std::string const foreign = std::string("/tmp/cache/") + markerFile;
        std::filesystem::create_directory("/tmp/cache");
        writeFile(foreign, Bytes().chars("marker"));
        giveAway(foreign);
        EXPECT_EQ(trustOfCacheDirectory("/tmp/cache"), CacheTrust::MarkerOfAnotherUser);
    });
}

TEST_F(CacheTrustTest, MarkerThatCannotBeOpenedIsRefused)
{
    chmod(directory.path(), 0777);
    std::string const own = directory / "own";
    auto const look = [&own] {
        std::filesystem::create_directory(own);
        writeFile(own + '/' + markerFile, Bytes());
        chmod((own + '/' + markerFile).c_str(), 0);
        return static_cast<int>(trustOfCacheDirectory(own.c_str()));
    };
    EXPECT_EQ(asOrdinaryUser(look), static_cast<int>(CacheTrust::MarkerNotReadable));
}

TEST_F(CacheTrustTest, OwnDirectoryThatCannotBeSearchedIsUnreachable)
{
    chmod(directory.path(), 0777);
    std::string const own = directory / "own";
    auto const look = [&own] {
        std::filesystem::create_directory(own);
        chmod(own.c_str(), 0);
        return static_cast<int>(trustOfCacheDirectory(own.c_str()));
    };
    EXPECT_EQ(asOrdinaryUser(look), static_cast<int>(CacheTrust::Unreachable));
}

TEST_F(CacheTrustTest, NothingStaysOpen)
{
    std::size_t const before = openDescriptors();
    EXPECT_EQ(trust(), CacheTrust::Trusted);
    unlink(marker.c_str());
    EXPECT_EQ(trust(), CacheTrust::NoMarker);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(CacheTrustTest, EveryAnswerHasWords)
{
    using enum CacheTrust;
    EXPECT_STREQ(describe(Trusted), "is trusted");
    EXPECT_STREQ(describe(Missing), "does not exist");
    EXPECT_STREQ(describe(NotADirectory), "is no directory");
    EXPECT_STREQ(describe(Unreachable), "cannot be looked at");
    EXPECT_STREQ(describe(ForeignOwner), "belongs to another user");
    EXPECT_STREQ(describe(WritableByOthers), "can be written by other users");
    EXPECT_STREQ(describe(NoMarker), "has no marker library");
    EXPECT_STREQ(describe(MarkerNotAFile), "has a marker that is no regular file");
    EXPECT_STREQ(describe(MarkerOfAnotherUser), "has a marker that belongs to another user");
    EXPECT_STREQ(describe(MarkerNotReadable), "has a marker that cannot be read");
}

} // namespace
