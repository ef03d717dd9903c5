#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A path in this folder, with this ending, that can be opened like a file and is none: a new named pipe on Linux, the null device on
    Windows, which every folder has. A failure to make it fails the test. */
juce::File specialFile (const juce::File& folder, const juce::String& ending);
}
