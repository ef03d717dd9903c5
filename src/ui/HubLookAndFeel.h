#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** The dark look of every widget that JUCE draws for the Hub: buttons, labels, scroll bars, text editors and menus. What the
    pages paint themselves takes its colours from HubPalette and does not come through here.

    The application installs one as the default before the first window and keeps it until the last component is gone.
    Draws no sign of keyboard focus on buttons: see FocusRing. Message thread. */
class HubLookAndFeel final : public juce::LookAndFeel_V4
{
public:
    /** Registers the colours of all widgets. */
    HubLookAndFeel();

    void drawScrollbar (juce::Graphics&, juce::ScrollBar&, int x, int y, int width, int height, bool isVertical,
                        int thumbStart, int thumbSize, bool isMouseOver, bool isMouseDown) override;

    void drawButtonBackground (juce::Graphics&, juce::Button&, const juce::Colour& backgroundColour, bool isHighlighted,
                               bool isDown) override;

    juce::Font getTextButtonFont (juce::TextButton&, int buttonHeight) override;

    void drawTextEditorOutline (juce::Graphics&, int width, int height, juce::TextEditor&) override;

    void drawPopupMenuBackground (juce::Graphics&, int width, int height) override;

    void drawLabel (juce::Graphics&, juce::Label&) override;

private:
    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (HubLookAndFeel)
};
