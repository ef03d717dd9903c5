#include "ContrastPairs.h"
#include "DetailPaneScene.h"
#include "HubWorld.h"
#include "PaintRecorder.h"
#include "WidgetWalk.h"
#include "app/HubPaths.h"
#include "creator/CreatorProfileStore.h"
#include "ui/HubPalette.h"
#include "ui/ProductCard.h"

#include <algorithm>

using namespace zorva::test;

namespace
{
/** A run of letters, where it begins. */
struct Seen
{
    juce::Colour ink, ground;
    juce::Point<int> place;
};

/** Renders as always and notes the colours of all words and of what is below them. */
class WordColours final : public juce::LowLevelGraphicsSoftwareRenderer
{
public:
    WordColours (const juce::Image& imageToUse, std::vector<Seen>& seenToFill)
        : LowLevelGraphicsSoftwareRenderer (imageToUse), image (imageToUse), seen (seenToFill) {}

    void drawGlyphs (juce::Span<const uint16_t> glyphs, juce::Span<const juce::Point<float>> positions, const juce::AffineTransform& t) override
    {
        if (! glyphs.empty() && stack->fillType.isColour())
        {
            // Just below the line that the letters stand on: nothing of them is there yet.
            const auto start = positions.front().transformedBy (t) + juce::Point<float> (0.0f, 1.0f);
            const auto onImage = positions.front().transformedBy (stack->transform.getTransformWith (t)).roundToInt() + juce::Point<int> (0, 1);

            if (getClipBounds().contains (start.roundToInt()) && image.getBounds().contains (onImage))
                seen.push_back ({ stack->fillType.colour, image.getPixelAt (onImage.x, onImage.y), onImage });
        }

        LowLevelGraphicsSoftwareRenderer::drawGlyphs (glyphs, positions, t);
    }

private:
    juce::Image image;
    std::vector<Seen>& seen;
};

std::vector<Seen> wordsOf (juce::Component& component)
{
    std::vector<Seen> seen;
    juce::Image image (juce::Image::ARGB, component.getWidth(), component.getHeight(), true);
    WordColours renderer (image, seen);
    juce::Graphics g (renderer);
    component.paintEntireComponent (g, true);
    return seen;
}

bool isClose (juce::Colour a, juce::Colour b)
{
    const auto apart = [] (int x, int y) { return std::abs (x - y) > 2; };
    return ! apart (a.getRed(), b.getRed()) && ! apart (a.getGreen(), b.getGreen()) && ! apart (a.getBlue(), b.getBlue())
        && ! apart (a.getAlpha(), b.getAlpha());
}

bool isInTable (const Seen& word)
{
    const auto& pairs = contrastPairs();
    return std::any_of (pairs.begin(), pairs.end(), [&] (const ContrastPair& p) { return isClose (p.ink, word.ink) && isClose (p.ground, word.ground); });
}

/** Fails for words whose colours the table does not have, except on artwork: there the ground is another at every letter, the table
    has its ends, and the words must stand out from what they really lie on. Returns how many words there were. */
size_t expectAllInTable (juce::Component& page, const std::vector<juce::Rectangle<int>>& artwork = {})
{
    const auto words = wordsOf (page);

    for (const auto& word : words)
    {
        if (isInTable (word))
            continue;

        const bool isOnArtwork = std::any_of (artwork.begin(), artwork.end(), [&] (auto area) { return area.contains (word.place); });
        const auto ratio = contrastOf (word.ink, word.ground);
        EXPECT_TRUE (isOnArtwork && ratio >= 4.5) << hex (word.ink) << " on " << hex (word.ground) << " at " << word.place.toString()
                                                  << (isOnArtwork ? ": " + std::to_string (ratio) : std::string());
    }

    return words.size();
}

/** The window as high as its longest page, so that all of it is painted. */
size_t expectAllOfTheWindowInTable (HubRun& run, int width)
{
    run.window->setSize (width, 4200);
    run.hub->setSize (width, 4200);
    pictureOf (*run.hub);
    waitForPictures();
    std::vector<juce::Rectangle<int>> artwork;

    for (const auto* id : { "releaseNotice", "hero", "featuredTrack", "campaignBanner", "soundPacksNotice", "whatsIncludedGallery", "gallery" })
        if (auto* const component = findBelow (*run.hub, id); component != nullptr && component->isShowing())
            artwork.push_back (WidgetWalk (run).placeOf (*component));

    return expectAllInTable (*run.hub, artwork);
}

void putProducts()
{
    stayOffline();
    auto daw = applicationOf ("zorva-daw", "2.0.0", "setup of zorva-daw");
    daw.releaseNotes = { { "Faster", "It starts in half the time." } };
    putLocalManifest ({ daw, applicationOf ("cached", "2.0.0", "setup of cached"), applicationOf ("absent", "2.0.0", "setup of absent") });
    putInVault (daw, "setup.exe", "setup of zorva-daw");
    putInVault (applicationOf ("cached", "2.0.0", "setup of cached"), "setup.exe", "setup of cached");
    putInstalled ("zorva-daw", programOfVersion (2, 0, 0));
}
}

//==============================================================================
TEST (Contrast, FollowsThePublishedFormula)
{
    using juce::Colour;
    EXPECT_NEAR (contrastOf (Colour (0xff000000), Colour (0xffffffff)), 21.0, 0.0001);
    EXPECT_NEAR (contrastOf (Colour (0xff123456), Colour (0xff123456)), 1.0, 0.0001);
    EXPECT_NEAR (contrastOf (Colour (0xff777777), Colour (0xffffffff)), 4.478, 0.001);
    EXPECT_NEAR (contrastOf (Colour (0xff767676), Colour (0xffffffff)), 4.542, 0.001);
    EXPECT_NEAR (contrastOf (Colour (0xffff0000), Colour (0xffffffff)), 3.998, 0.001);
    EXPECT_NEAR (contrastOf (Colour (0xff0000ff), Colour (0xffffffff)), 8.592, 0.001);
    EXPECT_NEAR (contrastOf (Colour (0x00ffffff), Colour (0xff4a4a4a)), 1.0, 0.0001) << "what is not there";
    EXPECT_NEAR (contrastOf (Colour (0x80ffffff), Colour (0xff000000)), contrastOf (Colour (0xff808080), Colour (0xff000000)), 0.05);
}

TEST (Contrast, TheTableInTheDocumentIsTrue)
{
    const auto document = juce::File (HUB_DOCS_FOLDER).getChildFile ("accessibility.md").loadFileAsString().replace ("\r\n", "\n");
    const auto table = document.fromFirstOccurrenceOf ("<!-- contrast -->\n", false, false).upToFirstOccurrenceOf ("<!-- end -->", false, false);
    EXPECT_EQ (table.toStdString(), contrastTable());
}

TEST (Contrast, WhatIsBelowTheMarkHasAReasonAndNothingElseHas)
{
    for (const auto& pair : contrastPairs())
        EXPECT_EQ (contrastOf (pair.ink, pair.ground) < contrastNeeded (pair.use), ! pair.reason.empty())
            << pair.where << ": " << pair.inkName << " on " << pair.groundName << ": " << contrastOf (pair.ink, pair.ground);
}

//==============================================================================
TEST (Contrast, EveryWordOfTheCommunityPageIsInTheTable)
{
    stayOffline();
    HubRun run (Sidebar::Tab::community);
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 60u);
    EXPECT_GT (expectAllOfTheWindowInTable (run, 900), 60u);
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1600), 60u);
}

TEST (Contrast, EveryWordOfTheLibraryIsInTheTable)
{
    putProducts();
    HubRun run;
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 40u);
    run.select ("zorva-daw");
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 60u);
}

TEST (Contrast, EveryWordOfAnEmptyLibraryIsInTheTable)
{
    stayOffline();
    putLocalManifest ({});
    HubRun run;
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 20u);
}

TEST (Contrast, EveryWordOfACardAndItsDetailsIsInTheTable)
{
    PaneScene scene;

    for (const auto state : allStates())
        for (const bool online : { true, false })
        {
            SCOPED_TRACE ((int) state);
            auto model = someModel (state);
            model.product.releaseNotes = { { "Faster", "It starts in half the time." } };
            ProductCard card (model, online);
            card.setSize (240, 380);
            EXPECT_GE (expectAllInTable (card), 4u);
            scene.pane.setOnline (online);
            scene.pane.setModel (model);
            EXPECT_GE (expectAllInTable (scene.pane), 6u);
        }
}

TEST (Contrast, EveryWordOfTheStatusBarIsInTheTable)
{
    HubLook look;
    StatusBar bar;
    bar.setSize (1100, 40);
    bar.setVaultPath ("/vault");

    for (const juce::int64 bytes : { 1LL, 1LL << 40 })
    {
        bar.setFreeBytes (bytes);
        bar.setStatusMessage ("Recovery attention required");
        EXPECT_GE (expectAllInTable (bar), 4u);
        bar.setDownloadProgress (0.4, "Grand Piano");
        EXPECT_GE (expectAllInTable (bar), 5u);
        bar.clearDownloadProgress();
    }
}

TEST (Contrast, EveryWordOfTheSettingsIsInTheTable)
{
    stayOffline();
    HubRun run (Sidebar::Tab::settings);
    run.window->click (below (*run.hub, "advancedButton"));
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 25u);
}

TEST (Contrast, EveryWordOfTheAboutPageIsInTheTable)
{
    stayOffline();
    HubRun run (Sidebar::Tab::about);
    EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 20u);
}

TEST (Contrast, EveryWordOfTheWizardIsInTheTable)
{
    stayOffline();
    CreatorProfile profile;
    profile.displayName = "Ann";
    profile.primaryRole = "Artist";
    profile.genres = { "Jazz" };
    juce::String error;
    EXPECT_TRUE (CreatorProfileStore().save (profile, error)) << error;

    HubRun run (Sidebar::Tab::community);
    run.window->click (below (*run.hub, "createYourProfileButton"));

    for (int step = 0; step < 10; ++step)
    {
        SCOPED_TRACE (step);
        EXPECT_GT (expectAllOfTheWindowInTable (run, 1100), 20u);
        run.window->click (below (*run.hub, "nextButton"));
        run.window->mouse ({ 1.0f, 4199.0f }, 0);    // away, so that nothing is lit up
    }

    EXPECT_TRUE (run.takeBox().find ("Local Draft Saved") != std::string::npos) << "the walk has come to the last step";
}
