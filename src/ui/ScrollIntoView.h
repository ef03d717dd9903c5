#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** Scrolls every viewport around a component, up and down only, until the component is seen; its top wins when it is taller than
    the viewport. For components that get the focus by keyboard. */
void scrollIntoView (const juce::Component&);
