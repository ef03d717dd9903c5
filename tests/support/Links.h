#pragma once

#include <juce_core/juce_core.h>
#include <optional>

namespace zorva::test
{
/** Makes a symbolic link whose text is the destination; empty, or the reason why it could not be made. */
juce::String makeLink (const juce::File& at, const juce::String& destination);

/** The text of a symbolic link; nothing where there is none. On Windows the text of every link is "(somewhere)". */
std::optional<juce::String> linkText (const juce::File& at);

/** Something stands at this path, be it only a dangling link. */
bool isThere (const juce::File& file);
}
