#pragma once

#include <juce_core/juce_core.h>

/** The file name that a download address ends with, its escapes resolved; empty when that is no name for a file. */
juce::String downloadFileName (const juce::String& url);

/** Sets "sizeBytes" and "sha256" of each platform entry whose address ends with the name of a file in the folder. Changes the
    document in place and leaves all else as it is. Gives one line for each entry that was left unchanged, with the reason. */
juce::StringArray fillFromFiles (const juce::var& manifest, const juce::File& folder);
