#include "ui/CommunitySpotlight.h"

#include "ui/CommunityLayout.h"
#include "ui/CommunityStyle.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

CommunityExperience::Spotlight::Spotlight (const juce::String& title, const juce::String& pictureName, float pictureFocus,
                                           const juce::String& buttonText, std::function<void()> onSubmit)
    : CommunitySection (title, "Fictional demo artwork showing the future placement of an approved community creator feature."),
      picture (*this, pictureName), focus (pictureFocus),
      spotlightButton ("spotlightButton", buttonText, ActionButton::Style::quiet, title,
                       "Open an email draft to submit an owned portrait, story, and track for consideration.")
{
    spotlightButton.onClick = std::move (onSubmit);
    addAndMakeVisible (spotlightButton);
}

void CommunityExperience::Spotlight::paint (juce::Graphics& g)
{
    const CommunitySpotlightLayout layout (getWidth(), getHeight());
    constexpr float radius = 12.0f;

    drawCardSurface (g, layout.card, radius);

    {
        const juce::Graphics::ScopedSaveState beforeClip (g);
        clipToCard (g, layout.card, radius);
        picture.drawCover (g, layout.picture, focus);

        const auto shaded = layout.picture.withTop (layout.picture.getCentreY());
        g.setGradientFill (juce::ColourGradient::vertical (HubPalette::raised.withAlpha (0.0f), layout.picture.toFloat().getCentreY(),
                                                           HubPalette::raised, (float) shaded.getBottom()));
        g.fillRect (shaded);
    }

    TextColumn column (g, layout.text);
    column.line ("FICTIONAL DEMO ARTWORK", 17, boldFont (9.5f), HubPalette::actionBright);
    column.line (getTitle(), 27, boldFont (18.0f), HubPalette::textPrimary);
    column.lines ("Real ZORVA creators can submit their story, portrait, and music for review. Nothing appears publicly without explicit "
                  "approval.",
                  47, plainFont (11.5f), HubPalette::textPrimary.withAlpha (0.76f), { 3, 0.84f });
}

void CommunityExperience::Spotlight::resized()
{
    spotlightButton.setBounds (CommunitySpotlightLayout (getWidth(), getHeight()).button);
}
