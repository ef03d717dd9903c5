#pragma once

#include "PaintRecorder.h"
#include "ui/HubPalette.h"
#include "ui/WhatsIncludedGallery.h"

namespace zorva::test
{
/** What the gallery shows, in its order: nine engines, of which seven have a picture, and eight effects. */
struct GalleryItem
{
    const char* label;
    const char* asset = nullptr;    ///< else the tile is drawn
};

inline constexpr GalleryItem galleryItems[] {
    { "Drums", "drums_bg_png" }, { "Electronic Drums", "electronic_drums_bg_png" }, { "Bass", "bass_bg_png" },
    { "Keys", "keys_bg_png" }, { "Guitar", "guitar_bg_png" }, { "Synth", "synth_bg_png" },
    { "Sound Generator", "sound_designer_bg_png" }, { "500 Drum Sampler" }, { "500 Sampler" },
    { "EQ" }, { "Tape" }, { "Bus Comp" },
    { "Channel Comp" }, { "Delay" }, { "Limiter" },
    { "Reverb" }, { "Groove" },
};

inline constexpr int numItems = 17, numEngines = 9, numPictures = 7;
inline constexpr int drumSampler = 7, sampler = 8, firstEffect = 9;

/** The gallery's measures at a width. */
struct GalleryMetrics
{
    int cell = 0, tileHeight = 1, pitch = 23;
};

inline GalleryMetrics galleryMetricsAt (int width)
{
    const int cell = (std::max (width, 1) - 16) / 3;
    const int tileHeight = std::max (1, juce::roundToInt (cell * 0.62));
    return { cell, tileHeight, tileHeight + 22 };
}

/** The tile of an item, counted through both sections. */
inline juce::Rectangle<int> galleryTileAt (int width, int item)
{
    const auto metrics = galleryMetricsAt (width);
    const bool effect = item >= numEngines;
    const int index = effect ? item - numEngines : item, top = effect ? 3 * metrics.pitch + 36 + 22 : 22;
    return { (index % 3) * (metrics.cell + 8), top + (index / 3) * metrics.pitch, std::max (metrics.cell, 0), metrics.tileHeight };
}

/** The gallery alone, as high as it needs to be. */
struct GalleryScene
{
    explicit GalleryScene (int width)    { gallery.setSize (width, gallery.heightForWidth (width)); }

    juce::Image picture()               { return pictureOn (HubPalette::windowBackground, gallery); }
    juce::Image pictureWithArtwork()    { return pictureWithArtworkOn (HubPalette::windowBackground, gallery); }

    /** The same by hand, with every drawn tile left empty. */
    juce::Image byHand (bool withArtwork)
    {
        const int width = gallery.getWidth();

        return paintedOn (HubPalette::windowBackground, width, gallery.getHeight(), [width, withArtwork] (juce::Graphics& g)
        {
            const auto title = [&g, width] (const char* text, int y)
            {
                line (g, text, { 0, y, width, 22 }, bold (10.0f), HubPalette::accent, juce::Justification::centredLeft, false);
            };

            title ("INSTRUMENT ENGINES", 0);
            title ("PROFESSIONAL EFFECTS", 3 * galleryMetricsAt (width).pitch + 36);

            for (int i = 0; i < numItems; ++i)
            {
                const auto tile = galleryTileAt (width, i);
                g.setColour (HubPalette::panel);
                g.fillRoundedRectangle (tile.toFloat(), 4.0f);

                if (withArtwork && galleryItems[i].asset != nullptr)
                    paintWhole (g, galleryItems[i].asset, tile.reduced (3));

                g.setColour (HubPalette::border);
                g.drawRoundedRectangle (tile.toFloat().reduced (0.5f), 4.0f, 1.0f);
                line (g, galleryItems[i].label, { tile.getX(), tile.getBottom(), tile.getWidth(), 14 }, plain (10.0f), HubPalette::textSecondary,
                      juce::Justification::centred);
            }
        });
    }

    HubLook look;
    WhatsIncludedGallery gallery;
};
}
