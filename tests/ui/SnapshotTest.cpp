#include "HubRun.h"
#include "HubWorld.h"
#include "SnapshotStore.h"
#include "support/Text.h"
#include "ui/AssetPicture.h"
#include "ui/HubPalette.h"

using namespace zorva::test;

namespace
{
const std::string setup (200000, 's');

Product product (const char* id, const char* name, const char* version, const char* category, const char* description)
{
    auto result = applicationOf (id, version, setup);
    result.name = name;
    result.vendor = "ZORVA DAW";
    result.category = category;
    result.description = description;
    result.releaseDate = "2026-06-30";
    result.sizeBytes = 334608748;
    return result;
}

/** Six products, each of them in a state of its own, on a machine that has a network. */
struct Library
{
    explicit Library (bool online = true)
    {
        auto stagewell = product ("zorva-stagewell", "ZORVA Stagewell", "2.4.0", "Live",
                                  "A stage in a window: backing tracks, click, cues and lights follow the song, and the song follows the band.");
        auto grand = product ("zorva-grand", "ZORVA Grand", "1.2.0", "Instruments",
                              "A concert grand with three microphones, two pedals and a lid that opens.");
        auto staples = product ("zorva-foundry-staples", "ZORVA Foundry Staples", "1.0.3", "Sound pack",
                                "Drums, basses and keys that a first song needs.");
        auto echo = product ("zorva-tape-echo", "ZORVA Tape Echo", "3.1.0", "Effects", "Three heads, one worn tape, and as much wow as you like.");
        auto room = product ("zorva-drum-room", "ZORVA Drum Room", "1.9.2", "Instruments", "Nine kits in a tiled room.");
        auto mixdown = product ("zorva-mixdown", "ZORVA Mixdown", "5.0.0", "Tools",
                                "Renders stems, mixes and masters in one pass, names them as your label wants them, and leaves the session as it was.");

        staples.installType = Product::InstallType::factoryContent;
        staples.packId = staples.id;
        staples.archiveRoot = "pack";
        staples.defaultPatch = "pack/patches/first.json";
        staples.licenseFile = "pack/LICENSE.txt";
        staples.licenseId = "CC-BY-4.0";
        staples.credit = "The ZORVA DAW studio";
        staples.sourceUrl = "https://downloads.zorvadaw.example/foundry-staples";
        mixdown.releaseNotes = { { "Loudness as you deliver it", "Targets for streaming, broadcast and vinyl, measured while it renders." },
                                 { "Names by template", "Artist, song, tempo and key go into the file names." } };

        grand = served (server, grand, setup, "grand.exe", answerOf (setup).heldAfter (84000));
        putInVault (echo, "tape-echo.exe", setup);
        putInVault (staples, "staples.zip", setup);
        putPackInstalled (staples);
        putInVault (room, "drum-room.exe", setup);
        putInVault (mixdown, "mixdown.exe", setup);
        putInstalled ("zorva-mixdown", programOfVersion (4, 2, 1));

        const std::vector<Product> products { stagewell, grand, echo, room, staples, mixdown };
        serveCatalogue (server, products);
        putLocalManifest (products);

        if (! online)
            stayOffline();

        run = std::make_unique<HubRun>();

        if (online)
        {
            EXPECT_TRUE (run->waitUntilOnline());
            run->send ("zorva-grand", "download");
            EXPECT_TRUE (run->waitForButton ("zorva-grand", "42%"));
        }
        else
        {
            pump (30);
        }
    }

    /** Begins the install whose end cannot come before the message loop runs: call last. */
    void beginInstall()
    {
        run->send ("zorva-drum-room", "install");
        EXPECT_EQ (run->primary ("zorva-drum-room").getButtonText(), utf8 ("INSTALLING…"));
    }

    /** The whole window at a size, the library scrolled to a place, with values in the status bar that are the same everywhere. */
    juce::Image picture (int width, int height, int scrolledTo = 0)
    {
        run->hub->setSize (width, height);
        run->window->mouse ({ 1.0f, 1.0f }, 0);   // nothing is hovered there
        run->library().setViewPosition (0, scrolledTo);
        run->statusBar().setVaultPath ("/home/creator/.config/ZORVA Hub/Vault");
        run->statusBar().setFreeBytes (137438953472);
        return pictureOf (*run->hub);
    }

    TrustedTestServer server;
    std::unique_ptr<HubRun> run;
};
}

//==============================================================================
TEST (Snapshots, TheLibraryInEveryState)
{
    Library library;
    library.beginInstall();

    EXPECT_EQ (differenceToStored (library.picture (1100, 720), "library-1100x720"), "");
    EXPECT_EQ (differenceToStored (pictureOf (library.run->grid()), "cards"), "");
    EXPECT_EQ (differenceToStored (library.picture (1100, 720, 10000), "library-lower-1100x720"), "");
    EXPECT_EQ (differenceToStored (library.picture (900, 600), "library-900x600"), "");
    EXPECT_EQ (differenceToStored (library.picture (900, 600, 10000), "library-lower-900x600"), "");
}

TEST (Snapshots, TheLibraryWithThePane)
{
    Library library;
    library.run->select ("zorva-stagewell");
    EXPECT_EQ (differenceToStored (library.picture (1100, 720), "pane-1100x720"), "");
    EXPECT_EQ (differenceToStored (library.picture (900, 600), "pane-900x600"), "");

    library.run->select ("zorva-mixdown");
    library.beginInstall();
    EXPECT_EQ (differenceToStored (library.picture (1100, 720, 10000), "pane-lower-1100x720"), "");
    EXPECT_EQ (differenceToStored (library.picture (900, 600, 10000), "pane-lower-900x600"), "");
}

TEST (Snapshots, TheLibraryOffline)
{
    Library library (false);
    library.run->statusBar().setStatusMessage ("Recovery attention required");
    EXPECT_EQ (differenceToStored (library.picture (1100, 720), "offline-1100x720"), "");

    library.run->select ("zorva-stagewell");
    EXPECT_EQ (differenceToStored (library.picture (1100, 720), "offline-pane-1100x720"), "");
}

TEST (Snapshots, ThePaneOfASoundPack)
{
    Library library;
    library.run->select ("zorva-foundry-staples");

    EXPECT_EQ (differenceToStored (library.picture (1100, 720, 400), "pack-1100x720"), "");
}

TEST (Snapshots, TheFocusIsSeen)
{
    Library library (false);
    auto& run = *library.run;
    run.select ("zorva-foundry-staples");

    run.card ("zorva-stagewell")->grabKeyboardFocus();
    EXPECT_EQ (differenceToStored (library.picture (900, 600), "focus-card-900x600"), "");

    below (run.pane(), "primaryButton").grabKeyboardFocus();
    EXPECT_EQ (differenceToStored (library.picture (900, 600), "focus-pane-900x600"), "");
}

TEST (Snapshots, TheOtherPages)
{
    stayOffline();
    HubRun run (Sidebar::Tab::community);

    const std::pair<Sidebar::Tab, const char*> pages[] { { Sidebar::Tab::community, "community" }, { Sidebar::Tab::settings, "settings" },
                                                         { Sidebar::Tab::about, "about" } };

    for (const auto& [page, name] : pages)
    {
        run.open (page);

        for (const auto& [width, height] : { std::pair (1100, 720), std::pair (900, 600) })
        {
            run.hub->setSize (width, height);
            run.window->mouse ({ 1.0f, 1.0f }, 0);
            juce::Component::unfocusAllComponents();
            pictureOf (*run.hub);       // asks for the pictures of this size
            EXPECT_TRUE (pumpUntil ([] { return ! AssetPicture::isAnyLoading(); }, 30000));
            pump (50);
            run.statusBar().setVaultPath ("/home/creator/.config/ZORVA Hub/Vault");
            run.statusBar().setFreeBytes (137438953472);
            below<juce::Label> (*run.hub, "vaultPathLabel").setText ("/home/creator/.config/ZORVA Hub/Vault", juce::dontSendNotification);
            EXPECT_EQ (differenceToStored (pictureOf (*run.hub), juce::String (name) + "-" + juce::String (width) + "x" + juce::String (height)), "");
        }
    }
}

//==============================================================================
TEST (SnapshotStore, TellsPicturesApart)
{
    const auto ground = [] { return paintedOn (HubPalette::surface, 100, 60, [] (juce::Graphics&) {}); };
    const auto with = [] (juce::Colour colour, juce::Rectangle<int> area)
    {
        return paintedOn (HubPalette::surface, 100, 60, [&] (juce::Graphics& g)
        {
            g.setColour (colour);
            g.fillRect (area);
        });
    };

    EXPECT_EQ (differenceBySquares (ground(), ground()), "");
    EXPECT_EQ (differenceBySquares (with (HubPalette::raised, { 0, 0, 100, 60 }), ground()), "") << "a shade that renderers may differ by";
    EXPECT_NE (differenceBySquares (with (HubPalette::accent, { 10, 10, 20, 2 }), ground()), "") << "a ring that should not be there";
    EXPECT_NE (differenceBySquares (with (HubPalette::textPrimary, { 40, 20, 30, 10 }), with (HubPalette::textPrimary, { 40, 30, 30, 10 })), "");
    EXPECT_NE (differenceBySquares (ground(), ground().rescaled (50, 60)), "");
}
