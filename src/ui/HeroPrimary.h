#pragma once

#include "catalogue/ProductCardModel.h"

#include <vector>

/** The words of the community hero's third button. */
struct HeroPrimary
{
    juce::String text, description;
};

/** What the button says for these products: it follows the state of the main application, found by its id without regard to case.
    Pure. */
HeroPrimary heroPrimaryFor (const std::vector<ProductCardModel>& models);
