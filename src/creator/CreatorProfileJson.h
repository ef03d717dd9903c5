#pragma once

#include "creator/CreatorProfile.h"

/** The JSON (RFC 8259) that a creator profile is kept in. Pure but for the pictures that the rules read; any thread. */
namespace CreatorProfileJson
{
/** The profile as an object on one line. */
juce::String toText (const CreatorProfile& profile);

/** Reads a profile and judges it. False with a code in outError, outProfile untouched, when the text is no object of the known schema
    or the profile breaks a rule. What the text leaves out reads as empty or false, never as the default. */
bool fromText (const juce::String& text, CreatorProfile& outProfile, juce::String& outError);
}
