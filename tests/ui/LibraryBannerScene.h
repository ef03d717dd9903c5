#pragma once

#include "PaintRecorder.h"
#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/LibraryBanners.h"

namespace zorva::test
{
/** The widths of the library's column in windows of 1600, 1100 and 900, without the detail pane and with it. */
inline constexpr int columnWidths[] { 1434, 934, 734, 1114, 614, 414 };

/** Behind the pictures of the library's banners. */
inline const juce::Colour bannerPlate { 0xff080b0f };

/** The outline of a banner or of something in it. */
inline void outlineBanner (juce::Graphics& g, juce::Rectangle<int> shape, float radius)
{
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (shape.toFloat(), radius, 1.0f);
}

/** One of the surfaces below the product grid, alone. */
template <typename Banner>
struct LibraryBannerScene
{
    LibraryBannerScene (int width, int height)    { banner.setSize (width, height); }

    /** Without pictures, as long as none was waited for. */
    juce::Image picture()               { return pictureOn (HubPalette::windowBackground, banner); }
    juce::Image pictureWithArtwork()    { return pictureWithArtworkOn (HubPalette::windowBackground, banner); }

    HubLook look;
    Banner banner;
};
}
