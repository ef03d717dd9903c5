#pragma once

#include "creator/DraftRequest.h"

/** The record that is kept of an accepted draft request. Pure functions, any thread. */
namespace DraftRecord
{
/** Makes the record out of the request, in place. What the person confirmed to the DAW survives as an acknowledgement only, and
    "payloadHash" is the same for every repetition of the request; "savedAt" is left to the store. Keys that the rules don't know stay
    and count. False when no hash could be computed. */
bool makeFrom (juce::DynamicObject& request, const DraftFiles& files);

/** The record's file: the object on one line. */
juce::String toText (const juce::var& record);
}
