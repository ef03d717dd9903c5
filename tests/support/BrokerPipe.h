#pragma once

#include "support/BrokerClient.h"

#include <cmath>
#include <thread>

namespace zorva::test
{
/** A point in time by which something must have happened. */
class TimeLimit
{
public:
    explicit TimeLimit (int milliseconds) : end (juce::Time::getMillisecondCounterHiRes() + milliseconds) {}

    int remainingMs() const    { return juce::jmax (0, (int) std::ceil (end - juce::Time::getMillisecondCounterHiRes())); }
    bool isOver() const        { return remainingMs() == 0; }

private:
    const double end;
};

/** Pauses that begin short, because the Hub renews its pipe within a millisecond, and grow up to what is fit for an absent Hub. */
class GrowingPauses
{
public:
    void pause()
    {
        std::this_thread::sleep_for (std::chrono::microseconds (microseconds));
        microseconds = juce::jmin (microseconds * 2, longestMicroseconds);
    }

private:
    static constexpr int longestMicroseconds = 20000;
    int microseconds = 125;
};

/** The clients' turn, held while it lives: one client at a time uses the pipe, where the system does not see to that itself. */
class ClientTurn
{
public:
    ClientTurn();
    ~ClientTurn();

private:
    struct Pimpl;
    std::unique_ptr<Pimpl> pimpl;

    JUCE_DECLARE_NON_COPYABLE (ClientTurn)
};

/** One try to send these bytes to a pipe that may be gone by now, and to read one frame back. */
BrokerClient::Attempt exchangeWith (const BrokerClient::Discovery& hub, const juce::MemoryBlock& bytes, int replyLimitMs);
}
