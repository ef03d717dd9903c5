#pragma once

#include "platform/QueuedWindowEvents.h"

#include <juce_gui_basics/juce_gui_basics.h>

/** The Hub's one top-level window. Closing it asks the application to quit, without a question. Message thread. */
class HubMainWindow final : public juce::DocumentWindow
{
public:
    explicit HubMainWindow (const juce::String& name);

    void closeButtonPressed() override;

    /** Adds what the framework leaves out on Linux for a native title bar: without the flag such a window could not be resized
        and would have no smallest size. */
    int getDesktopWindowStyleFlags() const override;

    /** Lets Tab begin at the first control, and Shift and Tab at the last, while the window itself has the focus, as it has from the
        start on. The framework only goes on from one sibling to the next, and a window has none. */
    bool keyPressed (const juce::KeyPress& key) override;

private:
    const platform::QueuedWindowEvents queuedEvents { *this };
};
