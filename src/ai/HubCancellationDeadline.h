#pragma once

#include <atomic>
#include <functional>
#include <juce_core/juce_core.h>

/** A hard limit on the time of one operation: a short-lived thread that calls back once when the limit passes before stop(). */
class HubCancellationDeadline final : private juce::Thread
{
public:
    /** A timeoutMs below 1 counts as 1. onExpired is called on the deadline's own thread, and may be empty. Starts nothing. */
    HubCancellationDeadline (int timeoutMs, std::function<void()> onExpired);

    /** As stop(). */
    ~HubCancellationDeadline() override;

    using juce::Thread::startThread;

    /** Ends the waiting and waits for the thread, an onExpired that is running included, without limit. */
    void stop();

    /** True once the limit has passed before stop(). To be read after stop(). */
    bool hasExpired() const noexcept { return expired.load(); }

private:
    void run() override;

    const int timeoutMs;
    const std::function<void()> onExpired;
    juce::WaitableEvent stopped;
    std::atomic<bool> expired { false };

    JUCE_DECLARE_NON_COPYABLE (HubCancellationDeadline)
};
