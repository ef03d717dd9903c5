#pragma once

#include <juce_core/juce_core.h>

/** The SHA-256 (FIPS 180-4) of a file's bytes as 64 lower-case hexadecimal digits, read as a stream, so that the file is never
    held in memory. The empty string when the file cannot be opened or read to its end. Any thread; takes as long as the disk
    does. */
juce::String sha256OfFile (const juce::File& file);

/** The same of bytes in memory; data may be null when size is 0. The empty string when the system's library fails. Any thread. */
juce::String sha256OfBytes (const void* data, size_t size);
