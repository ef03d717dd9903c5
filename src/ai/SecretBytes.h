#pragma once

#include "platform/SecureMemory.h"

/** Bytes of a secret, overwritten with zeros when they are dropped. Cannot be copied: each copy would be one more to wipe, and a
    std::function copies what it holds, so that it must hold this by a shared pointer. No lock. */
struct SecretBytes
{
    SecretBytes() = default;
    ~SecretBytes()    { wipe(); }

    /** Overwrites and frees the bytes now. */
    void wipe()       { platform::wipeBlock (bytes); }

    juce::MemoryBlock bytes;

    JUCE_DECLARE_NON_COPYABLE (SecretBytes)
};
