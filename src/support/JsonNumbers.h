#pragma once

#include <juce_core/juce_core.h>

/** JSON text with which the framework's parser may be trusted: its numbers are rewritten where that parser would calculate beyond
    its types, so that an integer above 2^63 - 1 reads as the nearest decimal number and an absurd exponent as zero or infinity.

    The text itself when there is nothing to rewrite. Empty when a minus sign stands without a digit: that parser takes whatever
    follows for one, be it the end of the text. Pure; any thread. */
juce::String withSafeNumbers (const juce::String& json);
