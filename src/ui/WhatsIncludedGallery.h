#pragma once

#include "ui/AssetPicture.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <vector>

/** What comes with the main application: titled sections of tiles in three columns, painted and without any input. Message
    thread. */
class WhatsIncludedGallery final : public juce::Component
{
public:
    /** One tile. An item without picture, flag or icon is an empty tile with its caption. */
    struct Item
    {
        juce::String label;
        std::unique_ptr<AssetPicture> image {};     ///< may be null
        bool isDrumSampler = false;
        bool isSampler = false;
        int effectIcon = -1;                        ///< -1 for none, else the index of a drawn icon, 0 to 7
    };

    struct Section
    {
        juce::String title;
        std::vector<Item> items;
    };

    WhatsIncludedGallery();
    ~WhatsIncludedGallery() override;

    /** The height that the gallery needs at a width; widths below 1 count as 1. */
    int heightForWidth (int width) const;

    void paint (juce::Graphics& g) override;

private:
    static void paintItem (juce::Graphics& g, Item& item, juce::Rectangle<int> tile);

    std::vector<Section> sections;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (WhatsIncludedGallery)
};
