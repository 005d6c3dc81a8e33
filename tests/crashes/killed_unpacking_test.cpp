#include "killed_process.h"
#include "library_host.h"
#include "private_tmp.h"
#include "rounds.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace {

using Names = std::vector<std::string>;

/// A load in a process that is killed, in a /tmp that has nothing but the design's file.
class KilledUnpacking : public testing::Test {
protected:
    static int load() { return library_host::loadsWell(library_host::designFile) ? 0 : 1; }

    /// What a killed load left: the cache, when it is there, is complete, and there is at most one directory that was
    /// being filled.
    static void expectNothingHalfDone()
    {
        Names left = inTmp();
        if (std::erase(left, "zulcache_3F2A") != 0) {
            EXPECT_TRUE(library_host::holdsTheLibraries("/tmp/zulcache_3F2A"));
        }
        std::erase(left, "design.zul");
        EXPECT_LE(left.size(), 1U);
        for (std::string const& name : left) {
            EXPECT_EQ(name.substr(0, 6), "zulrt-");
        }
    }

    /// The next load makes the cache or uses it, and adds nothing else.
    static void expectALaterLoadToWork()
    {
        Names expected = inTmp();
        std::erase(expected, "zulcache_3F2A");
        expected.emplace_back("zulcache_3F2A");
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(load(), 0);
        EXPECT_EQ(inTmp(), expected);
    }

    static void clean()
    {
        for (std::string const& name : inTmp()) {
            std::filesystem::remove_all("/tmp/" + name);
        }
        library_host::writeDesign(library_host::designFile, "3F2A");
    }
};

TEST_F(KilledUnpacking, LeavesNoCacheOrACompleteOne)
{
    inPrivateTmp([] {
        std::size_t absent = 0;
        std::size_t complete = 0;
        for (std::size_t stop = 1, killed = 1; killed != 0; stop += stopStep) {
            SCOPED_TRACE(testing::Message() << "killed at stop " << stop);
            clean();
            ChildEnd const end = killedAtStop(stop, load);
            killed = end.wasKilled ? 1 : 0;
            EXPECT_TRUE(end.wasKilled || end.result == 0);
            expectNothingHalfDone();
            complete += exists("/tmp/zulcache_3F2A") ? 1U : 0U;
            absent += exists("/tmp/zulcache_3F2A") ? 0U : 1U;
            expectALaterLoadToWork();
        }
        EXPECT_GT(absent, 0U);
        EXPECT_GT(complete, 0U);
    });
}

TEST_F(KilledUnpacking, FromTheCacheLeavesItAsItWas)
{
    inPrivateTmp([] {
        clean();
        EXPECT_EQ(load(), 0);
        for (std::size_t stop = 1; killedAtStop(stop, load).wasKilled; stop += stopStep) {
            EXPECT_EQ(inTmp(), (Names{"design.zul", "zulcache_3F2A"}));
            EXPECT_TRUE(library_host::holdsTheLibraries("/tmp/zulcache_3F2A"));
        }
    });
}

TEST_F(KilledUnpacking, AtAnyMomentLeavesNoCacheOrACompleteOne)
{
    inPrivateTmp([] {
        std::minstd_rand random(1);
        for (int round = rounds(100); round > 0; --round) {
            clean();
            killedAfter(std::chrono::microseconds(random() % 5'000), load);
            expectNothingHalfDone();
            expectALaterLoadToWork();
        }
    });
}

} // namespace
