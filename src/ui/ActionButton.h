#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** A button of the community page: a text button that shows the focus ring inside its own bounds. Message thread only. */
class ActionButton final : public juce::TextButton
{
public:
    /** How much a button calls for attention: what the page is for, what stands beside it, and what leads to the library. */
    enum class Style
    {
        strong,
        quiet,
        library
    };

    /** What it does is what a screen reader says and the tooltip alike. */
    ActionButton (const juce::String& componentId, const juce::String& text, Style style, const juce::String& title,
                  const juce::String& whatItDoes);

    /** Sets the description and the tooltip. */
    void setWhatItDoes (const juce::String& text);

    void paintOverChildren (juce::Graphics& g) override;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ActionButton)
};
