#include "child.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void sendAll(int to, std::span<std::byte const> bytes)
{
    while (!bytes.empty()) {
        ssize_t const sent = write(to, bytes.data(), bytes.size());
        if (sent <= 0) {
            throw std::runtime_error("cannot write to the pipe");
        }
        bytes = bytes.subspan(static_cast<std::size_t>(sent));
    }
}

/// @return false at the end of the pipe
bool receiveAll(int from, std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        ssize_t const received = read(from, bytes.data(), bytes.size());
        if (received <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(received));
    }
    return true;
}

[[noreturn]] void runChild(int to, std::function<void(Send const&)> const& action)
{
    int exitCode = 1;
    try {
        action([to](std::span<std::byte const> block) {
            std::uint64_t const size = block.size();
            sendAll(to, std::as_bytes(std::span(&size, 1)));
            sendAll(to, block);
        });
        exitCode = 0;
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    _exit(exitCode); // nothing of the parent's is run again
}

} // namespace

std::vector<Block> blocksFromChild(std::function<void(Send const&)> const& action)
{
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe to a child process");
    }
    pid_t const child = fork();
    if (child == 0) {
        close(ends[0]);
        runChild(ends[1], action);
    }
    close(ends[1]);
    std::vector<Block> blocks;
    for (std::uint64_t size = 0; receiveAll(ends[0], std::as_writable_bytes(std::span(&size, 1)));) {
        blocks.emplace_back(size);
        receiveAll(ends[0], blocks.back());
    }
    close(ends[0]);
    int status = -1;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("a child process failed");
    }
    return blocks;
}
