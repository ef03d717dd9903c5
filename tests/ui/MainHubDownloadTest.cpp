#include "app/HubPaths.h"
#include "HubRun.h"
#include "HubWorld.h"
#include "support/Files.h"
#include "support/PrivateMounts.h"
#include "support/Text.h"
#include "ui/HubPalette.h"

using namespace zorva::test;

namespace
{
using Answer = TrustedTestServer::Answer;

const std::string setup (200000, 's');

Product app (const juce::String& id = "a", const juce::String& version = "2.0.0")    { return applicationOf (id, version, setup); }

juce::String failed (const juce::String& name, const char* why)
{
    return "warning | Download Failed | " + name + " could not be downloaded.\n\n" + utf8 (why)
         + "\n\nAlready-vaulted installers are unaffected. | OK";
}

const char* const wrongHash = "Integrity check failed (SHA-256 mismatch) — the download was discarded. Please try again.";
const char* const wrongSize = "Integrity check failed (size mismatch) — the download was discarded. Please try again.";
const char* const transferFailed = "Download failed — check your connection and try again.";

/** A hub that has reached a server with these products. */
struct Scene
{
    void start (const std::vector<Product>& products)
    {
        serveCatalogue (server, products);
        putLocalManifest (products);
        run = std::make_unique<HubRun>();
        ASSERT_TRUE (run->waitUntilOnline());
    }

    std::string statusWith (double progress, const juce::String& name)
    {
        return run->statusDifference ([&] (StatusBar& bar) { bar.setDownloadProgress (progress, name); });
    }

    std::string statusEmpty()    { return run->statusDifference ([] (StatusBar&) {}); }

    TrustedTestServer server;
    std::unique_ptr<HubRun> run;
};
}

//==============================================================================
TEST (MainHubComponent, DownloadsIntoTheVaultWithoutAWord)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup) });
    scene.run->clickPrimary ("a");

    ASSERT_TRUE (scene.run->waitForButton ("a", "INSTALL"));
    EXPECT_EQ (read (vaultFile ("a/setup.exe")), setup);
    EXPECT_TRUE (vaultFile ("a/vault.json").existsAsFile());
    EXPECT_TRUE (scene.run->showsNoBox()) << "no box";
    EXPECT_EQ (scene.statusEmpty(), "") << "and no status line";
}

TEST (MainHubComponent, ADownloadShowsItsProgressEverywhere)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).heldAfter (100000)), app ("b") });
    auto& run = *scene.run;
    run.select ("a");
    run.clickPrimary ("a");

    ASSERT_TRUE (run.waitForButton ("a", "50%"));
    EXPECT_EQ (run.cards(), "a: 50%, Downloading 50% | b: DOWNLOAD, Not Installed");
    EXPECT_EQ (below<juce::TextButton> (run.pane(), "primaryButton").getButtonText(), "50%");
    EXPECT_EQ (scene.statusWith (0.5, "Name of a"), "");

    scene.server.release ("/files/a/setup.exe");
    ASSERT_TRUE (run.waitForButton ("a", "INSTALL"));
    EXPECT_EQ (below<juce::TextButton> (run.pane(), "primaryButton").getButtonText(), "INSTALL");
    EXPECT_EQ (scene.statusEmpty(), "");
}

TEST (MainHubComponent, ADownloadShowsAtOnceThatItBegins)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).silenced()) });
    scene.run->send ("a", "download");

    EXPECT_EQ (scene.run->cards(), "a: 0%, Downloading 0%");
    EXPECT_EQ (scene.statusWith (0.0, "Name of a"), "");
    EXPECT_FALSE (scene.run->primary ("a").isEnabled());
}

TEST (MainHubComponent, ProgressDoesNotRebuildTheCards)
{
    Scene scene;
    auto slow = answerOf (setup);
    slow.pieceBytes = 2000;
    slow.pauseMs = 1;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", slow) });
    auto& run = *scene.run;
    run.send ("a", "download");
    const juce::Component::SafePointer<ProductCard> card (run.card ("a"));

    // What is put into the Vault meanwhile is found by a rebuild, and by nothing else.
    putInVault (app ("other"), "setup.exe", setup);
    const auto model = [&] { return run.card ("a")->getModel(); };
    int steps = 0;

    for (double last = 0.0; model().state == ProductCardState::downloading; last = model().progress)
    {
        EXPECT_EQ (run.card ("other"), nullptr);
        ASSERT_EQ (card.getComponent(), run.card ("a"));
        ASSERT_TRUE (pumpUntil ([&] { return model().progress > last || model().state != ProductCardState::downloading; }, 20000));
        ++steps;
    }

    EXPECT_GT (steps, 5);
    EXPECT_NE (run.card ("other"), nullptr) << "the end rebuilds";
}

TEST (MainHubComponent, ACancelledDownloadEndsSilently)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).heldAfter (100000)) });
    auto& run = *scene.run;
    run.clickPrimary ("a");
    ASSERT_TRUE (run.waitForButton ("a", "50%"));
    run.send ("a", "cancel");

    EXPECT_TRUE (run.waitForButton ("a", "DOWNLOAD"));
    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (scene.statusEmpty(), "");
    EXPECT_FALSE (vaultFile ("a/setup.exe").exists());
    EXPECT_FALSE (vaultFile ("a/setup.exe.part").exists());

    run.clickPrimary ("a");
    scene.server.release ("/files/a/setup.exe");
    EXPECT_TRUE (run.waitForButton ("a", "INSTALL")) << "it can be had again";
}

TEST (MainHubComponent, ACancelledDownloadOfWhatIsInstalledReturnsToItsState)
{
    Scene scene;
    putInstalled ("a", programOfVersion (1, 0, 0));
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).heldAfter (100000)) });
    auto& run = *scene.run;
    ASSERT_EQ (run.cards(), utf8 ("a: UPDATE, NEW UPDATE AVAILABLE  ·  2.0.0").toStdString());
    run.clickPrimary ("a");
    ASSERT_TRUE (run.waitForButton ("a", "50%"));
    run.send ("a", "cancel");

    EXPECT_TRUE (run.waitForButton ("a", "UPDATE"));
    EXPECT_TRUE (run.showsNoBox());
}

TEST (MainHubComponent, OneDownloadRunsAndTheOthersWait)
{
    Scene scene;
    scene.start ({ served (scene.server, app ("a"), setup, "setup.exe", answerOf (setup).heldAfter (100000)),
                   served (scene.server, app ("b"), setup), served (scene.server, app ("c"), setup) });
    auto& run = *scene.run;

    for (const char* id : { "a", "b", "c" })
        run.send (id, "download");

    ASSERT_TRUE (run.waitForButton ("a", "50%"));
    EXPECT_EQ (run.cards(), "a: 50%, Downloading 50% | b: 0%, Downloading 0% | c: 0%, Downloading 0%");

    run.send ("b", "cancel");
    EXPECT_TRUE (run.waitForButton ("b", "DOWNLOAD"));
    EXPECT_EQ (run.cards(), "a: 50%, Downloading 50% | b: DOWNLOAD, Not Installed | c: 0%, Downloading 0%");
    EXPECT_NE (scene.statusEmpty(), "") << "another download is still shown";

    scene.server.release ("/files/a/setup.exe");
    EXPECT_TRUE (run.waitForButton ("c", "INSTALL"));
    EXPECT_EQ (run.cards(), "a: INSTALL, Cached | b: DOWNLOAD, Not Installed | c: INSTALL, Cached");
    EXPECT_EQ (scene.statusEmpty(), "");
}

//==============================================================================
TEST (MainHubComponent, ADownloadThatIsNotWhatWasPublishedIsRefused)
{
    struct Case
    {
        std::string bytes;
        const char* why;
    };

    Scene scene;
    std::string flipped = setup;
    flipped[1000] = 'x';
    const Case cases[] { { flipped, wrongHash }, { setup + "x", wrongSize }, { setup.substr (1), wrongSize } };
    scene.start ({ served (scene.server, app(), setup) });

    for (const auto& c : cases)
    {
        scene.server.serve ("/files/a/setup.exe", answerOf (c.bytes));
        scene.run->clickPrimary ("a");
        EXPECT_EQ (scene.run->takeBox(), failed ("Name of a", c.why).toStdString());
        EXPECT_EQ (scene.run->cards(), "a: DOWNLOAD, Not Installed");
        EXPECT_EQ (scene.statusEmpty(), "");
        EXPECT_EQ (treeOf (vaultFile ("a")), Tree());
    }
}

TEST (MainHubComponent, ATransferThatBreaksIsReported)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).truncatedTo (5000)) });
    scene.run->clickPrimary ("a");

    const auto box = scene.run->takeBox();
    EXPECT_TRUE (box == failed ("Name of a", transferFailed).toStdString() || box == failed ("Name of a", wrongSize).toStdString()) << box;
    EXPECT_EQ (scene.run->cards(), "a: DOWNLOAD, Not Installed");
}

TEST (MainHubComponent, AProductWithoutADownloadIsRefusedInTheServicesOwnWords)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup), packOf ("nowhere", "1.0.0", "x") });
    scene.run->send ("zorva-daw", "download");
    EXPECT_TRUE (scene.run->showsNoBox()) << "there is no such product in this catalogue";

    auto unpublished = app ("unpublished");
    unpublished.platforms.clear();
    putLocalManifest ({ unpublished });
    stayOffline();
    scene.run.reset();
    scene.run = std::make_unique<HubRun>();
    scene.run->send ("unpublished", "download");
    EXPECT_EQ (scene.run->takeBox(), failed ("Name of unpublished", "No download is published for this platform yet.").toStdString());
}

TEST (MainHubComponent, AFailedUpdateLeavesTheVaultedInstallerAlone)
{
    Scene scene;
    putInVault (app ("a", "1.0.0"), "old-setup.exe", setup);
    putInstalled ("a", programOfVersion (1, 0, 0));
    const auto before = treeOf (vaultFile ("a"));
    scene.start ({ served (scene.server, app(), "other", "new-setup.exe", answerOf ("wrong")) });
    scene.run->clickPrimary ("a");

    EXPECT_EQ (scene.run->takeBox(), failed ("Name of a", wrongHash).toStdString());
    EXPECT_EQ (treeOf (vaultFile ("a")), before);
    EXPECT_EQ (scene.run->cards(), utf8 ("a: UPDATE, NEW UPDATE AVAILABLE  ·  2.0.0").toStdString());
}

TEST (MainHubComponent, AnUpdateReplacesTheInstallerAndWaitsForItsInstall)
{
    Scene scene;
    putInVault (app ("a", "1.0.0"), "old-setup.exe", "old");
    putInstalled ("a", programOfVersion (1, 0, 0));
    scene.start ({ served (scene.server, app(), programOfVersion (2, 0, 0), "a.exe") });
    auto& run = *scene.run;
    run.select ("a");
    run.clickPrimary ("a");

    ASSERT_TRUE (pumpUntil ([] { return vaultFile ("a/a.exe").existsAsFile(); }, 20000));
    ASSERT_TRUE (run.waitForButton ("a", "UPDATE"));
    EXPECT_FALSE (vaultFile ("a/old-setup.exe").exists());
    run.click (below (run.pane(), "reinstallButton"));
    run.takeBox();
    EXPECT_EQ (run.cards(), utf8 ("a: Open, ✓ Installed v2.0.0").toStdString());
}

TEST (MainHubComponent, ACleanupThatFailedIsAWarningNotAFailure)
{
    Scene scene;
    const auto old = putInVault (app ("a", "1.0.0"), "old-setup.exe", "old");
    scene.start ({ served (scene.server, app(), setup, "new-setup.exe") });
    const BusyPath busy (old);
    scene.run->send ("a", "download");

    EXPECT_EQ (scene.run->takeBox(), ("warning | Download Completed with a Cleanup Warning | Name of a downloaded and passed verification, but "
                                      "ZORVA Hub retained a recovery artifact that needs attention.\n\nThe obsolete installer was retained at "
                                      + old.getFullPathName() + ". | OK").toStdString());
    EXPECT_EQ (scene.run->statusDifference ([] (StatusBar& bar) { bar.setStatusMessage ("Download complete - cleanup attention required"); }), "");
    EXPECT_EQ (scene.run->cards(), "a: INSTALL, Cached");
    EXPECT_EQ (read (vaultFile ("a/new-setup.exe")), setup);
}

TEST (MainHubComponent, AProductThatVanishedWhileItWasDownloadedIsCalledByItsId)
{
    Scene scene;
    const auto product = served (scene.server, app(), setup, "setup.exe", answerOf (std::string (setup.size(), 'x')).heldAfter (100000));
    serveCatalogue (scene.server, {});
    scene.server.serve ("/manifest.json", Answer::text (manifestOf ({ app ("b") })).silenced());
    putCachedManifest ({ product });
    scene.run = std::make_unique<HubRun>();
    auto& run = *scene.run;

    run.send ("a", "download");
    ASSERT_TRUE (run.waitForButton ("a", "50%"));
    scene.server.release ("/manifest.json");
    ASSERT_TRUE (run.waitUntilOnline());
    ASSERT_EQ (run.card ("a"), nullptr);

    scene.server.release ("/files/a/setup.exe");
    EXPECT_EQ (run.takeBox(), failed ("a", wrongHash).toStdString());
}

//==============================================================================
TEST (MainHubComponent, ClosingDuringADownloadIsQuietAndQuick)
{
    Scene scene;
    scene.start ({ served (scene.server, app(), setup, "setup.exe", answerOf (setup).heldAfter (100000)) });
    scene.run->clickPrimary ("a");
    ASSERT_TRUE (scene.run->waitForButton ("a", "50%"));

    const auto start = juce::Time::getMillisecondCounterHiRes();
    scene.run->close();
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - start, 5000.0);

    scene.server.release ("/files/a/setup.exe");
    EXPECT_TRUE (scene.run->showsNoBox());
    EXPECT_FALSE (vaultFile ("a/setup.exe").exists());
}

TEST (MainHubComponent, TheWindowLivesWhileTheServerIsSilent)
{
    Scene scene;
    auto product = app();
    product.platforms["win"] = { scene.server.silentUrl ("/setup.exe"), sha256Of (setup), (juce::int64) setup.size() };
    scene.start ({ product });
    auto& run = *scene.run;

    const auto start = juce::Time::getMillisecondCounterHiRes();
    run.clickPrimary ("a");
    ASSERT_TRUE (pumpUntil ([&] { return scene.server.silentConnections() > 0; }, 20000));
    run.select ("a");
    EXPECT_EQ (run.shownInPane(), "a");
    run.send ("a", "cancel");
    EXPECT_TRUE (run.waitForButton ("a", "DOWNLOAD"));
    EXPECT_LT (juce::Time::getMillisecondCounterHiRes() - start, 5000.0) << "nothing waited for the server";
    EXPECT_TRUE (run.showsNoBox());
}
