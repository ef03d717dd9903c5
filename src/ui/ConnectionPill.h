#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** The width of a line of text in whole pixels, rounded up. Pure. */
int connectionPillTextWidth (const juce::Font&, const juce::String& text);

/** The badge in the header that says whether the catalogue server could be reached. Starts offline and ignores the mouse. A
    parent that wants the width to follow lays out again after setOnline(). Message thread. */
class ConnectionPill final : public juce::Component
{
public:
    ConnectionPill();

    void setOnline (bool);

    /** The width in pixels that shows the present text whole. */
    int getPreferredWidth() const;

    void paint (juce::Graphics&) override;

private:
    juce::String text() const;

    bool online = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (ConnectionPill)
};
