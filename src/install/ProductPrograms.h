#pragma once

#include <juce_core/juce_core.h>

/** Where application products lie and which of their files is the program. Looks at the disk; takes no lock; any thread. */
namespace ProductPrograms
{
/** The directory of a product with a safe identity, which may not exist. */
juce::File directoryOf (const juce::String& id);

/** Every .exe in a folder, in the order of the listing. Links are not followed. */
juce::Array<juce::File> programsIn (const juce::File& folder, bool recursively);

/** The programs that lie loose beside the products directory. */
juce::Array<juce::File> looseProgramsNow();

/** The product's installed executable: the recorded one if it is the product's own; else one in the product's directory that bears
    its name; else such a one among the loose programs; or the empty file. */
juce::File find (const juce::String& id, const juce::String& recordedPath, const juce::Array<juce::File>& loosePrograms);
}
