#pragma once

#include "ui/AssetPicture.h"
#include "ui/MainHubComponent.h"

// The painted surfaces under the product grid. They hold no logic and take no input.

/** The banner for the main application and its sibling, shown whole and never cropped. Message thread. */
class MainHubComponent::CampaignBanner final : public juce::Component
{
public:
    CampaignBanner();
    void paint (juce::Graphics& g) override;

private:
    AssetPicture picture { *this, "zorvadawstagewellhubbannerv1_jpg" };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CampaignBanner)
};

/** Four sound packs that are to come. Message thread. */
class MainHubComponent::SoundPacksNotice final : public juce::Component
{
public:
    SoundPacksNotice();
    void paint (juce::Graphics& g) override;

private:
    struct Pack
    {
        const char* name;
        AssetPicture picture;
    };

    void paintPacks (juce::Graphics& g, juce::Rectangle<int> area);

    std::array<Pack, 4> packs;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (SoundPacksNotice)
};

/** The line above the gallery. Message thread. */
class MainHubComponent::GalleryHeader final : public juce::Component
{
public:
    GalleryHeader();
    void paint (juce::Graphics& g) override;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (GalleryHeader)
};
