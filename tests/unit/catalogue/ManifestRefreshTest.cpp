#include "app/HubPaths.h"
#include "catalogue/ManifestParser.h"
#include "support/Files.h"
#include "support/ManifestBuilder.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"
#include "support/TrustedTestServer.h"
#include "unit/catalogue/RefreshSubject.h"

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;

const char* const path = "/manifest.json";
}

//==============================================================================
TEST (ManifestService, ARefreshBringsTheCatalogueAndWritesTheCache)
{
    TrustedTestServer server;
    Subject subject;
    const auto text = manifest ({ application ("b"), with (application ("a"), "name", utf8 ("Größe 音")) });
    server.serve (path, Answer::text (text));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "b a zorva-daw online");
    EXPECT_EQ (subject.service->getProducts().at (1).name, utf8 ("Größe 音"));
    EXPECT_EQ (read (HubPaths::manifestCacheFile()), text.replace ("\r\n", "\n").replace ("\n", "\r\n").toStdString());
    EXPECT_EQ (server.requestCount (path), 1);
    EXPECT_EQ (idsOf (loadProducts()), "b a zorva-daw") << "the next start shows it without a network";
}

TEST (ManifestService, ARefreshLeavesNothingBesideTheCache)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    subject.outcomeOf (server.url (path));
    subject.outcomeOf (server.url (path));

    auto tree = treeOf (HubPaths::root());
    EXPECT_EQ (tree.erase ("manifest.json"), 1u);
    EXPECT_EQ (tree, (Tree { { "Vault", "folder" }, { "Runtime", "folder" }, { "Creator", "folder" }, { "Creator/Publish Drafts", "folder" } }));
}

TEST (ManifestService, TheAddressIsTrimmedAtTheFetch)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));

    EXPECT_EQ (subject.outcomeOf (" \t" + server.url (path) + "\n"), "a zorva-daw online");
}

TEST (ManifestService, TheStatusOfAnAnswerIsNotJudged)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") }), 404));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online");
}

TEST (ManifestService, ABigCatalogueIsReadWhole)
{
    TrustedTestServer server;
    Subject subject;
    auto answer = Answer::text (manifest ({ application ("a") }) + juce::String::repeatedString (" ", 5 * 1024 * 1024));
    server.serve (path, answer);
    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online");

    answer.statedLength = -1;
    server.serve (path, answer);
    EXPECT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online") << "without a stated length";
}

//==============================================================================
TEST (ManifestService, AnOverrideKeepsItsPlaceWhenTheNetworkAnswers)
{
    TrustedTestServer server;
    write (HubPaths::manifestLocalFile(), manifest ({ application ("mine") }));
    const auto local = read (HubPaths::manifestLocalFile());
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("theirs") })));

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "mine online");
    EXPECT_EQ (idsOf (parseManifest (HubPaths::manifestCacheFile().loadFileAsString())), "theirs") << "the cache is updated all the same";
    EXPECT_EQ (read (HubPaths::manifestLocalFile()), local);
}

TEST (ManifestService, ACacheThatCannotBeWrittenIsOnlineWithTheOlderList)
{
    TrustedTestServer server;
    server.serve (path, Answer::text (manifest ({ application ("new") })));
    Subject subject;
    ASSERT_EQ (subject.outcomeOf (server.url (path)), "new zorva-daw online");
    write (HubPaths::manifestCacheFile(), manifest ({ application ("old") }));
    const ReadOnlyFolder locked (HubPaths::root());

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "old zorva-daw online");
}

TEST (ManifestService, AFolderInTheCachesPlaceIsOnlineWithTheFallback)
{
    TrustedTestServer server;
    server.serve (path, Answer::text (manifest ({ application ("new") })));
    write (in (HubPaths::manifestCacheFile(), "inside"), "x");
    Subject subject;

    EXPECT_EQ (subject.outcomeOf (server.url (path)), "zorva-daw online");
    EXPECT_EQ (read (in (HubPaths::manifestCacheFile(), "inside")), "x");
}

TEST (ManifestService, AClearedCacheChangesTheListAtTheNextRefresh)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    ASSERT_EQ (subject.outcomeOf (server.url (path)), "a zorva-daw online");
    subject.service->clearCache();

    EXPECT_EQ (idsOf (subject.service->getProducts()), "a zorva-daw");
    EXPECT_TRUE (subject.service->isOnline());
    EXPECT_EQ (subject.outcomeOf (server.url ("/nothing-here")), "zorva-daw offline");
}

TEST (ManifestService, AClearedCacheIsWrittenAnewAndLivesUntilTheNextStart)
{
    TrustedTestServer server;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    juce::var settings (new juce::DynamicObject());
    settings.getDynamicObject()->setProperty ("clearManifestCacheOnStartup", true);
    settings.getDynamicObject()->setProperty ("manifestUrl", server.url (path));
    write (HubPaths::manifestCacheFile(), manifest ({ application ("stale") }));

    Outcomes outcomes;
    ManifestService first (settings);
    EXPECT_EQ (idsOf (first.getProducts()), "zorva-daw");
    first.refresh (outcomes.collect());
    ASSERT_TRUE (pumpUntil ([&] { return outcomes.texts.size() == 1; }, 20000));
    EXPECT_EQ (outcomes.texts[0], "a zorva-daw online");
    EXPECT_TRUE (isThere (HubPaths::manifestCacheFile()));

    const ManifestService second (settings);
    EXPECT_EQ (idsOf (second.getProducts()), "zorva-daw");
    EXPECT_FALSE (isThere (HubPaths::manifestCacheFile()));
}

//==============================================================================
TEST (ManifestService, OfTwoOverlappingRefreshesTheLaterResultWins)
{
    TrustedTestServer server;
    Subject subject;
    server.serve ("/slow", Answer::text (manifest ({ application ("slow") })).silenced());
    server.serve ("/quick", Answer::text (manifest ({ application ("quick") })));

    subject.refreshFrom (server.url ("/slow"));
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/slow") == 1; }, 20000));
    EXPECT_EQ (subject.outcomeOf (server.url ("/quick")), "quick zorva-daw online");

    server.release ("/slow");
    ASSERT_TRUE (pumpUntil ([&] { return subject.outcomes.texts.size() == 2; }, 20000));
    EXPECT_EQ (subject.outcomes.texts[1], "slow zorva-daw online");
    EXPECT_EQ (idsOf (subject.service->getProducts()), "slow zorva-daw");
}

TEST (ManifestService, TheAddressIsReadBeforeTheWorkerStarts)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    subject.refreshFrom (server.url (path));
    subject.settings.getDynamicObject()->setProperty ("manifestUrl", server.url ("/other"));

    ASSERT_TRUE (pumpUntil ([&] { return subject.outcomes.texts.size() == 1; }, 20000));
    EXPECT_EQ (subject.outcomes.texts[0], "a zorva-daw online");
    EXPECT_EQ (server.requestCount ("/other"), 0);
}

TEST (ManifestService, ARefreshWithoutACallbackStillUpdatesTheList)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })));
    subject.settings.getDynamicObject()->setProperty ("manifestUrl", server.url (path));
    subject.service->refresh (nullptr);

    ASSERT_TRUE (pumpUntil ([&] { return subject.service->isOnline(); }, 20000));
    EXPECT_EQ (idsOf (subject.service->getProducts()), "a zorva-daw");
}

TEST (ManifestService, AServiceThatIsGoneStillHasItsCallbackCalledOnce)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })).silenced());
    subject.refreshFrom (server.url (path));
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount (path) == 1; }, 20000));
    subject.service.reset();
    server.release (path);

    ASSERT_TRUE (pumpUntil ([&] { return ! subject.outcomes.texts.empty(); }, 20000));
    pump (50);
    EXPECT_EQ (subject.outcomes.texts, std::vector<std::string> { "a zorva-daw online" });
}

TEST (ManifestService, DestructionDoesNotWaitForARunningRefresh)
{
    TrustedTestServer server;
    Subject subject;
    server.serve (path, Answer::text (manifest ({ application ("a") })).silenced());
    subject.refreshFrom (server.url (path));
    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount (path) == 1; }, 20000));

    const auto before = juce::Time::getMillisecondCounterHiRes();
    subject.service.reset();
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - before, 1000.0);

    server.release (path);
    EXPECT_TRUE (pumpUntil ([&] { return ! subject.outcomes.texts.empty(); }, 20000));
}
