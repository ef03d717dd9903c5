#include "app/HubPaths.h"
#include "HubRun.h"
#include "HubWorld.h"
#include "support/Files.h"
#include "support/JournalBuilder.h"
#include "support/LogCapture.h"
#include "support/RandomRefusal.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/ProductActions.h"

#include <algorithm>

using namespace zorva::test;

namespace
{
Product app (const juce::String& id, const juce::String& version = "2.0.0")    { return applicationOf (id, version, "setup of " + id.toStdString()); }
}

//==============================================================================
TEST (MainHubComponent, OpensAt1100By720OnTheCommunityPageNotTheLibrary)
{
    stayOffline();
    HubRun run (Sidebar::Tab::community);

    EXPECT_EQ (run.hub->getBounds(), juce::Rectangle<int> (1100, 720));
    EXPECT_EQ (run.sidebar().getCurrentTab(), Sidebar::Tab::community);
    EXPECT_TRUE (below (*run.hub, "communityPage").isShowing());
    EXPECT_FALSE (run.library().isShowing());
    EXPECT_FALSE (run.searchBox().isShowing());
    EXPECT_EQ (run.shownInPane(), "(closed)");
}

TEST (MainHubComponent, StartsOfflineWithTheBuiltInCatalogue)
{
    stayOffline();
    HubRun run;
    ConnectionPill offline;

    EXPECT_EQ (run.pill().getPreferredWidth(), offline.getPreferredWidth());
    EXPECT_EQ (run.cards(), "zorva-daw: DOWNLOAD, Not Installed");
    EXPECT_EQ (run.primary ("zorva-daw").getTooltip(), utf8 ("Offline — downloads unavailable"));
}

TEST (MainHubComponent, StartsWithTheListFromDisk)
{
    stayOffline();
    putCachedManifest ({ app ("a"), app ("b") });
    putInVault (app ("b"), "setup.exe", "setup of b");
    putInVault (app ("gone"), "setup.exe", "setup of gone");
    putInstalled ("a", programOfVersion (1, 0, 0));
    HubRun run;

    EXPECT_EQ (run.cards(), utf8 ("a: UPDATE, NEW UPDATE AVAILABLE  ·  2.0.0 | b: INSTALL, Cached | zorva-daw: DOWNLOAD, Not Installed"
                                  " | gone: INSTALL, Cached").toStdString());
}

TEST (MainHubComponent, MakesTheHubsDirectories)
{
    stayOffline();
    HubRun run;

    for (const auto& folder : { HubPaths::vaultDirectory(), HubPaths::runtimeDirectory(), HubPaths::creatorDirectory(),
                                HubPaths::publishDraftsDirectory() })
        EXPECT_TRUE (folder.isDirectory()) << folder.getFullPathName();
}

TEST (MainHubComponent, ClearsTheCachedManifestIfTheSettingsSaySo)
{
    putCachedManifest ({ app ("a") });
    write (HubPaths::settingsFile(), R"({ "manifestUrl": "no address", "clearManifestCacheOnStartup": true })");
    HubRun run;

    EXPECT_FALSE (HubPaths::manifestCacheFile().exists());
    EXPECT_EQ (run.cards(), "zorva-daw: DOWNLOAD, Not Installed");
}

TEST (MainHubComponent, ADirectoryThatCannotBeMadeKeepsNothingFromWorking)
{
    stayOffline();
    write (HubPaths::vaultDirectory(), "a file stands in the way");
    HubRun run;

    EXPECT_EQ (run.cards(), "zorva-daw: DOWNLOAD, Not Installed");
    run.select ("zorva-daw");
    EXPECT_EQ (run.shownInPane(), "zorva-daw");
    EXPECT_TRUE (run.showsNoBox());
}

TEST (MainHubComponent, ABrokerThatCannotStartKeepsNothingFromWorking)
{
    stayOffline();
    putLocalManifest ({ app ("a") });
    putInVault (app ("a"), "setup.exe", "setup of a");
    const LogCapture log;
    refuseRandomBytes();
    HubRun run;

    const auto lines = log.lines();
    EXPECT_EQ (std::count (lines.begin(), lines.end(), "[HUB.AI] broker startup failed"), 1) << lines.joinIntoString ("\n");
    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (run.cards(), "a: INSTALL, Cached");
    run.select ("a");
    EXPECT_EQ (run.shownInPane(), "a");
    run.open (Sidebar::Tab::settings);
    EXPECT_TRUE (below (*run.hub, "settingsPage").isShowing());
}

TEST (MainHubComponent, TheFirstRefreshBringsTheCatalogueAndThePill)
{
    TrustedTestServer server;
    serveCatalogue (server, { app ("a"), app ("b") });
    putCachedManifest ({ app ("old") });
    HubRun run;
    EXPECT_EQ (run.cards(), "old: DOWNLOAD, Not Installed | zorva-daw: DOWNLOAD, Not Installed") << "nothing waits for the network";

    ASSERT_TRUE (run.waitUntilOnline());
    EXPECT_EQ (run.cards(), "a: DOWNLOAD, Not Installed | b: DOWNLOAD, Not Installed | zorva-daw: DOWNLOAD, Not Installed");
    EXPECT_TRUE (run.primary ("a").isEnabled());
    EXPECT_EQ (server.requestCount ("/manifest.json"), 1) << "one request at start";
}

TEST (MainHubComponent, ARefreshThatFailsLeavesTheListAndSaysOffline)
{
    TrustedTestServer server;
    server.serve ("/manifest.json", TrustedTestServer::Answer::text ("no manifest"));
    useCatalogueAt (server.url ("/manifest.json"));
    putCachedManifest ({ app ("a") });
    HubRun run;

    ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/manifest.json") == 1; }, 20000));
    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (run.cards(), "a: DOWNLOAD, Not Installed | zorva-daw: DOWNLOAD, Not Installed");
    EXPECT_FALSE (run.primary ("a").isEnabled());
}

TEST (MainHubComponent, AClickOnTheHeaderFocusesNoTab)
{
    stayOffline();
    HubRun run;
    juce::Component::unfocusAllComponents();
    const auto beside = run.hub->getLocalArea (&run.pill(), run.pill().getLocalBounds()).translated (-40, 0).getCentre().toFloat();
    ASSERT_EQ (run.hub->getComponentAt (beside), run.hub.get());
    run.window->mouse (beside, juce::ModifierKeys::leftButtonModifier);
    run.window->mouse (beside, 0);
    pump();
    EXPECT_EQ (juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST (MainHubComponent, ARefreshThatComesTooLateDoesNothing)
{
    TrustedTestServer server;
    server.serve ("/manifest.json", TrustedTestServer::Answer::text (manifestOf ({ app ("a") })).silenced());
    useCatalogueAt (server.url ("/manifest.json"));

    {
        HubRun run;
        ASSERT_TRUE (pumpUntil ([&] { return server.requestCount ("/manifest.json") == 1; }, 20000));
        run.close();
        server.release ("/manifest.json");
        EXPECT_TRUE (pumpUntil ([] { return HubPaths::manifestCacheFile().existsAsFile(); }, 20000)) << "the worker went on";
        EXPECT_TRUE (run.showsNoBox());
    }
}

//==============================================================================
TEST (MainHubComponent, TheSearchBoxIsAPromiseOfALaterRelease)
{
    stayOffline();
    HubRun run;
    auto& box = run.searchBox();

    EXPECT_TRUE (box.isReadOnly());
    EXPECT_FALSE (box.isCaretVisible());
    EXPECT_EQ (box.getTextToShowWhenEmpty(), utf8 ("Search products…  (planned)"));
    EXPECT_EQ (box.getTooltip(), "Product search is not available in this release");
    EXPECT_EQ (box.getName(), "");
    EXPECT_EQ (box.getFont().getHeight(), 12.0f);
    EXPECT_EQ (box.getLeftIndent(), 8);
    EXPECT_EQ (box.getTopIndent(), 6);

    box.grabKeyboardFocus();
    run.window->type ("piano");
    EXPECT_EQ (box.getText(), "");
}

TEST (MainHubComponent, TheReleaseNoticeStandsUnderTheHeader)
{
    stayOffline();
    HubRun run;
    auto& notice = below<juce::Label> (*run.hub, "releaseNotice");
    bool own = true, childrens = true;
    notice.getInterceptsMouseClicks (own, childrens);

    EXPECT_EQ (notice.getText(), "ZORVA FOR WINDOWS   |   FINAL NATIVE VALIDATION UNDERWAY   |   TARGET RELEASE WITHIN DAYS");
    EXPECT_EQ (notice.getJustificationType(), juce::Justification::centred);
    EXPECT_EQ (notice.getFont().getHeight(), 12.0f);
    EXPECT_TRUE (notice.getFont().isBold());
    EXPECT_EQ (hex (notice.findColour (juce::Label::textColourId)), "#fff5fbff");
    EXPECT_FALSE (own);
    EXPECT_EQ (notice.getTitle(), "ZORVA for Windows release notice");
    EXPECT_EQ (notice.getDescription(), "ZORVA for Windows is in final native validation, with release targeted within days.");
}

TEST (MainHubComponent, PaintsHeaderNoticeAndTitle)
{
    stayOffline();
    HubRun run;
    const auto image = pictureOf (*run.hub);
    const auto expected = paintedOn (HubPalette::windowBackground, 1100, 720, [] (juce::Graphics& g)
    {
        g.setColour (HubPalette::surface);
        g.fillRect (160, 0, 940, 60);
        g.setColour (HubPalette::border);
        g.fillRect (160, 59, 940, 1);
        g.setGradientFill (juce::ColourGradient (juce::Colour (0xff0b2532), 160.0f, 83.0f, juce::Colour (0xff241208), 1100.0f, 83.0f, false));
        g.fillRect (160, 60, 940, 46);
        g.setColour (juce::Colour (0x5546d7ff));
        g.fillRect (160, 105, 940, 1);
        line (g, "LIBRARY", { 176, 0, 908, 60 }, bold (16.0f), HubPalette::textPrimary);
    });

    const juce::Rectangle<int> top (160, 0, 940, 106);
    const auto relative = [] (const juce::Component& c) { return c.getBounds().translated (-160, 0); };
    EXPECT_EQ (difference (cut (image, top), cut (expected, top),
                           { relative (run.searchBox()), relative (run.pill()), juce::Rectangle<int> (120, 70, 700, 26) }), "");
}

//==============================================================================
TEST (MainHubComponent, TheChildrenStandWhereTheLayoutSays)
{
    stayOffline();
    putLocalManifest ({ app ("a"), app ("b"), app ("c"), app ("d") });
    HubRun run;

    for (const bool withPane : { false, true })
    {
        if (withPane)
            run.select ("a");

        for (const auto& [width, height] : { std::pair { 1100, 720 }, { 900, 600 }, { 1920, 1080 }, { 480, 600 }, { 479, 600 },
                                             { 128, 128 }, { 1100, 720 } })
        {
            SCOPED_TRACE (std::to_string (width) + " x " + std::to_string (height) + (withPane ? " with pane" : ""));
            run.hub->setSize (width, height);
            const auto expected = layoutMainHub (width, height, run.pill().getPreferredWidth(), withPane);

            EXPECT_EQ (run.sidebar().getBounds(), expected.sidebar);
            EXPECT_EQ (run.statusBar().getBounds(), expected.statusBar);
            EXPECT_EQ (below (*run.hub, "releaseNotice").getBounds(), expected.releaseNotice);
            EXPECT_EQ (run.searchBox().getBounds(), expected.searchBox);
            EXPECT_EQ (run.pill().getBounds(), expected.connectionPill);
            EXPECT_EQ (run.library().getBounds(), expected.libraryViewport);
            EXPECT_EQ (run.pane().isVisible(), withPane);

            if (withPane)
                EXPECT_EQ (run.pane().getBounds(), expected.detailPane);

            const int inner = expected.libraryContentWidth, gridHeight = run.grid().heightForWidth (inner);
            EXPECT_EQ (run.grid().getBounds(), juce::Rectangle<int> (inner, gridHeight));
            EXPECT_EQ (below (*run.hub, "libraryContent").getWidth(), inner);
            EXPECT_GE (below (*run.hub, "libraryContent").getHeight(), std::max (gridHeight, expected.libraryViewport.getHeight()));
        }
    }
}

TEST (MainHubComponent, TheLibraryScrollsUpAndDownOnly)
{
    stayOffline();
    std::vector<Product> products;

    for (int i = 0; i < 12; ++i)
        products.push_back (app ("product-" + juce::String (i)));

    putLocalManifest (products);
    HubRun run;
    auto& viewport = run.library();

    EXPECT_EQ (viewport.getViewedComponent(), findBelow (*run.hub, "libraryContent"));
    EXPECT_EQ (viewport.getScrollBarThickness(), 6);
    EXPECT_TRUE (viewport.isVerticalScrollBarShown());
    EXPECT_FALSE (viewport.isHorizontalScrollBarShown());
    EXPECT_TRUE (viewport.getVerticalScrollBar().isVisible());
    EXPECT_FALSE (allBelow<juce::Viewport> (run.grid()).at (0)->getVerticalScrollBar().isVisible()) << "the grid inside is as high as its cards";
    EXPECT_EQ (run.grid().getHeight(), 4 * 396 + 24);
}

TEST (MainHubComponent, OneTooltipWindowServesTheWholeHub)
{
    stayOffline();
    HubRun run;
    const auto windows = allBelow<juce::TooltipWindow> (*run.hub);

    ASSERT_EQ (windows.size(), (size_t) 1);
    EXPECT_EQ (windows.front()->getParentComponent(), run.hub.get());
}

//==============================================================================
TEST (MainHubComponent, TellsOfRecoveryThatNeedsAttentionAfterTheStart)
{
    stayOffline();
    const auto journal = write (vaultFile ("a/.zorva-promotion-1.json"), "");
    HubRun run;

    EXPECT_EQ (run.takeBox(), ("warning | ZORVA Hub Recovery Notice | ZORVA Hub protected the last-good product state during startup. "
                               "The following recovery items need your attention:\n\nVault: Invalid promotion journal retained: "
                               + journal.getFullPathName() + " | OK").toStdString());
    EXPECT_EQ (run.statusDifference ([] (StatusBar& bar) { bar.setStatusMessage ("Recovery attention required"); }), "");
    EXPECT_TRUE (run.showsNoBox()) << "told once";
}

TEST (MainHubComponent, TheVaultsRecoveryComesBeforeThatOfTheInstalls)
{
    stayOffline();
    const auto installJournal = write (in (HubPaths::productsDirectory(), ".zorva-promotion-2.json"), "[]");
    const auto vaultJournal = write (vaultFile ("a/.zorva-promotion-1.json"), "{");
    HubRun run;

    const auto box = run.takeBox();
    EXPECT_NE (box.find (("\n\nVault: Invalid promotion journal retained: " + vaultJournal.getFullPathName()
                          + "\nInstall: Invalid promotion journal retained: " + installJournal.getFullPathName() + " | OK").toStdString()),
               std::string::npos) << box;
}

TEST (MainHubComponent, TheRecoveryNoticeWaitsUntilTheWindowIsThere)
{
    stayOffline();
    write (vaultFile ("a/.zorva-promotion-1.json"), "");

    {
        HubLook look;
        MainHubComponent hub;
        EXPECT_EQ (currentAlert(), nullptr) << "it is only posted";
    }

    EXPECT_TRUE (pumpUntil ([] { return true; }));
    pump (30);
    EXPECT_EQ (currentAlert(), nullptr) << "and the component has gone by then";
}

TEST (MainHubComponent, RecoveryThatWorkedIsNotTold)
{
    stayOffline();
    putInVault (app ("a"), "setup.exe", "setup of a");
    write (vaultFile ("a/setup.exe.part"), "half of it");
    HubRun run;

    EXPECT_FALSE (vaultFile ("a/setup.exe.part").exists()) << "it did recover";
    EXPECT_TRUE (run.showsNoBox());
    EXPECT_EQ (run.statusDifference ([] (StatusBar&) {}), "") << "no status message either";
}
