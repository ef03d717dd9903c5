#include "support/BrokerPipe.h"

#include "platform/windows/WindowsHeaders.h"

namespace zorva::test
{
namespace
{
/** A handle of the system's, closed at the end. */
class Handle
{
public:
    explicit Handle (HANDLE h) : handle (h) {}
    ~Handle()    { if (isOpen()) ::CloseHandle (handle); }

    HANDLE get() const      { return handle; }
    bool isOpen() const     { return handle != nullptr && handle != INVALID_HANDLE_VALUE; }

private:
    const HANDLE handle;

    JUCE_DECLARE_NON_COPYABLE (Handle)
};

/** Waits for an operation on the pipe that may have been finished at once: how many bytes it moved, or -1. */
int finish (HANDLE pipe, OVERLAPPED& operation, BOOL isDone, const TimeLimit& limit)
{
    DWORD count = 0;

    if (! isDone && ::GetLastError() != ERROR_IO_PENDING)
        return -1;

    if (::WaitForSingleObject (operation.hEvent, (DWORD) limit.remainingMs()) != WAIT_OBJECT_0)
        ::CancelIo (pipe);

    return ::GetOverlappedResult (pipe, &operation, &count, TRUE) ? (int) count : -1;
}

bool writeAll (HANDLE pipe, const juce::MemoryBlock& bytes, const TimeLimit& limit)
{
    const Handle event (::CreateEventW (nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED operation {};
    operation.hEvent = event.get();
    const auto isDone = ::WriteFile (pipe, bytes.getData(), (DWORD) bytes.getSize(), nullptr, &operation);
    return finish (pipe, operation, isDone, limit) == (int) bytes.getSize();
}

/** Appends what comes next; false at the end of the connection or of the time. */
bool readSome (HANDLE pipe, juce::MemoryBlock& bytes, const TimeLimit& limit)
{
    char buffer[65536];
    const Handle event (::CreateEventW (nullptr, TRUE, FALSE, nullptr));
    OVERLAPPED operation {};
    operation.hEvent = event.get();
    const auto isDone = ::ReadFile (pipe, buffer, sizeof (buffer), nullptr, &operation);
    const auto count = finish (pipe, operation, isDone, limit);

    if (count > 0)
        bytes.append (buffer, (size_t) count);

    return count > 0;
}

bool isWhole (const juce::MemoryBlock& bytes)
{
    return bytes.getSize() >= 4 && bytes.getSize() - 4 >= juce::ByteOrder::bigEndianInt (bytes.getData());
}
}

//==============================================================================
/** The system lets one client after the other into a pipe with a single instance. */
struct ClientTurn::Pimpl
{
};

ClientTurn::ClientTurn() = default;
ClientTurn::~ClientTurn() = default;

//==============================================================================
BrokerClient::Attempt exchangeWith (const BrokerClient::Discovery& hub, const juce::MemoryBlock& bytes, int replyLimitMs)
{
    using Outcome = BrokerClient::Outcome;

    const auto path = "\\\\.\\pipe\\" + hub.pipeName;
    const Handle pipe (::CreateFileW (path.toWideCharPointer(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr));

    if (! pipe.isOpen())
        return { Outcome::notListening, {} };

    const TimeLimit limit (replyLimitMs);

    if (! writeAll (pipe.get(), bytes, limit))
        return { Outcome::notSent, {} };

    BrokerClient::Attempt result { Outcome::noReply, {} };

    while (! isWhole (result.payload))
        if (! readSome (pipe.get(), result.payload, limit))
            return result;

    const auto size = juce::ByteOrder::bigEndianInt (result.payload.getData());
    result.payload.removeSection (0, 4);

    if (result.payload.getSize() == size)    // a single reply, and nothing behind it
        result.outcome = Outcome::answered;

    return result;
}
}
