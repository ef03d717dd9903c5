#pragma once

#include "catalogue/ProductCardModel.h"

#include <juce_gui_basics/juce_gui_basics.h>

/** The menu behind the three dots of a card. Looks for the vaulted installer on disk. */
juce::PopupMenu overflowMenuFor (const ProductCardModel&);

/** The action word of a result of that menu; empty for a dismissed menu and for entries that do nothing. Pure. */
juce::String overflowActionFor (int menuResult);
