#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** The surface that every section of the community page stands on: a soft shadow, a light edge, the plate and its outline. */
void drawCardSurface (juce::Graphics& g, juce::Rectangle<int> card, float radius);

/** The outline of that surface alone, for what has painted over it. */
void drawCardOutline (juce::Graphics& g, juce::Rectangle<int> card, float radius);

/** Lets nothing be painted outside the surface, until the graphics state is restored. */
void clipToCard (juce::Graphics& g, juce::Rectangle<int> card, float radius);

/** A heading between the sections: a small word and a title beside it. */
void drawSectionHeading (juce::Graphics& g, juce::Rectangle<int> area, const juce::String& eyebrow, const juce::String& title);

/** Draws texts one below the other into a column; the last ones are cut by the space that is left. Lives within one paint(). */
class TextColumn
{
public:
    TextColumn (juce::Graphics& graphics, juce::Rectangle<int> column) : g (graphics), rest (column) {}

    /** One line, vertically centred in a row of this height, with an ellipsis where it is too wide. */
    void line (const juce::String& text, int rowHeight, const juce::Font& font, juce::Colour colour);

    /** How lines that are wrapped stand in their row. */
    struct Wrapping
    {
        int maximumLines;
        float minimumScale;
        juce::Justification justification = juce::Justification::topLeft;
    };

    /** Wrapped lines in a row of at most this height. */
    void lines (const juce::String& text, int rowHeight, const juce::Font& font, juce::Colour colour, const Wrapping& wrapping);

    /** Takes a row off the column, empty when none is left. */
    juce::Rectangle<int> take (int rowHeight);

private:
    juce::Graphics& g;
    juce::Rectangle<int> rest;
};
