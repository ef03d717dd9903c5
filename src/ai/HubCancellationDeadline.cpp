#include "ai/HubCancellationDeadline.h"

HubCancellationDeadline::HubCancellationDeadline (int timeout, std::function<void()> whenExpired)
    : juce::Thread ("ZORVA Hub request deadline"), timeoutMs (juce::jmax (1, timeout)), onExpired (std::move (whenExpired))
{
}

HubCancellationDeadline::~HubCancellationDeadline()
{
    // Here and not in the base: run() needs what this class holds.
    stop();
}

void HubCancellationDeadline::stop()
{
    stopped.signal();
    waitForThreadToExit (-1);
}

void HubCancellationDeadline::run()
{
    if (stopped.wait (timeoutMs))
        return;

    expired = true;

    if (onExpired)
        onExpired();
}
