#pragma once

#include "ui/ActionButton.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunitySection.h"

/** A player that plays nothing: how a creator's track could be shown. Message thread only. */
class CommunityExperience::FeaturedTrack final : public CommunitySection
{
public:
    /** onSubmit may be empty. */
    explicit FeaturedTrack (std::function<void()> onSubmit);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    ActionButton playButton, submitATrackButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (FeaturedTrack)
};
