#pragma once

#include <juce_graphics/juce_graphics.h>

/** Where the cards of the library stand. All values in logical pixels; pure. */
struct ProductGridLayout
{
    /** For a visible width, taken as at least 0. */
    explicit ProductGridLayout (int visibleWidth);

    juce::Rectangle<int> cardBounds (int index) const;

    /** The height of all rows with their margins; 0 without cards. */
    int contentHeight (int numCards) const;

    int columns = 1;     ///< 1 to 3
    int cardWidth = 0;   ///< never below 0
};
