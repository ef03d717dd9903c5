#pragma once

#include "ui/ProductActions.h"

#include <juce_gui_basics/juce_gui_basics.h>

/** Makes a button show an action: caption, colours, whether it is enabled, tooltip and accessible texts. The click is the
    owner's. */
void showAction (juce::TextButton&, const ProductCardAction&, const juce::String& productName);
