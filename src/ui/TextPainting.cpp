#include "ui/TextPainting.h"

juce::Font plainFont (float height) { return juce::Font (juce::FontOptions (height)); }

juce::Font boldFont (float height) { return juce::Font (juce::FontOptions (height).withStyle ("Bold")); }

void drawTextLine (juce::Graphics& g, const juce::String& text, juce::Rectangle<int> area, const juce::Font& font,
                   juce::Colour colour, juce::Justification justification, Overflow overflow)
{
    g.setColour (colour);
    g.setFont (font);
    g.drawText (text, area, justification, overflow == Overflow::ellipsis);
}
