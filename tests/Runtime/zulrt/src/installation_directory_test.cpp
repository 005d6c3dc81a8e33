#include "installation_directory.h"

#include "applet_location.h"
#include "child_process.h"
#include "environment.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

TEST(InstallationAbove, IsTheParentOfTheNearestNamedDirectory)
{
    EXPECT_EQ(installationAbove("/a/X/lib/sub/libzulrt.dylib"), "/a/X");
    EXPECT_EQ(installationAbove("/a/X/lib/libzulrt.dylib"), "/a/X");
    EXPECT_EQ(installationAbove("/a/lib/b/bin/c/libzulrt.dylib"), "/a/lib/b");
    EXPECT_EQ(installationAbove("/a/bin/lib/x.so"), "/a/bin");
}

TEST(InstallationAbove, FiveNamesCountInAnyCase)
{
    for (char const* const name : {"bin", "dll", "Hardware Applets", "lib", "lib64", "BIN", "Dll",
                                   "hardware applets", "LIB", "Lib64"}) {
        EXPECT_EQ(installationAbove("/opt/k/" + std::string(name) + "/x.so"), "/opt/k") << name;
    }
    for (char const* const name :
         {"bi", "bin2", "sbin", "lib32", "libs", "Hardware", "HardwareApplets", "."}) {
        EXPECT_EQ(installationAbove("/opt/k/" + std::string(name) + "/x.so"), "") << name;
    }
}

TEST(InstallationAbove, FileItselfIsNoDirectory)
{
    EXPECT_EQ(installationAbove("/opt/k/lib"), "");
    EXPECT_EQ(installationAbove("/opt/lib/lib"), "/opt");
}

TEST(InstallationAbove, RunsOfSlashesAreOne)
{
    EXPECT_EQ(installationAbove("/opt//k///lib////sub//x.so"), "/opt//k");
    EXPECT_EQ(installationAbove("/opt/k/lib/"), "/opt/k") << "a file without name";
    EXPECT_EQ(installationAbove("//x.so"), "");
}

TEST(InstallationAbove, ParentMayBeTheRoot)
{
    EXPECT_EQ(installationAbove("/lib/x.so"), "/");
    EXPECT_EQ(installationAbove("///lib/x.so"), "/");
    EXPECT_EQ(installationAbove("/lib64/sub/x.so"), "/");
}

TEST(InstallationAbove, RelativePathsCountAsFarAsTheyGo)
{
    EXPECT_EQ(installationAbove("k/lib/x.so"), "k");
    EXPECT_EQ(installationAbove("./bin/x"), ".");
    EXPECT_EQ(installationAbove("bin/x"), "") << "the parent is not in the path";
    EXPECT_EQ(installationAbove("x"), "");
    EXPECT_EQ(installationAbove("/x"), "");
    EXPECT_EQ(installationAbove("/"), "");
    EXPECT_EQ(installationAbove(""), "");
}

TEST(InstallationAbove, LongPathsAreWalkedToTheirBeginning)
{
    std::string path = "/opt/k/lib";
    for (int i = 0; i < 20'000; ++i) {
        path += "/sub";
    }
    EXPECT_EQ(installationAbove(path + "/x.so"), "/opt/k");
}

/// Lies in no program or library, so that only the environment gives a directory.
class EnvironmentOnly : public testing::Test {
protected:
    char const* get() { return m_directory->get(); }
    InstallationSource source() { return m_directory->source(); }
    void again() { m_directory = std::make_unique<InstallationDirectory>(); }

    std::unique_ptr<InstallationDirectory> m_directory = std::make_unique<InstallationDirectory>();
    EnvironmentVariable m_first{"KOVADIR5_64", nullptr};
    EnvironmentVariable m_second{"KOVADIR5", nullptr};
};

TEST_F(EnvironmentOnly, NothingIsNull)
{
    EXPECT_EQ(get(), nullptr);
    EXPECT_EQ(source(), InstallationSource::Unknown);
}

TEST_F(EnvironmentOnly, NothingIsTriedAgain)
{
    EXPECT_EQ(get(), nullptr);
    EnvironmentVariable const set("KOVADIR5", "/opt/k");
    EXPECT_STREQ(get(), "/opt/k");
}

TEST_F(EnvironmentOnly, FirstVariableGoesBeforeTheSecond)
{
    EnvironmentVariable const second("KOVADIR5", "/second");
    EXPECT_STREQ(get(), "/second");
    EXPECT_EQ(source(), InstallationSource::KOVADIR5);
    again();
    EnvironmentVariable const first("KOVADIR5_64", "/first");
    EXPECT_STREQ(get(), "/first");
    EXPECT_EQ(source(), InstallationSource::KOVADIR5_64);
}

TEST_F(EnvironmentOnly, WhatWasFoundNeverChanges)
{
    EnvironmentVariable const first("KOVADIR5_64", "/first");
    char const* const found = get();
    EnvironmentVariable const changed("KOVADIR5_64", "/changed");
    EXPECT_EQ(get(), found);
    EXPECT_STREQ(found, "/first");
}

TEST_F(EnvironmentOnly, SlashesAtTheEndGoButNotTheFirstCharacter)
{
    for (auto const& [set, found] : {std::pair("/opt/k///", "/opt/k"), std::pair("/opt//k", "/opt//k"),
                                     std::pair("/", "/"), std::pair("///", "/"), std::pair("k/", "k")}) {
        again();
        EnvironmentVariable const variable("KOVADIR5_64", set);
        EXPECT_STREQ(get(), found);
    }
}

TEST_F(EnvironmentOnly, EmptyCountsAsSet)
{
    EnvironmentVariable const second("KOVADIR5", "/second");
    EnvironmentVariable const first("KOVADIR5_64", "");
    EXPECT_STREQ(get(), "");
    EXPECT_EQ(source(), InstallationSource::KOVADIR5_64);
}

TEST_F(EnvironmentOnly, LongTextsAreCutTo1023Bytes)
{
    for (std::size_t const length : {1022U, 1023U, 1024U, 5000U}) {
        again();
        std::string const text = "/" + std::string(length - 1, 'k');
        EnvironmentVariable const variable("KOVADIR5_64", text.c_str());
        EXPECT_EQ(get(), text.substr(0, 1023)) << length;
    }
    again();
    std::string const text = "/k" + std::string(1021, '/') + "rest";
    EnvironmentVariable const variable("KOVADIR5_64", text.c_str());
    EXPECT_STREQ(get(), "/k") << "cut first, then stripped";
}

TEST_F(EnvironmentOnly, ThreadsGetOneAnswer)
{
    EnvironmentVariable const variable("KOVADIR5_64", "/opt/k");
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this] {
            for (int round = 0; round < 500; ++round) {
                EXPECT_STREQ(get(), "/opt/k");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

std::string directoryOfThisBuild()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
}

TEST(KovaDir, OwnPathGoesBeforeTheEnvironment)
{
    EXPECT_EQ(inChildProcess([] {
                  EnvironmentVariable const variable("KOVADIR5_64", "/opt/k");
                  return KovaDir::GetKovaDir() == directoryOfThisBuild() ? 1 : 0;
              }),
              1);
}

/// The exit status of this program when it is called by @p name and runs @p test alone.
int statusOfTestCalledBy(char const* name, char const* test)
{
    pid_t const child = fork();
    if (child == 0) {
        unsetenv("GTEST_TOTAL_SHARDS");
        unsetenv("GTEST_SHARD_INDEX");
        int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        execl("/proc/self/exe", name, (std::string("--gtest_filter=") + test).c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(KovaDir, ItsOwnPathIsNotWhatTheProgramIsCalledBy)
{
    for (char const* const name : {"zulrt_tests", "./zulrt_tests", "/opt/other/lib/zulrt_tests"}) {
        EXPECT_EQ(statusOfTestCalledBy(name, "KovaDir.OwnPathGoesBeforeTheEnvironment"), 0) << name;
    }
}

TEST(KovaDir, TellsHowItFoundTheDirectory)
{
    EXPECT_EQ(inChildProcess([] { return static_cast<int>(KovaDir::source()); }),
              static_cast<int>(InstallationSource::OwnPath));
}

TEST(KovaDir, FirstQuestionsMayComeFromManyThreads)
{
    EXPECT_EQ(inChildProcess([] {
                  std::vector<char const*> answers(8);
                  std::vector<std::thread> threads;
                  for (char const*& answer : answers) {
                      threads.emplace_back([&answer] { answer = KovaDir::GetKovaDir(); });
                  }
                  int equal = 0;
                  for (std::size_t i = 0; i < threads.size(); ++i) {
                      threads[i].join();
                      equal += answers[i] == KovaDir::GetKovaDir() ? 1 : 0;
                  }
                  return equal;
              }),
              8);
}

} // namespace
