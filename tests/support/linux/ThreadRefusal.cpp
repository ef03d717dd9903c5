#include "support/ThreadRefusal.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorva::test
{
void refuseNewThreads()
{
    constexpr auto number = (unsigned) offsetof (seccomp_data, nr);
    constexpr auto firstArgument = (unsigned) offsetof (seccomp_data, args);
    constexpr auto refusal = (unsigned) (SECCOMP_RET_ERRNO | EAGAIN);
    constexpr auto unknownCall = (unsigned) (SECCOMP_RET_ERRNO | ENOSYS);

    // Only threads, since a leak checker makes a process of its own at the end. What clone3 is asked for cannot be seen from here;
    // the C library then asks clone, where it can.
    sock_filter steps[]
    {
        { BPF_LD | BPF_W | BPF_ABS, 0, 0, number },
        { BPF_JMP | BPF_JEQ | BPF_K, 4, 0, __NR_clone3 },
        { BPF_JMP | BPF_JEQ | BPF_K, 0, 2, __NR_clone },
        { BPF_LD | BPF_W | BPF_ABS, 0, 0, firstArgument },
        { BPF_JMP | BPF_JSET | BPF_K, 2, 0, CLONE_THREAD },
        { BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW },
        { BPF_RET | BPF_K, 0, 0, unknownCall },
        { BPF_RET | BPF_K, 0, 0, refusal },
    };

    const sock_fprog program { (unsigned short) std::size (steps), steps };

    if (::prctl (PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::syscall (SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) != 0)
        ADD_FAILURE() << "Could not forbid new threads: " << std::strerror (errno);
}
}
