#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** Overwrites bytes that held a secret with zeros, by a call that the compiler keeps even when nothing reads them again. data may
    be null when size is 0. Any thread. */
void wipeMemory (void* data, size_t size);

/** Overwrites a block's bytes with zeros and frees it. */
void wipeBlock (juce::MemoryBlock& block);

/** Overwrites the characters of a text with zeros and empties it. Other String objects that share the same characters see them
    gone too, which is the purpose; never call it on a literal's or a shared constant's String. */
void wipeText (juce::String& text);
}
