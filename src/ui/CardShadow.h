#pragma once

#include <juce_graphics/juce_graphics.h>

/** The shadow under a hovered card. Blurring costs milliseconds, and all cards have the same size: one copy serves them all,
    held through juce::SharedResourcePointer. Message thread. */
class CardShadow
{
public:
    /** Draws the shadow of a card with these bounds; what falls outside them is not drawn. */
    void draw (juce::Graphics&, juce::Rectangle<int> cardBounds);

private:
    juce::Image shadow;   ///< of the card last drawn, in pixels of its screen
};
