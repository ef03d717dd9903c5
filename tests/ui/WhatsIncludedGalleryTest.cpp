#include "GalleryScene.h"

using namespace zorva::test;

//==============================================================================
TEST (WhatsIncludedGallery, ItsHeightFollowsFromTheWidth)
{
    struct Case
    {
        int width, cell, tile, height;
    };

    const Case cases[] {
        // The library's column in windows of 1600, 1100 and 900, without the detail pane and with it, and the pane's own gallery.
        { 1434, 472, 293, 1948 }, { 1114, 366, 227, 1552 }, { 934, 306, 190, 1330 }, { 734, 239, 148, 1078 }, { 614, 199, 123, 928 },
        { 414, 132, 82, 682 }, { 282, 88, 55, 520 },

        // Where the integer division steps.
        { 313, 99, 61, 556 }, { 315, 99, 61, 556 }, { 316, 100, 62, 562 }, { 318, 100, 62, 562 }, { 319, 101, 63, 568 },

        // A tile is never lower than 1.
        { 25, 3, 2, 202 }, { 24, 2, 1, 196 }, { 19, 1, 1, 196 }, { 18, 0, 1, 196 }, { 16, 0, 1, 196 }, { 1, -5, 1, 196 },

        // A width below 1 counts as 1.
        { 0, -5, 1, 196 }, { -100, -5, 1, 196 },
    };

    WhatsIncludedGallery gallery;

    for (const auto& expected : cases)
    {
        const auto metrics = galleryMetricsAt (expected.width);
        EXPECT_EQ (gallery.heightForWidth (expected.width), expected.height) << expected.width;
        EXPECT_EQ (metrics.cell, expected.cell) << expected.width;
        EXPECT_EQ (metrics.tileHeight, expected.tile) << expected.width;
        EXPECT_EQ (6 * metrics.pitch + 58, expected.height) << "three rows a section, the first followed by a gap: " << expected.width;
    }
}

TEST (WhatsIncludedGallery, WithoutPicturesTheTilesStandEmptyWithTheirCaptions)
{
    for (const int width : { 1434, 934, 734, 414, 282, 100 })
    {
        SCOPED_TRACE (width);
        GalleryScene scene (width);
        std::vector<juce::Rectangle<int>> drawn;

        for (int item = numPictures; item < numItems; ++item)
            drawn.push_back (galleryTileAt (width, item).reduced (2));

        EXPECT_EQ (difference (scene.picture(), scene.byHand (false), drawn), "");
    }
}

TEST (WhatsIncludedGallery, EachPictureStandsInItsTile)
{
    for (const int width : { 1434, 934, 282 })
    {
        SCOPED_TRACE (width);
        GalleryScene scene (width);
        scene.pictureWithArtwork();
        const auto record = recordOf (scene.gallery);
        ASSERT_EQ (record.images.size(), (size_t) numPictures);

        for (int i = 0; i < numPictures; ++i)
        {
            const auto& item = galleryItems[i];
            const auto& drawn = record.images[(size_t) i];
            EXPECT_EQ (distanceOf (drawn.place, placeOfWhole (asset (item.asset), galleryTileAt (width, i).reduced (3))), "") << item.label;
            EXPECT_EQ (differenceToAsset (drawn.image, item.asset), "") << item.label;
            EXPECT_FALSE (drawn.rescaled) << item.label;
        }
    }
}

TEST (WhatsIncludedGallery, PaintsPicturesUnderTheOutlinesOfTheirTiles)
{
    GalleryScene scene (934);
    const auto engines = juce::Rectangle<int> (934, galleryTileAt (934, numPictures).getY());   // the rows without drawn tiles
    const auto actual = cut (scene.pictureWithArtwork(), engines);

    EXPECT_EQ (differenceBySquares (actual, cut (scene.byHand (true), engines)), "");
    EXPECT_NE (differenceBySquares (actual, cut (scene.byHand (false), engines)), "");
}

TEST (WhatsIncludedGallery, TheSectionsStandOneBelowTheOther)
{
    GalleryScene scene (934);
    const auto picture = scene.picture();
    const auto accentRows = [&picture] (int from, int height) { return pixelsOf (picture, HubPalette::accent, { 0, from, 300, height }); };

    EXPECT_GT (accentRows (0, 22), 50) << "the first title";
    EXPECT_GT (accentRows (672, 22), 50) << "the second one: three rows of 212 and 36 below the first";
    EXPECT_EQ (pixel (picture, 153, 24), hex (HubPalette::panel)) << "the first tile";
    EXPECT_EQ (pixel (picture, 153, 20), hex (HubPalette::windowBackground)) << "above it";
    EXPECT_EQ (pixel (picture, 310, 100), hex (HubPalette::windowBackground)) << "between two tiles";
    EXPECT_EQ (galleryTileAt (934, 9).toString(), "0 694 306 190");
    EXPECT_EQ (galleryTileAt (934, 16).toString(), "314 1118 306 190") << "the last one stands in the middle column";
    EXPECT_EQ (pixel (picture, 800, 1200), hex (HubPalette::windowBackground)) << "and nothing to its right";
}

TEST (WhatsIncludedGallery, TheLastCaptionsAreNotCutOff)
{
    for (const int width : { 934, 282, 1434 })
    {
        GalleryScene scene (width);
        const auto last = galleryTileAt (width, numItems - 1);
        const auto caption = juce::Rectangle<int> (last.getX(), last.getBottom(), last.getWidth(), 14);
        EXPECT_LE (caption.getBottom(), scene.gallery.getHeight()) << width;
        const int empty = pixelsOf (scene.picture(), HubPalette::windowBackground, caption);
        EXPECT_GT (empty, 0) << width;
        EXPECT_LT (empty, caption.getWidth() * 14 - 60) << width << ": \"Groove\" is there";
    }
}

TEST (WhatsIncludedGallery, ACaptionThatIsTooLongEndsInAnEllipsis)
{
    const juce::String label ("Electronic Drums");
    const auto tile = galleryTileAt (200, 1);
    const juce::Rectangle<int> place (tile.getX(), tile.getBottom(), tile.getWidth(), 14);
    ASSERT_GT (widthOf (plain (10.0f), label), tile.getWidth());

    const auto captionWith = [&] (bool ellipsis)
    {
        return cut (paintedOn (HubPalette::windowBackground, 200, 400, [&] (juce::Graphics& g)
        {
            line (g, label, place, plain (10.0f), HubPalette::textSecondary, juce::Justification::centred, ellipsis);
        }), place);
    };

    GalleryScene scene (200);
    const auto actual = cut (scene.picture(), place);
    EXPECT_EQ (difference (actual, captionWith (true)), "");
    EXPECT_NE (difference (actual, captionWith (false)), "");
}

//==============================================================================
TEST (WhatsIncludedGallery, AtWidth1ItPaintsTilesOfHeight1)
{
    // Three columns of less than nothing, of nothing or of a pixel or two: nothing is divided by zero.
    for (const int width : { 1, 2, 15, 16, 18, 19, 22, 25 })
    {
        SCOPED_TRACE (width);
        GalleryScene scene (width);
        EXPECT_EQ (galleryTileAt (width, 0).getHeight(), width == 25 ? 2 : 1);
        EXPECT_EQ (scene.gallery.getHeight(), width == 25 ? 202 : 196);

        const auto picture = scene.pictureWithArtwork();
        std::vector<juce::Rectangle<int>> drawn;

        for (int item = numPictures; item < numItems; ++item)
            drawn.push_back (galleryTileAt (width, item));

        EXPECT_EQ (difference (picture, scene.byHand (false), drawn), "");

        if (width >= 15)
            EXPECT_GT (pixelsOf (picture, HubPalette::accent, { 0, 0, width, 22 }), 0) << "the title's first letters";
    }
}

TEST (WhatsIncludedGallery, AVeryNarrowOneStillPaintsItsTiles)
{
    GalleryScene scene (40);    // cells of 8 by 5
    const auto picture = scene.picture();

    for (int item = 0; item < numItems; ++item)
    {
        const auto tile = galleryTileAt (40, item);
        EXPECT_EQ (tile.getWidth(), 8);
        EXPECT_EQ (tile.getHeight(), 5);
        EXPECT_LT (pixelsOf (picture, HubPalette::windowBackground, tile), 40) << galleryItems[item].label;
    }
}

TEST (WhatsIncludedGallery, TakesNoInput)
{
    WhatsIncludedGallery gallery;
    bool self = true, children = true;
    gallery.getInterceptsMouseClicks (self, children);
    EXPECT_FALSE (self);
    EXPECT_FALSE (children);
    EXPECT_FALSE (gallery.getWantsKeyboardFocus());
    EXPECT_EQ (gallery.getNumChildComponents(), 0);
    EXPECT_EQ (dynamic_cast<juce::Timer*> (&gallery), nullptr);
}
