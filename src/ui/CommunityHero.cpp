#include "ui/CommunityHero.h"

#include "ui/CommunityLayout.h"
#include "ui/CommunityStyle.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

#include <cmath>

namespace
{
constexpr float cardRadius = 14.0f;

/** A title for those who do not see the button, in ordinary letters. */
juce::String titleFor (const juce::String& buttonText)
{
    const auto text = buttonText.toLowerCase();

    if (text.contains ("update"))
        return "Update ZORVA DAW";

    return text.contains ("manage") ? "Manage ZORVA DAW" : "Get ZORVA DAW";
}

/** Darkens the picture below, where the words of the narrow hero begin. */
void shadeBelow (juce::Graphics& g, juce::Rectangle<float> picture)
{
    constexpr float clearPart = 0.62f;
    const auto clear = HubPalette::raised.withAlpha (0.0f);
    auto shade = juce::ColourGradient::vertical (clear, picture.getY(), HubPalette::raised, picture.getBottom());
    shade.addColour (clearPart, clear);
    g.setGradientFill (shade);
    g.fillRect (picture.withTrimmedTop (std::floor (picture.getHeight() * clearPart)));
}

/** Darkens the left half of the picture, where the words of the wide hero stand. */
void shadeOnTheLeft (juce::Graphics& g, juce::Rectangle<float> picture)
{
    const float begin = picture.getX() + picture.getWidth() * 0.22f, end = picture.getX() + picture.getWidth() * 0.7f;
    auto shade = juce::ColourGradient::horizontal (HubPalette::raised, begin, HubPalette::raised.withAlpha (0.0f), end);
    shade.addColour (0.42, HubPalette::raised.withAlpha (0.88f));
    shade.addColour (0.74, HubPalette::raised.withAlpha (0.18f));
    g.setGradientFill (shade);
    g.fillRect (picture.withRight (std::ceil (end)));
}
}

CommunityExperience::Hero::Hero (std::function<void()> onCreateProfile, std::function<void()> onSubmitMusic,
                                 std::function<void()> onOpenLibrary)
    : CommunitySection ("ZORVA Community preview",
                        "A demo community hero inviting creators to build a private profile or submit owned music."),
      createYourProfileButton ("createYourProfileButton", "Create Your Profile", ActionButton::Style::strong, "Create your ZORVA profile",
                               "Open the optional private creator-profile editor."),
      submitYourMusicButton ("submitYourMusicButton", "Submit Your Music", ActionButton::Style::quiet, "Submit your music",
                             "Open an email draft to submit music you own or control for review."),
      heroPrimaryButton ("heroPrimaryButton", "GET ZORVA DAW", ActionButton::Style::library, "Get ZORVA DAW",
                         "Open Library to download or install ZORVA DAW.")
{
    createYourProfileButton.onClick = std::move (onCreateProfile);
    submitYourMusicButton.onClick = std::move (onSubmitMusic);
    heroPrimaryButton.onClick = std::move (onOpenLibrary);

    for (auto* button : { &createYourProfileButton, &submitYourMusicButton, &heroPrimaryButton })
        addAndMakeVisible (button);
}

void CommunityExperience::Hero::setPrimary (const juce::String& text, const juce::String& description)
{
    heroPrimaryButton.setButtonText (text);
    heroPrimaryButton.setWhatItDoes (description);
    heroPrimaryButton.setTitle (titleFor (text));
}

void CommunityExperience::Hero::paint (juce::Graphics& g)
{
    const CommunityHeroLayout layout (getWidth(), getHeight());

    drawCardSurface (g, layout.card, cardRadius);
    paintPicture (g, layout);
    drawCardOutline (g, layout.card, cardRadius);
    paintText (g, layout);

    if (! layout.primaryCaption.isEmpty())
        drawTextLine (g, "OPENS LIBRARY", layout.primaryCaption, boldFont (8.5f), HubPalette::actionBright, juce::Justification::centred);
}

void CommunityExperience::Hero::paintPicture (juce::Graphics& g, const CommunityHeroLayout& layout)
{
    const juce::Graphics::ScopedSaveState beforeClip (g);
    clipToCard (g, layout.card, cardRadius);
    picture.drawCover (g, layout.picture, layout.narrow ? 0.66f : 0.5f);

    (layout.narrow ? shadeBelow : shadeOnTheLeft) (g, layout.picture.toFloat());
}

void CommunityExperience::Hero::paintText (juce::Graphics& g, const CommunityHeroLayout& layout)
{
    constexpr int gapBelowEyebrow = 3, gapBelowTitle = 4;
    TextColumn column (g, layout.text);

    column.line ("ZORVA COMMUNITY  /  PREVIEW", 20, boldFont (10.5f), HubPalette::accent);
    column.take (gapBelowEyebrow);
    column.lines ("Your sound deserves a stage.", 73, boldFont (layout.narrow ? 29.0f : 32.0f), HubPalette::textPrimary,
                  { 2, 0.84f, juce::Justification::centredLeft });
    column.take (gapBelowTitle);
    column.lines ("A musician-led home for creators to share their work, shape the future, and build something that stays independent.", 48,
                  plainFont (12.5f), HubPalette::textPrimary.withAlpha (0.8f), { 3, 0.86f });
    column.line ("DEMO ARTWORK  /  NO ENDORSEMENT IMPLIED", 20, boldFont (10.0f), HubPalette::textPrimary.withAlpha (0.7f));
}

void CommunityExperience::Hero::resized()
{
    const CommunityHeroLayout layout (getWidth(), getHeight());
    createYourProfileButton.setBounds (layout.createProfile);
    submitYourMusicButton.setBounds (layout.submitMusic);
    heroPrimaryButton.setBounds (layout.primary);
}
