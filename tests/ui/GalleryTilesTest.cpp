#include "GalleryScene.h"
#include "ui/GalleryTiles.h"

#include <set>

using namespace zorva::test;

namespace
{
constexpr int width = 934;

/** A drawn tile of the gallery, cut out. */
juce::Image tilePicture (int item)
{
    GalleryScene scene (width);
    return cut (scene.picture(), galleryTileAt (width, item));
}

/** A colour of this alpha over others, as painting leaves it. */
juce::Colour over (juce::Colour ground, juce::Colour colour, float alpha)    { return ground.overlaidWith (colour.withAlpha (alpha)); }

juce::Colour colourOfEffect (int effect)
{
    return effect == 1 || effect == 4 || effect == 7 ? HubPalette::action : HubPalette::accent;
}

/** How far a colour is from the ground towards another one: 0 to 1. */
float strength (juce::Colour actual, juce::Colour ground, juce::Colour full)
{
    const int range = std::abs (full.getRed() - ground.getRed()) + std::abs (full.getBlue() - ground.getBlue());
    return (float) (std::abs (actual.getRed() - ground.getRed()) + std::abs (actual.getBlue() - ground.getBlue())) / (float) range;
}

/** How many separate strokes a line of pixels crosses. */
int strokesAlong (const juce::Image& image, juce::Point<int> from, juce::Point<int> step, int count, juce::Colour ground)
{
    int strokes = 0;
    bool before = false;

    for (int i = 0; i < count; ++i)
    {
        const auto p = from + step * i;
        const bool now = strength (image.getPixelAt (p.x, p.y), ground, HubPalette::accent) > 0.2f;
        strokes += now && ! before ? 1 : 0;
        before = now;
    }

    return strokes;
}

/** What is painted inside the tile's outline. */
juce::Rectangle<int> drawnArea (const juce::Image& tile)
{
    juce::Rectangle<int> area;

    for (int y = 3; y < tile.getHeight() - 3; ++y)
        for (int x = 3; x < tile.getWidth() - 3; ++x)
            if (strength (tile.getPixelAt (x, y), HubPalette::panel, HubPalette::accent) > 0.03f)
                area = area.isEmpty() ? juce::Rectangle<int> (x, y, 1, 1) : area.getUnion ({ x, y, 1, 1 });

    return area;
}

const juce::Rectangle<int> samplerBox (9, 9, 306 - 18, 190 - 15);
juce::Colour boxFill()    { return over (HubPalette::panel, HubPalette::accent, 0.1f); }
}

//==============================================================================
TEST (GalleryTiles, TheSamplersStandInABoxOfTheAccent)
{
    for (const int item : { drumSampler, sampler })
    {
        SCOPED_TRACE (galleryItems[item].label);
        const auto tile = tilePicture (item);

        EXPECT_EQ (distanceOf (drawnArea (tile).toFloat(), samplerBox.toFloat()), "");
        EXPECT_GT (pixelsOf (tile, boxFill(), samplerBox), samplerBox.getWidth() * samplerBox.getHeight() / 4);
        EXPECT_EQ (pixelsOf (tile, HubPalette::panel, { 3, 3, 300, 5 }), 300 * 5) << "nothing above the box";
        EXPECT_GT (pixelsOf (tile, over (boxFill(), HubPalette::accent, 0.55f), samplerBox), 50) << "the strokes";
        EXPECT_EQ (pixelsOf (tile, HubPalette::accent, samplerBox), 0) << "none is opaque";
    }
}

TEST (GalleryTiles, TheDrumSamplerHasFourRowsOfFourPads)
{
    const auto tile = tilePicture (drumSampler);
    int acrossRows = 0, acrossColumns = 0;

    for (int y = samplerBox.getY() + 4; y < samplerBox.getBottom() - 4; ++y)
        acrossRows = std::max (acrossRows, strokesAlong (tile, { 3, y }, { 1, 0 }, 300, boxFill()));

    for (int x = samplerBox.getX() + 4; x < samplerBox.getRight() - 4; ++x)
        acrossColumns = std::max (acrossColumns, strokesAlong (tile, { x, 3 }, { 0, 1 }, 184, boxFill()));

    // The box itself has two sides, and so has each pad.
    EXPECT_EQ (acrossRows, 2 + 4 * 2);
    EXPECT_EQ (acrossColumns, 2 + 4 * 2);
}

TEST (GalleryTiles, TheSamplerHasAWaveform)
{
    const auto tile = tilePicture (sampler);
    const auto inside = samplerBox.reduced (6);
    std::set<int> heights;
    int columns = 0;

    for (int x = inside.getX(); x < inside.getRight(); ++x)
    {
        int top = 0, bottom = 0;

        for (int y = inside.getY(); y < inside.getBottom(); ++y)
            if (strength (tile.getPixelAt (x, y), boxFill(), HubPalette::accent) > 0.2f)
            {
                top = top == 0 ? y : top;
                bottom = y;
            }

        columns += top > 0 ? 1 : 0;
        heights.insert (bottom - top);
    }

    EXPECT_GT (columns, 48) << "it has 48 steps";
    EXPECT_GT (heights.size(), (size_t) 6) << "of different heights";
    EXPECT_NE (difference (tile, tilePicture (drumSampler)), "");
}

//==============================================================================
TEST (GalleryTiles, EachEffectIsACircleOfItsColour)
{
    for (int effect = 0; effect < GalleryTiles::numEffects; ++effect)
    {
        SCOPED_TRACE (galleryItems[firstEffect + effect].label);
        const auto tile = tilePicture (firstEffect + effect);
        const auto colour = colourOfEffect (effect);
        const auto area = drawnArea (tile);
        const auto fill = over (HubPalette::panel, colour, 0.08f);

        EXPECT_LE (std::abs (area.getWidth() - area.getHeight()), 2) << area.toString();
        EXPECT_LE (std::abs (area.getCentreX() - 153), 1) << "it stands in the middle";
        EXPECT_GT (pixelsOf (tile, fill, area), area.getWidth() * area.getHeight() / 3) << "the faint disc";

        // The ring, at the disc's left end: stronger than the disc, weaker than the lines.
        float ring = 0.0f;

        for (int x = area.getX() - 1; x < area.getX() + 4; ++x)
            ring = std::max (ring, strength (tile.getPixelAt (x, area.getCentreY()), HubPalette::panel, colour));

        const float full = strength (over (fill, colour, 0.42f), HubPalette::panel, colour);
        EXPECT_LE (ring, full + 0.03f);
        EXPECT_GT (ring, full * 0.6f);

        EXPECT_GT (pixelsOf (tile, over (fill, colour, 0.82f), area), 5) << "the glyph";
        EXPECT_EQ (pixelsOf (tile, over (fill, colour == HubPalette::action ? HubPalette::accent : HubPalette::action, 0.82f), area), 0);
    }
}

TEST (GalleryTiles, NoTwoEmblemsOfAColourAreTheSame)
{
    const std::vector<std::vector<int>> differing { { 0, 2, 6 }, { 1, 4, 7 } };

    for (const auto& group : differing)
        for (const int first : group)
            for (const int second : group)
                if (first != second)
                    EXPECT_NE (difference (tilePicture (firstEffect + first), tilePicture (firstEffect + second)), "") << first << " " << second;
}

TEST (GalleryTiles, EachEmblemBearsTheMakersName)
{
    for (int effect = 0; effect < GalleryTiles::numEffects; ++effect)
    {
        SCOPED_TRACE (effect);
        const juce::Rectangle<float> tile (20.0f, 10.0f, 306.0f, 190.0f);
        const auto paint = [&] (juce::Graphics& g) { GalleryTiles::drawEffect (g, tile, effect); };
        const auto record = recordOf (400, 220, paint);

        ASSERT_EQ (record.texts.size(), (size_t) 1);
        const auto& text = record.texts[0];
        EXPECT_TRUE (text.font.isBold());
        EXPECT_EQ (text.glyphs, glyphsOf (text.font, "ZORVA"));
        EXPECT_NEAR (text.start.x + juce::GlyphArrangement::getStringWidth (text.font, "ZORVA") * 0.5f, tile.getCentreX(), 1.0f);
        EXPECT_GT (text.start.y, tile.getCentreY()) << "under the glyph";
        EXPECT_LT (text.start.y, tile.getBottom());
    }
}

TEST (GalleryTiles, TheGrooveIsAZigzagOfNinePoints)
{
    // Eight lines that go up and down by turns: a level line through their middle meets each of them once.
    const auto tile = tilePicture (firstEffect + 7);
    const auto area = drawnArea (tile).reduced (4);
    const auto ground = over (HubPalette::panel, HubPalette::action, 0.08f);
    int crossed = 0;

    for (int y = area.getY(); y < area.getBottom(); ++y)
    {
        int strokes = 0;
        bool before = false;

        for (int x = area.getX(); x < area.getRight(); ++x)
        {
            const bool now = strength (tile.getPixelAt (x, y), ground, HubPalette::action) > 0.3f;
            strokes += now && ! before ? 1 : 0;
            before = now;
        }

        crossed = std::max (crossed, strokes);
    }

    EXPECT_GE (crossed, 8);
    EXPECT_LE (crossed, 10) << "with the ring on both sides";
}

TEST (GalleryTiles, ATileWithoutRoomIsNoTrouble)
{
    for (const float side : { 0.0f, 0.5f, 1.0f, 5.0f, 9.0f, 18.0f, 19.0f })
        for (int tile = 0; tile < GalleryTiles::numEffects + 2; ++tile)
        {
            const juce::Rectangle<float> area (30.0f, 30.0f, side, side * 0.62f);
            const auto picture = painted (80, 80, [&] (juce::Graphics& g)
            {
                if (tile < GalleryTiles::numEffects)
                    GalleryTiles::drawEffect (g, area, tile);
                else if (tile == GalleryTiles::numEffects)
                    GalleryTiles::drawDrumSampler (g, area);
                else
                    GalleryTiles::drawSampler (g, area);
            });

            SCOPED_TRACE (std::to_string (tile) + " at " + std::to_string (side));
            EXPECT_EQ (pixelsOf (picture, juce::Colours::transparentBlack, { 0, 0, 80, 20 }), 80 * 20) << "nothing far outside";
            EXPECT_EQ (pixelsOf (picture, juce::Colours::transparentBlack, { 60, 0, 20, 80 }), 20 * 80);
        }
}
