#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** Enables or disables a control. One that is disabled while it has the focus hands it to the one before, unless its parent takes it:
    with the focus nowhere, Tab does nothing. Message thread. */
void setEnabledKeepingFocus (juce::Component& control, bool shouldBeEnabled);
