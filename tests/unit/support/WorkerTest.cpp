#include "support/Worker.h"
#include "support/ThreadRefusal.h"

#include <atomic>
#include <gtest/gtest.h>
#include <juce_core/juce_core.h>

using namespace zorva::test;

TEST (Worker, RunsItsJobOnceOnAnotherThread)
{
    std::atomic<int> runs { 0 };
    std::atomic<juce::Thread::ThreadID> thread { nullptr };
    juce::WaitableEvent ended;

    ASSERT_TRUE (launchWorker ([&] { thread = juce::Thread::getCurrentThreadId(); ++runs; ended.signal(); }));
    ASSERT_TRUE (ended.wait (10000));
    EXPECT_EQ (runs, 1);
    EXPECT_NE (thread.load(), juce::Thread::getCurrentThreadId());
}

TEST (Worker, ReleasesWhatItsJobHolds)
{
    const auto held = std::make_shared<int> (7);
    juce::WaitableEvent ended;
    ASSERT_TRUE (launchWorker ([held, &ended] { ended.signal(); }));
    ASSERT_TRUE (ended.wait (10000));

    const auto end = juce::Time::getMillisecondCounter() + 10000;

    while (held.use_count() > 1 && juce::Time::getMillisecondCounter() < end)
        juce::Thread::yield();

    EXPECT_EQ (held.use_count(), 1);
}

/** A sanitizer sees here what an ordinary run survives. */
TEST (Worker, JobsThatEndAtOnceDoNoHarm)
{
    std::atomic<int> runs { 0 };
    constexpr int count = 500;

    for (int i = 0; i < count; ++i)
        ASSERT_TRUE (launchWorker ([&runs] { ++runs; }));

    const auto end = juce::Time::getMillisecondCounter() + 20000;

    while (runs < count && juce::Time::getMillisecondCounter() < end)
        juce::Thread::yield();

    EXPECT_EQ (runs, count);
}

TEST (Worker, SaysWhenNoThreadCanBeStarted)
{
    refuseNewThreads();
    bool ran = false;
    EXPECT_FALSE (launchWorker ([&ran] { ran = true; }));
    EXPECT_FALSE (ran);
}
