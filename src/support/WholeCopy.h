#pragma once

#include <juce_core/juce_core.h>

/** Copies a regular file, or one that a link leads to, and compares the two: a full disk lets a copy end early, and the framework still
    calls it a success. False when there is no whole copy; what there is of one is the caller's to remove. False at once for what is no
    regular file, such as a pipe, which would be waited for. Any thread; takes as long as the disk does. */
bool copyWhole (const juce::File& from, const juce::File& to);
