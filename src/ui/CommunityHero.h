#pragma once

#include "ui/ActionButton.h"
#include "ui/AssetPicture.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunitySection.h"

struct CommunityHeroLayout;

/** The top of the community page: a picture, an invitation, and three buttons. Message thread only. */
class CommunityExperience::Hero final : public CommunitySection
{
public:
    /** What its buttons do; each may be empty. */
    Hero (std::function<void()> onCreateProfile, std::function<void()> onSubmitMusic, std::function<void()> onOpenLibrary);

    /** Sets the words of the third button; its title follows from the text. */
    void setPrimary (const juce::String& text, const juce::String& description);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    void paintPicture (juce::Graphics& g, const CommunityHeroLayout& layout);
    static void paintText (juce::Graphics& g, const CommunityHeroLayout& layout);

    AssetPicture picture { *this, "zorva_community_hero_people_v1_png" };
    ActionButton createYourProfileButton, submitYourMusicButton, heroPrimaryButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Hero)
};
