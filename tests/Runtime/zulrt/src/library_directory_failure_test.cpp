#include "child_process.h"
#include "failing_call.h"
#include "library_designs.h"
#include "library_directory.h"
#include "listing.h"
#include "private_tmp.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

constexpr unsigned system516 = 516;
constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// A design whose second library has @p stream.
LibraryDesign designWith(Bytes const& stream, char const* id = "3F2A")
{
    return {id, {sample::library("qel", "the marker"), compressedLibraryTag("filter", stream)}};
}

TEST(UnpackingFailure, UnwritableTmpMakesNoDirectory)
{
    inPrivateTmp([] {
        LibraryDesign const design = designWith(deflated(noise(1000)));
        int reason = 0;
        EXPECT_EQ(
            onUnwritableTmp([&] { return LibraryDirectory(true).replace(design.zul, system516); }, reason),
            -14);
        int const result =
            onUnwritableTmp([&] { return LibraryDirectory(true).unpack(design.zul, system516); }, reason);
        EXPECT_EQ(result, -reason);
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(UnpackingFailure, DirectoryThatCannotBeMadeIsToldByItsErrno)
{
    LibraryDesign const design = designWith(deflated(noise(1000)));
    for (int const error : {EPERM, ENOSPC, EMLINK}) {
        EXPECT_EQ(withFailingCall(SYS_mkdir, error,
                                  [&] { return LibraryDirectory(true).unpack(design.zul, system516); }),
                  -error);
    }
}

TEST(UnpackingFailure, UnwritableTmpLeavesNoDirectoryHeld)
{
    inPrivateTmp([] {
        LibraryDesign const design = designWith(deflated(noise(1000)));
        LibraryDesign const other = designWith(deflated(noise(1000)), "other");
        LibraryDirectory directory(true);
        EXPECT_EQ(directory.unpack(design.zul, system516), 0);
        ASSERT_TRUE(directory.isCache());
        int reason = 0;
        auto const reload = [&] {
            return directory.replace(other.zul, system516) == -14 && directory.path() == nullptr &&
                   !directory.isCache();
        };
        int const good = onUnwritableTmp([&] { return reload() ? 1 : 0; }, reason);
        EXPECT_EQ(good, 1);
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(UnpackingFailure, EmptyPrivateDirectoryIsRemovedAlsoWhenItCannotBeOpened)
{
    inPrivateTmp([] {
        LibraryDesign const design = designWith(deflated(noise(1000)));
        for (int const error : {EPERM, EACCES, EMFILE}) {
            EXPECT_EQ(withFailingCall(SYS_openat, error,
                                      [&] { return LibraryDirectory(true).replace(design.zul, system516); }),
                      0);
            EXPECT_EQ(inTmp(), Names());
        }
    });
}

TEST(UnpackingFailure, FullDiskLeavesNothing)
{
    inPrivateTmp([] {
        int const error = fillTmpBeyond(mebibyte);
        LibraryDesign const compressed = designWith(deflated(Bytes().fill('z', 3 * mebibyte)));
        LibraryDesign const raw("raw", {sample::library("qel", std::string(3 * mebibyte, 'z'))});
        for (ZUL const* const zul : {&compressed.zul, &raw.zul}) {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(*zul, system516), 0);
            EXPECT_EQ(directory.unpack(*zul, system516), -error);
            ASSERT_NE(directory.path(), nullptr);
            EXPECT_FALSE(directory.isCache());
            EXPECT_FALSE(exists(std::string(directory.path()) + "/libfilter.dylib")) << "complete or absent";
        }
        EXPECT_EQ(inTmp(), Names());
        EXPECT_EQ(LibraryDirectory(true).unpack(designWith(deflated(noise(1000))).zul, system516), 0);
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

/// Uses everything once: a sanitizer needs descriptors of its own when it sees an object of a class for the first time.
void getToKnowAllClasses()
{
    EXPECT_EQ(LibraryDirectory(true).unpack(designWith(deflated(noise(1000)), nullptr).zul, system516), 0);
    EXPECT_EQ(LibraryDirectory(true).unpack(designWith(Bytes().chars("no stream"), nullptr).zul, system516),
              -5);
}

TEST(UnpackingFailure, WithoutDescriptorsNothingIsLeft)
{
    inPrivateTmp([] {
        getToKnowAllClasses();
        LibraryDesign const design = designWith(deflated(noise(1000)));
        EXPECT_EQ(inChildProcess([&design] {
                      useUpDescriptors();
                      return LibraryDirectory(true).unpack(design.zul, system516);
                  }),
                  -EMFILE);
        EXPECT_EQ(inChildProcess([&design] {
                      useUpDescriptors();
                      LibraryDirectory directory(true);
                      return directory.replace(design.zul, system516);
                  }),
                  0);
        EXPECT_EQ(inTmp(), Names());
    });
}

TEST(UnpackingFailure, OneDescriptorIsEnough)
{
    inPrivateTmp([] {
        getToKnowAllClasses();
        auto const unpack = [](LibraryDesign const& design) {
            return inChildProcess([&design] {
                int const last = dup(0);
                useUpDescriptors();
                close(last);
                return LibraryDirectory(true).unpack(design.zul, system516);
            });
        };
        EXPECT_EQ(unpack(designWith(Bytes().chars("no stream"), "broken")), -5);
        EXPECT_EQ(inTmp(), Names());
        EXPECT_EQ(unpack(designWith(deflated(noise(1000)))), 0);
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(UnpackingFailure, CorruptLibraryKeepsTheDirectoryUntilTheEnd)
{
    inPrivateTmp([] {
        LibraryDesign const design = designWith(Bytes().chars("no stream"));
        {
            LibraryDirectory directory(true);
            EXPECT_EQ(directory.replace(design.zul, system516), 0);
            std::string const path = directory.path();
            EXPECT_EQ(directory.unpack(design.zul, system516), -5);
            EXPECT_EQ(path, directory.path());
            EXPECT_FALSE(directory.isCache());
            EXPECT_EQ(entriesOf(path), Names{"libqel.dylib"}) << "what was unpacked before";
        }
        EXPECT_EQ(inTmp(), Names());
        {
            LibraryDirectory kept(false);
            EXPECT_EQ(kept.unpack(design.zul, system516), -5);
        }
        EXPECT_EQ(inTmp().size(), 1U);
    });
}

TEST(UnpackingFailure, NothingStaysOpen)
{
    inPrivateTmp([] {
        LibraryDesign const good = designWith(deflated(noise(1000)), sharedId);
        LibraryDesign const broken = designWith(Bytes().chars("no stream"));
        LibraryDirectory(true).unpack(good.zul, system516);
        int const next = dup(0);
        close(next);
        LibraryDirectory(true).unpack(good.zul, system516);
        LibraryDirectory(true).unpack(broken.zul, system516);
        int const now = dup(0);
        EXPECT_EQ(now, next);
        close(now);
    });
}

bool holdsTheLibraries(LibraryDirectory const& directory, Bytes const& contents)
{
    std::string const path = directory.path() == nullptr ? "" : directory.path();
    return directory.isCache() == (path == "/tmp/zulcache_3F2A") &&
           entriesOf(path) == Names{"libfilter.dylib", "libqel.dylib"} &&
           readFile(path + "/libqel.dylib") == Bytes().chars("the marker") &&
           readFile(path + "/libfilter.dylib") == contents;
}

/// One load of many at the same time. @return whether its libraries are all there
bool loadsWell(ZUL const& zul, Bytes const& contents)
{
    LibraryDirectory directory(true);
    return directory.replace(zul, system516) == 0 && directory.unpack(zul, system516) == 0 &&
           holdsTheLibraries(directory, contents);
}

constexpr int loads = 16;

TEST(UnpackingRace, ThreadsLoadOneDesignAtOnce)
{
    inPrivateTmp([] {
        Bytes const contents = noise(100'000);
        std::array<std::unique_ptr<LibraryDesign>, loads> designs;
        for (auto& design : designs) {
            design = std::make_unique<LibraryDesign>(designWith(deflated(contents)));
        }
        std::atomic<int> good = 0;
        std::atomic<bool> go = false;
        std::vector<std::thread> threads;
        for (auto const& design : designs) {
            threads.emplace_back([&, zul = &design->zul] {
                while (!go) {
                    std::this_thread::yield();
                }
                good += loadsWell(*zul, contents) ? 1 : 0;
            });
        }
        go = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(good, loads);
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

TEST(UnpackingRace, ProcessesLoadOneDesignAtOnce)
{
    inPrivateTmp([] {
        Bytes const contents = noise(100'000);
        LibraryDesign const design = designWith(deflated(contents));
        int start[2];
        ASSERT_EQ(pipe(start), 0);
        std::vector<pid_t> children;
        for (int i = 0; i < loads; ++i) {
            pid_t const child = fork();
            if (child == 0) {
                char byte = 0;
                close(start[1]);
                ssize_t const ended = read(start[0], &byte, 1); // until the other end is closed
                _exit(ended == 0 && loadsWell(design.zul, contents) ? 0 : 1);
            }
            children.push_back(child);
        }
        close(start[0]);
        close(start[1]);
        for (pid_t const child : children) {
            int status = 1;
            EXPECT_EQ(waitpid(child, &status, 0), child);
            EXPECT_EQ(status, 0);
        }
        EXPECT_EQ(inTmp(), Names{"zulcache_3F2A"});
    });
}

} // namespace
