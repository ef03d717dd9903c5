#include "LibraryBannerScene.h"

using namespace zorva::test;

namespace
{
using Bounds = juce::Rectangle<int>;
using NoticeScene = LibraryBannerScene<MainHubComponent::SoundPacksNotice>;

const juce::Colour sky (0xff46d7ff);
const char* const packAssets[] { "zorvasynthspack_png", "zorvahiphoppack_png", "zorvadrumpack_png", "zorvaafrobeatspack_png" };
const char* const packNames[] { "SYNTHS", "HIP HOP", "DRUM PACK", "AFRO BEATS" };

/** The four tiles at a width of the notice, whose height is always 320. */
std::vector<Bounds> tilesAt (int width)
{
    const int contentWidth = width - 76, tileWidth = std::max (70, (contentWidth - 30) / 4), right = 38 + contentWidth;
    std::vector<Bounds> tiles;

    for (int i = 0; i < 4; ++i)
    {
        const int x = 38 + i * (tileWidth + 10);
        tiles.push_back ({ x, 78, std::min (tileWidth, right - x), 202 });
    }

    return tiles;
}

juce::String captionOf (int pack)    { return packNames[pack] + utf8 ("  ·  COMING SOON"); }

/** The notice at a width, by hand. */
juce::Image noticePicture (int width, bool withArtwork)
{
    return paintedOn (HubPalette::windowBackground, width, 320, [&] (juce::Graphics& g)
    {
        const Bounds panel (20, 4, width - 40, 312);
        g.setGradientFill ({ juce::Colour (0xff28130d), 20.0f, 4.0f, juce::Colour (0xff102631), (float) (width - 20), 160.0f, false });
        g.fillRoundedRectangle (panel.toFloat(), 10.0f);

        line (g, "ZORVA FOUNDRY STAPLES + ORIGINAL PACKS", { 38, 14, width - 76, 24 }, bold (13.0f), sky);
        line (g, "Foundry Staples remain the verified Hub-installed instrument libraries. Original free and premium ZORVA packs begin"
                 " arriving August 2026.",
              { 38, 38, width - 76, 34 }, plain (11.0f), HubPalette::textPrimary.withAlpha (0.82f));

        const auto tiles = tilesAt (width);

        for (int i = 0; i < 4; ++i)
        {
            const auto tile = tiles[(size_t) i];
            g.setColour (bannerPlate);
            g.fillRoundedRectangle (tile.toFloat(), 7.0f);

            if (withArtwork)
                paintWhole (g, packAssets[i], tile);

            outlineBanner (g, tile, 7.0f);
            line (g, captionOf (i), { tile.getX(), 284, tile.getWidth(), 22 }, bold (9.5f), sky, juce::Justification::centred);
        }

        outlineBanner (g, panel, 10.0f);
    });
}

}

//==============================================================================
TEST (SoundPacksNotice, WithoutPicturesItsTilesAreDarkPlates)
{
    for (const int width : columnWidths)
    {
        SCOPED_TRACE (width);
        EXPECT_EQ (difference (NoticeScene (width, 320).picture(), noticePicture (width, false)), "");
    }
}

TEST (SoundPacksNotice, ShowsTheFourPacksInTheirOrder)
{
    for (const int width : { 1434, 934, 734, 414 })
    {
        SCOPED_TRACE (width);
        NoticeScene scene (width, 320);
        const auto picture = scene.pictureWithArtwork();
        const auto record = recordOf (scene.banner);
        const auto tiles = tilesAt (width);

        ASSERT_EQ (record.images.size(), (size_t) 4);
        EXPECT_EQ (differenceBySquares (picture, noticePicture (width, true)), "");

        for (size_t i = 0; i < 4; ++i)
        {
            const auto& drawn = record.images[i];
            EXPECT_EQ (distanceOf (drawn.place, placeOfWhole (asset (packAssets[i]), tiles[i])), "") << packNames[i];
            EXPECT_EQ (differenceToAsset (drawn.image, packAssets[i]), "") << packNames[i];
            EXPECT_FALSE (drawn.rescaled) << packNames[i];
        }
    }
}

TEST (SoundPacksNotice, ItsTilesHaveTheseBounds)
{
    const auto texts = [] (int width)
    {
        juce::StringArray bounds;

        for (const auto& tile : tilesAt (width))
            bounds.add (tile.toString());

        return bounds.joinIntoString (" | ").toStdString();
    };

    // What the other tests compare with, as numbers.
    EXPECT_EQ (texts (934), "38 78 207 202 | 255 78 207 202 | 472 78 207 202 | 689 78 207 202");
    EXPECT_EQ (texts (734), "38 78 157 202 | 205 78 157 202 | 372 78 157 202 | 539 78 157 202");
    EXPECT_EQ (texts (414), "38 78 77 202 | 125 78 77 202 | 212 78 77 202 | 299 78 77 202");
    EXPECT_EQ (texts (376), "38 78 70 202 | 118 78 70 202 | 198 78 70 202 | 278 78 60 202");

    for (const int width : { 934, 734, 414, 376 })
    {
        const auto picture = NoticeScene (width, 320).picture();

        for (const auto& tile : tilesAt (width))
        {
            EXPECT_EQ (pixelsOf (picture, bannerPlate, tile.reduced (4)), tile.reduced (4).getWidth() * 194) << width;
            EXPECT_NE (pixel (picture, tile.getX() - 2, 180), hex (bannerPlate)) << width;
            EXPECT_NE (pixel (picture, tile.getRight() + 2, 180), hex (bannerPlate)) << width;
        }
    }
}

TEST (SoundPacksNotice, TooNarrowTilesAreCutAtTheRightEdge)
{
    for (const int width : { 386, 385, 376, 330 })
    {
        SCOPED_TRACE (width);
        EXPECT_EQ (difference (NoticeScene (width, 320).picture(), noticePicture (width, false)), "");
    }
}

TEST (SoundPacksNotice, AtASmallWindowTheCaptionsEndInEllipsesAndDoNotWrap)
{
    const auto font = bold (9.5f);
    const auto tiles = tilesAt (414);      // a window of 900 with the detail pane
    const auto picture = NoticeScene (414, 320).picture();

    for (int i = 0; i < 4; ++i)
    {
        ASSERT_GT (widthOf (font, captionOf (i)), tiles[(size_t) i].getWidth()) << "it does not fit: " << packNames[i];
        const Bounds slice (tiles[(size_t) i].getX(), 284, tiles[(size_t) i].getWidth(), 22);
        const auto captionWith = [&] (bool ellipsis)
        {
            return cut (paintedOn (HubPalette::windowBackground, 414, 320, [&] (juce::Graphics& g)
            {
                g.setGradientFill ({ juce::Colour (0xff28130d), 20.0f, 4.0f, juce::Colour (0xff102631), 394.0f, 160.0f, false });
                g.fillRoundedRectangle (20.0f, 4.0f, 374.0f, 312.0f, 10.0f);
                line (g, captionOf (i), slice, font, sky, juce::Justification::centred, ellipsis);
            }), slice);
        };

        EXPECT_EQ (difference (cut (picture, slice), captionWith (true)), "") << packNames[i];
        EXPECT_NE (difference (cut (picture, slice), captionWith (false)), "") << packNames[i];
    }
}

TEST (SoundPacksNotice, NoWidthIsTooSmall)
{
    for (const int width : { 1, 39, 40, 76, 106, 200 })
    {
        NoticeScene scene (width, 320);
        const auto picture = scene.picture();

        if (width > 40)
            EXPECT_NE (pixel (picture, width / 2, 310), hex (HubPalette::windowBackground)) << width << ": the panel is there";
    }
}

TEST (SoundPacksNotice, TellsAssistiveTechnologyWhatItShows)
{
    NoticeScene scene (934, 320);
    EXPECT_EQ (scene.banner.getTitle(), "ZORVA Foundry Staples");
    EXPECT_EQ (scene.banner.getDescription(), "Optional instrument libraries installed securely by ZORVA Hub.");
}
