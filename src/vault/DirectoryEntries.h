#pragma once

#include <juce_core/juce_core.h>

/** Something stands at this path. A dangling link counts, although whoever follows it finds nothing. Any thread. */
bool isPresent (const juce::File& file);

/** What a directory holds, not recursively: kinds is a combination of juce::File::TypesOfFileToFind. The list is whole before
    anybody acts on it, and in the order of the names, which Linux alone would not give. Links are listed and count as what they
    lead to. Any thread. */
juce::Array<juce::File> entriesOf (const juce::File& directory, int kinds, const juce::String& pattern = "*");
