#pragma once

#include <juce_core/juce_core.h>

namespace platform
{
/** The product version in the fixed version block of a Windows program, as "major.minor.build": the first three of its four
    16-bit numbers. Reads the file only, never runs it, and takes every byte of it for hostile. The empty string when there is no
    such block or the file cannot be read. Any thread. */
juce::String productVersionOf (const juce::File& program);
}
