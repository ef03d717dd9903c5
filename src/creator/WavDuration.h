#pragma once

#include <juce_core/juce_core.h>
#include <optional>

/** The duration of a RIFF WAVE file in seconds, from its headers alone, whatever its size; nullopt when it is not a whole, plain
    WAV file whose "fmt " and "data" chunks begin in the first mebibyte. Any thread. */
std::optional<double> wavDurationInSeconds (const juce::File& file);

/** As above, for a stream that stands at its start. */
std::optional<double> wavDurationInSeconds (juce::InputStream& stream);
