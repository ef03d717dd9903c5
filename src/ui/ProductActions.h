#pragma once

#include "catalogue/ProductCardModel.h"

/** What the primary button of a product shows and does. */
struct ProductCardAction
{
    juce::String label;
    juce::String action;     ///< the word sent on a click; empty for none
    juce::String tooltip;
    juce::Colour fill;       ///< the button's colour
    juce::Colour text;       ///< the caption's colour
    bool enabled = false;
};

/** The one primary action of a product in its state. Pure. */
ProductCardAction primaryActionFor (const ProductCardModel& model, bool online);

/** The text of the state chip. Pure. */
juce::String stateChipTextFor (const ProductCardModel& model);

/** The product has a "win" entry whose address begins with "http". Whether it may be used is decided by the download. Pure. */
bool canDownload (const Product& product);

/** A fraction as a whole percentage with its sign, such as "42%". Pure. */
juce::String percentText (double fraction);
