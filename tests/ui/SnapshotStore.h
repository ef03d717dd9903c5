#pragma once

#include <juce_graphics/juce_graphics.h>
#include <string>

namespace zorva::test
{
/** Compares a picture with the stored one of this name in the folder "snapshots". Empty when they agree; otherwise where they
    differ most, and where the picture was left for a look.

    Pictures are compared by the mean colours of small squares, so that another version of the font renderer passes and a moved or
    recoloured widget does not. With the environment variable HUB_UPDATE_SNAPSHOTS=1 the picture is stored instead. */
std::string differenceToStored (const juce::Image&, const juce::String& name);

/** The comparison by itself. */
std::string differenceBySquares (const juce::Image& actual, const juce::Image& expected);
}
