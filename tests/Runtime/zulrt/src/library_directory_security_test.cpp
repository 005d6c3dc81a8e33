#include "library_designs.h"
#include "library_directory.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

constexpr unsigned system516 = 516;
std::string const cache = "/tmp/zulcache_3F2A";
std::string const sharedCache = "/tmp/zulcache___INVALID_ZUL_ID__";

LibraryDesign designWithMarker(char const* id = "3F2A")
{
    return {id, {sample::library("qel", "the marker")}};
}

std::string marker(std::string const& directory)
{
    return directory + '/' + markerFile;
}

void makeCache(std::string const& directory)
{
    std::filesystem::create_directory(directory);
    writeFile(marker(directory), Bytes().chars("not to be loaded"));
}

/// Loads @p design both ways; each has to end in a private directory with its libraries, which is gone afterwards.
void expectPrivate(LibraryDesign const& design)
{
    Names const before = inTmp();
    for (bool const replacing : {true, false}) {
        LibraryDirectory directory(true);
        EXPECT_EQ(replacing ? directory.replace(design.zul, system516) : 0, 0);
        EXPECT_EQ(directory.unpack(design.zul, system516), 0);
        ASSERT_NE(directory.path(), nullptr);
        EXPECT_FALSE(directory.isCache());
        EXPECT_TRUE(std::string_view(directory.path()).starts_with("/tmp/zulrt-")) << directory.path();
        EXPECT_EQ(readFile(marker(directory.path())), Bytes().chars("the marker"));
    }
    EXPECT_EQ(inTmp(), before);
}

void expectCache(LibraryDesign const& design, std::string const& path)
{
    Names const before = inTmp();
    for (bool const replacing : {true, false}) {
        LibraryDirectory directory(true);
        EXPECT_EQ(replacing ? directory.replace(design.zul, system516) : 0, 0);
        EXPECT_EQ(directory.unpack(design.zul, system516), 0);
        EXPECT_TRUE(directory.isCache());
        EXPECT_EQ(std::string(directory.path()), path);
    }
    EXPECT_EQ(inTmp(), before);
}

TEST(HostileCache, LinkToADirectoryIsNeitherUsedNorReplaced)
{
    inPrivateTmp([] {
        makeCache("/tmp/elsewhere");
        ASSERT_EQ(symlink("/tmp/elsewhere", cache.c_str()), 0);
        expectPrivate(designWithMarker());
        EXPECT_TRUE(std::filesystem::is_symlink(cache));
        EXPECT_EQ(readFile("/tmp/elsewhere/libqel.dylib"), Bytes().chars("not to be loaded"));
    });
}

TEST(HostileCache, LinkToAnEmptyDirectoryOrToNothingIsNeitherUsedNorReplaced)
{
    inPrivateTmp([] {
        std::filesystem::create_directory("/tmp/empty");
        for (char const* const target : {"/tmp/empty", "/tmp/nothing"}) {
            ASSERT_EQ(symlink(target, cache.c_str()), 0);
            expectPrivate(designWithMarker());
            EXPECT_TRUE(std::filesystem::is_symlink(cache));
            ASSERT_EQ(unlink(cache.c_str()), 0);
        }
        EXPECT_TRUE(std::filesystem::is_empty("/tmp/empty"));
    });
}

TEST(HostileCache, FileOrFifoIsLeftAlone)
{
    inPrivateTmp([] {
        writeFile(cache, Bytes().chars("a file"));
        expectPrivate(designWithMarker());
        EXPECT_EQ(readFile(cache), Bytes().chars("a file"));
        ASSERT_EQ(unlink(cache.c_str()), 0);
        ASSERT_EQ(mkfifo(cache.c_str(), 0600), 0);
        expectPrivate(designWithMarker());
        EXPECT_TRUE(std::filesystem::is_fifo(cache));
    });
}

TEST(HostileCache, DirectoryOfAnotherUserIsLeftAlone)
{
    inPrivateTmp([] {
        makeCache(cache);
        giveAway(cache);
        expectPrivate(designWithMarker());
        EXPECT_TRUE(std::filesystem::is_directory(cache));
    });
}

TEST(HostileCache, EmptyDirectoryOfAnotherUserIsLeftAlone)
{
    inPrivateTmp([] {
        std::filesystem::create_directory(cache);
        giveAway(cache);
        expectPrivate(designWithMarker());
        struct stat status {};
        ASSERT_EQ(lstat(cache.c_str(), &status), 0);
        EXPECT_NE(status.st_uid, geteuid());
    });
}

TEST(HostileCache, DirectoryThatOthersMayWriteIsNotUsed)
{
    inPrivateTmp([] {
        makeCache(cache);
        for (mode_t const mode : {0770U, 0707U}) {
            ASSERT_EQ(chmod(cache.c_str(), mode), 0);
            expectPrivate(designWithMarker());
        }
        EXPECT_EQ(readFile(marker(cache)), Bytes().chars("not to be loaded"));
    });
}

TEST(HostileCache, MarkerMustBeAnOwnRegularFile)
{
    std::function<void()> const spoilers[] = {
        [] { ASSERT_EQ(symlink("/etc/passwd", marker(cache).c_str()), 0); },
        [] { ASSERT_EQ(mkfifo(marker(cache).c_str(), 0600), 0); },
        [] { ASSERT_EQ(mkdir(marker(cache).c_str(), 0700), 0); },
        [] {
            writeFile(marker(cache), Bytes());
            giveAway(marker(cache));
        },
    };
    for (auto const& spoil : spoilers) {
        inPrivateTmp([&spoil] {
            std::filesystem::create_directory(cache);
            spoil();
            expectPrivate(designWithMarker());
            EXPECT_EQ(entriesOf(cache), Names{markerFile});
        });
    }
}

TEST(HostileDesign, LibraryNameWithSlashWritesNothing)
{
    inPrivateTmp([] {
        std::filesystem::create_directories("/tmp/libout");
        LibraryDesign const design("3F2A", {sample::library("/../../libout/x", "escaped")});
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            EXPECT_EQ(directory.unpack(design.zul, system516), -2);
            ASSERT_NE(directory.path(), nullptr);
            EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
        }
        EXPECT_EQ(inTmp(), Names{"libout"});
        EXPECT_TRUE(std::filesystem::is_empty("/tmp/libout"));
    });
}

TEST(HostileDesign, IdWithSlashMovesNothing)
{
    inPrivateTmp([] {
        std::filesystem::create_directories("/tmp/zulcache_a");
        std::filesystem::create_directories("/tmp/target");
        expectPrivate(designWithMarker("a/b"));
        expectPrivate(designWithMarker("a/../target"));
        EXPECT_TRUE(std::filesystem::is_empty("/tmp/zulcache_a"));
        EXPECT_TRUE(std::filesystem::is_empty("/tmp/target"));
    });
}

/// A design with the id that many share, a raw and a compressed library, and one for another system.
LibraryDesign sharedDesign()
{
    return {sharedId,
            {sample::library("qel", "the marker"), compressedLibraryTag("filter", deflated(noise(200'000))),
             sample::library("foreign", "for another system", 517)}};
}

TEST(SharedCache, IsMadeAndUsedByTheSameLibraries)
{
    inPrivateTmp([] {
        LibraryDesign const design = sharedDesign();
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            EXPECT_EQ(directory.unpack(design.zul, system516), 0);
            EXPECT_TRUE(directory.isCache());
            EXPECT_EQ(directory.path(), sharedCache);
        }
        expectCache(design, sharedCache);
    });
}

TEST(SharedCache, IsNotUsedByOtherLibraries)
{
    inPrivateTmp([] {
        EXPECT_EQ(LibraryDirectory(true).unpack(sharedDesign().zul, system516), 0);
        expectPrivate({sharedId, {sample::library("qel", "the marker")}});
        expectPrivate({sharedId,
                       {sample::library("qel", "the marker"),
                        compressedLibraryTag("filter", deflated(noise(200'000, 2)))}});
        expectPrivate(
            {sharedId,
             {sample::library("qel", "the marker"), compressedLibraryTag("filter", deflated(noise(200'000))),
              sample::library("more", "more")}});
        expectCache(sharedDesign(), sharedCache);
    });
}

TEST(SharedCache, IsNotUsedWhenAFileDiffersAnywhere)
{
    std::string const filter = sharedCache + "/libfilter.dylib";
    Bytes const good = noise(200'000);
    std::function<void()> const spoilers[] = {
        [&] { writeFile(filter, Bytes(good).cut(199'999)); },
        [&] { writeFile(filter, Bytes(good).u8(0)); },
        [&] { writeFile(filter, Bytes(good).setU8(0, static_cast<unsigned>(good.data()[0]) ^ 1U)); },
        [&] {
            writeFile(filter, Bytes(good).setU8(199'999, static_cast<unsigned>(good.data()[199'999]) ^ 1U));
        },
        [&] { writeFile(filter, Bytes()); },
        [&] { unlink(filter.c_str()); },
        [&] { writeFile(sharedCache + "/libadded.dylib", Bytes()); },
        [&] {
            unlink(filter.c_str());
            writeFile("/tmp/same bytes", good);
            ASSERT_EQ(symlink("/tmp/same bytes", filter.c_str()), 0);
        },
        [&] {
            unlink(filter.c_str());
            ASSERT_EQ(mkfifo(filter.c_str(), 0600), 0);
        },
        [&] { giveAway(filter); },
        [&] { chmod(sharedCache.c_str(), 0777); },
    };
    for (auto const& spoil : spoilers) {
        inPrivateTmp([&spoil] {
            EXPECT_EQ(LibraryDirectory(true).unpack(sharedDesign().zul, system516), 0);
            expectCache(sharedDesign(), sharedCache);
            spoil();
            expectPrivate(sharedDesign());
        });
    }
}

TEST(SharedCache, OfRawLibrariesIsComparedToTheEnd)
{
    inPrivateTmp([] {
        Bytes const contents = Bytes().chars(std::string(300'000, 'x'));
        std::string const text(300'000, 'x');
        LibraryDesign const design(sharedId,
                                   {sample::library("qel", "the marker"), sample::library("raw", text)});
        EXPECT_EQ(LibraryDirectory(true).unpack(design.zul, system516), 0);
        expectCache(design, sharedCache);
        writeFile(sharedCache + "/libraw.dylib", Bytes(contents).setU8(299'999, 'y'));
        expectPrivate(design);
    });
}

TEST(SharedCache, IsNotUsedWhenAFifoStandsForALibraryWithoutBytes)
{
    inPrivateTmp([] {
        std::string const file = sharedCache + "/libempty.dylib";
        LibraryDesign const design(sharedId,
                                   {sample::library("qel", "the marker"), sample::library("empty", "")});
        EXPECT_EQ(LibraryDirectory(true).unpack(design.zul, system516), 0);
        expectCache(design, sharedCache);
        unlink(file.c_str());
        ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
        expectPrivate(design);
    });
}

TEST(SharedCache, IsNotUsedByADesignWithoutLibraries)
{
    inPrivateTmp([] {
        EXPECT_EQ(LibraryDirectory(true).unpack(sharedDesign().zul, system516), 0);
        LibraryDesign const none(sharedId, {});
        LibraryDesign const foreign(sharedId, {sample::library("qel", "the marker", 517)});
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.replace(none.zul, system516), 0);
        EXPECT_FALSE(directory.isCache());
        EXPECT_EQ(directory.unpack(none.zul, system516), 0);
        EXPECT_EQ(directory.replace(foreign.zul, system516), 0);
        EXPECT_FALSE(directory.isCache());
        EXPECT_EQ(directory.unpack(foreign.zul, system516), -2);
    });
}

TEST(SharedCache, IsNotUsedByLibrariesThatCannotBeUnpacked)
{
    inPrivateTmp([] {
        EXPECT_EQ(LibraryDirectory(true).unpack(sharedDesign().zul, system516), 0);
        Bytes const stream = deflated(noise(200'000));
        LibraryDesign const broken(sharedId,
                                   {sample::library("qel", "the marker"),
                                    compressedLibraryTag("filter", Bytes(stream).cut(stream.size() - 1))});
        LibraryDesign const escaping(
            sharedId, {sample::library("qel", "the marker"), sample::library("/../libqel", "the marker")});
        EXPECT_EQ(LibraryDirectory(true).unpack(broken.zul, system516), -5);
        EXPECT_EQ(LibraryDirectory(true).unpack(escaping.zul, system516), -2);
        EXPECT_EQ(inTmp(), Names{"zulcache___INVALID_ZUL_ID__"});
    });
}

} // namespace
