#pragma once

#include "creator/CreatorProfile.h"

/** How the fields of a creator profile are written and read as text by a person. Pure; any thread. */
namespace CreatorProfileText
{
/** The items of a list that is typed with commas or line feeds between them: trimmed, none empty, none twice (compared without
    regard to case; the first spelling stays). A comma between double quotes belongs to its item. */
juce::StringArray listFrom (const juce::String& text);

/** One link a line, "name: address". */
juce::String linesOf (const juce::StringPairArray& links);

/** Reads such lines; blank ones are skipped, and a later line of a name replaces an earlier one. The links are emptied first. At
    the first line that names nothing before a colon it stops with a sentence in outError, keeping the links so far. Whether an
    address is a good one is not judged. */
bool readLinks (const juce::String& lines, juce::StringPairArray& links, juce::String& outError);

/** The whole summary that the person is shown. */
juce::String preview (const CreatorProfile& profile);
}
