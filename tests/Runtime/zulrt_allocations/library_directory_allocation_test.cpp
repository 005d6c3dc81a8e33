#include "allocations.h"
#include "library_designs.h"
#include "library_directories.h"
#include "library_directory.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Names = std::vector<std::string>;

constexpr unsigned system516 = 516;

LibraryDesign designWithLibraries(char const* id)
{
    return {id,
            {sample::library("qel", "the marker"), compressedLibraryTag("filter", deflated(noise(1000)))}};
}

auto const newDirectory = [] { return std::make_unique<LibraryDirectory>(true); };

TEST(FailingAllocationOfALibraryDirectory, ThrowsAndMakesNoDirectory)
{
    inPrivateTmp([] {
        std::size_t const failures = withEveryAllocationFailing(
            [] { return std::make_unique<std::unique_ptr<char[]>>(); },
            [](std::unique_ptr<char[]>& path) { path.reset(createAppletDLLsTempDir("3F2A", nullptr)); },
            [](std::unique_ptr<char[]> const& path) {
                EXPECT_EQ(path, nullptr);
                EXPECT_EQ(inTmp(), Names());
            });
        EXPECT_GE(failures, 2U) << "the names of the cache and of the private directory";
    });
}

TEST(FailingAllocationOfALibraryDirectory, LeavesTheOldOneHeld)
{
    inPrivateTmp([] {
        LibraryDesign const old = designWithLibraries(nullptr);
        LibraryDesign const design = designWithLibraries("3F2A");
        std::size_t const failures = withEveryAllocationFailing(
            [&old] {
                auto directory = newDirectory();
                EXPECT_EQ(directory->replace(old.zul, system516), 0);
                return directory;
            },
            [&design](LibraryDirectory& directory) { directory.replace(design.zul, system516); },
            [](LibraryDirectory const& directory) {
                EXPECT_FALSE(directory.isCache());
                ASSERT_EQ(inTmp().size(), 1U);
                EXPECT_EQ("/tmp/" + inTmp()[0], directory.path());
            });
        EXPECT_GT(failures, 1U);
        EXPECT_EQ(inTmp(), Names());
    });
}

/// A design that nothing was asked of yet, and its directory.
struct Loaded {
    LibraryDesign design = designWithLibraries("3F2A");
    LibraryDirectory directory{true};
};

TEST(FailingAllocationOfALibraryDirectory, LeavesNothingWhenItIsUnpacked)
{
    inPrivateTmp([] {
        std::size_t const failures = withEveryAllocationFailing(
            [] {
                EXPECT_EQ(inTmp(), Names()) << "of the run before";
                return std::make_unique<Loaded>();
            },
            [](Loaded& loaded) { loaded.directory.unpack(loaded.design.zul, system516); },
            [](Loaded const& loaded) {
                EXPECT_FALSE(loaded.directory.isCache());
                EXPECT_EQ(inTmp().size(), loaded.directory.path() == nullptr ? 0U : 1U);
            });
        EXPECT_GT(failures, 4U);
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"}) << "of the last run, in which nothing failed";
    });
}

TEST(FailingAllocationOfALibraryDirectory, LeavesASharedCacheAsItIs)
{
    inPrivateTmp([] {
        LibraryDesign const design = designWithLibraries(sharedId);
        EXPECT_EQ(LibraryDirectory(true).unpack(design.zul, system516), 0);
        std::size_t const failures = withEveryAllocationFailing(
            newDirectory,
            [&design](LibraryDirectory& directory) { directory.replace(design.zul, system516); },
            [](LibraryDirectory const& directory) {
                EXPECT_EQ(directory.path(), nullptr);
                EXPECT_EQ(inTmp(), Names{"zulcache___INVALID_ZUL_ID__"});
            });
        EXPECT_GT(failures, 4U);
    });
}

} // namespace
