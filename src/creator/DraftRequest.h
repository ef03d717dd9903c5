#pragma once

#include <juce_core/juce_core.h>

/** The files that a draft request names, found acceptable. */
struct DraftFiles
{
    juce::File source;      ///< the WAV file
    juce::File coverArt;    ///< juce::File() when the request names none
};

/** Judging what the DAW asks to be kept. Reads the headers of the files that a request names, and decodes its picture; any thread. */
namespace DraftRequest
{
/** The request as an object. A void var with a code in outReason when the text's size is out of bounds or the text is no object of the
    known schema; outReason is empty on success. */
juce::var parse (const juce::String& text, juce::String& outReason);

/** The code of the first rule that the request breaks; empty, with outFiles filled, when it breaks none. */
juce::String firstBreach (const juce::DynamicObject& request, DraftFiles& outFiles);
}
