#include "support/BrokerPipe.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zorva::test
{
namespace
{
constexpr double oldestDiscoverySeconds = 4.5;     // then the cycle that wrote it is about to end

/** A file descriptor, closed at the end. */
class Descriptor
{
public:
    explicit Descriptor (int fd) : number (fd) {}
    ~Descriptor()    { if (number >= 0) ::close (number); }

    int get() const          { return number; }
    bool isOpen() const      { return number >= 0; }

private:
    const int number;

    JUCE_DECLARE_NON_COPYABLE (Descriptor)
};

juce::String pathOf (const BrokerClient::Discovery& hub, const char* end)
{
    return "/tmp/" + hub.pipeName + end;
}

int openEnd (const juce::String& path, int access)
{
    return ::open (path.toRawUTF8(), access | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
}

bool isOwnFifo (const Descriptor& end)
{
    struct stat status = {};
    return end.isOpen() && ::fstat (end.get(), &status) == 0 && S_ISFIFO (status.st_mode) && status.st_uid == ::geteuid();
}

bool isStillAt (const Descriptor& end, const juce::String& path)
{
    struct stat opened = {}, found = {};
    return ::fstat (end.get(), &opened) == 0 && ::lstat (path.toRawUTF8(), &found) == 0
        && opened.st_dev == found.st_dev && opened.st_ino == found.st_ino;
}

bool isFresh (const juce::File& file)
{
    const auto age = juce::Time::getCurrentTime() - file.getLastModificationTime();
    return file.existsAsFile() && age.inSeconds() < oldestDiscoverySeconds;
}

bool writeAll (const Descriptor& in, const juce::MemoryBlock& bytes, const TimeLimit& limit)
{
    size_t written = 0;

    while (written < bytes.getSize())
    {
        const auto count = ::write (in.get(), juce::addBytesToPointer (bytes.getData(), written), bytes.getSize() - written);

        if (count > 0)
        {
            written += (size_t) count;
            continue;
        }

        struct pollfd waiting { in.get(), POLLOUT, 0 };

        if ((errno != EAGAIN && errno != EINTR) || limit.isOver() || ::poll (&waiting, 1, limit.remainingMs()) < 0)
            return false;
    }

    return true;
}

/** Appends what is there; false when there is nothing. */
bool readSome (const Descriptor& out, juce::MemoryBlock& bytes)
{
    char buffer[65536];
    const auto count = ::read (out.get(), buffer, sizeof (buffer));

    if (count > 0)
        bytes.append (buffer, (size_t) count);

    return count > 0;
}

bool isWhole (const juce::MemoryBlock& bytes)
{
    return bytes.getSize() >= 4 && bytes.getSize() - 4 >= juce::ByteOrder::bigEndianInt (bytes.getData());
}

/** Reads one frame and drops its header; false when the connection ended before it was whole. */
bool readReply (const Descriptor& out, const Descriptor& in, const TimeLimit& limit, juce::MemoryBlock& payload)
{
    bool hasEnded = false;

    while (! isWhole (payload))
    {
        if (readSome (out, payload))
            continue;

        if (hasEnded || limit.isOver())
            return false;

        struct pollfd waiting[] { { out.get(), POLLIN, 0 }, { in.get(), 0, 0 } };
        ::poll (waiting, 2, limit.remainingMs());

        // The Hub replies before it leaves: what it wrote is still to be read.
        hasEnded = (waiting[1].revents & POLLERR) != 0 || (waiting[0].revents & POLLHUP) != 0;
    }

    const auto size = juce::ByteOrder::bigEndianInt (payload.getData());
    payload.removeSection (0, 4);
    return payload.getSize() == size;    // a single reply, and nothing behind it
}
}

//==============================================================================
/** An exclusive lock on the discovery file's folder. */
struct ClientTurn::Pimpl
{
    Pimpl() : folder (::open (BrokerClient::discoveryFile().getParentDirectory().getFullPathName().toRawUTF8(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        while (folder.isOpen() && ::flock (folder.get(), LOCK_EX) != 0 && errno == EINTR) {}
    }

    const Descriptor folder;
};

ClientTurn::ClientTurn() : pimpl (std::make_unique<Pimpl>()) {}
ClientTurn::~ClientTurn() = default;

//==============================================================================
BrokerClient::Attempt exchangeWith (const BrokerClient::Discovery& hub, const juce::MemoryBlock& bytes, int replyLimitMs)
{
    using Outcome = BrokerClient::Outcome;

    const Descriptor out (openEnd (pathOf (hub, "_out"), O_RDONLY));
    const Descriptor in (out.isOpen() ? openEnd (pathOf (hub, "_in"), O_WRONLY) : -1);

    if (! isOwnFifo (out) || ! isOwnFifo (in) || ! isStillAt (out, pathOf (hub, "_out")) || ! isFresh (BrokerClient::discoveryFile()))
        return { Outcome::notListening, {} };

    const TimeLimit limit (replyLimitMs);

    if (! writeAll (in, bytes, limit))
        return { Outcome::notSent, {} };

    BrokerClient::Attempt result { Outcome::noReply, {} };

    if (readReply (out, in, limit, result.payload))
        result.outcome = Outcome::answered;

    return result;
}
}
