#include "app/HubPaths.h"
#include "support/Files.h"
#include "support/LogCapture.h"
#include "support/ManifestBuilder.h"
#include "support/TrustedTestServer.h"
#include "unit/catalogue/RefreshSubject.h"

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;

const char* const path = "/manifest.json";

/** What nobody can use as a manifest. */
std::vector<std::pair<const char*, Answer>> badAnswers()
{
    return
    {
        { "error page 404", Answer::text ("<html><body>Not found</body></html>", 404) },
        { "error page 500", Answer::text ("<html><body>Sorry</body></html>", 500) },
        { "page 200", Answer::text ("<html><body>Welcome to this hotspot</body></html>") },
        { "empty", Answer() },
        { "a rule fails", Answer::text (manifest ({ application ("a"), application ("A") })) },
        { "no usable product", Answer::text (manifest ({ application ("a", "") })) },
        { "no product", Answer::text (manifest ({})) },
        { "later format", Answer::text (json (with (document ({ application ("a") }), "manifestVersion", 2))) },
        { "nested beyond reason", Answer::text (juce::String::repeatedString ("[", 100000)) },
        { "cut off", Answer::text (manifest ({ application ("a") })).truncatedTo (60) },
    };
}
}

//==============================================================================
TEST (ManifestService, ABadAnswerIsOfflineAndLeavesTheCacheUntouched)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("good") })));
    ASSERT_EQ (subject.outcomeOf (server.url (path)), "good zorva-daw online");
    const auto before = treeOf (HubPaths::root());
    const LogCapture log;

    for (const auto& [name, answer] : badAnswers())
    {
        SCOPED_TRACE (name);
        server.serve ("/bad", answer);
        EXPECT_EQ (subject.outcomeOf (server.url ("/bad")), "good zorva-daw offline");
        EXPECT_EQ (treeOf (HubPaths::root()), before);
    }

    EXPECT_TRUE (log.lines().isEmpty()) << "offline is no error that anyone is told of";
}

TEST (ManifestService, ABadAnswerWithoutACacheShowsTheFallback)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text ("<html></html>", 503));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "zorva-daw offline");
    EXPECT_FALSE (isThere (HubPaths::manifestCacheFile()));
}

TEST (ManifestService, ABrokenConnectionIsOfflineEvenAfterAWholeManifest)
{
    TrustedTestServer server;
    Subject subject;
    auto answer = Answer::text (manifest ({ application ("a") }));
    answer.statedLength = (juce::int64) answer.body.getSize() + 10;
    server.serve (path, answer);

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "zorva-daw offline");
    EXPECT_FALSE (isThere (HubPaths::manifestCacheFile()));
}

TEST (ManifestService, NoServerIsOfflineWithTheListFromDisk)
{
    juce::String address;
    {
        TrustedTestServer gone;
        address = gone.url (path);
    }

    write (HubPaths::manifestCacheFile(), manifest ({ application ("cached") }));
    Subject subject;
    EXPECT_EQ (subject.outcomeOf (address), "cached zorva-daw offline");
}

TEST (ManifestService, EachRefreshSetsTheOnlineStateAnew)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));

    EXPECT_FALSE (subject.service->isOnline());
    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online");
    EXPECT_EQ (subject.outcomeOf (server.url ("/nothing-here")), "a zorva-daw offline");
    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online");
}

TEST (ManifestService, AnAddressThatIsNotHttpsIsNeverConnectedTo)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    const auto file = write (in (freshFolder ("work"), "manifest.json"), manifest ({ application ("a") }));

    for (const auto& address : { server.plainUrl (path), juce::String ("   "), juce::String ("\t\n"), juce::String ("not an address"),
                                 juce::String ("https://"), "file://" + file.getFullPathName(), server.url (path).substring (6) })
        EXPECT_EQ (subject.outcomeOf (address), "zorva-daw offline") << address;

    EXPECT_TRUE (server.requests().empty());
}

TEST (ManifestService, ACertificateOfAStrangerIsOffline)
{
    TrustedTestServer known, stranger (TrustedTestServer::Trust::stranger);
    Subject subject;
    stranger.serve (path, Answer::text (manifest ({ application ("a") })));

    EXPECT_EQ (subject.outcomeOf (stranger.url (path)), "zorva-daw offline");
    EXPECT_TRUE (stranger.requests().empty());
}

//==============================================================================
TEST (ManifestService, ARedirectToHttpsIsFollowed)
{
    TrustedTestServer server;
    Subject subject;
    server.serve ("/moved", Answer::redirect (server.url (path)));
    server.serve (path, Answer::text (manifest ({ application ("a") })));

    EXPECT_EQ (subject.outcomeOf (server.url ("/moved")), "a zorva-daw online");
}

TEST (ManifestService, ARedirectToHttpIsRefused)
{
    TrustedTestServer server;
    Subject subject;
    server.serve ("/down", Answer::redirect (server.plainUrl (path)));
    server.serve ("/two-steps-down", Answer::redirect (server.url ("/down")));
    server.serve (path, Answer::text (manifest ({ application ("a") })));

    EXPECT_EQ (subject.outcomeOf (server.url ("/down")), "zorva-daw offline");
    EXPECT_EQ (subject.outcomeOf (server.url ("/two-steps-down")), "zorva-daw offline");
    EXPECT_EQ (server.requestCount (path), 0);
}

TEST (ManifestService, ARedirectToAFileIsRefused)
{
    TrustedTestServer server;
    Subject subject;
    const auto file = write (in (freshFolder ("work"), "manifest.json"), manifest ({ application ("a") }));
    server.serve (path, Answer::redirect ("file://" + file.getFullPathName()));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "zorva-daw offline");
}

TEST (ManifestService, AtMostFiveRedirectsAreFollowed)
{
    TrustedTestServer server;
    Subject subject;
    server.serve ("/0", Answer::text (manifest ({ application ("a") })));

    for (int i = 1; i <= 6; ++i)
        server.serve ("/" + juce::String (i), Answer::redirect (server.url ("/" + juce::String (i - 1))));

    EXPECT_EQ (subject.outcomeOf (server.url ("/6")), "zorva-daw offline");
    EXPECT_EQ (server.requestCount ("/0"), 0);
    EXPECT_EQ (subject.outcomeOf (server.url ("/5")), "a zorva-daw online");
}

//==============================================================================
TEST (ManifestService, AServerThatNeverSpeaksHoldsUpNothingAndIsOfflineAfterSixSeconds)
{
    TrustedTestServer server;
    Subject subject;
    const auto start = juce::Time::getMillisecondCounterHiRes();
    const auto elapsed = [start] { return juce::Time::getMillisecondCounterHiRes() - start; };
    subject.refreshFrom (server.silentUrl (path));
    EXPECT_LT (elapsed(), 1000.0) << "refresh() returns at once";

    ASSERT_TRUE (pumpUntil ([&] { return server.silentConnections() == 1; }, 4000));
    bool dispatched = false;
    juce::MessageManager::callAsync ([&dispatched] { dispatched = true; });
    EXPECT_TRUE (pumpUntil ([&] { return dispatched; }, 1000)) << "the message thread goes on";
    EXPECT_TRUE (subject.outcomes.texts.empty());

    ASSERT_TRUE (pumpUntil ([&] { return ! subject.outcomes.texts.empty(); }, 20000));
    EXPECT_EQ (subject.outcomes.texts[0], "zorva-daw offline");
    EXPECT_GT (elapsed(), 5000.0);
    EXPECT_LT (elapsed(), 12000.0);
}

TEST (ManifestService, AServerThatTakesTheRequestAndNeverAnswersHoldsUpNothing)
{
    TrustedTestServer server;
    Subject subject;
    server.serve ("/silent", Answer::text (manifest ({ application ("late") })).silenced());
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    subject.refreshFrom (server.url ("/silent"));
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/silent") == 1; }, 20000));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online") << "another refresh is not held up either";
    ASSERT_TRUE (pumpUntil ([&] { return subject.outcomes.texts.size() == 2; }, 20000)) << "a worker does not wait for ever";
    EXPECT_EQ (subject.outcomes.texts[1], "a zorva-daw offline");
}
