#include "support/HttpsStream.h"
#include "support/TrustedTestServer.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

using namespace zorva;
using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;

/** Reads to the end in pieces of this size: the body, and after a failure "(failed)" behind it. */
std::string readAll (HttpsStream& stream, int pieceSize = 65536)
{
    std::string body;
    std::vector<char> piece ((size_t) pieceSize);

    for (;;)
    {
        const int count = stream.read (piece.data(), pieceSize);
        EXPECT_LE (count, pieceSize);

        if (count <= 0)
        {
            EXPECT_EQ (stream.failed(), count < 0);
            return count < 0 ? body + "(failed)" : body;
        }

        body.append (piece.data(), (size_t) count);
    }
}

/** What a fresh stream gives for an address: the body, or "(not connected)". */
std::string fetch (const juce::String& address, int timeoutMs = 0)
{
    HttpsStream stream (address, timeoutMs);

    if (! stream.connect())
    {
        char byte = 0;
        EXPECT_TRUE (stream.failed());
        EXPECT_LT (stream.read (&byte, 1), 0);
        return "(not connected)";
    }

    return readAll (stream);
}

std::string asText (const Answer& answer)
{
    std::string text;

    for (juce::int64 i = 0; i < answer.repeat; ++i)
        text.append (static_cast<const char*> (answer.body.getData()), answer.body.getSize());

    return text;
}

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

//==============================================================================
TEST (HttpsStream, GivesTheWholeBodyWhateverTheSizeOfThePieces)
{
    TrustedTestServer server;
    const auto answer = Answer::bytes (3 * 1024 * 1024);
    server.serve ("/body", answer);

    for (const int pieceSize : { 1000, 65536, 262144, 8 * 1024 * 1024 })
    {
        HttpsStream stream (server.url ("/body"), 0);
        ASSERT_TRUE (stream.connect());
        EXPECT_EQ (stream.totalLength(), 3 * 1024 * 1024);
        EXPECT_TRUE (readAll (stream, pieceSize) == asText (answer)) << pieceSize;
        EXPECT_FALSE (stream.failed());
    }
}

TEST (HttpsStream, GivesSingleBytes)
{
    TrustedTestServer server;
    server.serve ("/body", Answer::text ("a small body"));
    HttpsStream stream (server.url ("/body"), 0);

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (readAll (stream, 1), "a small body");
}

TEST (HttpsStream, GivesABodyWithoutAStatedLength)
{
    TrustedTestServer server;
    auto answer = Answer::bytes (1024 * 1024);
    answer.statedLength = -1;
    server.serve ("/body", answer);
    HttpsStream stream (server.url ("/body"), 0);

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (stream.totalLength(), -1);
    EXPECT_TRUE (readAll (stream) == asText (answer));
}

TEST (HttpsStream, GivesAnEmptyBodyAndStaysAtItsEnd)
{
    TrustedTestServer server;
    server.serve ("/empty", Answer());
    HttpsStream stream (server.url ("/empty"), 0);

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (stream.totalLength(), 0);

    for (int i = 0; i < 3; ++i)
    {
        char byte = 0;
        EXPECT_EQ (stream.read (&byte, 1), 0);
    }

    EXPECT_FALSE (stream.failed());
}

TEST (HttpsStream, ConnectsAsSoonAsTheHeadIsThere)
{
    TrustedTestServer server;
    server.serve ("/held", Answer::text ("body").heldAfter (0));
    HttpsStream stream (server.url ("/held"), 0);

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (stream.totalLength(), 4);
    server.release ("/held");
    EXPECT_EQ (readAll (stream), "body");
}

TEST (HttpsStream, GivesWhatHasArrivedWithoutWaitingForMore)
{
    TrustedTestServer server;
    server.serve ("/held", Answer::text ("body").heldAfter (2));
    HttpsStream stream (server.url ("/held"), 0);
    char piece[100] = {};

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (stream.read (piece, 100), 2);
    server.release ("/held");
    EXPECT_EQ (readAll (stream), "dy");
}

TEST (HttpsStream, DoesNotJudgeTheStatus)
{
    TrustedTestServer server;

    for (const int status : { 200, 203, 404, 500 })
    {
        server.serve ("/page", Answer::text ("page", status));
        EXPECT_EQ (fetch (server.url ("/page")), "page") << status;
    }
}

TEST (HttpsStream, TakesBlanksAroundAndInsideAnAddress)
{
    TrustedTestServer server;
    server.serve ("/My%20Setup.exe", Answer::text ("installer"));

    EXPECT_EQ (fetch (" " + server.url ("/My Setup.exe") + "\n"), "installer");
    EXPECT_EQ (fetch (server.url ("/My%20Setup.exe")), "installer");
}

//==============================================================================
TEST (HttpsStream, ABodyThatEndsBeforeItsLengthHasFailed)
{
    TrustedTestServer server;
    server.serve ("/cut", Answer::text ("the whole body").truncatedTo (9));
    EXPECT_EQ (fetch (server.url ("/cut")), "the whole(failed)");

    const auto half = Answer::bytes (512 * 1024);
    auto answer = half;
    answer.statedLength = 1024 * 1024;
    server.serve ("/half", answer);
    EXPECT_TRUE (fetch (server.url ("/half")) == asText (half) + "(failed)") << "what came before is given all the same";
}

TEST (HttpsStream, AnAddressThatIsNotHttpsIsNeverConnectedTo)
{
    TrustedTestServer server;
    server.serve ("/x", Answer::text ("x"));
    const auto file = juce::File::createTempFile ("txt");
    ASSERT_TRUE (file.replaceWithText ("x"));

    for (const auto& address : { server.plainUrl ("/x"), juce::String(), juce::String ("https://"), "file://" + file.getFullPathName(), server.url ("/x").substring (8) })
        EXPECT_EQ (fetch (address), "(not connected)") << address;

    EXPECT_TRUE (server.requests().empty());
    file.deleteFile();
}

TEST (HttpsStream, ACertificateOfAStrangerIsRefused)
{
    TrustedTestServer known, stranger (TrustedTestServer::Trust::stranger);
    stranger.serve ("/x", Answer::text ("x"));

    EXPECT_EQ (fetch (stranger.url ("/x")), "(not connected)");
    EXPECT_TRUE (stranger.requests().empty());
}

TEST (HttpsStream, ACertificateForAnotherNameIsRefused)
{
    TrustedTestServer server;
    server.serve ("/x", Answer::text ("x"));

    EXPECT_EQ (fetch (server.url ("/x")), "x");
    EXPECT_EQ (fetch (server.url ("/x").replace ("127.0.0.1", "localhost")), "x");
    EXPECT_EQ (fetch (server.url ("/x").replace ("127.0.0.1", "other.localhost")), "(not connected)");
}

TEST (HttpsStream, NobodyListeningIsAFailure)
{
    juce::String address;
    {
        TrustedTestServer gone;
        address = gone.url ("/x");
    }

    EXPECT_EQ (fetch (address), "(not connected)");
}

//==============================================================================
TEST (HttpsStream, FollowsARedirectOfEveryKindToItsBody)
{
    TrustedTestServer server;
    server.serve ("/d/target", Answer::text ("target"));

    for (const int status : { 301, 302, 303, 307, 308 })
    {
        auto answer = Answer::redirect (server.url ("/d/target"));
        answer.status = status;
        server.serve ("/moved", answer);
        EXPECT_EQ (fetch (server.url ("/moved")), "target") << status;
    }

    for (const char* location : { "target", "/d/target", "../d/target" })
    {
        server.serve ("/d/moved", Answer::redirect (location));
        EXPECT_EQ (fetch (server.url ("/d/moved")), "target") << location;
    }
}

TEST (HttpsStream, TheLengthIsThatOfTheFinalBody)
{
    TrustedTestServer server;
    auto redirect = Answer::text ("this page has moved", 302);
    redirect.location = "/target";
    server.serve ("/moved", redirect);
    server.serve ("/target", Answer::text ("target"));
    HttpsStream stream (server.url ("/moved"), 0);

    ASSERT_TRUE (stream.connect());
    EXPECT_EQ (stream.totalLength(), 6);
    EXPECT_EQ (readAll (stream), "target") << "nothing of the redirect's own page";
}

TEST (HttpsStream, ARedirectWhosePageNeverEndsHoldsUpNothing)
{
    TrustedTestServer server;
    auto redirect = Answer::bytes (64 * 1024).heldAfter (1024);
    redirect.status = 302;
    redirect.location = "/target";
    server.serve ("/moved", redirect);
    server.serve ("/target", Answer::text ("target"));

    EXPECT_EQ (fetch (server.url ("/moved")), "target");
}

TEST (HttpsStream, ARedirectStatusWithoutALocationIsAnAnswer)
{
    TrustedTestServer server;
    server.serve ("/page", Answer::text ("page", 302));
    EXPECT_EQ (fetch (server.url ("/page")), "page");
}

TEST (HttpsStream, NeverLeavesHttps)
{
    TrustedTestServer server;
    server.serve ("/x", Answer::text ("x"));
    const auto file = juce::File::createTempFile ("txt");
    ASSERT_TRUE (file.replaceWithText ("x"));

    for (const auto& location : { server.plainUrl ("/x"), "file://" + file.getFullPathName(), juce::String ("https://"), juce::String ("ftp://127.0.0.1/x") })
    {
        server.serve ("/down", Answer::redirect (location));
        server.serve ("/later", Answer::redirect ("/down"));
        EXPECT_EQ (fetch (server.url ("/down")), "(not connected)") << location;
        EXPECT_EQ (fetch (server.url ("/later")), "(not connected)") << location;
    }

    EXPECT_EQ (server.requestCount ("/x"), 0);
    file.deleteFile();
}

TEST (HttpsStream, FollowsFiveRedirectsAndNoMore)
{
    TrustedTestServer server;
    server.serve ("/0", Answer::text ("target"));

    for (int i = 1; i <= 6; ++i)
        server.serve ("/" + juce::String (i), Answer::redirect ("/" + juce::String (i - 1)));

    EXPECT_EQ (fetch (server.url ("/6")), "(not connected)");
    EXPECT_EQ (server.requestCount ("/0"), 0);
    EXPECT_EQ (fetch (server.url ("/5")), "target");
}

//==============================================================================
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
