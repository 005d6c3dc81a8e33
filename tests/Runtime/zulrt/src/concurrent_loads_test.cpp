#include "design_answers.h"
#include "designs.h"
#include "library_host.h"
#include "private_tmp.h"
#include "rounds.h"
#include "threads.h"
#include "zullib.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Names = std::vector<std::string>;

/// What a reader sees of a container: every tag, by kind and by place, and what is found by name.
std::string seenIn(ZUL const& zul)
{
    std::string seen;
    auto const add = [&seen](auto const& value) { seen += std::to_string(value) + ' '; };
    for (std::uint32_t id = 0x8150000; id < 0x8160000; id += 0x1000) {
        for (unsigned i = 0; i < zul.getTagCount(id); ++i) {
            add(zul.getTagAt(id, i)->getTagId());
        }
    }
    for (unsigned i = 0; i < zul.getConfigCount(); ++i) {
        add(zul.getConfigAt(i)->getSaveLength());
    }
    for (char const* const name : {"FrameCounter", "CameraControl", "Frames", "unknown"}) {
        add(zul.getRegisterByName(name));
        ZUL_register const* const found = zul.findRegister(name);
        seen += found == nullptr ? "-" : found->getName();
    }
    seen += zul.getAuthor();
    seen += zul.getId();
    return seen;
}

TEST(ReadersOfOneContainer, SeeWhatOneThreadSees)
{
    Bytes const bytes = designs::rich();
    std::string const expected = seenIn(LoadedContainer(bytes).zul);
    EXPECT_GT(expected.size(), 100U);
    std::atomic<unsigned> differences = 0;
    for (int round = rounds(100); round > 0; --round) {
        LoadedContainer const container(
            bytes); // what is made by the first question is made by one of the threads
        inThreads([&](unsigned) { differences += seenIn(container.zul) == expected ? 0 : 1; });
    }
    EXPECT_EQ(differences, 0U);
}

std::string idOf(int round, unsigned design)
{
    return std::to_string(round) + "-" + std::to_string(design);
}

std::string fileOf(int round, unsigned design)
{
    return "/tmp/" + idOf(round, design) + ".zul";
}

/// Makes a /tmp with nothing but the files of @p count designs.
void prepare(int round, unsigned count)
{
    for (std::string const& name : inTmp()) {
        std::filesystem::remove_all("/tmp/" + name);
    }
    for (unsigned design = 0; design < count; ++design) {
        library_host::writeDesign(fileOf(round, design), idOf(round, design));
    }
}

/// Beside the files of @p count designs there are their caches, which are complete, and nothing else.
void expectCaches(int round, unsigned count)
{
    Names expected;
    for (unsigned design = 0; design < count; ++design) {
        expected.push_back(idOf(round, design) + ".zul");
        expected.push_back("zulcache_" + idOf(round, design));
        EXPECT_TRUE(library_host::holdsTheLibraries("/tmp/" + expected.back()));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(inTmp(), expected);
}

/// Lets all threads load and unload @p count designs in turn, of which none has been unpacked before.
void loadInThreads(unsigned count)
{
    for (int round = rounds(5); round > 0; --round) {
        prepare(round, count);
        std::atomic<unsigned> failures = 0;
        inThreads([&](unsigned thread) {
            for (unsigned i = 0; i < 2 * count; ++i) {
                failures += library_host::loadsWell(fileOf(round, (thread + i) % count)) ? 0 : 1;
            }
        });
        EXPECT_EQ(failures, 0U);
        expectCaches(round, count);
    }
}

TEST(ThreadsWithLibraries, LoadAndUnloadOneDesign)
{
    inPrivateTmp([] { loadInThreads(1); });
}

TEST(ThreadsWithLibraries, LoadAndUnloadDifferentDesigns)
{
    inPrivateTmp([] { loadInThreads(4); });
}

TEST(ThreadsWithLibraries, AskOneDesignWhileOthersComeAndGo)
{
    inPrivateTmp([] {
        prepare(1, 2);
        library_host::Handle const design = library_host::loaded(fileOf(1, 0));
        ASSERT_NE(design, nullptr);
        std::vector<std::uint64_t> const expected = answers::numbersOf(design.get());
        std::atomic<unsigned> failures = 0;
        inThreads([&](unsigned thread) {
            for (int i = 0; i < 5; ++i) {
                bool const isGood = thread % 2 == 0 ? answers::numbersOf(design.get()) == expected
                                                    : library_host::loadsWell(fileOf(1, thread / 2 % 2));
                failures += isGood ? 0 : 1;
            }
        });
        EXPECT_EQ(failures, 0U);
        expectCaches(1, 2);
    });
}

/// Runs @p work in @p count processes, which begin together. @return how many of them did not succeed
unsigned failuresInProcesses(unsigned count, std::function<bool()> const& work)
{
    int start[2];
    EXPECT_EQ(pipe(start), 0);
    std::vector<pid_t> children;
    for (unsigned i = 0; i < count; ++i) {
        pid_t const child = fork();
        if (child == 0) {
            char byte = 0;
            close(start[1]);
            bool const hasBegun = read(start[0], &byte, 1) == 0; // when the other end is closed
            _exit(hasBegun && work() ? 0 : 1);
        }
        children.push_back(child);
    }
    close(start[0]);
    close(start[1]);
    unsigned failures = 0;
    for (pid_t const child : children) {
        int status = 1;
        failures += waitpid(child, &status, 0) == child && status == 0 ? 0U : 1U;
    }
    return failures;
}

TEST(ProcessesWithLibraries, LoadOneDesignAtOnce)
{
    inPrivateTmp([] {
        for (int round = rounds(5); round > 0; --round) {
            SCOPED_TRACE(testing::Message() << "round " << round);
            prepare(round, 1);
            EXPECT_EQ(failuresInProcesses(64, [&] { return library_host::loadsWell(fileOf(round, 0)); }), 0U);
            expectCaches(round, 1);
        }
    });
}

} // namespace
