#include "support/RandomRefusal.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zorva::test
{
void refuseRandomBytes()
{
    constexpr auto number = (unsigned) offsetof (seccomp_data, nr);

    // The one answer on which the C library turns to a device: on any other it would end the process, and the fonts ask it.
    constexpr auto refusal = (unsigned) (SECCOMP_RET_ERRNO | ENOSYS);

    sock_filter steps[]
    {
        { BPF_LD | BPF_W | BPF_ABS, 0, 0, number },
        { BPF_JMP | BPF_JEQ | BPF_K, 1, 0, __NR_getrandom },
        { BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW },
        { BPF_RET | BPF_K, 0, 0, refusal },
    };

    const sock_fprog program { (unsigned short) std::size (steps), steps };

    if (::prctl (PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::syscall (SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) != 0)
        ADD_FAILURE() << "Could not forbid random bytes: " << std::strerror (errno);
}
}
