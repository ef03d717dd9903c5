#include "app/HubPaths.h"
#include "HubRun.h"
#include "HubWorld.h"
#include "support/Files.h"
#include "support/Text.h"

using namespace zorva::test;

namespace
{
Product app (const juce::String& id, const juce::String& version = "2.0.0")    { return applicationOf (id, version, "setup of " + id.toStdString()); }

/** The texts of the pane's two lower buttons that can be seen. */
std::string buttonsInPane (HubRun& run)
{
    juce::StringArray texts;

    for (const char* id : { "primaryButton", "reinstallButton" })
    {
        auto& button = below<juce::TextButton> (run.pane(), id);

        if (button.isVisible())
            texts.add (button.getButtonText());
    }

    return texts.joinIntoString (", ").toStdString();
}
}

//==============================================================================
TEST (MainHubComponent, AClickOnACardOpensItInThePane)
{
    stayOffline();
    putLocalManifest ({ app ("a"), app ("b") });
    putInVault (app ("b"), "setup.exe", "setup of b");
    HubRun run;

    run.select ("a");
    EXPECT_EQ (run.shownInPane(), "a");
    EXPECT_EQ (buttonsInPane (run), "DOWNLOAD");

    run.select ("b");
    EXPECT_EQ (run.shownInPane(), "b");
    EXPECT_EQ (buttonsInPane (run), "INSTALL");
}

TEST (MainHubComponent, OpeningThePaneNarrowsTheLibrary)
{
    stayOffline();
    putLocalManifest ({ app ("a"), app ("b"), app ("c") });
    HubRun run;
    EXPECT_EQ (run.library().getBounds(), juce::Rectangle<int> (160, 106, 940, 574));
    EXPECT_EQ (run.card ("c")->getBounds(), juce::Rectangle<int> (626, 20, 287, 380));

    run.select ("a");
    EXPECT_EQ (run.pane().getBounds(), juce::Rectangle<int> (780, 106, 320, 574));
    EXPECT_EQ (run.library().getBounds(), juce::Rectangle<int> (160, 106, 620, 574));
    EXPECT_EQ (run.card ("c")->getBounds(), juce::Rectangle<int> (20, 416, 279, 380));

    run.click (below (run.pane(), "closeButton"));
    EXPECT_EQ (run.shownInPane(), "(closed)");
    EXPECT_EQ (run.library().getBounds(), juce::Rectangle<int> (160, 106, 940, 574));
    EXPECT_EQ (run.card ("c")->getBounds(), juce::Rectangle<int> (626, 20, 287, 380));
}

TEST (MainHubComponent, APageNarrowerThanThePaneIsAllPane)
{
    stayOffline();
    HubRun run;
    run.select ("zorva-daw");
    run.hub->setSize (479, 600);

    EXPECT_EQ (run.pane().getBounds(), juce::Rectangle<int> (160, 106, 319, 454));
    EXPECT_EQ (run.library().getWidth(), 0);
}

TEST (MainHubComponent, SelectingWhatIsNotThereOpensAnEmptyPane)
{
    stayOffline();
    HubRun run;
    run.grid().onProductSelected ("unknown");

    EXPECT_TRUE (run.pane().isVisible());
    EXPECT_EQ (run.pane().selectedProductId(), "");
}

TEST (MainHubComponent, ThePaneFollowsTheConnection)
{
    TrustedTestServer server;
    serveCatalogue (server, { app ("a") });
    server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifestOf ({ app ("a") })).silenced());
    putCachedManifest ({ app ("a") });
    HubRun run;
    run.select ("a");
    auto& button = below<juce::TextButton> (run.pane(), "primaryButton");
    EXPECT_EQ (button.getTooltip(), utf8 ("Offline — downloads unavailable"));

    server.release ("/manifest.json");
    ASSERT_TRUE (run.waitUntilOnline());
    EXPECT_EQ (button.getTooltip(), "Download the installer to the Vault");
    EXPECT_EQ (run.shownInPane(), "a");
}

TEST (MainHubComponent, ASelectedProductThatVanishesClosesThePane)
{
    TrustedTestServer server;
    serveCatalogue (server, {});
    server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifestOf ({ app ("a") })).silenced());
    putCachedManifest ({ app ("a"), app ("b") });
    HubRun run;
    run.select ("b");
    ASSERT_EQ (run.shownInPane(), "b");

    server.release ("/manifest.json");
    ASSERT_TRUE (run.waitUntilOnline());
    EXPECT_EQ (run.cards(), "a: DOWNLOAD, Not Installed | zorva-daw: DOWNLOAD, Not Installed");
    EXPECT_EQ (run.shownInPane(), "(closed)");
    EXPECT_EQ (run.pane().selectedProductId(), "");
    EXPECT_EQ (run.library().getWidth(), 940);
    EXPECT_TRUE (run.showsNoBox());
}

TEST (MainHubComponent, ASelectedProductThatStaysKeepsThePane)
{
    TrustedTestServer server;
    serveCatalogue (server, {});
    server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifestOf ({ app ("b", "3.0.0"), app ("a") })).silenced());
    putCachedManifest ({ app ("a"), app ("b") });
    HubRun run;
    run.select ("b");
    const auto before = pictureOf (run.pane());

    server.release ("/manifest.json");
    ASSERT_TRUE (run.waitUntilOnline());
    EXPECT_EQ (run.shownInPane(), "b");
    EXPECT_NE (difference (pictureOf (run.pane()), before), "") << "with the new version";
}

//==============================================================================
TEST (MainHubComponent, TheOtherTabsHideTheLibrary)
{
    stayOffline();
    HubRun run;
    run.select ("zorva-daw");

    for (auto* button : allBelow<Sidebar::TabButton> (run.sidebar()))
    {
        const bool isLibrary = button->getTab() == Sidebar::Tab::library;
        run.click (*button);

        EXPECT_EQ (run.library().isVisible(), isLibrary) << button->getName();
        EXPECT_EQ (run.pane().isVisible(), isLibrary) << button->getName();
        EXPECT_EQ (run.searchBox().isVisible(), isLibrary) << button->getName();
        EXPECT_TRUE (run.sidebar().isVisible() && run.pill().isVisible() && run.statusBar().isVisible()
                     && below (*run.hub, "releaseNotice").isVisible()) << button->getName();
    }

    run.click (*allBelow<Sidebar::TabButton> (run.sidebar()).at (1));
    EXPECT_EQ (run.shownInPane(), "zorva-daw") << "the library keeps its state while it is hidden";
}

TEST (MainHubComponent, TheHeaderBearsThePagesTitle)
{
    stayOffline();
    HubRun run;

    for (auto* button : allBelow<Sidebar::TabButton> (run.sidebar()))
    {
        run.click (*button);
        const auto expected = paintedOn (juce::Colour (0xff444444), 300, 59, [&] (juce::Graphics& g)
        {
            line (g, button->getName().toUpperCase(), { 16, 0, 284, 60 }, bold (16.0f), juce::Colour (0xfff5f5f5));
        });
        EXPECT_EQ (difference (cut (pictureOf (*run.hub), { 160, 0, 300, 59 }), expected), "") << button->getName();
    }
}

//==============================================================================
TEST (MainHubComponent, UnknownWordsAndUnknownProductsDoNothing)
{
    stayOffline();
    const FakeFileManager fileManager;
    putLocalManifest ({ app ("a") });
    putInVault (app ("a"), "setup.exe", "setup of a");
    HubRun run;
    const auto before = treeOf (HubPaths::root());

    for (const char* word : { "", "uninstall", "Install", "install ", "DOWNLOAD", "delete", "delete-Vault" })
        run.send ("a", word);

    for (const char* id : { "b", "A", "", "a " })
        for (const char* word : { "download", "update", "install", "reinstall", "open", "cancel", "reveal", "delete-vault" })
            run.send (id, word);

    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (run.cards(), "a: INSTALL, Cached");
    EXPECT_EQ (run.statusDifference ([] (StatusBar&) {}), "");
    EXPECT_EQ (treeOf (HubPaths::root()), before);
    EXPECT_FALSE (fileManager.wasCalled());
}

TEST (MainHubComponent, TheStatusBarNamesTheVaultAndItsFreeSpace)
{
    stayOffline();
    HubRun run;
    EXPECT_EQ (run.statusBar().getTooltip(), "Vault: " + HubPaths::vaultDirectory().getFullPathName());

    // The number itself changes from moment to moment; that there is one can be seen.
    StatusBar unknown;
    unknown.setSize (1100, 40);
    unknown.setVaultPath (HubPaths::vaultDirectory().getFullPathName());
    EXPECT_NE (difference (pictureOf (run.statusBar()), pictureOf (unknown)), "");
}

TEST (MainHubComponent, TheVaultLinkOpensTheFolder)
{
    stayOffline();
    const FakeFileManager fileManager;
    HubRun run;
    run.statusBar().onVaultClicked();

    EXPECT_EQ (fileManager.openedPath(), HubPaths::vaultDirectory().getFullPathName());
}

//==============================================================================
TEST (MainHubComponent, RevealShowsTheVaultedInstallerFirst)
{
    stayOffline();
    const FakeFileManager fileManager;
    putLocalManifest ({ app ("a") });
    const auto installer = putInVault (app ("a"), "setup.exe", "setup of a");
    putInstalled ("a", programOfVersion (2, 0, 0));
    HubRun run;
    run.send ("a", "reveal");

    EXPECT_EQ (fileManager.openedPath(), installer.getParentDirectory().getFullPathName());
}

TEST (MainHubComponent, RevealShowsTheInstallWhenTheVaultIsEmpty)
{
    stayOffline();
    const FakeFileManager fileManager;
    putLocalManifest ({ app ("a") });
    const auto program = putInstalled ("a", programOfVersion (2, 0, 0));
    HubRun run;
    run.select ("a");
    run.click (below (run.pane(), "revealLink"));

    EXPECT_EQ (fileManager.openedPath(), program.getParentDirectory().getFullPathName());
}

TEST (MainHubComponent, TheButtonOfAnInstalledSoundPackRevealsIt)
{
    stayOffline();
    const FakeFileManager fileManager;
    const auto pack = packOf ("sounds", "2.0.0", "archive");
    putLocalManifest ({ pack });
    const auto folder = putPackInstalled (pack);
    HubRun run;
    ASSERT_EQ (run.cards(), utf8 ("sounds: REVEAL, ✓ Installed v2.0.0").toStdString());
    run.clickPrimary ("sounds");

    EXPECT_EQ (fileManager.openedPath(), folder.getFullPathName());
}

TEST (MainHubComponent, RevealOfWhatIsNowhereOpensTheVault)
{
    stayOffline();
    const FakeFileManager fileManager;
    HubRun run;
    run.send ("zorva-daw", "reveal");

    EXPECT_EQ (fileManager.openedPath(), HubPaths::vaultDirectory().getFullPathName());
}

//==============================================================================
TEST (MainHubComponent, OpenStartsTheInstalledProgram)
{
    stayOffline();
    putLocalManifest ({ app ("a") });
    putInstalled ("a", programThatRuns());
    HubRun run;
    ASSERT_EQ (run.cards(), utf8 ("a: Open, ✓ Installed").toStdString());
    run.clickPrimary ("a");

    EXPECT_TRUE (pumpUntil ([] { return startedFile().existsAsFile(); }, 20000));
    EXPECT_TRUE (run.showsNoBox());
}

TEST (MainHubComponent, OpenOfWhatHasGoneSaysSo)
{
    stayOffline();
    putLocalManifest ({ app ("a") });
    const auto program = putInstalled ("a", programOfVersion (2, 0, 0));
    HubRun run;
    program.getParentDirectory().deleteRecursively (false);
    run.clickPrimary ("a");

    EXPECT_EQ (run.takeBox(), "warning | Open Failed | No installed copy of Name of a could be found. Use Install (or Reinstall from the Vault) "
                              "first. | OK");
}
