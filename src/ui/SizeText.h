#pragma once

#include <juce_core/juce_core.h>

/** A count of bytes above 0 for people: GB with one decimal place, MB and KB with up to six significant digits, else bytes.
    Pure. */
juce::String sizeText (juce::int64 bytes);
