#include "child_process.h"

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

[[noreturn]] void answer(int to, std::function<int()> const& action)
{
    int exitCode = 1;
    try {
        int const result = action();
        exitCode = write(to, &result, sizeof result) == sizeof result ? 0 : 1;
    } catch (...) { // the parent sees that there is no answer
    }
    _exit(exitCode); // nothing of the parent's is run again
}

void require(bool holds)
{
    if (!holds) {
        throw std::runtime_error("cannot prepare the child process");
    }
}

} // namespace

int inChildProcess(std::function<int()> const& action)
{
    int ends[2];
    require(pipe(ends) == 0);
    pid_t const child = fork();
    if (child == 0) {
        answer(ends[1], action);
    }
    close(ends[1]);
    int result = 0;
    bool const answered = read(ends[0], &result, sizeof result) == sizeof result;
    close(ends[0]);
    int status = 1;
    waitpid(child, &status, 0);
    if (!answered) {
        throw std::runtime_error("the child process gave no answer");
    }
    if (status != 0) { // a sanitizer tells at the end what it found on the way
        throw std::runtime_error("the child process answered, but did not end well");
    }
    return result;
}

int asOrdinaryUser(std::function<int()> const& action)
{
    return inChildProcess([&action] {
        if (geteuid() == 0) {
            require(setgid(nobody) == 0 && setuid(nobody) == 0);
        }
        return action();
    });
}

int withFileSizeLimit(off_t bytes, std::function<int()> const& action)
{
    return inChildProcess([bytes, &action] {
        signal(SIGXFSZ, SIG_IGN);
        rlimit const limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
        require(setrlimit(RLIMIT_FSIZE, &limit) == 0);
        return action();
    });
}
