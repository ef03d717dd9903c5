#pragma once

#include <juce_core/juce_core.h>

/** A string from a UTF-8 literal; juce::String's own constructor reads ASCII only. */
inline juce::String utf8 (const char* text) { return juce::String::fromUTF8 (text); }
