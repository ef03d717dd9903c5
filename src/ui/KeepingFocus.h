#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** Enables or disables a control. One that is disabled while it has the focus hands it to the one before, unless its parent takes it:
    with the focus nowhere, Tab does nothing. Message thread. */
void setEnabledKeepingFocus (juce::Component& control, bool shouldBeEnabled);

/** Lets a control take the focus or not. One that may no longer have it hands it to the one before, or to the last in its window if it
    is the first. Call this on several in the order of their stops: each hands on to one that has been judged. Message thread. */
void setFocusableKeepingFocus (juce::Component& control, bool shouldBeFocusable);
