#pragma once

#include <juce_core/juce_core.h>

#include <thread>

/** A download over https into a file, on a thread of its own that also makes the connection, so that no caller ever waits for
    the network.

    The listener gets the same events as from the framework's own task: progress() for each piece, then finished() exactly once,
    both on the task's thread; progress may come before start() returns. The body is read in large pieces and every write is
    checked. A body that passes the published size is cut off there and counts as finished, for the size check to refuse. */
class HttpsDownloadTask final : public juce::URL::DownloadTask
{
public:
    /** Starts the download. expectedSize in bytes; the file is created here, and its folder must exist. The listener is not owned and
        must outlive the task. Null, with no file left behind, when the file could not be created or no thread could be started. */
    static std::unique_ptr<HttpsDownloadTask> start (const juce::String& address, const juce::File& target,
                                                     juce::int64 expectedSize, juce::URL::DownloadTaskListener& listener);

    /** Stops the download. After this returns no event reaches the listener any more. It returns at once, or in a fifth of a
        second when the connection is stuck, which is then left to end by itself, without the file. */
    ~HttpsDownloadTask() override;

private:
    class Transfer;
    explicit HttpsDownloadTask (std::shared_ptr<Transfer> transferToUse);

    const std::shared_ptr<Transfer> transfer;
    std::thread worker;
};
