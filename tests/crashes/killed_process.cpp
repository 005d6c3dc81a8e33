#include "killed_process.h"

#include <csignal>
#include <stdexcept>
#include <string>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int systemCallStop = SIGTRAP | 0x80;

[[noreturn]] void run(std::function<int()> const& action)
{
    int result = 255;
    try {
        result = action();
    } catch (...) { // nothing may run the parent's code again
    }
    _exit(result);
}

pid_t forked(std::function<void()> const& child)
{
    pid_t const pid = fork();
    if (pid < 0) {
        throw std::runtime_error("no child process");
    }
    if (pid == 0) {
        child();
    }
    return pid;
}

int waitFor(pid_t child)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child) {
        throw std::runtime_error("the child process is lost");
    }
    return status;
}

ChildEnd endOf(int status)
{
    if (WIFSIGNALED(status) && WTERMSIG(status) != SIGKILL) {
        throw std::runtime_error("signal " + std::to_string(WTERMSIG(status)) + " ended the child process");
    }
    return {WIFSIGNALED(status), WIFEXITED(status) ? WEXITSTATUS(status) : 0};
}

/// Lets @p child go on to its next stop. @return its status there, or at its end
int resume(pid_t child, int signal)
{
    if (ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0) {
        throw std::runtime_error("the child process cannot be traced");
    }
    return waitFor(child);
}

ChildEnd trace(pid_t child, std::size_t stop)
{
    int status = waitFor(child);
    if (!WIFSTOPPED(status) || ptrace(PTRACE_SETOPTIONS, child, nullptr,
                                      PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC) != 0) {
        throw std::runtime_error("this machine lets nobody trace a process");
    }
    int signal = 0; // what stopped the child first was for the tracer
    for (std::size_t stops = 0;;) {
        status = resume(child, signal);
        if (!WIFSTOPPED(status)) {
            return endOf(status);
        }
        bool const isSystemCall = WSTOPSIG(status) == systemCallStop;
        stops += isSystemCall ? 1 : 0;
        if (stops == stop) {
            kill(child, SIGKILL);
            return endOf(waitFor(child));
        }
        bool const isTracers = isSystemCall || WSTOPSIG(status) == SIGTRAP;
        signal = isTracers ? 0 : WSTOPSIG(status);
    }
}

} // namespace

ChildEnd killedAtStop(std::size_t stop, std::function<int()> const& action)
{
    pid_t const child = forked([&action] {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        run(action);
    });
    return trace(child, stop);
}

ChildEnd killedAfter(std::chrono::microseconds delay, std::function<int()> const& action)
{
    pid_t const child = forked([&action] { run(action); });
    usleep(static_cast<useconds_t>(delay.count()));
    kill(child, SIGKILL);
    return endOf(waitFor(child));
}
