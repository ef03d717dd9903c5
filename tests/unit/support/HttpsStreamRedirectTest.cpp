#include "unit/support/HttpsFetch.h"

#include <gtest/gtest.h>

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;
}

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
