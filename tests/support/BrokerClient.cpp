#include "support/BrokerClient.h"

#include "ai/BrokerProtocol.h"
#include "support/BoundedJson.h"

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
constexpr int longestPauseMs = 20;
constexpr double oldestDiscoverySeconds = 4.5;     // then the cycle that wrote it is about to end

/** A point in time by which something must have happened. */
class Limit
{
public:
    explicit Limit (int milliseconds) : end (juce::Time::getMillisecondCounterHiRes() + milliseconds) {}

    int remainingMs() const    { return juce::jmax (0, (int) std::ceil (end - juce::Time::getMillisecondCounterHiRes())); }
    bool isOver() const        { return remainingMs() == 0; }

private:
    const double end;
};

/** Pauses that begin short, because the Hub renews its pipe within a millisecond, and grow up to what is fit for an absent Hub. */
class Pauses
{
public:
    void pause()
    {
        ::usleep ((useconds_t) microseconds);
        microseconds = juce::jmin (microseconds * 2, longestPauseMs * 1000);
    }

private:
    int microseconds = 125;
};

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

/** The clients' turn: an exclusive lock on the discovery file's folder. */
class Turn
{
public:
    Turn() : folder (::open (BrokerClient::discoveryFile().getParentDirectory().getFullPathName().toRawUTF8(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        while (folder.isOpen() && ::flock (folder.get(), LOCK_EX) != 0 && errno == EINTR) {}
    }

private:
    const Descriptor folder;
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

bool writeAll (const Descriptor& in, const juce::MemoryBlock& bytes, const Limit& limit)
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
bool readReply (const Descriptor& out, const Descriptor& in, const Limit& limit, juce::MemoryBlock& payload)
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

/** One try at a pipe that may be gone by now. */
BrokerClient::Attempt exchangeWith (const BrokerClient::Discovery& hub, const juce::MemoryBlock& bytes, int replyLimitMs)
{
    using Outcome = BrokerClient::Outcome;

    const Descriptor out (openEnd (pathOf (hub, "_out"), O_RDONLY));
    const Descriptor in (out.isOpen() ? openEnd (pathOf (hub, "_in"), O_WRONLY) : -1);

    if (! isOwnFifo (out) || ! isOwnFifo (in) || ! isStillAt (out, pathOf (hub, "_out")) || ! isFresh (BrokerClient::discoveryFile()))
        return { Outcome::notListening, {} };

    const Limit limit (replyLimitMs);

    if (! writeAll (in, bytes, limit))
        return { Outcome::notSent, {} };

    BrokerClient::Attempt result { Outcome::noReply, {} };

    if (readReply (out, in, limit, result.payload))
        result.outcome = Outcome::answered;

    return result;
}

std::optional<BrokerClient::Discovery> readDiscovery()
{
    const auto value = BoundedJson::parseFile (BrokerClient::discoveryFile());
    BrokerClient::Discovery hub;
    hub.version = (int) BoundedJson::integerIn (value, "version");
    hub.transport = BoundedJson::textIn (value, "transport");
    hub.pipeName = BoundedJson::textIn (value, "pipeName");
    hub.token = BoundedJson::textIn (value, "token");
    hub.startedAt = BoundedJson::textIn (value, "startedAt");
    hub.pid = BoundedJson::integerIn (value, "pid");

    if (hub.version != 2 || hub.pipeName.isEmpty() || hub.pipeName.containsChar ('/'))
        return std::nullopt;

    return hub;
}

/** The caller's request with what it leaves to the client. */
juce::var completed (const juce::var& request, const juce::String& token)
{
    const juce::DynamicObject::Ptr whole = request.getDynamicObject()->clone().release();

    for (const auto& [key, value] : { std::pair<const char*, juce::var> { "version", 2 }, { "token", token },
                                      { "requestId", BrokerClient::freshRequestId() } })
        if (! whole->hasProperty (key))
            whole->setProperty (key, value);

    return whole.get();
}

/** Whether a reply answers this request. A request that was rejected before its id was read gets none back. */
bool isAnswerTo (const juce::var& reply, const juce::var& request)
{
    const auto id = BoundedJson::textIn (reply, "requestId");
    return id == BoundedJson::textIn (request, "requestId") || (id.isEmpty() && ! (bool) reply["ok"]);
}
}

BrokerClient::BrokerClient (int discoveryLimit, int replyLimit) : discoveryLimitMs (discoveryLimit), replyLimitMs (replyLimit) {}

std::optional<BrokerClient::Discovery> BrokerClient::discover() const
{
    const Limit limit (discoveryLimitMs);

    for (Pauses pauses;; pauses.pause())
    {
        if (auto hub = readDiscovery())
            return hub;

        if (limit.isOver())
            return std::nullopt;
    }
}

BrokerClient::Attempt BrokerClient::attempt (const MakeFrame& makeFrame) const
{
    const Turn turn;
    const Limit limit (discoveryLimitMs);

    for (Pauses pauses;; pauses.pause())
    {
        Attempt result;

        if (const auto hub = readDiscovery())
            result = exchangeWith (*hub, makeFrame (*hub), replyLimitMs);

        if (result.outcome != Outcome::notListening || limit.isOver())
            return result;
    }
}

BrokerClient::Attempt BrokerClient::exchange (const juce::MemoryBlock& bytes) const
{
    return attempt ([&bytes] (const Discovery&) { return bytes; });
}

std::optional<juce::var> BrokerClient::request (const juce::var& request) const
{
    const Limit limit (discoveryLimitMs + replyLimitMs);
    const bool mayBeServedTwice = BoundedJson::textIn (request, "op") != "openai.complete";

    do
    {
        juce::var sent;
        const auto result = attempt ([&] (const Discovery& hub) { return frame (sent = completed (request, hub.token)); });

        if (result.outcome == Outcome::answered)
        {
            const auto reply = BoundedJson::parse (result.payload.toString());

            if (isAnswerTo (reply, sent))
                return reply.isObject() ? std::optional<juce::var> (reply) : std::nullopt;
        }
        else if (result.outcome == Outcome::notListening || (result.outcome == Outcome::noReply && ! mayBeServedTwice))
        {
            return std::nullopt;
        }
    }
    while (! limit.isOver());

    return std::nullopt;
}

std::optional<juce::var> BrokerClient::ask (const juce::String& op, const juce::String& input) const
{
    const juce::DynamicObject::Ptr object (new juce::DynamicObject());
    object->setProperty ("op", op);

    if (input.isNotEmpty())
        object->setProperty ("input", input);

    return request (object.get());
}

juce::MemoryBlock BrokerClient::frame (const juce::MemoryBlock& payload)
{
    const auto header = juce::ByteOrder::swapIfLittleEndian ((juce::uint32) payload.getSize());
    juce::MemoryBlock bytes (&header, sizeof (header));
    bytes.append (payload.getData(), payload.getSize());
    return bytes;
}

juce::MemoryBlock BrokerClient::frame (const juce::var& value)
{
    const auto text = juce::JSON::toString (value, true);
    return frame (juce::MemoryBlock (text.toRawUTF8(), text.getNumBytesAsUTF8()));
}

juce::var BrokerClient::makeRequest (const juce::String& token, const juce::String& op, const juce::String& requestId,
                                     const juce::String& input)
{
    const juce::DynamicObject::Ptr object (new juce::DynamicObject());
    object->setProperty ("version", 2);
    object->setProperty ("token", token);
    object->setProperty ("op", op);
    object->setProperty ("requestId", requestId);

    if (input.isNotEmpty())
        object->setProperty ("input", input);

    return object.get();
}

juce::String BrokerClient::freshRequestId()
{
    static std::atomic<int> next { 1 };
    return "test-" + juce::String (next++);
}

juce::File BrokerClient::discoveryFile()
{
    return discoveryFilePath();
}
}
