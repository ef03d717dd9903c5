#include "vault/HttpsDownloadTask.h"

#include "support/HttpsStream.h"

#include <system_error>

namespace
{
constexpr int pieceSize = 256 * 1024;
constexpr int timeoutMs = 30000;    // to connect, and afterwards for any silence
constexpr int partingMs = 200;      // a cancelled transfer ends within a few milliseconds, unless something is stuck
}

/** The work of a task, shared with the thread that does it, so that the task can go while the thread is stuck in the network.
    The lock covers the file and every call of the listener: whoever has called abandon() hears nothing more and finds the file
    closed. */
class HttpsDownloadTask::Transfer
{
public:
    Transfer (const juce::String& address, const juce::File& targetFile, juce::int64 expected, juce::URL::DownloadTaskListener& events)
        : stream (address, timeoutMs), target (targetFile), expectedSize (expected), listener (&events) {}

    void setTask (HttpsDownloadTask& owner)
    {
        task = &owner;
        task->targetLocation = target;
    }

    /** Before the transfer's thread begins. False when there can be no such file. */
    bool createFile()
    {
        // A stream opened on an existing file would append to it.
        if (! target.deleteFile())
            return false;

        // Without a buffer each write answers for itself; the last bytes of a buffered one would be written, or not, unheard.
        output = std::make_unique<juce::FileOutputStream> (target, 0);
        return output->openedOk();
    }

    /** The whole transfer, on its own thread. */
    void run()
    {
        const bool success = stream.connect() && receive();

        // The connection is of no use any more, though the task may live on while its file is verified.
        stream.cancel();
        finish (success);
        ended.signal();
    }

    /** True when run() is through, or gets through in this time. */
    bool waitForEnd (int milliseconds) const
    {
        return ended.wait (milliseconds);
    }

    /** Any thread, any number of times. */
    void abandon()
    {
        {
            const juce::ScopedLock lock (access);
            listener = nullptr;
            task = nullptr;
            output.reset();
        }

        // Only now, or the failure that this makes of the transfer would still be heard.
        stream.cancel();
    }

private:
    bool receive()
    {
        juce::HeapBlock<char> piece (pieceSize);
        juce::int64 received = 0;

        for (;;)
        {
            const auto size = stream.read (piece, pieceSize);

            if (size <= 0)
                return size == 0 && ! stream.failed();

            received += size;

            if (! take (piece, size, received))
                return false;

            if (received > expectedSize)
                return true;
        }
    }

    bool take (const char* piece, int size, juce::int64 received)
    {
        const juce::ScopedLock lock (access);

        if (listener == nullptr || ! output->write (piece, (size_t) size))
            return false;

        task->contentLength = stream.totalLength();
        task->downloaded = received;
        listener->progress (task, received, task->contentLength);
        return true;
    }

    void finish (bool success)
    {
        const juce::ScopedLock lock (access);
        output.reset();

        if (listener == nullptr)
            return;

        task->finished = true;
        task->error = ! success;
        std::exchange (listener, nullptr)->finished (task, success);
    }

    HttpsStream stream;
    const juce::File target;
    const juce::int64 expectedSize;

    juce::CriticalSection access;
    juce::URL::DownloadTaskListener* listener;
    HttpsDownloadTask* task = nullptr;
    std::unique_ptr<juce::FileOutputStream> output;
    juce::WaitableEvent ended { true };

    JUCE_DECLARE_NON_COPYABLE (Transfer)
};

//==============================================================================
std::unique_ptr<HttpsDownloadTask> HttpsDownloadTask::start (const juce::String& address, const juce::File& target,
                                                             juce::int64 expectedSize, juce::URL::DownloadTaskListener& listener)
{
    const auto transfer = std::make_shared<Transfer> (address, target, expectedSize, listener);
    std::unique_ptr<HttpsDownloadTask> task (new HttpsDownloadTask (transfer));

    if (! transfer->createFile())
        return {};

    try
    {
        task->worker = std::thread ([transfer] { transfer->run(); });
        return task;
    }
    catch (const std::system_error&)    // the library's only way to say that there is no thread to be had
    {
        task.reset();
        target.deleteFile();
        return {};
    }
}

HttpsDownloadTask::HttpsDownloadTask (std::shared_ptr<Transfer> transferToUse)
    : transfer (std::move (transferToUse))
{
    transfer->setTask (*this);
}

/** A thread that is still in the TLS library while the process ends could crash there, so the thread's end is waited for where
    it is near, as it is but for a connection that is stuck. */
HttpsDownloadTask::~HttpsDownloadTask()
{
    transfer->abandon();

    if (! worker.joinable())
        return;

    if (transfer->waitForEnd (partingMs))
        worker.join();
    else
        worker.detach();
}
