#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** The default sans-serif of the platform, at a height in logical pixels. */
juce::Font plainFont (float height);

/** The same in bold. */
juce::Font boldFont (float height);

/** What happens to a line of text that is wider than its place. */
enum class Overflow
{
    ellipsis,
    clip
};

/** Draws one line of text, vertically as the justification says, in a font and a colour. */
void drawTextLine (juce::Graphics&, const juce::String& text, juce::Rectangle<int> area, const juce::Font&, juce::Colour,
                   juce::Justification = juce::Justification::centredLeft, Overflow = Overflow::ellipsis);
