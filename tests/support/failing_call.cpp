#include "failing_call.h"

#include "child_process.h"

#include <cstddef>
#include <linux/bpf_common.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <vector>

namespace {

/// Lets the calls fail in this process for which @p filter comes to its end; for others it has to skip one more
/// instruction.
void letFail(std::vector<sock_filter> filter, int error)
{
    filter.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)});
    filter.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW});
    sock_fprog const program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        throw std::runtime_error("cannot let a system call fail");
    }
}

constexpr sock_filter load(std::size_t offset)
{
    return {BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<unsigned>(offset)};
}

/// Goes on where the loaded word is @p value, and else behind the next @p otherwise instructions.
constexpr sock_filter unless(unsigned value, unsigned char otherwise)
{
    return {BPF_JMP | BPF_JEQ | BPF_K, 0, otherwise, value};
}

} // namespace

int withFailingCall(long number, int error, std::function<int()> const& action)
{
    return inChildProcess([=, &action] {
        letFail({load(offsetof(seccomp_data, nr)), unless(static_cast<unsigned>(number), 1)}, error);
        return action();
    });
}

int withFailingCall(long number, int first, int error, std::function<int()> const& action)
{
    return inChildProcess([=, &action] {
        letFail({load(offsetof(seccomp_data, nr)), unless(static_cast<unsigned>(number), 3),
                 load(offsetof(seccomp_data, args)), unless(static_cast<unsigned>(first), 1)},
                error);
        return action();
    });
}
