#include "platform/SecondInstance.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <juce_events/juce_events.h>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform
{
namespace
{
struct Address
{
    sockaddr_un data {};
    socklen_t size = 0;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*> (&data); }
};

/** The framework lets one Hub run for each of its lock files. Naming the socket after that file's identity makes a second process
    speak to the very process that stopped it, and to no Hub of another user or behind another mount. */
juce::String lockIdentity()
{
    for (const auto* path : { "/var/tmp/juceAppLock_ZORVA Hub", "/tmp/juceAppLock_ZORVA Hub" })
    {
        struct stat info {};

        if (::stat (path, &info) == 0)
            return juce::String::toHexString ((juce::int64) info.st_dev) + "-" + juce::String::toHexString ((juce::int64) info.st_ino);
    }

    return "0";
}

Address makeAddress()
{
    const auto name = "zorva-hub-" + juce::String ((juce::int64) ::getuid()) + "-" + lockIdentity();
    Address address;
    address.data.sun_family = AF_UNIX;

    // A first byte of zero puts the name into the abstract namespace: no file is left behind.
    name.copyToUTF8 (address.data.sun_path + 1, sizeof (address.data.sun_path) - 1);
    address.size = (socklen_t) (offsetof (sockaddr_un, sun_path) + 1 + name.getNumBytesAsUTF8());
    return address;
}

/** Takes one waiting signal. Nothing when none waits; otherwise whether a process of this user sent it, since the abstract
    namespace has no permissions. */
std::optional<bool> takeSignal (int descriptor)
{
    char text[16];
    iovec piece { text, sizeof (text) };
    alignas (cmsghdr) char control[CMSG_SPACE (sizeof (ucred))] = {};
    msghdr message {};
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof (control);

    if (::recvmsg (descriptor, &message, MSG_CMSG_CLOEXEC) < 0)
        return {};

    const auto* header = CMSG_FIRSTHDR (&message);

    if (header == nullptr || header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_CREDENTIALS)
        return false;

    ucred sender {};
    std::memcpy (&sender, CMSG_DATA (header), sizeof (sender));
    return sender.uid == ::getuid();
}
}

struct SecondInstance::Listener
{
    Listener() : descriptor (::socket (AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

    ~Listener()
    {
        if (watched)
            juce::LinuxEventLoop::unregisterFdCallback (descriptor);

        if (descriptor >= 0)
            ::close (descriptor);
    }

    /** 0, or the system's error. */
    int bind() const
    {
        const auto address = makeAddress();
        const int yes = 1;

        const bool isBound = descriptor >= 0
                          && ::setsockopt (descriptor, SOL_SOCKET, SO_PASSCRED, &yes, sizeof (yes)) == 0
                          && ::bind (descriptor, address.get(), address.size) == 0;
        return isBound ? 0 : errno;
    }

    void watch (std::function<void()> onSecondStart)
    {
        juce::LinuxEventLoop::registerFdCallback (descriptor, [callback = std::move (onSecondStart)] (int fd)
        {
            bool anyOfThisUser = false;

            while (const auto isOfThisUser = takeSignal (fd))
                anyOfThisUser = anyOfThisUser || *isOfThisUser;

            if (anyOfThisUser)
                callback();
        });

        watched = true;
    }

    const int descriptor;
    bool watched = false;
};

SecondInstance::SecondInstance() = default;
SecondInstance::~SecondInstance() = default;

bool SecondInstance::listen (std::function<void()> onSecondStart)
{
    auto candidate = std::make_unique<Listener>();

    const auto error = candidate->bind();

    if (error == 0)
    {
        candidate->watch (std::move (onSecondStart));
        listener = std::move (candidate);
    }

    return error != EADDRINUSE;
}

void SecondInstance::stop()
{
    listener.reset();
}

void SecondInstance::notifyFirst()
{
    const auto descriptor = ::socket (AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);

    if (descriptor < 0)
        return;

    const auto address = makeAddress();
    const auto sent = ::sendto (descriptor, "raise", 5, 0, address.get(), address.size);
    juce::ignoreUnused (sent);    // no first instance that listens: nobody to tell
    ::close (descriptor);
}
}
