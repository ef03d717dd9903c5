#include "CommunityScene.h"
#include "SnapshotStore.h"
#include "app/OwnerDetails.h"
#include "ui/AssetPicture.h"
#include "ui/PictureScaling.h"

#include <BinaryData.h>

using namespace zorva::test;

namespace
{
using Bounds = juce::Rectangle<int>;
constexpr auto left = juce::Justification::centredLeft;
constexpr auto top = juce::Justification::topLeft;

juce::Colour text (float alpha)    { return HubPalette::textPrimary.withAlpha (alpha); }

/** A section as it stands on the page, without its buttons and without pictures, which come later. */
juce::Image picture (juce::Component& section)
{
    for (auto* button : allBelow<juce::Button> (section))
        button->setVisible (false);

    return paintedOn (HubPalette::windowBackground, section.getWidth(), section.getHeight(),
                      [&section] (juce::Graphics& g) { section.paintEntireComponent (g, true); });
}

void paintCard (juce::Graphics& g, Bounds section, float radius)
{
    const auto card = section.reduced (5).toFloat();
    g.setColour (juce::Colour (0x47000000));            // black at 0.28
    g.fillRoundedRectangle (card + juce::Point<float> (3.0f, 4.0f), radius);
    g.setColour (juce::Colour (0x0affffff));            // white at 0.04
    g.fillRoundedRectangle (card + juce::Point<float> (-1.5f, -1.5f), radius);
    g.setColour (HubPalette::raised);
    g.fillRoundedRectangle (card, radius);
    g.setColour (HubPalette::border.brighter (0.1f));
    g.drawRoundedRectangle (card.reduced (0.5f), radius, 1.0f);
}

void lines (juce::Graphics& g, const juce::String& words, Bounds area, const juce::Font& font, juce::Colour colour, int count, float scale,
            juce::Justification justification = top)
{
    g.setFont (font);
    g.setColour (colour);
    g.drawFittedText (words, area, justification, count, scale);
}

juce::Image expected (Bounds section, float radius, const std::function<void (juce::Graphics&)>& paint)
{
    return paintedOn (HubPalette::windowBackground, section.getWidth(), section.getHeight(), [&] (juce::Graphics& g)
    {
        paintCard (g, section.withZeroOrigin(), radius);
        paint (g);
    });
}

void paintHeroText (juce::Graphics& g, int x, int y, int width, float titleHeight)
{
    line (g, "ZORVA COMMUNITY  /  PREVIEW", { x, y, width, 20 }, bold (10.5f), HubPalette::accent);
    lines (g, "Your sound deserves a stage.", { x, y + 23, width, 73 }, bold (titleHeight), HubPalette::textPrimary, 2, 0.84f, left);
    lines (g, "A musician-led home for creators to share their work, shape the future, and build something that stays independent.",
           { x, y + 100, width, 48 }, plain (12.5f), text (0.8f), 3, 0.86f);
    line (g, "DEMO ARTWORK  /  NO ENDORSEMENT IMPLIED", { x, y + 148, width, 20 }, bold (10.0f), text (0.7f));
}

/** The shade over the lower half of the picture, and the words below. */
void paintSpotlight (juce::Graphics& g, const juce::String& title, Bounds pictureArea, int y, int width)
{
    {
        const juce::Graphics::ScopedSaveState before (g);
        juce::Path shape;
        shape.addRoundedRectangle (pictureArea.withHeight (1000).toFloat(), 12.0f);
        g.reduceClipRegion (shape);
        const auto area = pictureArea.toFloat();
        g.setGradientFill (juce::ColourGradient::vertical (HubPalette::raised.withAlpha (0.0f), area.getCentreY(), HubPalette::raised, area.getBottom()));
        g.fillRect (pictureArea);
    }

    line (g, "FICTIONAL DEMO ARTWORK", { 23, y, width, 17 }, bold (9.5f), HubPalette::actionBright);
    line (g, title, { 23, y + 17, width, 27 }, bold (18.0f), HubPalette::textPrimary);
    lines (g, "Real ZORVA creators can submit their story, portrait, and music for review. Nothing appears publicly without explicit approval.",
           { 23, y + 44, width, 47 }, plain (11.5f), text (0.76f), 3, 0.84f);
}

/** The waveform's plate and the texts around it. */
void paintTrackText (juce::Graphics& g, int x, int y, int width, int waveform)
{
    line (g, "FEATURED TRACK  /  MOCKUP", { x, y, width, 18 }, bold (10.5f), HubPalette::actionBright);
    line (g, "Your Track Could Be Here", { x, y + 18, width, 32 }, bold (21.0f), HubPalette::textPrimary);
    line (g, "MADE WITH ZORVA  /  COMMUNITY PLAYER PREVIEW", { x, y + 50, width, 21 }, bold (10.5f), text (0.74f));
    line (g, "DEMO PLAYER  /  NO AUDIO LOADED  /  0:00", { x, y + 71 + waveform, width, 18 }, bold (10.0f), text (0.76f));
    lines (g, "Approved community submissions can become a genuine rotating showcase. The original master stays yours.",
           { x, y + 89 + waveform, width, 35 }, plain (11.5f), text (0.72f), 2, 0.86f);
}
}

//==============================================================================
TEST (CommunityPainting, AMissingHeroPictureLeavesTheSurfaceAndAllText)
{
    ExperienceScene wide (934), narrow (734);

    EXPECT_EQ (difference (picture (wide.child ("hero")), expected ({ 886, 330 }, 14.0f, [] (juce::Graphics& g)
    {
        paintHeroText (g, 29, 29, 443, 32.0f);
        line (g, "OPENS LIBRARY", { 313, 253, 158, 13 }, bold (8.5f), HubPalette::actionBright, juce::Justification::centred);
    })), "");

    EXPECT_EQ (difference (picture (narrow.child ("hero")), expected ({ 686, 530 }, 14.0f, [] (juce::Graphics& g)
    {
        paintHeroText (g, 25, 288, 636, 29.0f);
        line (g, "OPENS LIBRARY", { 456, 459, 210, 13 }, bold (8.5f), HubPalette::actionBright, juce::Justification::centred);
    })), "");
}

TEST (CommunityPainting, TheTrackIsShownWithoutBeingThere)
{
    for (const bool narrow : { false, true })
    {
        SCOPED_TRACE (narrow ? "narrow" : "wide");
        ExperienceScene scene (narrow ? 734 : 934);
        auto& track = scene.child ("featuredTrack");
        const Bounds badge = narrow ? Bounds (257, 19, 172, 172) : Bounds (21, 22, 196, 196);
        const Bounds plate = narrow ? Bounds (20, 283, 646, 34) : Bounds (244, 102, 620, 44);
        const auto actual = picture (track);

        EXPECT_EQ (difference (actual, expected (track.getLocalBounds(), 13.0f, [narrow] (juce::Graphics& g)
        {
            paintTrackText (g, narrow ? 20 : 244, narrow ? 205 : 24, narrow ? 646 : 620, narrow ? 48 : 58);
        }), { badge, plate }), "");

        EXPECT_EQ (pixel (actual, badge.getX() + 6, badge.getY() + 6), hex (HubPalette::inverseText)) << "the badge's square";
        EXPECT_LT (actual.getPixelAt (badge.getCentreX(), badge.getCentreY() - 40).getBrightness(), 0.15f) << "the dark disc";
        const auto rim = [&actual, badge] (int side)        // of the lit disc, towards the lower left and the upper right
        {
            const int d = badge.getHeight() * 29 / 100 * side;
            return actual.getPixelAt (badge.getCentreX() + d, badge.getCentreY() - d);
        };
        EXPECT_GT (rim (-1).getBlue(), rim (-1).getRed() + 40);
        EXPECT_GT (rim (1).getRed(), rim (1).getBlue() + 40);
        EXPECT_GT (pixelsOf (actual, HubPalette::textPrimary, badge), 100) << "its word";
        EXPECT_GT (pixelsOf (actual, HubPalette::actionBright, badge), 20) << "and the small ones";
    }
}

TEST (CommunityPainting, TheWaveformHas34BarsOfWhichTheFirst21ArePlayed)
{
    ExperienceScene scene;
    const auto image = picture (scene.child ("featuredTrack"));
    const Bounds plate (244, 102, 620, 44);
    std::vector<std::pair<char, int>> bars;      // the colour on the middle line, and the height

    const auto kind = [&image] (int x, int y)
    {
        const auto colour = image.getPixelAt (x, y);
        const int difference = colour.getBlue() - colour.getRed();
        return difference > 100 ? 'p' : difference < -80 ? 'r' : '-';       // played in cyan, the rest in orange
    };

    for (int x = plate.getX() + 1; x < plate.getRight(); ++x)
    {
        const auto here = kind (x, plate.getCentreY());

        if (here == '-' || kind (x - 1, plate.getCentreY()) != '-')
            continue;

        int height = 0;

        for (int y = plate.getY(); y < plate.getBottom(); ++y)
            height += kind (x + 3, y) != '-' ? 1 : 0;

        bars.emplace_back (here, height);
    }

    ASSERT_EQ (bars.size(), 34u);

    for (size_t i = 0; i < bars.size(); ++i)
    {
        SCOPED_TRACE (i);
        EXPECT_EQ (bars[i].first, i < 21 ? 'p' : 'r');
        EXPECT_GE (bars[i].second, juce::roundToInt (0.14 * plate.getHeight()) - 1);
        EXPECT_LE (bars[i].second, juce::roundToInt (0.76 * plate.getHeight()) + 2);
    }
}

TEST (CommunityPainting, ASpotlightShowsItsWordsWithoutAPicture)
{
    ExperienceScene wide (934), narrow (734);

    EXPECT_EQ (difference (picture (wide.child ("producerSpotlight")), expected ({ 436, 430 }, 12.0f, [] (juce::Graphics& g)
    {
        paintSpotlight (g, "Future producer spotlight", { 5, 5, 426, 261 }, 278, 390);
    })), "");

    EXPECT_EQ (difference (picture (narrow.child ("artistSpotlight")), expected ({ 686, 550 }, 12.0f, [] (juce::Graphics& g)
    {
        paintSpotlight (g, "Future artist spotlight", { 5, 5, 676, 370 }, 387, 640);
    })), "");
}

TEST (CommunityPainting, TheParticipationTellsWhatStaysPrivate)
{
    for (const auto& [width, section] : { std::pair<int, Bounds> { 934, { 886, 178 } }, { 734, { 686, 260 } } })
    {
        ExperienceScene scene (width);
        const int w = section.getWidth() - 54;

        EXPECT_EQ (difference (picture (scene.child ("participation")), expected (section, 12.0f, [w] (juce::Graphics& g)
        {
            line (g, "YOUR COMMUNITY HOME", { 27, 22, w, 18 }, bold (10.0f), HubPalette::accent);
            line (g, "Build your place in ZORVA", { 27, 40, w, 31 }, bold (21.0f), HubPalette::textPrimary);
            lines (g, "Profiles and preview drafts stay private on this computer. Nothing is uploaded or public.", { 27, 71, w, 34 }, plain (11.5f),
                   text (0.78f), 2, 0.86f);
        })), "");
    }
}

TEST (CommunityPainting, AResourceShowsCategoryTagTitleAndBody)
{
    struct Case
    {
        const char *id, *category, *title, *body, *tag;
    };

    const Case cases[] {
        { "resource0", "TEMPLATES", "16-Channel Multitimbral Recording", "Assign MIDI channels 1-16 and capture each part as editable MIDI.", "ZORVA STARTER" },
        { "resource3", "TIPS + MIXING", "A Clean Starting Point",
          "Start with healthy gain and headroom; add processing only when it supports the music.", "ZORVA TIP 001" },
        { "resource6", "BUILD WITH US", "Help Build the ZORVA Team",
          "Introduce yourself across DSP, engineering, QA, accessibility, sound design, or community.", "INTEREST CALL" },
    };

    for (const auto& row : cases)
        for (const int width : { 934, 734, 300 })
        {
            SCOPED_TRACE (row.id + juce::String (" ").toStdString() + std::to_string (width));
            ExperienceScene scene (width);
            auto& resource = scene.child (row.id);
            const int w = resource.getWidth();

            EXPECT_EQ (difference (picture (resource), expected (resource.getLocalBounds(), 10.0f, [&] (juce::Graphics& g)
            {
                if (w - 46 > 250)
                    line (g, row.tag, { w - 144, 17, 121, 16 }, bold (9.0f), text (0.68f), juce::Justification::centredRight);

                line (g, row.category, { 23, 18, w - 46, 16 }, bold (9.5f), HubPalette::actionBright);
                lines (g, row.title, { 23, 34, w - 46, 36 }, bold (15.0f), HubPalette::textPrimary, 2, 0.88f, left);
                lines (g, row.body, { 23, 70, w - 46, 45 }, plain (11.5f), text (0.76f), 3, 0.84f);
            })), "");
        }
}

TEST (CommunityPainting, BetweenTheSectionsStandHeadingsAndBelowThemTheContact)
{
    for (const int width : { 934, 734, 200 })
    {
        SCOPED_TRACE (width);
        ExperienceScene scene (width);
        auto& page = *scene.experience;

        for (auto* child : page.getChildren())
            child->setVisible (false);

        const int w = width - 48, height = page.getHeight(), eyebrow = juce::jmin (w, 205);
        const bool wide = width >= 808;
        const auto heading = [&] (juce::Graphics& g, int y, const char* word, const char* title)
        {
            line (g, word, { 24, y, eyebrow, 28 }, bold (10.5f), HubPalette::accent);
            line (g, title, { 24 + eyebrow, y, w - eyebrow, 28 }, bold (17.0f), HubPalette::textPrimary);
        };

        EXPECT_EQ (difference (pictureOf (page), paintedOn (HubPalette::windowBackground, width, height, [&] (juce::Graphics& g)
        {
            heading (g, wide ? 678 : 1053, "CREATOR SPOTLIGHTS", "The next feature could be yours");
            heading (g, wide ? 1366 : 2507, "RESOURCES + CONNECTION", "Tools for the work behind the music");
            line (g, "Private drafts stay local  /  Contact: " + juce::String (OwnerDetails::contactAddress), { 24, height - 42, w, 18 }, plain (10.5f),
                  text (0.72f));
        })), "");
    }
}

//==============================================================================
namespace
{
/** A compiled-in picture over a box, cut by the rule for covers. */
void paintCover (juce::Graphics& g, const char* name, Bounds box, double focus)
{
    int size = 0;
    const auto* const data = BinaryData::getNamedResource (name, size);
    ASSERT_NE (data, nullptr) << name;
    const auto image = juce::ImageFileFormat::loadFrom (data, (size_t) size);
    ASSERT_TRUE (image.isValid()) << name;

    const double aspect = box.getWidth() / (double) box.getHeight(), width = image.getWidth(), height = image.getHeight();
    juce::Rectangle<double> source (width, height);

    if (width / height > aspect)
        source.setBounds (juce::jlimit (0.0, width - aspect * height, width * focus - aspect * height * 0.5), 0.0, aspect * height, height);
    else
        source.setBounds (0.0, (height - width / aspect) * 0.5, width, width / aspect);

    g.setOpacity (1.0f);
    g.drawImageAt (scaledTo (image.getClippedImage (source.toNearestInt()).createCopy(), box.getWidth(), box.getHeight()), box.getX(), box.getY());
}

juce::ColourGradient heroShade (bool narrow, Bounds card)
{
    const auto area = card.toFloat();
    const auto raised = HubPalette::raised;

    if (narrow)
    {
        auto shade = juce::ColourGradient::vertical (raised.withAlpha (0.0f), area.getY(), raised, area.getY() + 290.0f);
        shade.addColour (0.62, raised.withAlpha (0.0f));
        return shade;
    }

    auto shade = juce::ColourGradient::horizontal (raised, area.getX() + 0.22f * area.getWidth(), raised.withAlpha (0.0f),
                                                   area.getX() + 0.7f * area.getWidth());
    shade.addColour (0.42, raised.withAlpha (0.88f));
    shade.addColour (0.74, raised.withAlpha (0.18f));
    return shade;
}

void clipToCard (juce::Graphics& g, Bounds card, float radius)
{
    juce::Path shape;
    shape.addRoundedRectangle (card.toFloat(), radius);
    g.reduceClipRegion (shape);
}

/** The section once its picture is there. */
juce::Image pictureWithArtwork (juce::Component& section)
{
    picture (section);
    EXPECT_TRUE (pumpUntil ([] { return ! AssetPicture::isAnyLoading(); }, 30000));
    pump();
    return picture (section);
}
}

TEST (CommunityPainting, TheHerosPictureCoversItsPlaceUnderTheShade)
{
    for (const bool narrow : { false, true })
    {
        SCOPED_TRACE (narrow ? "narrow" : "wide");
        ExperienceScene scene (narrow ? 734 : 934);
        auto& hero = scene.child ("hero");
        const auto card = hero.getLocalBounds().reduced (5);
        const auto place = narrow ? card.withHeight (290) : card;

        EXPECT_EQ (differenceBySquares (pictureWithArtwork (hero), expected (hero.getLocalBounds(), 14.0f, [&] (juce::Graphics& g)
        {
            {
                const juce::Graphics::ScopedSaveState before (g);
                clipToCard (g, card, 14.0f);
                paintCover (g, "zorva_community_hero_people_v1_png", place, narrow ? 0.66 : 0.5);
                g.setGradientFill (heroShade (narrow, card));
                g.fillRect (place);
            }
            g.setColour (HubPalette::border.brighter (0.1f));
            g.drawRoundedRectangle (card.toFloat().reduced (0.5f), 14.0f, 1.0f);
            paintHeroText (g, narrow ? 25 : 29, narrow ? 288 : 29, narrow ? 636 : 443, narrow ? 29.0f : 32.0f);
            const int x = narrow ? 456 : 313, y = narrow ? 459 : 253, w = narrow ? 210 : 158;
            line (g, "OPENS LIBRARY", { x, y, w, 13 }, bold (8.5f), HubPalette::actionBright, juce::Justification::centred);
        })), "");
    }
}

TEST (CommunityPainting, EachSpotlightShowsItsOwnPortrait)
{
    struct Case
    {
        const char *id, *title, *portrait;
        double focus;
    };

    const Case cases[] {
        { "producerSpotlight", "Future producer spotlight", "fictional_producer_preview_png", 0.66 },
        { "artistSpotlight", "Future artist spotlight", "fictional_black_male_producer_preview_png", 0.52 },
    };

    for (const auto& row : cases)
        for (const bool narrow : { false, true })
        {
            SCOPED_TRACE (row.id + std::string (narrow ? " narrow" : " wide"));
            ExperienceScene scene (narrow ? 734 : 934);
            auto& spotlight = scene.child (row.id);
            const auto card = spotlight.getLocalBounds().reduced (5);
            const auto place = card.withHeight (narrow ? 370 : 261);

            EXPECT_EQ (differenceBySquares (pictureWithArtwork (spotlight), expected (spotlight.getLocalBounds(), 12.0f, [&] (juce::Graphics& g)
            {
                {
                    const juce::Graphics::ScopedSaveState before (g);
                    clipToCard (g, card, 12.0f);
                    paintCover (g, row.portrait, place, row.focus);
                }
                paintSpotlight (g, row.title, place, narrow ? 387 : 278, narrow ? 640 : 390);
            })), "");
        }
}
