#pragma once

#include <juce_core/juce_core.h>

/** The rule for the files that a profile or a draft names: an ordinary file of 1 to maxBytes bytes that is no link and lies under none,
    whose extension, in lower case and with its point, is in allowedExtensions. Opens nothing, so that a path to a pipe or a device
    costs no wait. Any thread. */
bool isAcceptableLocalFile (const juce::File& file, const juce::StringArray& allowedExtensions, juce::int64 maxBytes);
