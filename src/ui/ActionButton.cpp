#include "ui/ActionButton.h"

#include "ui/HubPalette.h"

namespace
{
struct Colours
{
    juce::Colour fill, fillWhenOn, text;
};

Colours coloursOf (ActionButton::Style style)
{
    switch (style)
    {
        case ActionButton::Style::strong:
            return { HubPalette::accent.darker (0.52f), HubPalette::accent.darker (0.65f), HubPalette::textPrimary };
        case ActionButton::Style::quiet:
            return { HubPalette::panel, HubPalette::inverseText, HubPalette::accent };
        case ActionButton::Style::library:
            return { HubPalette::action.darker (0.48f), HubPalette::action.darker (0.62f), HubPalette::textPrimary };
    }

    return {};
}
}

ActionButton::ActionButton (const juce::String& componentId, const juce::String& text, Style style, const juce::String& title,
                            const juce::String& whatItDoes)
    : juce::TextButton (text)
{
    const auto colours = coloursOf (style);
    setColour (juce::TextButton::buttonColourId, colours.fill);
    setColour (juce::TextButton::buttonOnColourId, colours.fillWhenOn);
    setColour (juce::TextButton::textColourOffId, colours.text);

    setComponentID (componentId);
    setTitle (title);
    setWhatItDoes (whatItDoes);

    // The ring is a sign for those who use the keyboard.
    setMouseClickGrabsKeyboardFocus (false);
}

void ActionButton::setWhatItDoes (const juce::String& text)
{
    setDescription (text);
    setTooltip (text);
}

void ActionButton::paintOverChildren (juce::Graphics& g)
{
    if (! hasKeyboardFocus (false))
        return;

    g.setColour (HubPalette::accent);
    g.drawRoundedRectangle (getLocalBounds().toFloat().reduced (1.5f), 4.0f, 2.0f);
}
