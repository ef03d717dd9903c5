#include "unit/support/HttpsFetch.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;

bool waitUntil (const std::function<bool()>& condition, double limitMs = 20000)
{
    const auto start = juce::Time::getMillisecondCounterHiRes();

    while (! condition())
    {
        if (juce::Time::getMillisecondCounterHiRes() - start > limitMs)
            return false;

        juce::Thread::sleep (2);
    }

    return true;
}

/** Runs what blocks while another thread waits for the moment to cancel: the milliseconds from cancel() to the return. */
double returnsAfterCancel (HttpsStream& stream, const std::function<bool()>& isTheMoment, const std::function<void()>& whatBlocks)
{
    std::atomic<double> cancelled { 0 };
    std::thread canceller ([&]
    {
        EXPECT_TRUE (waitUntil (isTheMoment));
        cancelled = juce::Time::getMillisecondCounterHiRes();
        stream.cancel();
    });

    whatBlocks();
    const auto returned = juce::Time::getMillisecondCounterHiRes();
    canceller.join();
    return returned - cancelled;
}

constexpr double atOnceMs = 1000;
}

TEST (HttpsStream, GivesUpAServerThatNeverSpeaks)
{
    TrustedTestServer server;
    const auto start = juce::Time::getMillisecondCounterHiRes();

    EXPECT_EQ (fetch (server.silentUrl ("/x"), 1000), "(not connected)");
    EXPECT_GE (juce::Time::getMillisecondCounterHiRes() - start, 900.0);
    EXPECT_EQ (server.silentConnections(), 1);
}

TEST (HttpsStream, GivesUpAServerThatFallsSilentLater)
{
    TrustedTestServer server;
    server.serve ("/silent", Answer::text ("x").silenced());
    server.serve ("/held", Answer::text ("body").heldAfter (2));

    EXPECT_EQ (fetch (server.url ("/silent"), 1000), "(not connected)");
    EXPECT_EQ (fetch (server.url ("/held"), 1000), "bo(failed)");
}

TEST (HttpsStream, CancelEndsAStalledHandshakeAtOnce)
{
    TrustedTestServer server;
    HttpsStream stream (server.silentUrl ("/x"), 0);

    EXPECT_LT (returnsAfterCancel (stream, [&] { return server.silentConnections() == 1; }, [&] { EXPECT_FALSE (stream.connect()); }), atOnceMs);
    EXPECT_TRUE (stream.failed());
}

TEST (HttpsStream, CancelEndsTheWaitForAnAnswerAtOnce)
{
    TrustedTestServer server;
    server.serve ("/silent", Answer::text ("x").silenced());
    HttpsStream stream (server.url ("/silent"), 0);

    EXPECT_LT (returnsAfterCancel (stream, [&] { return server.requestCount ("/silent") == 1; }, [&] { EXPECT_FALSE (stream.connect()); }), atOnceMs);
}

TEST (HttpsStream, CancelEndsTheWaitForMoreOfABodyAtOnce)
{
    TrustedTestServer server;
    server.serve ("/held", Answer::text ("body").heldAfter (2));
    HttpsStream stream (server.url ("/held"), 0);
    std::atomic<bool> isWaiting { false };
    char piece[100] = {};
    ASSERT_TRUE (stream.connect());
    ASSERT_EQ (stream.read (piece, 100), 2);

    EXPECT_LT (returnsAfterCancel (stream, [&] { return isWaiting.load(); }, [&]
    {
        isWaiting = true;
        EXPECT_LT (stream.read (piece, 100), 0);
    }), atOnceMs);
    EXPECT_TRUE (stream.failed());
}

TEST (HttpsStream, CancelEndsABodyThatFlows)
{
    TrustedTestServer server;
    server.serve ("/endless", Answer::bytes (juce::int64 (1) << 40));
    HttpsStream stream (server.url ("/endless"), 0);
    std::atomic<int> pieces { 0 };
    std::vector<char> piece (65536);
    ASSERT_TRUE (stream.connect());

    EXPECT_LT (returnsAfterCancel (stream, [&] { return pieces > 10; }, [&]
    {
        while (stream.read (piece.data(), 65536) > 0)
            ++pieces;
    }), atOnceMs);
}

TEST (HttpsStream, CancelBeforeConnectingIsRemembered)
{
    TrustedTestServer server;
    server.serve ("/x", Answer::text ("x"));
    HttpsStream stream (server.url ("/x"), 0);
    stream.cancel();

    EXPECT_FALSE (stream.connect());
    EXPECT_TRUE (stream.failed());
    EXPECT_TRUE (server.requests().empty());
}

TEST (HttpsStream, EndsInTheMiddleOfABody)
{
    TrustedTestServer server;
    server.serve ("/endless", Answer::bytes (juce::int64 (1) << 40));
    const auto start = juce::Time::getMillisecondCounterHiRes();
    {
        HttpsStream stream (server.url ("/endless"), 0);
        char byte = 0;
        ASSERT_TRUE (stream.connect());
        EXPECT_EQ (stream.read (&byte, 1), 1);
    }
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - start, 10000.0);
    EXPECT_TRUE (waitUntil ([&] { const auto all = server.requests(); return all.size() == 1 && ! all[0].finished; }));
}

TEST (HttpsStream, ManyStreamsRunSideBySide)
{
    TrustedTestServer server;
    const auto answer = Answer::bytes (256 * 1024);
    server.serve ("/body", answer);
    std::vector<std::thread> threads;
    std::atomic<int> whole { 0 };

    for (int i = 0; i < 8; ++i)
        threads.emplace_back ([&] { whole += fetch (server.url ("/body")) == asText (answer) ? 1 : 0; });

    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ (whole, 8);
}
