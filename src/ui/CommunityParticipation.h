#pragma once

#include "ui/ActionButton.h"
#include "ui/CommunityExperience.h"
#include "ui/CommunitySection.h"

/** What a person can do now: the private profile, the local drafts, and a submission. Message thread only. */
class CommunityExperience::Participation final : public CommunitySection
{
public:
    /** What its buttons do; each may be empty. */
    Participation (std::function<void()> onEditProfile, std::function<void()> onReviewDrafts, std::function<void()> onSubmitMusic);

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    ActionButton createEditProfileButton, reviewLocalDraftsButton, submitMusicButton;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (Participation)
};
