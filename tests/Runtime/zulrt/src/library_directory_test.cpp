#include "child_process.h"
#include "library_designs.h"
#include "library_directory.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

constexpr unsigned system516 = 516;
constexpr char cacheOf3F2A[] = "/tmp/zulcache_3F2A";

/// Two libraries of this system, one of them the marker, and one of another system.
LibraryDesign ordinaryDesign(char const* id)
{
    return {id,
            {sample::library("qel", "the marker"), compressedLibraryTag("filter", deflated(noise(200'000))),
             sample::library("filter", "for another system", 517)}};
}

std::string pathOf(LibraryDirectory const& directory)
{
    return directory.path() == nullptr ? "(none)" : directory.path();
}

bool isPrivate(LibraryDirectory const& directory)
{
    return !directory.isCache() && pathOf(directory).starts_with("/tmp/zulrt-") &&
           std::filesystem::is_directory(pathOf(directory));
}

void expectOrdinaryLibraries(std::string const& path)
{
    EXPECT_EQ(entriesOf(path), (Names{"libfilter.dylib", "libqel.dylib"}));
    EXPECT_EQ(readFile(path + "/libqel.dylib"), Bytes().chars("the marker"));
    EXPECT_TRUE(readFile(path + "/libfilter.dylib") == noise(200'000));
}

TEST(LibraryDirectory, IsNoneAtFirst)
{
    LibraryDirectory const directory(true);
    EXPECT_EQ(directory.path(), nullptr);
    EXPECT_FALSE(directory.isCache());
}

TEST(LibraryDirectory, WithoutSystemIsNone)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.replace(design.zul, 0), 0);
        EXPECT_EQ(directory.path(), nullptr);
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(LibraryDirectory, IsPrivateAndEmptyUntilItIsUnpacked)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.replace(design.zul, system516), 0);
        EXPECT_TRUE(isPrivate(directory));
        EXPECT_EQ(entriesOf(directory.path()), Names());
        EXPECT_EQ(inTmp().size(), 1U);
    });
}

TEST(LibraryDirectory, BecomesTheCacheWhenItIsUnpacked)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
            EXPECT_EQ(pathOf(directory), cacheOf3F2A);
            EXPECT_TRUE(directory.isCache());
            expectOrdinaryLibraries(cacheOf3F2A);
        }
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"}) << "the cache stays";
    });
}

TEST(LibraryDirectory, FindsTheCacheAndWritesNothing)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        EXPECT_EQ(LibraryDirectory(true).unpack(design.zul, system516), 0);
        std::string const changed = std::string(cacheOf3F2A) + "/libfilter.dylib";
        writeFile(changed, Bytes().chars("changed"));
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            EXPECT_EQ(pathOf(directory), cacheOf3F2A);
            EXPECT_TRUE(directory.isCache());
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
        }
        EXPECT_EQ(readFile(changed), Bytes().chars("changed"));
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(LibraryDirectory, IsObtainedByUnpackingWhereNoneIsHeld)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        LibraryDirectory first(true);
        EXPECT_EQ(first.unpack(design.zul, system516), 0);
        EXPECT_EQ(pathOf(first), cacheOf3F2A);
        EXPECT_TRUE(first.isCache());
        expectOrdinaryLibraries(cacheOf3F2A);
        LibraryDirectory second(true);
        EXPECT_EQ(second.unpack(design.zul, system516), 0);
        EXPECT_EQ(pathOf(second), cacheOf3F2A);
        EXPECT_TRUE(second.isCache());
    });
}

TEST(LibraryDirectory, OfADesignWithoutLibrariesStaysEmptyAndPrivate)
{
    inPrivateTmp([] {
        LibraryDesign const design("3F2A", {});
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
            EXPECT_TRUE(isPrivate(directory));
            EXPECT_EQ(entriesOf(directory.path()), Names());
        }
        LibraryDirectory none(true);
        EXPECT_EQ(none.unpack(design.zul, system516), 0);
        EXPECT_EQ(none.path(), nullptr);
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(LibraryDirectory, WithoutLibraryOfThisSystemIsARefusal)
{
    inPrivateTmp([] {
        LibraryDesign const design("3F2A", {sample::library("qel", "other", 517)});
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, 517), 0);
            EXPECT_EQ(directory.unpack(design.zul, 517), -2) << "the number chooses no system";
            EXPECT_TRUE(isPrivate(directory)) << "kept until the object goes";
        }
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(LibraryDirectory, WithoutMarkerLibraryIsPublishedOnceAndNeverFound)
{
    inPrivateTmp([] {
        LibraryDesign const design("3F2A", {sample::library("filter", "bytes")});
        {
            LibraryDirectory first(true);
            EXPECT_EQ(first.unpack(design.zul, system516), 0);
            EXPECT_EQ(pathOf(first), cacheOf3F2A);
            LibraryDirectory second(true);
            EXPECT_EQ(second.replace(design.zul, system516), 0);
            EXPECT_EQ(second.unpack(design.zul, system516), 0);
            EXPECT_TRUE(isPrivate(second));
            EXPECT_EQ(readFile(pathOf(second) + "/libfilter.dylib"), Bytes().chars("bytes"));
        }
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(LibraryDirectory, ThatLostTheRaceStaysPrivate)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign("3F2A");
        {
            LibraryDirectory slower(true);
            EXPECT_EQ(slower.replace(design.zul, system516), 0);
            EXPECT_EQ(LibraryDirectory(true).unpack(design.zul, system516), 0);
            EXPECT_EQ(slower.unpack(design.zul, system516), 0);
            EXPECT_TRUE(isPrivate(slower));
            expectOrdinaryLibraries(pathOf(slower));
        }
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
        expectOrdinaryLibraries(cacheOf3F2A);
    });
}

TEST(LibraryDirectory, ReplacesAnEmptyDirectoryOfThisUsers)
{
    inPrivateTmp([] {
        std::filesystem::create_directory(cacheOf3F2A);
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.unpack(ordinaryDesign("3F2A").zul, system516), 0);
        EXPECT_EQ(pathOf(directory), cacheOf3F2A);
        expectOrdinaryLibraries(cacheOf3F2A);
    });
}

/// The first load makes a private directory, which stays private since the cache's name is taken.
std::optional<Names> filesAfterSecondUnpacking(unsigned policy)
{
    std::filesystem::create_directories(std::string(cacheOf3F2A) + "/in the way");
    LibraryDesign const design("3F2A", {sample::library("qel", "original")});
    LibraryDirectory directory(true);
    bool good = directory.unpack(design.zul, policy) == 0 && isPrivate(directory);
    std::string const file = pathOf(directory) + "/libqel.dylib";
    std::string const otherName = pathOf(directory) + "/other name";
    writeFile(file, Bytes().chars("changed"));
    std::filesystem::create_hard_link(file, otherName);
    good = good && directory.unpack(design.zul, policy) == 0;
    auto const text = [](std::string const& path) {
        Bytes const bytes = readFile(path);
        return std::string(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    };
    return good ? std::optional(Names{text(file), text(otherName)}) : std::nullopt;
}

TEST(LibraryDirectory, UsesTheNumberOfTheSystemAsSavePolicy)
{
    inPrivateTmp([] {
        EXPECT_EQ(filesAfterSecondUnpacking(0), (Names{"changed", "changed"}));
        EXPECT_EQ(filesAfterSecondUnpacking(1), (Names{"original", "original"}));
        EXPECT_EQ(filesAfterSecondUnpacking(2), (Names{"original", "changed"}));
        EXPECT_EQ(filesAfterSecondUnpacking(516), (Names{"original", "original"}));
    });
}

TEST(LibraryDirectory, OfIdsWithoutCacheIsPrivateAndGoes)
{
    inPrivateTmp([] {
        for (char const* const id : {static_cast<char const*>(nullptr), "", "a/b", "../a", "/"}) {
            LibraryDesign const design = ordinaryDesign(id);
            {
                LibraryDirectory directory(true);
                EXPECT_EQ(directory.replace(design.zul, system516), 0);
                EXPECT_EQ(directory.unpack(design.zul, system516), 0);
                EXPECT_TRUE(isPrivate(directory)) << pathOf(directory);
                expectOrdinaryLibraries(pathOf(directory));
            }
            EXPECT_EQ(inTmp(), Names());
        }
    });
}

TEST(LibraryDirectory, OfDotsIsACacheInTmp)
{
    inPrivateTmp([] {
        EXPECT_EQ(LibraryDirectory(true).unpack(ordinaryDesign(".").zul, system516), 0);
        EXPECT_EQ(LibraryDirectory(true).unpack(ordinaryDesign("..").zul, system516), 0);
        EXPECT_EQ(inTmp(), (Names{"zulcache_.", "zulcache_.."}));
    });
}

TEST(LibraryDirectory, StaysWhenItIsNotToBeRemoved)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign(nullptr);
        {
            LibraryDirectory directory(false);
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
        }
        EXPECT_EQ(inTmp().size(), 2U);
    });
}

TEST(LibraryDirectory, IsGivenUpWhenItIsReplaced)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign(nullptr);
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.unpack(design.zul, system516), 0);
        std::string const first = pathOf(directory);
        EXPECT_EQ(directory.replace(design.zul, system516), 0);
        EXPECT_NE(pathOf(directory), first);
        EXPECT_EQ(inTmp().size(), 1U);
        EXPECT_EQ(directory.replace(design.zul, 0), 0);
        EXPECT_EQ(directory.path(), nullptr);
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(LibraryDirectory, LeavesTheCacheWhenItIsReplaced)
{
    inPrivateTmp([] {
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.unpack(ordinaryDesign("3F2A").zul, system516), 0);
        EXPECT_EQ(directory.replace(ordinaryDesign("other").zul, system516), 0);
        EXPECT_TRUE(isPrivate(directory)) << "the flag is that of the new directory";
        EXPECT_EQ(directory.replace(ordinaryDesign("3F2A").zul, system516), 0);
        EXPECT_TRUE(directory.isCache());
        EXPECT_EQ(directory.replace(ordinaryDesign("3F2A").zul, 0), 0);
        EXPECT_FALSE(directory.isCache());
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
        expectOrdinaryLibraries(cacheOf3F2A);
    });
}

TEST(LibraryDirectory, IsRemovedOnlyByTheProcessThatMadeIt)
{
    inPrivateTmp([] {
        LibraryDesign const design = ordinaryDesign(nullptr);
        std::optional<LibraryDirectory> directory(std::in_place, true);
        EXPECT_EQ(directory->unpack(design.zul, system516), 0);
        EXPECT_EQ(inChildProcess([&directory] {
                      directory.reset();
                      return 0;
                  }),
                  0);
        expectOrdinaryLibraries(pathOf(*directory));
        EXPECT_EQ(inChildProcess([&] { return directory->replace(design.zul, 0); }), 0);
        expectOrdinaryLibraries(pathOf(*directory));
        directory.reset();
        EXPECT_EQ(inTmp(), Names());
    });
}

} // namespace
