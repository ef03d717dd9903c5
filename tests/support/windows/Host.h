#pragma once

#include <juce_core/juce_core.h>
#include <optional>

namespace zorva::test
{
/** Has the machine on which Wine runs do what Wine cannot, by tests/windows/on-host: a verb and its arguments, none of which holds a
    quotation mark. Empty when it is done, otherwise what went wrong; nothing on a real Windows, which has no such machine. */
std::optional<juce::String> askHost (const juce::StringArray& verbAndArguments);
}
