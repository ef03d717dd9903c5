#include "support/JudgedCalls.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <future>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zorva::test
{
namespace
{
using Kind = JudgedCall::Kind;

constexpr int none = -1;

/** A call by its number, and which of its arguments are paths. */
struct KnownCall
{
    unsigned number;
    Kind kind;
    int path, newPath;
};

constexpr KnownCall knownCalls[]
{
   #ifdef __NR_rename
    { __NR_rename, Kind::rename, 0, 1 },
   #endif
   #ifdef __NR_renameat
    { __NR_renameat, Kind::rename, 1, 3 },
   #endif
    { __NR_renameat2, Kind::rename, 1, 3 },
   #ifdef __NR_unlink
    { __NR_unlink, Kind::remove, 0, none },
   #endif
   #ifdef __NR_rmdir
    { __NR_rmdir, Kind::remove, 0, none },
   #endif
    { __NR_unlinkat, Kind::remove, 1, none },
    { __NR_fchmod, Kind::changeMode, none, none },
};

/** From now on the calling thread waits before each of these calls for whoever reads from the handle that is returned; below 0 with
    the reason in errno when that is not possible. */
int announceCalls()
{
    constexpr auto count = (unsigned char) std::size (knownCalls);
    std::vector<sock_filter> steps { { BPF_LD | BPF_W | BPF_ABS, 0, 0, (unsigned) offsetof (seccomp_data, nr) } };

    for (unsigned char i = 0; i < count; ++i)
        steps.push_back ({ BPF_JMP | BPF_JEQ | BPF_K, (unsigned char) (count - i), 0, knownCalls[i].number });

    steps.push_back ({ BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW });
    steps.push_back ({ BPF_RET | BPF_K, 0, 0, SECCOMP_RET_USER_NOTIF });

    const sock_fprog program { (unsigned short) steps.size(), steps.data() };

    if (::prctl (PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return -1;

    return (int) ::syscall (SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program);
}

/** The text at an address of this process, read by the system, as it would read it for the call itself. */
juce::String textAt (juce::uint64 address)
{
    constexpr size_t pieceSize = 64;    // divides a page, so that no piece reaches into the next, which may be none
    std::string text;

    for (;;)
    {
        char piece[pieceSize];
        const auto size = pieceSize - (size_t) (address % pieceSize);
        const iovec here { piece, size }, there { reinterpret_cast<void*> ((std::uintptr_t) address), size };

        if (::process_vm_readv (::getpid(), &here, 1, &there, 1, 0) != (ssize_t) size)
        {
            ADD_FAILURE() << "Could not read what a call names: " << std::strerror (errno);
            return {};
        }

        if (const auto* const end = static_cast<const char*> (std::memchr (piece, 0, size)))
            return juce::String::fromUTF8 (text.append (piece, (size_t) (end - piece)).c_str());

        text.append (piece, size);
        address += size;
    }
}

JudgedCall describe (const seccomp_data& data)
{
    for (const auto& known : knownCalls)
        if (known.number == (unsigned) data.nr)
            return { known.kind, known.path != none ? textAt (data.args[known.path]) : juce::String(),
                     known.newPath != none ? textAt (data.args[known.newPath]) : juce::String() };

    ADD_FAILURE() << "An unknown call: " << data.nr;
    return {};
}

void answerOne (int listener, const std::function<int (const JudgedCall&)>& errorFor)
{
    seccomp_notif call {};

    if (::ioctl (listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0)
        return;

    const auto error = errorFor (describe (call.data));
    seccomp_notif_resp answer {};
    answer.id = call.id;
    answer.error = -error;
    answer.flags = error == 0 ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;

    if (::ioctl (listener, SECCOMP_IOCTL_NOTIF_SEND, &answer) != 0)
        ADD_FAILURE() << "Could not answer for a call: " << std::strerror (errno);
}
}

void runJudged (const std::function<void()>& work, const std::function<int (const JudgedCall&)>& errorFor)
{
    constexpr int pauseMs = 10;
    std::promise<int> announced;
    std::atomic<bool> hasEnded { false };

    std::thread worker ([&]
    {
        const auto handle = announceCalls();
        announced.set_value (handle >= 0 ? handle : -errno);

        if (handle >= 0)
            work();

        hasEnded = true;
    });

    const auto listener = announced.get_future().get();

    if (listener < 0)
        ADD_FAILURE() << "Calls to the system cannot be judged: " << std::strerror (-listener);

    while (listener >= 0 && ! hasEnded)
        if (pollfd waiting { listener, POLLIN, 0 }; ::poll (&waiting, 1, pauseMs) > 0 && (waiting.revents & POLLIN) != 0)
            answerOne (listener, errorFor);

    worker.join();

    if (listener >= 0)
        ::close (listener);
}
}
