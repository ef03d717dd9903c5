#pragma once

#include <juce_core/juce_core.h>

/** The rule for a file that a draft names: an absolute path of at most 4096 bytes, written as the system itself would write it,
    to a file of 1 to maxBytes bytes whose extension, in lower case, is in allowedExtensions, that is no link and lies under none.
    outFile is set on success only. Any thread. */
bool isAcceptableDraftPath (const juce::String& text, const juce::StringArray& allowedExtensions, juce::int64 maxBytes,
                            juce::File& outFile);
