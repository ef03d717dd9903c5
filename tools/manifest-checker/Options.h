#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** What the command line asks for. Paths may be relative to the working directory. */
struct Options
{
    juce::String manifest;    ///< the file to check
    juce::String files;       ///< the folder of the downloads to fill from; empty to check only
    juce::String output;      ///< where the filled manifest goes; empty for the standard output
    bool help = false;
};

/** Nothing when the command line makes no sense. */
std::optional<Options> parseOptions (const juce::StringArray& arguments);
