#include "child_process.h"
#include "failing_call.h"
#include "files.h"
#include "unfinished_file.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <pthread.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace {

std::span<std::byte const> span(Bytes const& bytes)
{
    return {bytes.data(), bytes.size()};
}

TEST(UnfinishedFile, IsKeptWhenItIsFinished)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    {
        UnfinishedFile file(path.c_str());
        ASSERT_TRUE(file);
        EXPECT_EQ(file.write(span(Bytes().chars("first "))), 0);
        EXPECT_EQ(file.write({}), 0);
        EXPECT_EQ(file.write(span(Bytes().chars("second"))), 0);
        EXPECT_EQ(file.finish(), 0);
    }
    EXPECT_EQ(readFile(path), Bytes().chars("first second"));
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    mode_t const mask = umask(0);
    umask(mask);
    EXPECT_EQ(status.st_mode & 0777U, 0644U & ~mask);
}

TEST(UnfinishedFile, IsRemovedOtherwise)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    {
        UnfinishedFile const file(path.c_str());
        EXPECT_EQ(file.write(span(Bytes().chars("half"))), 0);
        EXPECT_TRUE(exists(path));
    }
    EXPECT_FALSE(exists(path));
}

TEST(UnfinishedFile, IsOneLikeAnyOtherWithoutStandardInput)
{
    TemporaryDirectory const directory;
    std::string const removed = directory / "removed";
    std::string const kept = directory / "kept";
    EXPECT_EQ(inChildProcess([&] {
                  close(STDIN_FILENO);
                  {
                      UnfinishedFile const file(removed.c_str());
                  }
                  UnfinishedFile other(kept.c_str());
                  return other ? other.finish() : 1;
              }),
              0);
    EXPECT_FALSE(exists(removed));
    EXPECT_TRUE(exists(kept));
}

TEST(UnfinishedFile, EmptiesAFileThatIsThere)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    writeFile(path, Bytes().chars("a long old text"));
    UnfinishedFile file(path.c_str());
    EXPECT_EQ(file.write(span(Bytes().chars("new"))), 0);
    EXPECT_EQ(file.finish(), 0);
    EXPECT_EQ(readFile(path), Bytes().chars("new"));
}

TEST(UnfinishedFile, ThatCannotBeClosedIsRemoved)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    UnfinishedFile file(path.c_str());
    EXPECT_EQ(withFailingCall(SYS_close, EIO, [&] { return file.finish(); }), -EIO);
    EXPECT_FALSE(exists(path));
}

TEST(UnfinishedFile, IsKeptWhenASignalComesWhileItIsClosed)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    UnfinishedFile file(path.c_str());
    EXPECT_EQ(withFailingCall(SYS_close, EINTR, [&] { return file.finish(); }), 0);
    EXPECT_TRUE(exists(path));
}

TEST(UnfinishedFile, WritingThatGetsNowhereIsAnError)
{
    TemporaryDirectory const directory;
    UnfinishedFile const file((directory / "file").c_str());
    auto const write = [&file] { return file.write(span(Bytes().chars("contents"))); };
    EXPECT_EQ(withFailingCall(SYS_write, 0, write), -EIO);
    EXPECT_EQ(withFailingCall(SYS_write, ENOSPC, write), -ENOSPC);
}

TEST(UnfinishedFile, SaysWhyItCannotBeOpened)
{
    TemporaryDirectory const directory;
    UnfinishedFile const missing((directory / "no such directory/file").c_str());
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(missing);
    UnfinishedFile const isDirectory(directory.path());
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(exists(directory.path()));
}

TEST(UnfinishedFile, IsNotInheritedByPrograms)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    int const next = dup(0); // the number that the next descriptor gets
    close(next);
    UnfinishedFile const file(path.c_str());
    EXPECT_EQ(fcntl(next, F_GETFD), FD_CLOEXEC);
}

TEST(UnfinishedFile, FullDeviceIsReported)
{
    TemporaryDirectory const directory;
    std::string const link = directory / "link";
    ASSERT_EQ(symlink("/dev/full", link.c_str()), 0);
    {
        UnfinishedFile const full(link.c_str()); // not the device itself: it would be removed
        EXPECT_EQ(full.write(span(Bytes().chars("x"))), -ENOSPC);
    }
    EXPECT_FALSE(exists(link));
}

TEST(UnfinishedFile, ShortWriteThatCannotGoOnIsReported)
{
    TemporaryDirectory const directory;
    std::string const path = directory / "file";
    int const result = withFileSizeLimit(50'000, [&path] {
        UnfinishedFile const file(path.c_str());
        int const written = file.write(span(Bytes().zeros(100'000)));
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && status.st_size == 50'000 ? written : 1;
    });
    EXPECT_EQ(result, -EFBIG);
    EXPECT_FALSE(exists(path));
}

std::atomic<int> interruptions = 0;

void interrupt(int)
{
    ++interruptions;
}

/// Makes SIGUSR1 interrupt system calls instead of having them started again.
class InterruptingSignal {
public:
    InterruptingSignal()
    {
        struct sigaction action {};
        action.sa_handler = interrupt;
        sigaction(SIGUSR1, &action, &m_old);
    }
    ~InterruptingSignal() { sigaction(SIGUSR1, &m_old, nullptr); }
    InterruptingSignal(InterruptingSignal const&) = delete;
    InterruptingSignal& operator=(InterruptingSignal const&) = delete;

private:
    struct sigaction m_old {};
};

bool isAsleep(pid_t thread)
{
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string line;
    std::getline(file, line);
    std::size_t const afterName = line.rfind(") ");
    return afterName != std::string::npos && line[afterName + 2] == 'S';
}

int bytesIn(int pipe)
{
    int count = 0;
    ioctl(pipe, FIONREAD, &count);
    return count;
}

/// Reads everything from @p path, a pipe, but first interrupts the writer, who waits in a full pipe, several times.
Bytes drainAfterInterruptions(std::string const& path, pthread_t writer, pid_t writerId)
{
    int const pipe = open(path.c_str(), O_RDONLY);
    for (int i = 0; i < 3; ++i) {
        while (bytesIn(pipe) == 0 || !isAsleep(writerId)) {
            std::this_thread::yield();
        }
        pthread_kill(writer, SIGUSR1);
        while (interruptions == i) {
            std::this_thread::yield();
        }
    }
    Bytes all;
    std::vector<char> piece(100'000);
    ssize_t count = 0;
    while ((count = read(pipe, piece.data(), piece.size())) > 0) {
        all.chars({piece.data(), static_cast<std::size_t>(count)});
    }
    close(pipe);
    return all;
}

TEST(UnfinishedFile, InterruptedWriteGoesOn)
{
    InterruptingSignal const signal;
    interruptions = 0;
    TemporaryDirectory const directory;
    std::string const path = directory / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    Bytes contents;
    for (unsigned i = 0; i < 200'000; ++i) {
        contents.u32(i);
    }
    Bytes received;
    std::thread reader([&received, &path, writer = pthread_self(), writerId = gettid()] {
        received = drainAfterInterruptions(path, writer, writerId);
    });
    int result = 1;
    {
        UnfinishedFile file(path.c_str());
        result = file.write(span(contents)); // the first interruption makes it short, the others stop it
        EXPECT_EQ(file.finish(), 0);
    }
    reader.join();
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(received == contents);
    EXPECT_EQ(interruptions, 3);
}

} // namespace
