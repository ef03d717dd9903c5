#pragma once

#include <juce_core/juce_core.h>

namespace zorva::test
{
/** A rendered WAV file of 31 silent seconds in a folder of the test's own. */
juce::File writeRender();

/** The JSON text of a sound draft request for this render. */
juce::String draftOf (const juce::File& render, const juce::String& jobId, const juce::String& title = "Song");
}
