#include "ui/CommunityFeaturedTrack.h"

#include "support/Text.h"
#include "ui/CommunityLayout.h"
#include "ui/CommunityStyle.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

#include <array>

namespace
{
/** The heights of the waveform's bars, as fractions of its plate: a quiet start, two swells, and an end. */
constexpr std::array<float, 34> barHeights { 0.18f, 0.22f, 0.31f, 0.26f, 0.38f, 0.47f, 0.35f, 0.52f, 0.61f, 0.44f, 0.58f, 0.70f,
                                             0.76f, 0.63f, 0.49f, 0.66f, 0.55f, 0.40f, 0.33f, 0.45f, 0.37f, 0.28f, 0.42f, 0.54f,
                                             0.67f, 0.59f, 0.73f, 0.62f, 0.48f, 0.56f, 0.39f, 0.30f, 0.24f, 0.18f };
constexpr size_t numPlayedBars = 21;

void fillCircle (juce::Graphics& g, juce::Point<float> centre, float radius)
{
    g.fillEllipse (juce::Rectangle<float> (2.0f * radius, 2.0f * radius).withCentre (centre));
}

/** A record sleeve in code, so that no artwork stands where an artist's own would. */
void paintBadge (juce::Graphics& g, juce::Rectangle<int> badge)
{
    const auto area = badge.toFloat();
    const auto centre = area.getCentre();
    const float side = area.getWidth(), discRadius = side * 0.46f, labelRadius = side * 0.345f;

    // The light falls in from the upper right, so that both colours are seen around the label.
    const auto light = centre.translated (discRadius * 0.7f, -discRadius * 0.7f);

    g.setColour (HubPalette::inverseText);
    g.fillRoundedRectangle (area, 10.0f);
    g.setGradientFill ({ HubPalette::action.withAlpha (0.34f), light, HubPalette::accent.withAlpha (0.55f),
                         light.translated (discRadius * 1.5f, 0.0f), true });
    fillCircle (g, centre, discRadius);
    g.setColour (HubPalette::inverseText.withAlpha (0.88f));
    fillCircle (g, centre, labelRadius);
    g.setColour (HubPalette::accent.withAlpha (0.78f));
    g.drawEllipse (juce::Rectangle<float> (2.0f * labelRadius, 2.0f * labelRadius).withCentre (centre), 2.0f);

    const auto word = badge.withSizeKeepingCentre (badge.getWidth(), 28);
    drawTextLine (g, "ZORVA", word, boldFont (22.0f), HubPalette::textPrimary, juce::Justification::centred);
    drawTextLine (g, "COMMUNITY PREVIEW", word.withY (word.getBottom()).withHeight (14), boldFont (9.0f), HubPalette::actionBright,
                  juce::Justification::centred);
}

void paintWaveform (juce::Graphics& g, juce::Rectangle<int> plate)
{
    constexpr float sideMargin = 8.0f, widestBar = 6.0f;

    if (plate.isEmpty())
        return;

    g.setColour (HubPalette::panel);
    g.fillRoundedRectangle (plate.toFloat(), 6.0f);

    const auto area = plate.toFloat().reduced (sideMargin, 0.0f);
    const float step = area.getWidth() / (float) barHeights.size(), barWidth = juce::jmin (step * 0.5f, widestBar);

    for (size_t i = 0; i < barHeights.size(); ++i)
    {
        const juce::Point<float> middle (area.getX() + ((float) i + 0.5f) * step, area.getCentreY());
        g.setColour (i < numPlayedBars ? HubPalette::accent.withAlpha (0.78f) : HubPalette::action.withAlpha (0.58f));
        g.fillRoundedRectangle (juce::Rectangle<float> (barWidth, barHeights[i] * area.getHeight()).withCentre (middle), barWidth * 0.5f);
    }
}
}

CommunityExperience::FeaturedTrack::FeaturedTrack (std::function<void()> onSubmit)
    : CommunitySection ("Community player preview", "A non-playing demonstration of how an approved creator track could be featured."),
      playButton ("playButton", utf8 ("\xe2\x96\xb6"), ActionButton::Style::quiet, "Demo player unavailable",
                  "Decorative preview control. No audio is loaded and playback is disabled."),
      submitATrackButton ("submitATrackButton", "Submit a Track", ActionButton::Style::strong, "Submit a track for review",
                          "Open an email draft to submit a track you own or control.")
{
    playButton.setTooltip ("Demo player - no audio loaded");
    playButton.setEnabled (false);
    submitATrackButton.onClick = std::move (onSubmit);

    addAndMakeVisible (playButton);
    addAndMakeVisible (submitATrackButton);
}

void CommunityExperience::FeaturedTrack::paint (juce::Graphics& g)
{
    const CommunityTrackLayout layout (getWidth(), getHeight());
    constexpr int gapsOfWaveform = 14;

    drawCardSurface (g, communityCard (getWidth(), getHeight()), 13.0f);
    paintBadge (g, layout.badge);

    TextColumn column (g, layout.text);
    column.line ("FEATURED TRACK  /  MOCKUP", 18, boldFont (10.5f), HubPalette::actionBright);
    column.line ("Your Track Could Be Here", 32, boldFont (21.0f), HubPalette::textPrimary);
    column.line ("MADE WITH ZORVA  /  COMMUNITY PLAYER PREVIEW", 21, boldFont (10.5f), HubPalette::textPrimary.withAlpha (0.74f));
    paintWaveform (g, column.take (layout.narrow ? 48 : 58).reduced (0, gapsOfWaveform / 2));
    column.line ("DEMO PLAYER  /  NO AUDIO LOADED  /  0:00", 18, boldFont (10.0f), HubPalette::textPrimary.withAlpha (0.76f));
    column.lines ("Approved community submissions can become a genuine rotating showcase. The original master stays yours.", 35,
                  plainFont (11.5f), HubPalette::textPrimary.withAlpha (0.72f), { 2, 0.86f });
}

void CommunityExperience::FeaturedTrack::resized()
{
    const CommunityTrackLayout layout (getWidth(), getHeight());
    playButton.setBounds (layout.play);
    submitATrackButton.setBounds (layout.submit);
}
