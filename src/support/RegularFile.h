#pragma once

#include <juce_core/juce_core.h>

/** True when the path leads to an ordinary file, links followed. juce::File::existsAsFile is also true for pipes, sockets and devices,
    whose opening or reading may wait for ever. Any thread. */
bool isRegularFile (const juce::File& file);
