#pragma once

#include "ui/ActionButton.h"
#include "ui/AssetPicture.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunitySection.h"

/** A place for a creator's portrait and story, shown with fictional artwork that is labelled so. Message thread only. */
class CommunityExperience::Spotlight final : public CommunitySection
{
public:
    /** The picture's name is that of a compiled-in resource; pictureFocus is the fraction of its width around which it is cut.
        onSubmit may be empty. */
    Spotlight (const juce::String& title, const juce::String& pictureName, float pictureFocus, const juce::String& buttonText,
               std::function<void()> onSubmit);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    AssetPicture picture;
    const float focus;
    ActionButton spotlightButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Spotlight)
};
