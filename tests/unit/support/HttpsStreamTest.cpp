#include "unit/support/HttpsFetch.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;
}

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
    EXPECT_EQ (fetch (server.url ("/x").replace (ServerProcess::hostName(), "localhost")), "x");
    EXPECT_EQ (fetch (server.url ("/x").replace (ServerProcess::hostName(), "other.localhost")), "(not connected)");
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
