#include "LibraryBannerScene.h"

using namespace zorva::test;

namespace
{
using Bounds = juce::Rectangle<int>;

const char* const bannerAsset = "zorvadawstagewellhubbannerv1_jpg";

/** The sizes of the banner at the widths of the column, and some that are too small for anything. */
const Bounds bannerSizes[] { { 1434, 360 }, { 934, 335 }, { 734, 260 }, { 1114, 360 }, { 614, 215 }, { 414, 180 },
                             { 80, 180 },   { 60, 180 },  { 40, 180 },  { 20, 180 },   { 300, 30 },  { 300, 17 } };

/** Clips to the shape for as long as it paints. */
void inside (juce::Graphics& g, Bounds shape, float radius, const std::function<void()>& paint)
{
    const juce::Graphics::ScopedSaveState before (g);
    juce::Path path;
    path.addRoundedRectangle (shape.toFloat(), radius);
    g.reduceClipRegion (path);
    paint();
}

/** The banner of this size, by hand. */
juce::Image bannerPicture (Bounds size, bool withArtwork)
{
    return paintedOn (HubPalette::windowBackground, size.getWidth(), size.getHeight(), [&] (juce::Graphics& g)
    {
        const auto b = size.reduced (20, 0);

        inside (g, b, 12.0f, [&]
        {
            g.setColour (bannerPlate);
            g.fillRect (b);

            if (withArtwork)
                paintWhole (g, bannerAsset, b);
        });

        outlineBanner (g, b, 12.0f);

        const int stripHeight = std::min (18, size.getHeight() - 16);
        const Bounds strip (30, size.getHeight() - 8 - stripHeight, std::max (size.getWidth() - 60, 0), stripHeight);
        g.setColour (juce::Colour (0xb8000000));
        g.fillRoundedRectangle (strip.toFloat(), 4.0f);
        line (g, "ZORVA software shown on user-supplied displays. Display hardware not included.",
              { 37, strip.getY(), std::max (size.getWidth() - 74, 0), stripHeight }, plain (9.5f), juce::Colour (0xffc1cad6),
              juce::Justification::centredRight);
    });
}

using BannerScene = LibraryBannerScene<MainHubComponent::CampaignBanner>;
using HeaderScene = LibraryBannerScene<MainHubComponent::GalleryHeader>;
}

//==============================================================================
TEST (CampaignBanner, WithoutItsPictureIsADarkPlateWithTheDisclaimer)
{
    for (const auto& size : bannerSizes)
    {
        SCOPED_TRACE (size.toString().toStdString());
        EXPECT_EQ (difference (BannerScene (size.getWidth(), size.getHeight()).picture(), bannerPicture (size, false)), "");
    }
}

TEST (CampaignBanner, ShowsItsPictureUnderTheStripAndTheOutline)
{
    for (const int i : { 0, 1, 2, 4, 5 })
    {
        SCOPED_TRACE (bannerSizes[i].toString().toStdString());
        BannerScene scene (bannerSizes[i].getWidth(), bannerSizes[i].getHeight());
        const auto picture = scene.pictureWithArtwork();
        EXPECT_EQ (differenceBySquares (picture, bannerPicture (bannerSizes[i], true)), "");
        EXPECT_NE (differenceBySquares (picture, bannerPicture (bannerSizes[i], false)), "");
    }
}

TEST (CampaignBanner, ThePictureIsShownWholeAndNeverCropped)
{
    struct Case
    {
        Bounds size;
        juce::Rectangle<float> place;
    };

    for (const auto& [size, place] : { Case { { 934, 335 }, { 94.8f, 0.0f, 744.4f, 335.0f } },      // letterboxed left and right
                                       Case { { 734, 260 }, { 78.1f, 0.0f, 577.8f, 260.0f } },
                                       Case { { 1434, 360 }, { 317.0f, 0.0f, 800.0f, 360.0f } },
                                       Case { { 414, 180 }, { 20.0f, 5.9f, 374.0f, 168.3f } },      // above and below
                                       Case { { 2000, 900 }, { 200.0f, 90.0f, 1600.0f, 720.0f } } })  // never larger than it is
    {
        SCOPED_TRACE (size.toString().toStdString());
        BannerScene scene (size.getWidth(), size.getHeight());
        scene.pictureWithArtwork();
        const auto record = recordOf (scene.banner);

        ASSERT_EQ (record.images.size(), (size_t) 1);
        EXPECT_EQ (distanceOf (record.images[0].place, place), "");
        EXPECT_EQ (differenceToAsset (record.images[0].image, bannerAsset), "");
        EXPECT_FALSE (record.images[0].rescaled);
    }
}

TEST (CampaignBanner, LeavesItsMarginsFree)
{
    BannerScene scene (934, 335);
    const auto picture = scene.pictureWithArtwork();

    for (const auto& margin : { Bounds (0, 0, 19, 335), Bounds (915, 0, 19, 335) })
        EXPECT_EQ (pixelsOf (picture, HubPalette::windowBackground, margin), 19 * 335);

    EXPECT_EQ (pixel (picture, 25, 167), hex (bannerPlate)) << "beside the letterboxed picture";
    EXPECT_EQ (pixel (picture, 21, 1), hex (HubPalette::windowBackground)) << "the corners are round";
}

TEST (CampaignBanner, TellsAssistiveTechnologyWhatItShows)
{
    BannerScene scene (934, 335);
    EXPECT_EQ (scene.banner.getTitle(), "ZORVA DAW and ZORVA Stagewell");
    EXPECT_EQ (scene.banner.getDescription(), "ZORVA DAW mixer and ZORVA Stagewell shown on two studio displays. Display hardware not included.");
}

//==============================================================================
TEST (GalleryHeader, CountsWhatIsIncluded)
{
    for (const int width : { 1434, 934, 414, 200, 40, 20 })
    {
        SCOPED_TRACE (width);
        EXPECT_EQ (difference (HeaderScene (width, 28).picture(), paintedOn (HubPalette::windowBackground, width, 28, [width] (juce::Graphics& g)
        {
            line (g, utf8 ("EVERYTHING INCLUDED IN ZORVA DAW — 9 Instrument Modules · 8 Effects"), { 20, 0, std::max (width - 40, 0), 28 },
                  bold (11.0f), HubPalette::textPrimary);
        })), "");
    }
}

//==============================================================================
namespace
{
/** What a surface without input and without logic of its own must not have. */
void expectOnlyPainted (juce::Component& component)
{
    bool self = true, children = true;
    component.getInterceptsMouseClicks (self, children);
    EXPECT_FALSE (self);
    EXPECT_FALSE (component.getWantsKeyboardFocus());
    EXPECT_EQ (component.getNumChildComponents(), 0);
    EXPECT_EQ (dynamic_cast<juce::Timer*> (&component), nullptr);
    EXPECT_EQ (dynamic_cast<juce::SettableTooltipClient*> (&component), nullptr);
}
}

TEST (LibraryBanners, TakeNoInput)
{
    BannerScene banner (934, 335);
    LibraryBannerScene<MainHubComponent::SoundPacksNotice> notice (934, 320);
    HeaderScene header (934, 28);

    for (auto* component : { static_cast<juce::Component*> (&banner.banner), static_cast<juce::Component*> (&notice.banner),
                             static_cast<juce::Component*> (&header.banner) })
        expectOnlyPainted (*component);
}

TEST (LibraryBanners, ARealClickGoesToWhatIsBehind)
{
    HubLook look;
    juce::TextButton behind;
    MainHubComponent::CampaignBanner banner;
    juce::Component room;
    int clicks = 0;
    behind.onClick = [&clicks] { ++clicks; };

    for (auto* child : { static_cast<juce::Component*> (&behind), static_cast<juce::Component*> (&banner) })
    {
        room.addAndMakeVisible (child);
        child->setBounds (0, 0, 600, 215);
    }

    room.setSize (600, 215);
    HeadlessWindow window (room);
    window.click (banner);
    EXPECT_EQ (clicks, 1);
}
