#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

/** Clicks the button that has the keyboard focus when the key is Space: juce::Button itself knows only Return. For the
    keyPressed() of a component that holds buttons, which gets the keys they leave. Answers whether it clicked one. */
bool clickFocusedButtonOnSpace (const juce::KeyPress&);
