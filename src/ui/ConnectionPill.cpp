#include "ui/ConnectionPill.h"

#include "support/Text.h"
#include "ui/HubPalette.h"
#include "ui/TextPainting.h"

#include <cmath>

namespace
{
constexpr float textHeight = 12.0f;
constexpr int textLeft = 26;
constexpr int besideText = 36;   ///< of the pill's width, what is not text
constexpr float radius = 12.0f;
}

int connectionPillTextWidth (const juce::Font& font, const juce::String& text)
{
    return (int) std::ceil (juce::GlyphArrangement::getStringWidth (font, text));
}

ConnectionPill::ConnectionPill()
{
    setInterceptsMouseClicks (false, false);
    setTitle (text());
}

void ConnectionPill::setOnline (bool shouldBeOnline)
{
    online = shouldBeOnline;
    setTitle (text());
    repaint();
}

int ConnectionPill::getPreferredWidth() const
{
    return connectionPillTextWidth (plainFont (textHeight), text()) + besideText;
}

void ConnectionPill::paint (juce::Graphics& g)
{
    const auto bounds = getLocalBounds().toFloat();

    g.setColour (HubPalette::raised);
    g.fillRoundedRectangle (bounds, radius);
    g.setColour (HubPalette::border);
    g.drawRoundedRectangle (bounds.reduced (0.5f), radius, 1.0f);

    g.setColour (online ? HubPalette::success : HubPalette::warning);
    g.fillEllipse (10.0f, (float) (getHeight() / 2 - 5), 10.0f, 10.0f);

    drawTextLine (g, text(), { textLeft, 0, juce::jmax (getWidth() - besideText, 0), getHeight() }, plainFont (textHeight),
                  online ? HubPalette::textPrimary : HubPalette::textSecondary);
}

juce::String ConnectionPill::text() const { return online ? juce::String ("Connected") : utf8 ("Offline — updates unavailable"); }
