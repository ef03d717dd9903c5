#include "ai/HubCancellationDeadline.h"

#include <gtest/gtest.h>

namespace
{
constexpr int longMs = 60000, waitMs = 10000;
}

TEST (HubCancellationDeadline, CallsBackOnceWhenTheLimitPasses)
{
    juce::WaitableEvent called;
    std::atomic<int> calls { 0 };
    HubCancellationDeadline deadline (20, [&] { ++calls; called.signal(); });
    deadline.startThread();
    EXPECT_TRUE (called.wait (waitMs));
    deadline.stop();
    EXPECT_TRUE (deadline.hasExpired());
    EXPECT_EQ (calls, 1);
}

TEST (HubCancellationDeadline, StoppedInTimeCallsNothing)
{
    std::atomic<int> calls { 0 };
    HubCancellationDeadline deadline (longMs, [&] { ++calls; });
    deadline.startThread();
    deadline.stop();
    EXPECT_FALSE (deadline.hasExpired());
    EXPECT_EQ (calls, 0);
}

TEST (HubCancellationDeadline, TheDestructorStopsToo)
{
    std::atomic<int> calls { 0 };

    {
        HubCancellationDeadline deadline (longMs, [&] { ++calls; });
        deadline.startThread();
    }

    EXPECT_EQ (calls, 0);
}

TEST (HubCancellationDeadline, StopWaitsForACallThatRuns)
{
    juce::WaitableEvent begun;
    std::atomic<bool> ended { false };
    HubCancellationDeadline deadline (1, [&] { begun.signal(); juce::Thread::sleep (100); ended = true; });
    deadline.startThread();
    ASSERT_TRUE (begun.wait (waitMs));
    deadline.stop();
    EXPECT_TRUE (ended);
}

TEST (HubCancellationDeadline, ALimitBelowOneIsOneAndNoFunctionIsNeeded)
{
    for (const int limit : { 0, -1, std::numeric_limits<int>::min() })
    {
        HubCancellationDeadline deadline (limit, {});
        deadline.startThread();
        const auto begin = juce::Time::getMillisecondCounter();

        while (! deadline.hasExpired() && juce::Time::getMillisecondCounter() - begin < waitMs)
            juce::Thread::yield();

        EXPECT_TRUE (deadline.hasExpired());
    }
}

TEST (HubCancellationDeadline, StoppingOneThatNeverStartedIsHarmless)
{
    HubCancellationDeadline deadline (longMs, [] { FAIL(); });
    deadline.stop();
    EXPECT_FALSE (deadline.hasExpired());
}
