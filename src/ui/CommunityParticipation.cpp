#include "ui/CommunityParticipation.h"

#include "ui/CommunityLayout.h"
#include "ui/CommunityStyle.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

CommunityExperience::Participation::Participation (std::function<void()> onEditProfile, std::function<void()> onReviewDrafts,
                                                   std::function<void()> onSubmitMusic)
    : CommunitySection ("Build your place in ZORVA",
                        "Private creator profile and local preview-draft actions, plus an email submission option."),
      createEditProfileButton ("createEditProfileButton", "Create / Edit Profile", ActionButton::Style::strong,
                               "Create or edit your profile", "Open the private local creator-profile editor."),
      reviewLocalDraftsButton ("reviewLocalDraftsButton", "Review Local Drafts", ActionButton::Style::quiet, "Review local preview drafts",
                               "Review private preview-draft references stored on this computer."),
      submitMusicButton ("submitMusicButton", "Submit Music", ActionButton::Style::quiet, "Submit owned music",
                         "Open an email draft to submit music you own or control.")
{
    createEditProfileButton.onClick = std::move (onEditProfile);
    reviewLocalDraftsButton.onClick = std::move (onReviewDrafts);
    submitMusicButton.onClick = std::move (onSubmitMusic);

    for (auto* button : { &createEditProfileButton, &reviewLocalDraftsButton, &submitMusicButton })
        addAndMakeVisible (button);
}

void CommunityExperience::Participation::paint (juce::Graphics& g)
{
    const CommunityParticipationLayout layout (getWidth(), getHeight());
    drawCardSurface (g, communityCard (getWidth(), getHeight()), 12.0f);

    TextColumn column (g, layout.text);
    column.line ("YOUR COMMUNITY HOME", 18, boldFont (10.0f), HubPalette::accent);
    column.line ("Build your place in ZORVA", 31, boldFont (21.0f), HubPalette::textPrimary);
    column.lines ("Profiles and preview drafts stay private on this computer. Nothing is uploaded or public.", 34, plainFont (11.5f),
                  HubPalette::textPrimary.withAlpha (0.78f), { 2, 0.86f });
}

void CommunityExperience::Participation::resized()
{
    const CommunityParticipationLayout layout (getWidth(), getHeight());
    createEditProfileButton.setBounds (layout.editProfile);
    reviewLocalDraftsButton.setBounds (layout.reviewDrafts);
    submitMusicButton.setBounds (layout.submitMusic);
}
