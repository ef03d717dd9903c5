#include "ui/CommunityStyle.h"

#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

void drawCardSurface (juce::Graphics& g, juce::Rectangle<int> card, float radius)
{
    const auto shape = card.toFloat();

    {
        // The plate hides what is below it, and blending all of that would be most of a page's painting time.
        const juce::Graphics::ScopedSaveState beforeClip (g);
        const int corner = juce::roundToInt (radius);
        g.excludeClipRegion (card.reduced (corner, 1));
        g.excludeClipRegion (card.reduced (1, corner));

        g.setColour (juce::Colours::black.withAlpha (0.28f));
        g.fillRoundedRectangle (shape.translated (3.0f, 4.0f), radius);
        g.setColour (juce::Colours::white.withAlpha (0.04f));
        g.fillRoundedRectangle (shape.translated (-1.5f, -1.5f), radius);
    }

    g.setColour (HubPalette::raised);
    g.fillRoundedRectangle (shape, radius);
    drawCardOutline (g, card, radius);
}

void drawCardOutline (juce::Graphics& g, juce::Rectangle<int> card, float radius)
{
    g.setColour (HubPalette::border.brighter (0.1f));
    g.drawRoundedRectangle (card.toFloat().reduced (0.5f), radius, 1.0f);
}

void clipToCard (juce::Graphics& g, juce::Rectangle<int> card, float radius)
{
    juce::Path shape;
    shape.addRoundedRectangle (card.toFloat(), radius);
    g.reduceClipRegion (shape);
}

void drawSectionHeading (juce::Graphics& g, juce::Rectangle<int> area, const juce::String& eyebrow, const juce::String& title)
{
    constexpr int eyebrowWidth = 205;
    const auto left = area.removeFromLeft (juce::jmin (area.getWidth(), eyebrowWidth));

    drawTextLine (g, eyebrow, left, boldFont (10.5f), HubPalette::accent);
    drawTextLine (g, title, area, boldFont (17.0f), HubPalette::textPrimary);
}

//==============================================================================
void TextColumn::line (const juce::String& text, int rowHeight, const juce::Font& font, juce::Colour colour)
{
    drawTextLine (g, text, take (rowHeight), font, colour);
}

void TextColumn::lines (const juce::String& text, int rowHeight, const juce::Font& font, juce::Colour colour, const Wrapping& wrapping)
{
    g.setColour (colour);
    g.setFont (font);
    g.drawFittedText (text, take (rowHeight), wrapping.justification, wrapping.maximumLines, wrapping.minimumScale);
}

juce::Rectangle<int> TextColumn::take (int rowHeight)
{
    return rest.removeFromTop (rowHeight);
}
