#include "ui/WhatsIncludedGallery.h"

#include "ui/GalleryTiles.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

namespace
{
constexpr int columns = 3, columnGap = 8, titleHeight = 22, captionHeight = 14, rowExtra = 22, sectionGap = 14;

/** The measures of the gallery at a width. */
struct Metrics
{
    explicit Metrics (int width)
        : cellWidth ((juce::jmax (width, 1) - columnGap * (columns - 1)) / columns),
          tileHeight (juce::jmax (juce::roundToInt (cellWidth * 0.62), 1)), rowPitch (tileHeight + rowExtra)
    {
    }

    int sectionHeight (const WhatsIncludedGallery::Section& section, bool isLast) const
    {
        const int rows = ((int) section.items.size() + columns - 1) / columns;
        return rows * rowPitch + titleHeight + (isLast ? 0 : sectionGap);
    }

    juce::Rectangle<int> tile (int index, int firstRowTop) const
    {
        return { (index % columns) * (cellWidth + columnGap), firstRowTop + (index / columns) * rowPitch,
                 juce::jmax (cellWidth, 0), tileHeight };
    }

    int cellWidth, tileHeight, rowPitch;
};
}

WhatsIncludedGallery::WhatsIncludedGallery()
{
    const auto picture = [this] (const char* label, const char* resourceName)
    {
        return Item { .label = label, .image = std::make_unique<AssetPicture> (*this, resourceName) };
    };
    const auto effect = [] (const char* label, int icon) { return Item { .label = label, .effectIcon = icon }; };

    sections.resize (2);
    sections[0].title = "INSTRUMENT ENGINES";
    auto& engines = sections[0].items;
    engines.push_back (picture ("Drums", "drums_bg_png"));
    engines.push_back (picture ("Electronic Drums", "electronic_drums_bg_png"));
    engines.push_back (picture ("Bass", "bass_bg_png"));
    engines.push_back (picture ("Keys", "keys_bg_png"));
    engines.push_back (picture ("Guitar", "guitar_bg_png"));
    engines.push_back (picture ("Synth", "synth_bg_png"));
    engines.push_back (picture ("Sound Generator", "sound_designer_bg_png"));
    engines.push_back ({ .label = "500 Drum Sampler", .isDrumSampler = true });
    engines.push_back ({ .label = "500 Sampler", .isSampler = true });

    sections[1].title = "PROFESSIONAL EFFECTS";
    int icon = 0;

    for (const auto* label : { "EQ", "Tape", "Bus Comp", "Channel Comp", "Delay", "Limiter", "Reverb", "Groove" })
        sections[1].items.push_back (effect (label, icon++));

    setInterceptsMouseClicks (false, false);
}

WhatsIncludedGallery::~WhatsIncludedGallery() = default;

int WhatsIncludedGallery::heightForWidth (int width) const
{
    const Metrics metrics (width);
    int height = 0;

    for (const auto& section : sections)
        height += metrics.sectionHeight (section, &section == &sections.back());

    return height;
}

void WhatsIncludedGallery::paint (juce::Graphics& g)
{
    const Metrics metrics (getWidth());
    int top = 0;

    for (auto& section : sections)
    {
        drawTextLine (g, section.title, { 0, top, getWidth(), titleHeight }, boldFont (10.0f), HubPalette::accent,
                      juce::Justification::centredLeft, Overflow::clip);

        for (size_t i = 0; i < section.items.size(); ++i)
        {
            const auto tile = metrics.tile ((int) i, top + titleHeight);

            // The gallery is much taller than what is seen of it, and a picture outside needs no copy.
            if (g.clipRegionIntersects (tile.withHeight (metrics.rowPitch)))
                paintItem (g, section.items[i], tile);
        }

        top += metrics.sectionHeight (section, &section == &sections.back());
    }
}

void WhatsIncludedGallery::paintItem (juce::Graphics& g, Item& item, juce::Rectangle<int> tile)
{
    g.setColour (HubPalette::panel);
    g.fillRoundedRectangle (tile.toFloat(), 4.0f);

    if (item.image != nullptr)
        item.image->drawWhole (g, tile.reduced (3));
    else if (item.isDrumSampler)
        GalleryTiles::drawDrumSampler (g, tile.toFloat());
    else if (item.isSampler)
        GalleryTiles::drawSampler (g, tile.toFloat());
    else if (juce::isPositiveAndBelow (item.effectIcon, GalleryTiles::numEffects))
        GalleryTiles::drawEffect (g, tile.toFloat(), item.effectIcon);

    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (tile.toFloat().reduced (0.5f), 4.0f, 1.0f);

    drawTextLine (g, item.label, { tile.getX(), tile.getBottom(), tile.getWidth(), captionHeight }, plainFont (10.0f),
                  HubPalette::textSecondary, juce::Justification::centred);
}
