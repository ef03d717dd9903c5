#pragma once

#include <juce_core/juce_core.h>
#include <string>

namespace zorva::test
{
/** The bytes of a program that runs here: it makes an empty file of this path. */
std::string programThatMakes (const juce::File& file);
}
