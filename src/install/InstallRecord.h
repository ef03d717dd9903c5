#pragma once

#include <juce_core/juce_core.h>

/** installed.json: which executable belongs to which product. Every operation takes the record lock for its whole run; any
    thread. */
namespace InstallRecord
{
/** The recorded paths by product id, unchecked; empty when the file is absent, unreadable or not an object. */
juce::StringPairArray readPaths();

/** The recorded path of one product, unchecked; empty when there is none. */
juce::String readPath (const juce::String& id);

/** Records the executable of a product and keeps every other entry. False with a whole sentence in error. */
bool write (const juce::String& id, const juce::File& executable, juce::String& error);
}
