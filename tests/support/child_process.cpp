#include "child_process.h"

#include <csignal>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

/// What a child process answers. Memory that both see: the system may not even let it write.
struct Answer {
    bool isGiven;
    int result;
};

[[noreturn]] void answer(Answer& to, std::function<int()> const& action)
{
    try {
        to.result = action();
        to.isGiven = true;
    } catch (...) { // the parent sees that there is no answer
    }
    _exit(0); // nothing of the parent's is run again
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
    void* const shared =
        mmap(nullptr, sizeof(Answer), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    require(shared != MAP_FAILED);
    auto& childs = *static_cast<Answer*>(shared);
    pid_t const child = fork();
    if (child == 0) {
        answer(childs, action);
    }
    int status = 1;
    waitpid(child, &status, 0);
    Answer const given = childs;
    munmap(shared, sizeof(Answer));
    if (!given.isGiven) {
        throw std::runtime_error("the child process gave no answer");
    }
    if (status != 0) { // a sanitizer tells at the end what it found on the way
        throw std::runtime_error("the child process answered, but did not end well");
    }
    return given.result;
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
