#include "failing_call.h"

#include "child_process.h"

#include <cstddef>
#include <linux/bpf_common.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stdexcept>
#include <sys/prctl.h>

int withFailingCall(long number, int error, std::function<int()> const& action)
{
    return inChildProcess([=, &action] {
        auto const call = static_cast<unsigned>(number);
        auto const failure = SECCOMP_RET_ERRNO | static_cast<unsigned>(error);
        sock_filter filter[] = {
            {BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
            {BPF_JMP | BPF_JEQ | BPF_K, 0, 1, call}, // the next one for this call, the last one for any other
            {BPF_RET | BPF_K, 0, 0, failure},
            {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
        };
        sock_fprog const program{std::size(filter), filter};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
            throw std::runtime_error("cannot let a system call fail");
        }
        return action();
    });
}
